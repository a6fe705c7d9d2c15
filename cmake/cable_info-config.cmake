# For find_package(cable_info): the library depends on nothing, so that its targets are all.
include(${CMAKE_CURRENT_LIST_DIR}/cable_info-targets.cmake)
