# Installs the library with its CMake package and pkg-config file. With a shared library the static one
# is installed, too, as the target cable_info::cable_info_static.

include(CMakePackageConfigHelpers)

set(cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/cable_info)

install(TARGETS cable_info EXPORT cable_info
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})  # CMake before 3.23 does not support file sets
if(TARGET cable_info_static)
  install(TARGETS cable_info_static EXPORT cable_info
    ARCHIVE COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()

install(EXPORT cable_info
  FILE cable_info-targets.cmake
  NAMESPACE cable_info::
  DESTINATION ${cmake_dir}
  COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/cable_info-config-version.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_SOURCE_DIR}/cmake/cable_info-config.cmake
  ${PROJECT_BINARY_DIR}/cable_info-config-version.cmake
  DESTINATION ${cmake_dir}
  COMPONENT development)

# Paths in the .pc file are relative to its folder, so that the installed tree can be moved.
file(RELATIVE_PATH prefix_from_pc ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pc ${prefix_from_pc})
file(RELATIVE_PATH libdir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH includedir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(${PROJECT_SOURCE_DIR}/cmake/cable_info.pc.in ${PROJECT_BINARY_DIR}/cable_info.pc
  @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/cable_info.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)
