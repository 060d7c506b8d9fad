include("${CMAKE_CURRENT_LIST_DIR}/check_example.cmake")

file(WRITE "${HERE}/tools/qv_deploy" "data")
file(WRITE "${HERE}/tools/new/qv_deploy" "#!/bin/sh\n")
file(WRITE "${HERE}/tools/qv_empty" "")
file(WRITE "${HERE}/tools/qv_data" "data")
expect_output([=[
/ci/tools/qv_deploy: <here>/tools/new/qv_deploy, confidence 0
/ci/tools/qv_empty: <here>/tools/qv_empty, confidence 1
/ci/tools/qv_data: not found
]=])
