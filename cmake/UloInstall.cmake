# Installs the three shared libraries with their public headers, an exported CMake package
# (find_package(UloDrawLib) gives UloDrawLib::UloDrawLib) and a pkg-config file (ulodrawlib.pc).
include(CMakePackageConfigHelpers)

set(ULO_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/UloDrawLib)

# Versioned like any shared library; installed side by side, each finds the ones it needs in its
# own folder, whatever the prefix.
set_target_properties(UloDrawLib UloLib ToolsLib PROPERTIES
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR}
  INSTALL_RPATH "$ORIGIN")
# The public headers are C++17.
target_compile_features(UloDrawLib PUBLIC cxx_std_17)
target_compile_features(UloLib PUBLIC cxx_std_17)
target_compile_features(ToolsLib PUBLIC cxx_std_17)

install(TARGETS UloDrawLib UloLib ToolsLib
  EXPORT UloDrawLibTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY
    ${PROJECT_SOURCE_DIR}/include/ulogui
    ${PROJECT_SOURCE_DIR}/ulolib/include/ulolib
    ${PROJECT_SOURCE_DIR}/toolslib/include/toolslib
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")

install(EXPORT UloDrawLibTargets NAMESPACE UloDrawLib:: DESTINATION ${ULO_INSTALL_CMAKEDIR})
configure_package_config_file(cmake/UloDrawLibConfig.cmake.in
  ${PROJECT_BINARY_DIR}/UloDrawLibConfig.cmake
  INSTALL_DESTINATION ${ULO_INSTALL_CMAKEDIR})
# Before 1.0 a new minor version may change the interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/UloDrawLibConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/UloDrawLibConfig.cmake ${PROJECT_BINARY_DIR}/UloDrawLibConfigVersion.cmake
  DESTINATION ${ULO_INSTALL_CMAKEDIR})

# The pkg-config file finds the prefix from its own place, so an installed tree can be moved.
set(ULO_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(IS_ABSOLUTE "${ULO_PC_DIR}")
  set(ULO_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH ULO_PC_UP "/prefix/${ULO_PC_DIR}" "/prefix")
  string(REGEX REPLACE "/$" "" ULO_PC_UP "${ULO_PC_UP}")
  set(ULO_PC_PREFIX "\${pcfiledir}/${ULO_PC_UP}")
endif()
foreach(dir LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${dir}}")
    set(ULO_PC_${dir} "${CMAKE_INSTALL_${dir}}")
  else()
    set(ULO_PC_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
  endif()
endforeach()
configure_file(cmake/ulodrawlib.pc.in ${PROJECT_BINARY_DIR}/ulodrawlib.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ulodrawlib.pc DESTINATION ${ULO_PC_DIR})
