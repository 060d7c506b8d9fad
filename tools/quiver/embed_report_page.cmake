# Puts the page of reports together and turns it into C++:
#
#   cmake -D PAGE=... -D STYLE=... -D SCRIPT=... -D OUTPUT=... -P embed_report_page.cmake
#
# The page's policy lets only the page's own style and script run, each known by its SHA-256, so
# that nothing that a file name might bring along could. The hashes are put in here.

cmake_minimum_required(VERSION 3.25)

# Sets `result` to the base64 form of an SHA-256 in hexadecimal digits.
function(base64_of hex result)
  set(alphabet "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
  set(text "")
  # 32 bytes and a zero byte that fills up: eleven groups of three bytes.
  set(hex "${hex}00")
  foreach(group RANGE 10)
    math(EXPR at "${group} * 6")
    string(SUBSTRING "${hex}" ${at} 6 digits)
    foreach(shift 18 12 6 0)
      math(EXPR index "(0x${digits} >> ${shift}) & 63")
      string(SUBSTRING "${alphabet}" ${index} 1 character)
      string(APPEND text "${character}")
    endforeach()
  endforeach()
  string(SUBSTRING "${text}" 0 43 text)
  set(${result} "${text}=" PARENT_SCOPE)
endfunction()

# Sets `result` to the hash of what stands between the only `<tag>` of the page and its end.
function(hash_of page tag result)
  string(FIND "${page}" "<${tag}>" begin)
  string(FIND "${page}" "</${tag}>" end REVERSE)
  if(begin EQUAL -1 OR end EQUAL -1)
    message(FATAL_ERROR "${PAGE}: no <${tag}>")
  endif()
  string(LENGTH "<${tag}>" skipped)
  math(EXPR begin "${begin} + ${skipped}")
  math(EXPR length "${end} - ${begin}")
  string(SUBSTRING "${page}" ${begin} ${length} text)
  string(SHA256 hex "${text}")
  base64_of("${hex}" hash)
  set(${result} "${hash}" PARENT_SCOPE)
endfunction()

# Puts the content of a file in the place of the mark.
function(insert mark file)
  string(FIND "${page}" "${mark}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "${PAGE}: no ${mark}")
  endif()
  file(READ "${file}" text)
  string(REPLACE "${mark}" "${text}" page "${page}")
  set(page "${page}" PARENT_SCOPE)
endfunction()

file(READ "${PAGE}" page)
insert("@STYLE@" "${STYLE}")
insert("@SCRIPT@" "${SCRIPT}")
string(REPLACE "\r\n" "\n" page "${page}")
hash_of("${page}" style style_hash)
hash_of("${page}" script script_hash)
string(REPLACE "@STYLE_HASH@" "${style_hash}" page "${page}")
string(REPLACE "@SCRIPT_HASH@" "${script_hash}" page "${page}")

# Compilers limit how long one literal may be; neighbours are joined.
set(literals "")
string(LENGTH "${page}" length)
set(at 0)
while(at LESS length)
  string(SUBSTRING "${page}" ${at} 8000 piece)
  string(APPEND literals "\n    R\"page(${piece})page\"")
  math(EXPR at "${at} + 8000")
endwhile()

file(WRITE "${OUTPUT}" "// Made from resolve_report.html.

#include \"resolve_report.h\"

namespace quiver_tool {

const char* const kReportPage =${literals};

}  // namespace quiver_tool
")
