# Fails unless show_sample notices, in copies of SAMPLE, a lost, a changed and a misplaced file.

cmake_minimum_required(VERSION 3.25)

function(expect_failure row)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env --unset=_NT_SYMBOL_PATH --unset=QUIVER_DEBUG PATH=
            "${SHOW_SAMPLE}" "${DIRECTORY}"
    RESULT_VARIABLE status OUTPUT_VARIABLE table ERROR_VARIABLE errors)
  if(NOT status EQUAL 1 OR NOT table MATCHES "${row}")
    message(FATAL_ERROR "exit status ${status}, expected 1 and ${row}\n${table}${errors}")
  endif()
endfunction()

function(copy_sample)
  file(REMOVE_RECURSE "${DIRECTORY}")
  file(MAKE_DIRECTORY "${DIRECTORY}")
  file(COPY "${SAMPLE}/" DESTINATION "${DIRECTORY}")
endfunction()

copy_sample()
file(REMOVE "${DIRECTORY}/local/bin/inventory.debug")
expect_failure("NOT FOUND +/opt/inventory/bin/inventory.debug")

copy_sample()
file(APPEND "${DIRECTORY}/local/checkout/report/format/table.c" "// changed\n")
expect_failure("NOT FOUND +/builds/[^ ]*/table.c")

copy_sample()
file(RENAME "${DIRECTORY}/local/checkout/platform" "${DIRECTORY}/local/checkout/system")
expect_failure("WRONG FILE +C:[^ ]*clock.c +local/checkout/system/clock.c")

file(REMOVE_RECURSE "${DIRECTORY}")
