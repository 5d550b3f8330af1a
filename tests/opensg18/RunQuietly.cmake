# Runs PROGRAM render OUT and fails on a non-zero status or on any warning
# or GL error in what it prints.
file(MAKE_DIRECTORY ${OUT})
execute_process(COMMAND ${PROGRAM} render ${OUT}
    RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
message("${out}${err}")
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} exited with ${status}")
endif()
string(TOLOWER "${out}${err}" text)
if(text MATCHES "warning|gl error")
    message(FATAL_ERROR "${PROGRAM} logged a warning or a GL error")
endif()
