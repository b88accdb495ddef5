# Generates the OpenGL loader with glad and defines the target vellis_loader (an object library that
# becomes part of vellis).
#
# Sets, in the including scope:
#   VELLIS_GENERATED_INCLUDE_DIR  the include folder with vellis/glad/*.h
#   VELLIS_LOADER_TABLE_DIR       the folder with entry_points.inc, the one table of entry points and flags,
#                                 and entry_point_features.inc, what each entry point comes with
#   VELLIS_BARE_LOADER_SOURCE     the loader that fills the pointers of vellis/glad/gl.h by itself
#   VELLIS_GLAD_PYTHON            the interpreter that runs glad

# 3.2 is the smallest selection that defines every enumerator the library names. A 2.1 context that
# has the first three extensions suffices; the rest serve it where they are present.
set(VELLIS_GLAD_API "gl:compatibility=3.2")
set(VELLIS_GLAD_EXTENSIONS
    GL_ARB_vertex_array_object
    GL_ARB_framebuffer_object
    GL_ARB_map_buffer_range
    GL_ARB_instanced_arrays
    GL_ARB_draw_instanced
    GL_ARB_sampler_objects
    GL_ARB_separate_shader_objects
    GL_ARB_clip_control
    GL_ARB_debug_output
    GL_KHR_debug
    GL_ARB_texture_float
    GL_ARB_texture_rg
    GL_EXT_gpu_shader4)

# The first interpreter that has glad 2, whichever python3 comes first in the search path.
function(vellis_find_glad result)
    find_program(python_in_path NAMES python3 python NO_CACHE)
    foreach(python IN ITEMS "${Python3_EXECUTABLE}" "${python_in_path}" /usr/bin/python3)
        if(python)
            execute_process(
                COMMAND "${python}" -c
                        "import glad, sys; sys.exit(not glad.__version__.startswith('2.'))"
                RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
            if(failed EQUAL 0)
                set(${result} "${python}" PARENT_SCOPE)
                return()
            endif()
        endif()
    endforeach()
    message(FATAL_ERROR
        "vellis needs the OpenGL loader generator glad 2 for python3: install it with "
        "`apt-get install python3-glad` or `pip install glad2`, then configure again.")
endfunction()

# Runs glad for C, with further options.
function(vellis_run_glad python out)
    list(JOIN VELLIS_GLAD_EXTENSIONS "," extensions)
    execute_process(
        COMMAND "${python}" -m glad --quiet --reproducible --api ${VELLIS_GLAD_API}
                --extensions ${extensions} --out-path "${out}" c ${ARGN}
        RESULT_VARIABLE failed ERROR_VARIABLE errors OUTPUT_QUIET)
    if(failed)
        message(FATAL_ERROR "The OpenGL loader generator glad failed:\n${errors}")
    endif()
endfunction()

# Runs a script of this folder that changes what glad has generated.
function(vellis_run_script python script)
    execute_process(
        COMMAND "${python}" "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${script}" ${ARGN}
        RESULT_VARIABLE failed ERROR_VARIABLE errors)
    if(failed)
        message(FATAL_ERROR "The OpenGL loader cannot be changed:\n${errors}")
    endif()
endfunction()

function(vellis_generate_loader python out)
    set(fresh "${out}/fresh")
    file(REMOVE_RECURSE "${fresh}")
    # A global pointer for each entry point is what programs see. The library itself loads into one
    # structure, and changes the pointers once it is filled.
    vellis_run_glad("${python}" "${fresh}/global")
    vellis_run_glad("${python}" "${fresh}/context" --mx)
    vellis_run_script("${python}" trim_loader.py "${fresh}/global" "${fresh}/context")
    file(MAKE_DIRECTORY "${fresh}/table")
    vellis_run_script("${python}" pack_loader.py
        "${fresh}/context/src/gl.c" "${fresh}/table/entry_point_features.inc")

    # glad's headers move into vellis's own include folder, so that an application's glad is never
    # mistaken for ours.
    file(READ "${fresh}/global/include/glad/gl.h" header)
    string(REPLACE "<KHR/khrplatform.h>" "\"khrplatform.h\"" header "${header}")
    # Its load functions are the library's own business: undeclared here, they are not exported.
    string(REGEX REPLACE "GLAD_API_CALL int gladLoadGL(UserPtr)?\\([^;]*;" "" header "${header}")
    # A static library's pointers and flags have names of its own for the linker, so that a program
    # can have a glad beside it.
    string(REPLACE "#define GLAD_GL_H_\n"
        "#define GLAD_GL_H_\n\n#ifdef VELLIS_STATIC_DEFINE\n#include \"static_names.h\"\n#endif\n"
        header "${header}")
    file(WRITE "${fresh}/include/vellis/glad/gl.h" "${header}")
    file(RENAME "${fresh}/global/include/KHR/khrplatform.h"
         "${fresh}/include/vellis/glad/khrplatform.h")
    file(READ "${fresh}/global/src/gl.c" source)
    string(REPLACE "<glad/gl.h>" "<vellis/glad/gl.h>" source "${source}")
    file(WRITE "${fresh}/global/src/gl.c" "${source}")

    # All pointers and flags: a name of its own for the linker each, and a row in the one table for code
    # that walks them all, with the member of the structure that has its value.
    string(REGEX MATCHALL "glad_gl[A-Za-z0-9_]+;" pointers "${header}")
    list(REMOVE_ITEM pointers "")
    string(REGEX MATCHALL "GLAD_API_CALL int GLAD_GL_[A-Za-z0-9_]+" flags "${header}")
    list(TRANSFORM flags REPLACE ".*(GLAD_GL_[A-Za-z0-9_]+)" "\\1")
    set(names ${pointers} ${flags})

    set(renamings ${names})
    list(TRANSFORM renamings REPLACE "(.+)" "#define \\1 vellis_\\1")
    list(JOIN renamings "\n" renamings)
    file(WRITE "${fresh}/include/vellis/glad/static_names.h" "#pragma once\n\n${renamings}\n")

    set(rows ${names})
    list(TRANSFORM rows REPLACE "^glad_gl(.+)" "VELLIS_ENTRY_POINT(gl\\1, \\1)")
    list(TRANSFORM rows REPLACE "^GLAD_GL_(.+)" "VELLIS_LOADER_FLAG(GLAD_GL_\\1, \\1)")
    list(JOIN rows "\n" rows)
    file(WRITE "${fresh}/table/entry_points.inc" "${rows}\n")

    file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE "${fresh}" "${fresh}/*")
    foreach(file IN LISTS files)
        get_filename_component(folder "${out}/${file}" DIRECTORY)
        file(MAKE_DIRECTORY "${folder}")
        file(COPY_FILE "${fresh}/${file}" "${out}/${file}" ONLY_IF_DIFFERENT)
    endforeach()
    file(REMOVE_RECURSE "${fresh}")
endfunction()

vellis_find_glad(VELLIS_GLAD_PYTHON)
set(vellis_loader_dir "${CMAKE_CURRENT_BINARY_DIR}/loader")
vellis_generate_loader("${VELLIS_GLAD_PYTHON}" "${vellis_loader_dir}")
set(VELLIS_GENERATED_INCLUDE_DIR "${vellis_loader_dir}/include")
set(VELLIS_LOADER_TABLE_DIR "${vellis_loader_dir}/table")
set(VELLIS_BARE_LOADER_SOURCE "${vellis_loader_dir}/global/src/gl.c")

# Generated C, built without the project's warnings. Its load functions get names of our own: in a
# static build an application's own glad would clash with them.
add_library(vellis_loader OBJECT "${vellis_loader_dir}/context/src/gl.c")
target_include_directories(vellis_loader SYSTEM PUBLIC
    "${vellis_loader_dir}/context/include"
    "${VELLIS_LOADER_TABLE_DIR}")
target_compile_definitions(vellis_loader PUBLIC
    gladLoadGLContext=vellis_gladLoadGLContext
    gladLoadGLContextUserPtr=vellis_gladLoadGLContextUserPtr)
set_target_properties(vellis_loader PROPERTIES
    C_VISIBILITY_PRESET hidden
    POSITION_INDEPENDENT_CODE ON)
