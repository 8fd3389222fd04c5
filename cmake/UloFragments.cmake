# Pulls in every sub-folder of the current folder that has a CMakeLists.txt, so that each
# library family keeps its tests, benchmarks and fuzz targets in a folder of its own.
function(ulo_add_fragment_folders)
  file(GLOB entries CONFIGURE_DEPENDS LIST_DIRECTORIES true ${CMAKE_CURRENT_SOURCE_DIR}/*)
  foreach(entry IN LISTS entries)
    if(IS_DIRECTORY ${entry} AND EXISTS ${entry}/CMakeLists.txt)
      add_subdirectory(${entry})
    endif()
  endforeach()
endfunction()
