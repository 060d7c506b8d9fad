# Compiler settings for every target of the project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Only what QV_API marks leaves the shared library. Types stay visible so that run-time type
# information is one object per process; functions and variables are hidden.
if(WIN32)
  add_compile_definitions(UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
else()
  add_compile_options(-fvisibility-ms-compat)
endif()

# Paths below the checkout are hashed as relative ones, so that one checkout uses what another built.
find_program(QUIVER_CCACHE ccache)
if(QUIVER_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
    "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1 "${QUIVER_CCACHE}")
endif()

# Ours only; the sources of GoogleTest are built without these.
add_library(quiver_warnings INTERFACE)
target_compile_options(quiver_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
  -Wconversion -Wsign-conversion -Werror)

# GCC 12 sees overlaps where texts are joined, and there are none.
target_compile_options(quiver_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# Which lock guards what; only clang can check it.
target_compile_options(quiver_warnings INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)

if(QUIVER_STATIC_CHECKS)
  find_program(QUIVER_CLANG_TIDY clang-tidy REQUIRED)
  set(CMAKE_CXX_CLANG_TIDY "${QUIVER_CLANG_TIDY}" --quiet)
endif()

if(QUIVER_SANITIZE)
  add_compile_options(
    -fsanitize=${QUIVER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1
    -gline-tables-only)
  add_link_options(-fsanitize=${QUIVER_SANITIZE})
endif()

find_package(Threads REQUIRED)
