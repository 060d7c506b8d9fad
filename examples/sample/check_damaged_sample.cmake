# Fails unless show_sample notices, in copies of SAMPLE, a lost, a changed and a misplaced file,
# and an archive that takes none.

cmake_minimum_required(VERSION 3.25)

# Expects `row` in what is printed up to the end of the first table, or behind it with SECOND.
function(expect_failure row)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env --unset=_NT_SYMBOL_PATH --unset=QUIVER_DEBUG PATH=
            "${SHOW_SAMPLE}" "${DIRECTORY}" "${DIRECTORY}.copy"
    RESULT_VARIABLE status OUTPUT_VARIABLE table ERROR_VARIABLE errors)
  if("SECOND" IN_LIST ARGN)
    string(REGEX REPLACE "^.*\nonce more" "once more" shown "${table}")
  else()
    string(REGEX REPLACE "\nonce more.*$" "" shown "${table}")
  endif()
  if(NOT status EQUAL 1 OR NOT shown MATCHES "${row}")
    message(FATAL_ERROR "exit status ${status}, expected 1 and ${row}\n${table}${errors}")
  endif()
endfunction()

function(copy_sample)
  file(REMOVE_RECURSE "${DIRECTORY}" "${DIRECTORY}.copy")
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

copy_sample()
file(WRITE "${DIRECTORY}/result/archive" "in the place of the archive")
expect_failure("once more.*NOT FOUND +/opt/inventory/bin/inventory " SECOND)

file(REMOVE_RECURSE "${DIRECTORY}" "${DIRECTORY}.copy")
