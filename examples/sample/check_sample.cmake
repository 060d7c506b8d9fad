# Fails unless every file of SAMPLE is found and README shows the very table that is printed.

cmake_minimum_required(VERSION 3.25)

# An earlier run was interrupted while the originals were away.
file(REMOVE_RECURSE "${COPY}")
file(WRITE "${COPY}/moved/bin/inventory" "old")

execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env --unset=_NT_SYMBOL_PATH --unset=QUIVER_DEBUG PATH=
          "${SHOW_SAMPLE}" "${SAMPLE}" "${COPY}"
  RESULT_VARIABLE status OUTPUT_VARIABLE table ERROR_VARIABLE errors)
if(status OR errors)
  message(FATAL_ERROR "exit status ${status}\n${table}${errors}")
endif()
file(READ "${README}" readme)
string(FIND "${readme}" "${table}" position)
if(position EQUAL -1)
  message(FATAL_ERROR "${README} does not show this table:\n${table}")
endif()
