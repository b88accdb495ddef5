# run(what command...): runs the command; where it fails, so does the script, with all its output.
function(run what)
    execute_process(
        COMMAND ${ARGN}
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    message("${output}")
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${what} failed: see above.")
    endif()
endfunction()
