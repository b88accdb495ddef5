# Compiles and runs a program with nothing but what pkg-config says.
#
# Definitions: pkg_config, package, program, arguments, folder, settings; prefix, unless pkg-config
# knows where

include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
include("${settings}")
file(REMOVE_RECURSE "${folder}")
file(MAKE_DIRECTORY "${folder}")
if(DEFINED prefix)
    file(GLOB_RECURSE description "${prefix}/*/${package}.pc")
    get_filename_component(description_folder "${description}" DIRECTORY)
    get_filename_component(library_folder "${description_folder}" DIRECTORY)
    set(ENV{PKG_CONFIG_PATH} "${description_folder}")
    set(ENV{LD_LIBRARY_PATH} "${library_folder}:$ENV{LD_LIBRARY_PATH}")
endif()

function(ask result)
    execute_process(
        COMMAND "${pkg_config}" ${ARGN} ${package}
        OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(answer UNIX_COMMAND "${answer}")
    set(${result} "${answer}" PARENT_SCOPE)
endfunction()

ask(version --modversion)
if(NOT version STREQUAL EXPECTED_VERSION)
    message(FATAL_ERROR "${package}.pc is of version ${version}")
endif()
ask(compile_flags --cflags)
ask(link_flags --libs)
run("Compiling" "${CMAKE_CXX_COMPILER}" -std=c++17 -DCONSUMER_STANDARD=201703L ${compile_flags}
    "-I${OFFSCREEN_INCLUDE_DIR}" "${program}" -o "${folder}/program"
    "${OFFSCREEN_LIBRARY}" ${link_flags} -ldl)
separate_arguments(arguments UNIX_COMMAND "${arguments}")
run("Running" "${folder}/program" ${arguments})
