# The Windows side of what is installed, and the archive that the target `package` makes.

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
