# The dependencies of the Windows build (cross-compiled with MinGW-w64), all from Debian packages:
# Boost's headers from the build machine, GoogleTest from its source package's sources
# (/usr/src/googletest), zlib from libz-mingw-w64-dev, and TinyXML and libpng built from Debian's
# source packages by scripts/windows-deps into the build tree. Programs and DLLs go to one folder
# (bin/), where Windows looks for the DLLs a program needs; CTest runs them under Wine.
set(ULO_DEPS_DIR ${PROJECT_BINARY_DIR}/deps)
if(NOT EXISTS ${ULO_DEPS_DIR}/lib/libtinyxml.a OR NOT EXISTS ${ULO_DEPS_DIR}/lib/libpng.a)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -E env ULO_MINGW_CC=${CMAKE_C_COMPILER} ULO_MINGW_CXX=${CMAKE_CXX_COMPILER}
            ULO_MINGW_AR=${CMAKE_AR} ${PROJECT_SOURCE_DIR}/scripts/windows-deps ${ULO_DEPS_DIR}
    RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "scripts/windows-deps failed: TinyXML and libpng for Windows are missing")
  endif()
endif()

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
# Windows names: UloDrawLib.dll with its import library UloDrawLib.dll.a.
set(CMAKE_SHARED_LIBRARY_PREFIX "")
set(CMAKE_IMPORT_LIBRARY_PREFIX "")
# No run-time DLLs of the compiler to ship: libgcc, libstdc++ and winpthread are linked into each
# program and DLL.
string(APPEND CMAKE_EXE_LINKER_FLAGS " -static")
string(APPEND CMAKE_SHARED_LINKER_FLAGS " -static")
# The Windows headers without their min/max macros and rarely used parts, Windows 7 and later;
# 64-bit file offsets in the C runtime.
add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX UNICODE _UNICODE _WIN32_WINNT=0x0601 _FILE_OFFSET_BITS=64)

find_package(Threads REQUIRED)

# Boost is used header-only; its headers are reached through a folder that holds nothing else, so
# that the build machine's C library headers in /usr/include stay out of sight.
set(ULO_BOOST_INCLUDE ${ULO_DEPS_DIR}/boost-include)
if(NOT EXISTS ${ULO_BOOST_INCLUDE}/boost/version.hpp)
  if(NOT EXISTS /usr/include/boost/version.hpp)
    message(FATAL_ERROR "Boost headers missing: install libboost-dev (scripts/bootstrap)")
  endif()
  file(MAKE_DIRECTORY ${ULO_BOOST_INCLUDE})
  file(CREATE_LINK /usr/include/boost ${ULO_BOOST_INCLUDE}/boost SYMBOLIC)
endif()
add_library(Boost::headers INTERFACE IMPORTED)
target_include_directories(Boost::headers SYSTEM INTERFACE ${ULO_BOOST_INCLUDE})

# TinyXML under the name pkg-config gives it on Linux, so the targets that use it are the same.
add_library(PkgConfig::TINYXML STATIC IMPORTED)
set_target_properties(PkgConfig::TINYXML PROPERTIES
  IMPORTED_LOCATION ${ULO_DEPS_DIR}/lib/libtinyxml.a
  INTERFACE_INCLUDE_DIRECTORIES ${ULO_DEPS_DIR}/include
  INTERFACE_COMPILE_DEFINITIONS TIXML_USE_STL)

find_package(ZLIB REQUIRED)
add_library(PNG::PNG STATIC IMPORTED)
set_target_properties(PNG::PNG PROPERTIES
  IMPORTED_LOCATION ${ULO_DEPS_DIR}/lib/libpng.a
  INTERFACE_INCLUDE_DIRECTORIES ${ULO_DEPS_DIR}/include
  INTERFACE_LINK_LIBRARIES ZLIB::ZLIB)
set(PNG_FOUND TRUE)

if(ULO_BUILD_TESTS)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${ULO_DEPS_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  foreach(lib gtest gtest_main gmock gmock_main)
    if(NOT TARGET GTest::${lib})
      add_library(GTest::${lib} ALIAS ${lib})
    endif()
  endforeach()
  include(GoogleTest)
  # CTest runs the programs under Wine, in a prefix of this build tree.
  set(CMAKE_CROSSCOMPILING_EMULATOR ${PROJECT_SOURCE_DIR}/scripts/wine-run ${PROJECT_BINARY_DIR}/wine)
endif()
