include("${CMAKE_CURRENT_LIST_DIR}/check_example.cmake")

file(MAKE_DIRECTORY "${HERE}/result")
file(WRITE "${HERE}/checkout/src/lib/parse.c" "int parse(int);")
file(WRITE "${HERE}/checkout/src/lib/lexer.c" "int lex(void);")
file(WRITE "${HERE}/checkout/src/lib/größe.c" "int size(void);")
# The second time the file is remembered: a suggested path is step 7.
expect_output([=[
/ci/src/lib/parse.c: step 6, <here>/checkout/src/lib/parse.c
  begins: int parse(int);
  archive: 0
/ci/src/lib/parse.c: step 7, <here>/checkout/src/lib/parse.c
  begins: int parse(int);
  archive: 6
/ci/src/lib/lexer.c: not found
  <here>/checkout/src/lib/lexer.c is another version of the file
/ci/src/lib/größe.c: step 6, <here>/checkout/src/lib/größe.c
  begins: int size(void);
  archive: 0
/ci/out/app.debug: not found
]=])

# On another day nothing but the archive is left.
file(REMOVE_RECURSE "${HERE}/checkout")
expect_output([=[
/ci/src/lib/parse.c: step 1, <here>/result/archive/sources/parse.c/c09c28e02a6327a42e5f673620fd78e0/parse.c
  begins: int parse(int);
  archive: 6
/ci/src/lib/parse.c: step 7, <here>/result/archive/sources/parse.c/c09c28e02a6327a42e5f673620fd78e0/parse.c
  begins: int parse(int);
  archive: 6
/ci/src/lib/lexer.c: not found
/ci/src/lib/größe.c: step 1, <here>/result/archive/sources/größe.c/1b78876ccfed3b4f81058dc87a3eee35/größe.c
  begins: int size(void);
  archive: 6
/ci/out/app.debug: not found
]=])
