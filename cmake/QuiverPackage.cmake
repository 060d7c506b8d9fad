# What `cmake --install` copies, and the packages that the target `package` makes.
#
#   bin/                     quiver and, on Windows, quiver.dll and the run-time DLLs it needs
#   lib/                     the library or its import library, cmake/quiver/ for find_package, and
#                            on Linux pkgconfig/quiver.pc
#   beside the library       quiver_symsrv, which it opens for symbol servers; without it, it does
#                            without them
#   include/quiver/          the headers
#   share/man, share/doc     the manual page; on Windows as text
#
# None of the files says where it was installed: the tree may be moved.

include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/quiver")
set(man_page "${PROJECT_SOURCE_DIR}/tools/quiver/quiver.1")

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

if(WIN32)
  include(QuiverPackageWindows)
else()
  include(QuiverPackageLinux)
endif()
