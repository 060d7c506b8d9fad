# The Linux side of what is installed, and the .deb that the target `package` makes: the program, the
# library and what programs are built with, in one package.

include(QuiverPkgConfig)

quiver_write_pkg_config("${PROJECT_BINARY_DIR}/quiver.pc" "${CMAKE_INSTALL_PREFIX}"
  "${CMAKE_INSTALL_LIBDIR}" "${CMAKE_INSTALL_INCLUDEDIR}" "${PROJECT_VERSION}")
install(FILES "${PROJECT_BINARY_DIR}/quiver.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
install(FILES "${man_page}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")

find_program(QUIVER_SHLIBDEPS dpkg-shlibdeps)
if(NOT QUIVER_SHLIBDEPS)
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGE_NAME quiver)
set(CPACK_PACKAGE_CONTACT "The Quiver developers <developers@quiver.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"An analysis result names binaries, their symbol files and their sources by the
paths of the machine where it was recorded. The library and the program quiver
find these files on this machine, check them, keep copies and ask symbol
servers. What programs are built with is included: headers, CMake and
pkg-config files.")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "g++, cmake | pkg-config")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The library's names change with its minor version.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/debian/triggers")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/src")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/DebianFiles.cmake")
set(CPACK_QUIVER_DEBIAN_DIR "${CMAKE_CURRENT_LIST_DIR}/debian")
include(CPack)

if(QUIVER_BUILD_TESTS AND CMAKE_BUILD_TYPE STREQUAL "RelWithDebInfo" AND NOT QUIVER_SANITIZE)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  add_test(NAME Package.HoldsAllThatIsNeededAndNothingMore
    COMMAND Python3::Interpreter "${PROJECT_SOURCE_DIR}/scripts/check_package" "${PROJECT_BINARY_DIR}")
endif()
