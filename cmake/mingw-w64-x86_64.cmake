# Cross-compiling for 64-bit Windows with Debian's MinGW-w64 (g++-mingw-w64-x86-64-posix: the POSIX
# thread model, which std::thread needs).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(ULO_MINGW_TRIPLE x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${ULO_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ULO_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${ULO_MINGW_TRIPLE}-windres)
set(CMAKE_AR ${ULO_MINGW_TRIPLE}-ar CACHE FILEPATH "")
set(CMAKE_RANLIB ${ULO_MINGW_TRIPLE}-ranlib CACHE FILEPATH "")

# Libraries and headers come from the MinGW tree only, never from the build machine's /usr; programs
# (the build's tools) from the build machine.
set(CMAKE_FIND_ROOT_PATH /usr/${ULO_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
