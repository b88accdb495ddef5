# The target that consumers get their context from: offscreen.
set(system_libraries ${CMAKE_DL_LIBS})
if(WIN32)
    set(system_libraries opengl32 gdi32)
endif()
add_library(offscreen STATIC IMPORTED)
set_target_properties(offscreen PROPERTIES
    IMPORTED_LOCATION "${OFFSCREEN_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${OFFSCREEN_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES "${system_libraries}")

# consumer_dlls(program...): on Windows, programs find their DLLs beside them.
function(consumer_dlls)
    if(NOT WIN32)
        return()
    endif()
    foreach(program IN LISTS ARGN)
        set(dlls "$<TARGET_RUNTIME_DLLS:${program}>")
        add_custom_command(TARGET ${program} POST_BUILD # static libraries leave nothing to copy
            COMMAND "${CMAKE_COMMAND}" -E
                "$<IF:$<BOOL:${dlls}>,copy_if_different;${dlls};$<TARGET_FILE_DIR:${program}>,true>"
            COMMAND_EXPAND_LISTS)
    endforeach()
endfunction()
