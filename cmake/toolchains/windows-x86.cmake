# mingw-w64 for Windows, 32 bit.
set(QUIVER_MINGW i686-w64-mingw32)
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")
