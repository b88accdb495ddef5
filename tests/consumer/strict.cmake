# consumer_strict(target...): every warning of a careful user is an error, in vellis's headers too.
function(consumer_strict)
    set_target_properties(${ARGN} PROPERTIES NO_SYSTEM_FROM_IMPORTED ON CXX_EXTENSIONS OFF)
    foreach(target IN LISTS ARGN)
        target_compile_options(${target} PRIVATE
            $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Werror>)
    endforeach()
endfunction()
