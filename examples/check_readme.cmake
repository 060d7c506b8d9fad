# Fails unless README shows the file SHOWN, line by line, as a C++ block.

cmake_minimum_required(VERSION 3.25)

file(READ "${README}" readme)
file(READ "${SHOWN}" shown)
string(FIND "${readme}" "```cpp\n${shown}```\n" position)
if(position EQUAL -1)
  message(FATAL_ERROR "${README} does not show ${SHOWN} as it is")
endif()
