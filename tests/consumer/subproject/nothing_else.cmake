# Fails unless the prefix holds own.cpp and nothing else.
file(GLOB_RECURSE files RELATIVE "${prefix}" "${prefix}/*")
if(NOT files STREQUAL "own.cpp")
    message(FATAL_ERROR "installed: ${files}")
endif()
