# How the library is built to be fast and small. It is right without any of this: what is here is here for
# a number, which docs/performance.md shows and a script measures.

# Code for speed, the rest for size: scripts/measurements/footprint.sh holds the size of the library, and
# scripts/measurements/instructions.sh and scripts/measurements/times.sh what operations cost. What runs for every draw, or makes
# what frames make, is optimised as the build type says; what runs once, prints, or waits for the driver
# is compiled to be small.
set(fast_sources
    src/buffers/buffer_object.cpp
    src/buffers/buffer_object_manager.cpp
    src/drawing/drawable.cpp
    src/drawing/primitives.cpp
    src/drawing/vertex_attributes_binding.cpp
    src/gl/memory.cpp
    src/shading/program.cpp
    src/shading/program_drawing.cpp
    src/shading/uniform.cpp
    src/state/snapshot_read.cpp
    src/state/state.cpp)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    get_target_property(small_sources vellis SOURCES)
    list(FILTER small_sources INCLUDE REGEX "\\.cpp$")
    list(REMOVE_ITEM small_sources ${fast_sources})
    set(smallest -Os)
    check_cxx_compiler_flag(-Oz VELLIS_HAS_OZ) # gcc 12, clang
    if(VELLIS_HAS_OZ)
        set(smallest -Oz)
    endif()
    # The canvas writes a record for each point: not at any price.
    set(canvas_sources ${small_sources})
    list(FILTER canvas_sources INCLUDE REGEX "^src/canvas/")
    list(FILTER small_sources EXCLUDE REGEX "^src/canvas/")
    set_property(SOURCE ${canvas_sources} APPEND PROPERTY
        COMPILE_OPTIONS $<$<NOT:$<CONFIG:Debug>>:-Os>)
    set_property(SOURCE ${small_sources} APPEND PROPERTY
        COMPILE_OPTIONS $<$<NOT:$<CONFIG:Debug>>:${smallest}>)
    target_compile_options(vellis_loader PRIVATE $<$<NOT:$<CONFIG:Debug>>:-Os>)
endif()

# What is not for speed calls each other across sources: compiled together, it takes 12 kB less.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND BUILD_SHARED_LIBS AND NOT WIN32 AND NOT VELLIS_COVERAGE)
    get_target_property(cold_sources vellis SOURCES)
    list(FILTER cold_sources INCLUDE REGEX "\\.cpp$")
    list(REMOVE_ITEM cold_sources ${fast_sources})
    set_property(SOURCE ${cold_sources} APPEND PROPERTY
        COMPILE_OPTIONS $<$<NOT:$<CONFIG:Debug>>:-flto>)
    target_link_options(vellis PRIVATE -flto-partition=one)
endif()

# gcc 12 takes the two words of a shared pointer into one register, only to part them again: some
# instructions less for each draw without (draw/handles).
target_compile_options(vellis PRIVATE
    $<$<CXX_COMPILER_ID:GNU,Clang>:-fno-tree-slp-vectorize>)

# The rest is for each of the libraries: vellis_tune_linking(target).
check_linker_flag(CXX -Wl,-Bsymbolic-functions VELLIS_HAS_BSYMBOLIC_FUNCTIONS)
check_linker_flag(CXX "-Wl,-z,noseparate-code" VELLIS_HAS_NOSEPARATE_CODE)
check_linker_flag(CXX "-Wl,-z,relro,-z,now" VELLIS_HAS_BIND_NOW)

# Most relocations only add the address that the library is loaded at: packed they take 20 kB less room
# (scripts/measurements/footprint.sh). Where the C library that is here can unpack them, so can those that the library
# runs with.
if(VELLIS_PACK_RELOCATIONS)
    check_linker_flag(CXX "-Wl,-z,pack-relative-relocs" VELLIS_HAS_PACKED_RELOCATIONS)
    check_cxx_source_compiles("
        #include <features.h>
        #if !__GLIBC_PREREQ(2, 36)
        #error its dynamic linker does not know them
        #endif
        int main() {}" VELLIS_LOADS_PACKED_RELOCATIONS)
    if(VELLIS_HAS_PACKED_RELOCATIONS AND VELLIS_LOADS_PACKED_RELOCATIONS)
        set(vellis_packs_relocations ON)
    endif()
endif()

function(vellis_tune_linking target)
    # Calls within a library are direct: nobody replaces its functions at run time. Its data, the loader's
    # pointers among them, may lie in the program that uses it, so -Bsymbolic would be wrong. The
    # benchmark draw/handles shows it.
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU,Clang>:-fno-semantic-interposition>)
    target_link_options(${target} PRIVATE
        $<$<BOOL:${VELLIS_HAS_BSYMBOLIC_FUNCTIONS}>:-Wl,-Bsymbolic-functions>)
    # Code and constants share pages, where each would have its own: 8 kB less.
    target_link_options(${target} PRIVATE
        $<$<BOOL:${VELLIS_HAS_NOSEPARATE_CODE}>:-Wl,-z,noseparate-code>)
    # What a library calls is found when it is loaded, and not in the first calls, which engine::init
    # would pay for (scripts/measurements/startup.sh); its tables of addresses are read-only from then on.
    target_link_options(${target} PRIVATE $<$<BOOL:${VELLIS_HAS_BIND_NOW}>:-Wl,-z,relro,-z,now>)
    if(vellis_packs_relocations)
        target_link_options(${target} PRIVATE -Wl,-z,pack-relative-relocs)
    endif()
endfunction()
vellis_tune_linking(vellis)
