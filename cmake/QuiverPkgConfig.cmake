# Writes quiver.pc for an installation whose libraries lie in LIBDIR and whose headers in INCLUDEDIR,
# both below the prefix or absolute. A function, and a script for trying other directories:
#
#   cmake -D LIBDIR=lib64 -D INCLUDEDIR=include -D VERSION=2.9.0 -D OUTPUT=quiver.pc -P THIS_FILE

set(QUIVER_PC_TEMPLATE "${CMAKE_CURRENT_LIST_DIR}/quiver.pc.in")

# The prefix is found from where the file lies, so the tree may be moved. Where libraries are
# installed outside of the prefix there is no such road.
function(quiver_write_pkg_config output prefix libdir includedir version)
  if(IS_ABSOLUTE "${libdir}")
    set(prefix_text "${prefix}")
  else()
    file(RELATIVE_PATH up "/p/${libdir}/pkgconfig" "/p")
    string(REGEX REPLACE "/$" "" up "${up}")
    set(prefix_text "\${pcfiledir}/${up}")
  endif()
  foreach(kind libdir includedir)
    set(${kind}_text "${${kind}}")
    if(NOT IS_ABSOLUTE "${${kind}}")
      set(${kind}_text "\${prefix}/${${kind}}")
    endif()
  endforeach()
  configure_file("${QUIVER_PC_TEMPLATE}" "${output}" @ONLY)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  cmake_minimum_required(VERSION 3.25)
  quiver_write_pkg_config("${OUTPUT}" "${PREFIX}" "${LIBDIR}" "${INCLUDEDIR}" "${VERSION}")
endif()
