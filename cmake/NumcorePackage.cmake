# Installation: headers, library, CMake package, pkg-config file, licence.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/numcore)

install(TARGETS numcore EXPORT numcoreTargets)
install(
  DIRECTORY ${PROJECT_SOURCE_DIR}/include/numcore
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp")
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})

# Before 1.0 a minor version may break its callers.
write_basic_package_version_file(numcoreConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/numcoreConfig.cmake.in numcoreConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
install(EXPORT numcoreTargets NAMESPACE numcore:: DESTINATION ${package_dir})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/numcoreConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/numcoreConfigVersion.cmake
        DESTINATION ${package_dir})

# Relative to its own place, so that an installed tree can be moved.
file(RELATIVE_PATH NUMCORE_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/numcore.pc.in numcore.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/numcore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
