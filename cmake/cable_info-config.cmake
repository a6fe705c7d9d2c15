# For find_package(cable_info). The library has no dependencies to find.
include(${CMAKE_CURRENT_LIST_DIR}/cable_info-targets.cmake)
