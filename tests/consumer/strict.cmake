# consumer_strict(target...): every warning of a careful user is an error, in vellis's headers too. Those
# of glm are the system's, also where they come from a folder that the compiler does not know as such.
find_path(CONSUMER_GLM_INCLUDE_DIR glm/vec4.hpp REQUIRED)
function(consumer_strict)
    set_target_properties(${ARGN} PROPERTIES NO_SYSTEM_FROM_IMPORTED ON CXX_EXTENSIONS OFF)
    foreach(target IN LISTS ARGN)
        target_include_directories(${target} SYSTEM PRIVATE "${CONSUMER_GLM_INCLUDE_DIR}")
        target_compile_options(${target} PRIVATE
            $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Werror>)
    endforeach()
endfunction()
