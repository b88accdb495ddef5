# Installs builds into one prefix and moves it: a package must work wherever it comes to lie.
#
# Definitions: builds (a list with | between), prefix

include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
set(first_prefix "${prefix}.as-installed")
file(REMOVE_RECURSE "${first_prefix}" "${prefix}")
string(REPLACE "|" ";" builds "${builds}")
foreach(build IN LISTS builds)
    run("Installing ${build}" "${CMAKE_COMMAND}" --install "${build}" --prefix "${first_prefix}")
endforeach()
file(RENAME "${first_prefix}" "${prefix}")

# The files that are read by tools: none may know where it was made.
file(GLOB_RECURSE files
    "${prefix}/*.hpp" "${prefix}/*.h" "${prefix}/*.cmake" "${prefix}/*.pc" "${prefix}/LICENSE")
list(LENGTH files count)
if(count LESS 40)
    message(FATAL_ERROR "only ${count} files are installed: ${files}")
endif()
get_filename_component(source "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)
foreach(file IN LISTS files)
    file(READ "${file}" text)
    foreach(path IN ITEMS "${source}" "${first_prefix}" ${builds})
        string(FIND "${text}" "${path}" found)
        if(NOT found EQUAL -1)
            message(FATAL_ERROR "${file} names ${path}")
        endif()
    endforeach()
endforeach()
