# The drawing surface and the pixel transfer loops.
ulogui_family(ulogui_surface
  ${CMAKE_CURRENT_LIST_DIR}/PixelTransferSelect.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PixelTransferRows.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PixelTransferVector128.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TrueColorDC.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TrueColorDCGeometry.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TrueColorDCFill.cpp
)
target_link_libraries(ulogui_surface PUBLIC ulogui_core ulogui_picture)
ulo_hot_loops(${CMAKE_CURRENT_LIST_DIR}/TrueColorDCFill.cpp)
# The loops' float arithmetic must round exactly as written on every path: no fused multiply-add.
set_property(SOURCE
  ${CMAKE_CURRENT_LIST_DIR}/PixelTransferRows.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PixelTransferVector128.cpp
  APPEND PROPERTY COMPILE_OPTIONS -ffp-contract=off)
ulo_hot_loops(${CMAKE_CURRENT_LIST_DIR}/PixelTransferRows.cpp ${CMAKE_CURRENT_LIST_DIR}/PixelTransferVector128.cpp)
# Wider vectors on x86-64: one file per instruction set, entered only after the processor check.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
  target_sources(ulogui_surface PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/PixelTransferVector256.cpp
    ${CMAKE_CURRENT_LIST_DIR}/PixelTransferVector512.cpp)
  set_property(SOURCE ${CMAKE_CURRENT_LIST_DIR}/PixelTransferVector256.cpp
    APPEND PROPERTY COMPILE_OPTIONS -mavx2 -ffp-contract=off)
  set_property(SOURCE ${CMAKE_CURRENT_LIST_DIR}/PixelTransferVector512.cpp
    APPEND PROPERTY COMPILE_OPTIONS -mavx512f -mavx512bw -ffp-contract=off)
  ulo_hot_loops(${CMAKE_CURRENT_LIST_DIR}/PixelTransferVector256.cpp
                ${CMAKE_CURRENT_LIST_DIR}/PixelTransferVector512.cpp)
  target_compile_definitions(ulogui_surface PRIVATE ULO_TRANSFER_VECTOR256=1 ULO_TRANSFER_VECTOR512=1)
endif()
