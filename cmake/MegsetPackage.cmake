# Debian packages, made by cpack: libmegset (the shared library), libmegset-dev (headers, CMake and pkg-config files) and
# megset (the program).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME megset)
set(CPACK_PACKAGE_CONTACT "The megset developers <megset@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development program)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The program and the development files need the library of this very version.
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/megset)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libmegset)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "MEG/EEG sessions as datasets of trials of channels: shared library")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libmegset-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "MEG/EEG sessions as datasets of trials of channels: headers")
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME megset)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION science)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "MEG/EEG sessions as datasets of trials of channels: command line")
set(CPACK_COMPONENT_PROGRAM_DEPENDS library)

include(CPack)
