# The compiler switches shared by the library, its tests and its programs.
#
# Defines vellis_set_options(target): warnings, sanitizers, hidden visibility, C++17.

option(VELLIS_WARNINGS_AS_ERRORS "Make every compiler warning an error" OFF)
set(VELLIS_SANITIZE "" CACHE STRING "Sanitizers to build with, for instance address,undefined")

function(vellis_set_options target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
        target_compile_options(${target} PRIVATE
            -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
            $<$<BOOL:${VELLIS_WARNINGS_AS_ERRORS}>:-Werror>)
    endif()
    if(VELLIS_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=${VELLIS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PUBLIC -fsanitize=${VELLIS_SANITIZE})
    endif()
endfunction()
