# What only the Windows builds need.

# Programs and DLLs lie together: Windows looks for a program's DLLs beside it.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

# Windows programs that run under Wine on the machine that built them see its files on this drive.
if(CMAKE_CROSSCOMPILING)
  set(QUIVER_DRIVE "Z:")
endif()

# The compiler's run-time DLLs that the library and every program need, in `QUIVER_RUNTIME_DLLS`.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(names libgcc_s_dw2-1.dll libstdc++-6.dll libwinpthread-1.dll)
else()
  set(names libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
endif()
set(QUIVER_RUNTIME_DLLS)
foreach(name ${names})
  execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${name}
    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  if(NOT IS_ABSOLUTE "${file}")
    message(FATAL_ERROR "The compiler has no ${name}.")
  endif()
  file(REAL_PATH "${file}" file)
  list(APPEND QUIVER_RUNTIME_DLLS "${file}")
endforeach()
file(COPY ${QUIVER_RUNTIME_DLLS} DESTINATION "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
