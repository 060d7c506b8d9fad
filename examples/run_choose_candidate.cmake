include("${CMAKE_CURRENT_LIST_DIR}/check_example.cmake")

file(WRITE "${HERE}/shared/lib/parse.c" "int parse(void);")
file(WRITE "${HERE}/checkout/parse.c" "int parse(int);")
expect_output([=[
/ci/lib/parse.c:
  step 2: <here>/shared/lib/parse.c
  step 6: <here>/checkout/parse.c
  answer: <here>/checkout/parse.c
/ci/lib/parse.c:
  rejected: <here>/shared/lib/parse.c: %ChecksumMismatch
  rejected: <here>/checkout/parse.c: %ChecksumMismatch
  answer: none
]=])
