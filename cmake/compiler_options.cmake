# Compiler options of this project's own targets. They do not propagate to embedding projects.

function(cable_info_compiler_options target)
  set_target_properties(${target} PROPERTIES CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wdouble-promotion -Wformat=2)
  if(CABLE_INFO_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(CABLE_INFO_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${CABLE_INFO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${CABLE_INFO_SANITIZE})
  endif()
  if(CABLE_INFO_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage)
    target_link_options(${target} PRIVATE --coverage)
  endif()
endfunction()
