# Configures a consumer in an empty folder, builds it and runs its tests.
#
# Definitions: project, folder, settings; prefix, kind, component and route go on to the
# project, each where it is defined

include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
include("${settings}")
file(REMOVE_RECURSE "${folder}")
set(options "")
if(DEFINED prefix)
    list(APPEND options "-DCMAKE_PREFIX_PATH=${prefix}")
endif()
foreach(name IN ITEMS kind component route)
    if(DEFINED ${name})
        string(TOUPPER "${name}" option)
        list(APPEND options "-D${option}=${${name}}")
    endif()
endforeach()
run("Configuring" "${CMAKE_COMMAND}"
    -C "${settings}" -G "${CONSUMER_GENERATOR}" -S "${project}" -B "${folder}" ${options})
run("Building" "${CMAKE_COMMAND}" --build "${folder}" --parallel 2)
run("Running" "${CMAKE_CTEST_COMMAND}" --test-dir "${folder}" --verbose --no-tests=error)
