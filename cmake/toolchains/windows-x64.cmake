# mingw-w64 for Windows, 64 bit.
set(QUIVER_MINGW x86_64-w64-mingw32)
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")
