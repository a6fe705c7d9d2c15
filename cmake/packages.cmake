# The Debian packages: cableinfo contains the program and the shared library, libcable-info-dev the
# files for embedding the library.

set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME cableinfo)
set(CPACK_PACKAGE_CONTACT "cable_info maintainers <maintainers@cable-info.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL development)
if(CABLE_INFO_BUILD_CLI OR BUILD_SHARED_LIBS)
  list(APPEND CPACK_COMPONENTS_ALL runtime)
endif()

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME cableinfo)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION net)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "The program cableinfo, which reads port records and dumps of module memory, and writes them
as a CSV table, a text report or export records.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libcable-info-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "The library cable_info with its headers, CMake package and pkg-config file.")

if(BUILD_SHARED_LIBS)
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "cableinfo (= ${PROJECT_VERSION})")
endif()

include(CPack)
