# Installs the library with its SONAME, the public headers, the data files and the two package descriptions in three
# components. Programs need "library" and "data" to run, and "development" to be built.
include(CMakePackageConfigHelpers)

install(TARGETS krosac EXPORT krosacTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/ DESTINATION ${CMAKE_INSTALL_DATADIR}/krosac/data COMPONENT data)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/krosac DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
        FILES_MATCHING PATTERN "*.h" PATTERN internal EXCLUDE)

set(KROSAC_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/krosac)
install(EXPORT krosacTargets NAMESPACE krosac:: FILE krosacConfig.cmake DESTINATION ${KROSAC_CMAKE_DIR}
        COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/krosacConfigVersion.cmake COMPATIBILITY ${KROSAC_COMPATIBILITY})
install(FILES ${PROJECT_BINARY_DIR}/krosacConfigVersion.cmake DESTINATION ${KROSAC_CMAKE_DIR} COMPONENT development)

# The pkg-config file derives the prefix from its own path, so that the tree can be moved.
file(RELATIVE_PATH KROSAC_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/krosac.pc.in ${PROJECT_BINARY_DIR}/krosac.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/krosac.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# The pages keep their relative paths, since they link to each other.
file(GLOB KROSAC_PAGES ${PROJECT_SOURCE_DIR}/docs/*.md)
foreach(page README.md CHANGELOG.md CITATION.cff)
  install(FILES ${PROJECT_SOURCE_DIR}/${page} DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
endforeach()
install(FILES ${KROSAC_PAGES} DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT development)
