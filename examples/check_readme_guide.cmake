# Fails unless README names every header of the folder HEADERS.

cmake_minimum_required(VERSION 3.25)

file(READ "${README}" readme)
file(GLOB headers RELATIVE "${HEADERS}" "${HEADERS}/*.h")
foreach(header IN LISTS headers)
  string(FIND "${readme}" "`${header}`" position)
  string(FIND "${readme}" "quiver/${header}" included)
  if(position EQUAL -1 AND included EQUAL -1)
    list(APPEND unnamed "${header}")
  endif()
endforeach()
if(NOT headers OR unnamed)
  message(FATAL_ERROR "${README} does not name: ${unnamed}")
endif()
