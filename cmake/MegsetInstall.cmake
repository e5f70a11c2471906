# Where the library goes, and how other projects find it: find_package(megset CONFIG) and pkg-config.
include(CMakePackageConfigHelpers)

set(MEGSET_CONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/megset)

install(TARGETS megset EXPORT megsetTargets
        LIBRARY COMPONENT library NAMELINK_COMPONENT development ARCHIVE COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/megset/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/megset COMPONENT development
        FILES_MATCHING PATTERN "*.h")
install(EXPORT megsetTargets NAMESPACE megset:: DESTINATION ${MEGSET_CONFIG_DIR} COMPONENT development)

configure_package_config_file(cmake/megsetConfig.cmake.in ${PROJECT_BINARY_DIR}/megsetConfig.cmake
                              INSTALL_DESTINATION ${MEGSET_CONFIG_DIR})
# Before version 1.0 a new minor version may change an interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/megsetConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/megsetConfig.cmake ${PROJECT_BINARY_DIR}/megsetConfigVersion.cmake
        DESTINATION ${MEGSET_CONFIG_DIR} COMPONENT development)

# The pkg-config file finds its prefix from where it lies, so that an installed tree can be moved.
file(RELATIVE_PATH MEGSET_PREFIX_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/megset.pc.in ${PROJECT_BINARY_DIR}/megset.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/megset.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(MEGSET_BUILD_APPS)
  # The manual page and the completion come from the program itself.
  set(MEGSET_MANUAL ${PROJECT_BINARY_DIR}/manual/megset.1)
  set(MEGSET_COMPLETION ${PROJECT_BINARY_DIR}/manual/megset)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/manual)
  add_custom_command(OUTPUT ${MEGSET_MANUAL} ${MEGSET_COMPLETION}
                     COMMAND megset_cli man > ${MEGSET_MANUAL}
                     COMMAND megset_cli completion bash > ${MEGSET_COMPLETION} VERBATIM)
  add_custom_target(megset_manual ALL DEPENDS ${MEGSET_MANUAL} ${MEGSET_COMPLETION})
  install(TARGETS megset_cli COMPONENT program)
  install(FILES ${MEGSET_MANUAL} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
  install(FILES ${MEGSET_COMPLETION} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT program)
endif()

include(cmake/MegsetPackage.cmake)
