# Run by CPack on the tree that becomes the .deb: what Debian wants otherwise than `cmake --install`
# leaves it.

set(usr "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr")
if(NOT EXISTS "${usr}/bin/quiver")
  message(FATAL_ERROR "${usr} does not hold the program")
endif()

# In /usr the program's library is found without being told where.
file(RPATH_REMOVE FILE "${usr}/bin/quiver")

set(doc "${usr}/share/doc/quiver")
file(COPY "${CPACK_QUIVER_DEBIAN_DIR}/copyright" DESTINATION "${doc}"
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file("${CPACK_QUIVER_DEBIAN_DIR}/changelog.in" "${doc}/changelog" @ONLY)
execute_process(
  COMMAND gzip -9 -n -f "${doc}/changelog" "${usr}/share/man/man1/quiver.1"
  COMMAND_ERROR_IS_FATAL ANY)
