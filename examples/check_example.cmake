# Runs EXAMPLE in a fresh DIRECTORY whose files the including script makes, and compares what it
# prints. In the expected text <here> stands for the directory.

cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${DIRECTORY}")
file(MAKE_DIRECTORY "${DIRECTORY}")
file(REAL_PATH "${DIRECTORY}" HERE)

function(expect_output expected)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env --unset=_NT_SYMBOL_PATH --unset=QUIVER_DEBUG LC_ALL=C.UTF-8
            PATH= "${EXAMPLE}"
    WORKING_DIRECTORY "${HERE}"
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  string(REPLACE "<here>" "${HERE}" expected "${expected}")
  if(status OR errors OR NOT output STREQUAL expected)
    message(FATAL_ERROR
      "exit status ${status}\n--- expected\n${expected}--- printed\n${output}--- errors\n${errors}")
  endif()
endfunction()
