# Warning flags shared by every target of the project.
add_library(ulo_warnings INTERFACE)
target_compile_options(ulo_warnings INTERFACE -Wall -Wextra -Wpedantic -Wnon-virtual-dtor)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC only: clang has no local-only variant of -Wshadow.
  target_compile_options(ulo_warnings INTERFACE -Wshadow=local)
endif()
if(ULO_WERROR)
  target_compile_options(ulo_warnings INTERFACE -Werror)
endif()

# Hot pixel loops: GCC 12 vectorises loops with run-time trip counts only from -O3.
function(ulo_hot_loops)
  foreach(src IN LISTS ARGN)
    set_property(SOURCE ${src} APPEND PROPERTY COMPILE_OPTIONS -O3)
  endforeach()
endfunction()
