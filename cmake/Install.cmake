# The library with its SONAME, the public headers, the data files and the two package descriptions.
include(CMakePackageConfigHelpers)

install(TARGETS krosac EXPORT krosacTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(folder IN LISTS KROSAC_FOLDERS)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/krosac OPTIONAL
          FILES_MATCHING PATTERN "*.h" PATTERN "*Internal.h" EXCLUDE)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/krosac.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/krosac)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/ DESTINATION ${CMAKE_INSTALL_DATADIR}/krosac/data)

set(KROSAC_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/krosac)
install(EXPORT krosacTargets NAMESPACE krosac:: FILE krosacConfig.cmake DESTINATION ${KROSAC_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/krosacConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/krosacConfigVersion.cmake DESTINATION ${KROSAC_CMAKE_DIR})

# The pkg-config file finds the prefix from its own place, so that a moved tree still works.
file(RELATIVE_PATH KROSAC_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/krosac.pc.in ${PROJECT_BINARY_DIR}/krosac.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/krosac.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
