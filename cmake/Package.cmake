# Debian packages by cpack, one for each component: libkrosac1, libkrosac-dev and krosac-data (scripts/package). They
# state no licence, since none has been chosen.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME krosac)
set(CPACK_PACKAGE_VENDOR KROSAC)
set(CPACK_PACKAGE_CONTACT "KROSAC maintainers <maintainers@krosac.invalid>" CACHE STRING "Maintainer of the packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development data)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libkrosac${KROSAC_ABI_VERSION})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "krosac-data (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkrosac-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libkrosac${KROSAC_ABI_VERSION} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DATA_PACKAGE_NAME krosac-data)
set(CPACK_DEBIAN_DATA_PACKAGE_SECTION science)
set(CPACK_DEBIAN_DATA_PACKAGE_ARCHITECTURE all)

set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "Shared library that reads, writes, processes and measures seismograms (SAC files).")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "Headers for C++ and C, a CMake package, a pkg-config file and the pages.")
set(CPACK_DEBIAN_DATA_DESCRIPTION
    "Travel-time tables: Jeffreys-Bullen, IASP91, LocSAT and Ps moveout tables, loaded at run time.")
include(CPack)
