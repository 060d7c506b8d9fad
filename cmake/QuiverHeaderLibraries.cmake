# Libraries that are headers alone, as the target quiver_header_libraries: CLI11, fmt, nlohmann-json
# and spdlog.
#
# They are the same for every target system, so the Windows builds use those of the machine that
# builds. They are reached through a folder of links to just these headers: all of /usr/include would
# bring that machine's C library along.

set(header_links "${PROJECT_BINARY_DIR}/header_libraries")
file(MAKE_DIRECTORY "${header_links}")

foreach(header CLI/CLI.hpp fmt/format.h nlohmann/json.hpp spdlog/spdlog.h)
  get_filename_component(folder "${header}" DIRECTORY)
  find_path(QUIVER_${folder}_PARENT "${header}" PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  mark_as_advanced(QUIVER_${folder}_PARENT)
  file(CREATE_LINK "${QUIVER_${folder}_PARENT}/${folder}" "${header_links}/${folder}" SYMBOLIC)
endforeach()

add_library(quiver_header_libraries INTERFACE)
target_include_directories(quiver_header_libraries SYSTEM INTERFACE "${header_links}")
target_compile_definitions(quiver_header_libraries INTERFACE FMT_HEADER_ONLY SPDLOG_FMT_EXTERNAL)
if(WIN32)
  target_compile_definitions(quiver_header_libraries INTERFACE SPDLOG_WCHAR_FILENAMES)
endif()
