# What both Windows toolchains share. QUIVER_MINGW names the target's tools.

set(CMAKE_SYSTEM_NAME Windows)
if(QUIVER_MINGW MATCHES "^i686")
  set(CMAKE_SYSTEM_PROCESSOR x86)
else()
  set(CMAKE_SYSTEM_PROCESSOR AMD64)
endif()

# The flavour with POSIX threads: the other one has no <mutex> and no <thread>.
set(CMAKE_C_COMPILER ${QUIVER_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QUIVER_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${QUIVER_MINGW}-windres)

# Libraries and packages of the machine that builds are never those of Windows.
set(CMAKE_FIND_ROOT_PATH /usr/${QUIVER_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# One libgcc for programs and DLL: on 32 bits an exception of a callback passes through the DLL only
# so. The run-time DLLs are shipped beside them.
set(CMAKE_EXE_LINKER_FLAGS_INIT -shared-libgcc)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -shared-libgcc)
