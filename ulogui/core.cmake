# Colour value, geometry, display magnification, GUI math and the pixel buffer.
ulogui_family(ulogui_core
  ${CMAKE_CURRENT_LIST_DIR}/Color.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ColorHLS.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Magnify.cpp
  ${CMAKE_CURRENT_LIST_DIR}/GUIMath.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PixelBlock.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PictureBits.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PictureInfo.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PictureBitsFill.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PictureBitsStream.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PictureBitsDevice.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Palette.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ColorSet.cpp
  ${CMAKE_CURRENT_LIST_DIR}/platform/MemoryDevice.cpp
  ${CMAKE_CURRENT_LIST_DIR}/platform/linux/WritableMemory.cpp
)
target_link_libraries(ulogui_core PUBLIC ToolsLib Boost::thread)
ulo_hot_loops(${CMAKE_CURRENT_LIST_DIR}/PictureBitsFill.cpp)
