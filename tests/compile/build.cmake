# Builds a program from one source; see vellis_add_build_test.

string(REPLACE "|" ";-I" includes "-I${includes}")
string(REPLACE "|" ";" flags "${flags}")
get_filename_component(folder "${library}" DIRECTORY)
execute_process(
    COMMAND "${compiler}" -std=c++17 ${includes} "${source}" -o "${output}" ${flags} "${library}"
            "-Wl,-rpath,${folder}"
    RESULT_VARIABLE status
    ERROR_VARIABLE messages)

if(expectation STREQUAL "builds")
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "does not build:\n${messages}")
    endif()
elseif(status EQUAL 0)
    message(FATAL_ERROR "builds, but should be refused with '${expectation}'")
elseif(NOT messages MATCHES "${expectation}")
    message(FATAL_ERROR "is refused, but not with '${expectation}':\n${messages}")
endif()
