# What `cmake --install` copies, and the archive that the target `package` makes.
#
#   bin/                     quiver and, on Windows, quiver.dll and the run-time DLLs it needs
#   lib/                     the library or its import library, cmake/quiver/ for find_package
#   beside the library       quiver_symsrv, which it opens for symbol servers; without it, it does
#                            without them
#   include/quiver/          the headers
#   share/man, share/doc     the manual page; on Windows as text

include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/quiver")

install(TARGETS quiver EXPORT quiverTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(TARGETS quiver_program RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/quiver" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  FILES_MATCHING PATTERN "*.h")
install(EXPORT quiverTargets NAMESPACE quiver:: DESTINATION "${package_dir}")

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/quiverConfig.cmake.in" "${PROJECT_BINARY_DIR}/quiverConfig.cmake"
  INSTALL_DESTINATION "${package_dir}")
# A minor version has a name space of its own.
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/quiverConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/quiverConfig.cmake"
  "${PROJECT_BINARY_DIR}/quiverConfigVersion.cmake" DESTINATION "${package_dir}")

set(man_page "${PROJECT_SOURCE_DIR}/tools/quiver/quiver.1")
if(NOT WIN32)
  install(FILES "${man_page}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
  return()
endif()

# Windows has nothing that shows manual pages.
find_program(QUIVER_GROFF groff REQUIRED)
set(man_text "${PROJECT_BINARY_DIR}/quiver.txt")
add_custom_command(OUTPUT "${man_text}"
  COMMAND "${QUIVER_GROFF}" -man -Tutf8 -rLL=80n -P-cbou "${man_page}" > "${man_text}"
  DEPENDS "${man_page}"
  VERBATIM)
add_custom_target(manual ALL DEPENDS "${man_text}")
install(FILES "${man_text}" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(FILES ${QUIVER_RUNTIME_DLLS} DESTINATION "${CMAKE_INSTALL_BINDIR}")

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(architecture x86)
else()
  set(architecture x64)
endif()
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME "quiver-${PROJECT_VERSION}-windows-${architecture}")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)

if(QUIVER_BUILD_TESTS)
  add_test(NAME Package.HoldsAllThatIsNeededAndNothingMore
    COMMAND Python3::Interpreter "${PROJECT_SOURCE_DIR}/scripts/check_package"
      "${PROJECT_BINARY_DIR}" "${CMAKE_OBJDUMP}" "${CMAKE_CURRENT_LIST_DIR}/toolchains/windows-${architecture}.cmake")
endif()
