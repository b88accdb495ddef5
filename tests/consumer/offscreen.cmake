# The target that consumers get their context from: offscreen.
if(WIN32)
    # What was compiled for the DLL cannot be linked with the static library.
    add_library(offscreen STATIC
        "${VELLIS_FOLDER}/offscreen/context.cpp"
        "${VELLIS_FOLDER}/offscreen/wgl.cpp")
    target_include_directories(offscreen PUBLIC "${OFFSCREEN_INCLUDE_DIR}")
    target_link_libraries(offscreen PUBLIC vellis::vellis opengl32 gdi32)
else()
    add_library(offscreen STATIC IMPORTED)
    set_target_properties(offscreen PROPERTIES
        IMPORTED_LOCATION "${OFFSCREEN_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${OFFSCREEN_INCLUDE_DIR}"
        INTERFACE_LINK_LIBRARIES "${CMAKE_DL_LIBS}")
endif()

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
