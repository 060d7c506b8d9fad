include("${CMAKE_CURRENT_LIST_DIR}/check_example.cmake")

file(WRITE "${HERE}/symbols/out/app.pdb" "symbols")
expect_output("<here>/symbols/out/app.pdb\n")

file(REMOVE "${HERE}/symbols/out/app.pdb")
expect_output("not found\n")
