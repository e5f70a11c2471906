# Where the library goes, and how other projects find it: find_package(megset CONFIG) and pkg-config.
include(CMakePackageConfigHelpers)

set(MEGSET_CONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/megset)

install(TARGETS megset EXPORT megsetTargets)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/megset/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/megset
        FILES_MATCHING PATTERN "*.h")
install(EXPORT megsetTargets NAMESPACE megset:: DESTINATION ${MEGSET_CONFIG_DIR})

configure_package_config_file(cmake/megsetConfig.cmake.in ${PROJECT_BINARY_DIR}/megsetConfig.cmake
                              INSTALL_DESTINATION ${MEGSET_CONFIG_DIR})
# Before version 1.0 a new minor version may change an interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/megsetConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/megsetConfig.cmake ${PROJECT_BINARY_DIR}/megsetConfigVersion.cmake
        DESTINATION ${MEGSET_CONFIG_DIR})

# The pkg-config file finds its prefix from where it lies, so that an installed tree can be moved.
file(RELATIVE_PATH MEGSET_PREFIX_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/megset.pc.in ${PROJECT_BINARY_DIR}/megset.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/megset.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(MEGSET_BUILD_APPS)
  install(TARGETS megset_cli)
endif()
