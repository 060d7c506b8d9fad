# Fails when groff has anything to say about the man page.

cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${GROFF}" -man -ww -Tutf8 -z "${PAGE}"
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(status OR output)
  message(FATAL_ERROR "${PAGE} (${status}):\n${output}")
endif()
