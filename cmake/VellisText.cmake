# vellis::text, a library of its own beside vellis, on FreeType, HarfBuzz and FriBidi.
#
# Defines the target vellis_text, unless VELLIS_BUILD_TEXT says AUTO and they are not there. Sets:
#   VELLIS_TEXT_MODULES      what it needs, by pkg-config's names
#   VELLIS_TEXT_DESCRIPTION  what it is, in a line
#   VELLIS_TEXT_SOURCES      its sources

set(VELLIS_TEXT_MODULES freetype2 harfbuzz fribidi)
set(VELLIS_TEXT_DESCRIPTION "Text in all scripts for the canvas of vellis")
list(JOIN VELLIS_TEXT_MODULES ", " modules)
set(reason "pkg-config does not find all of ${modules}")
if(VELLIS_BUILD_TEXT STREQUAL "AUTO" AND CMAKE_CROSSCOMPILING)
    # What a cross compiler's pkg-config would find is not for its target.
    set(reason "a cross compiler builds it only with VELLIS_BUILD_TEXT=ON")
else()
    find_package(PkgConfig QUIET)
    if(PKG_CONFIG_FOUND)
        pkg_check_modules(VELLIS_TEXT_NEEDS QUIET IMPORTED_TARGET ${VELLIS_TEXT_MODULES})
    endif()
endif()
if(NOT TARGET PkgConfig::VELLIS_TEXT_NEEDS)
    if(VELLIS_BUILD_TEXT STREQUAL "AUTO")
        message(STATUS "vellis::text is left out: ${reason}")
        return()
    endif()
    message(FATAL_ERROR "vellis::text cannot be built: ${reason}. Install them, for instance with "
        "`apt-get install libfreetype-dev libharfbuzz-dev libfribidi-dev pkgconf`, or leave it out with "
        "-D VELLIS_BUILD_TEXT=OFF.")
endif()
message(STATUS "vellis::text is built")

# What its tests are compiled with, too, since the library does not export it.
set(VELLIS_TEXT_SOURCES
    "${PROJECT_SOURCE_DIR}/src/text/atlas.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/draw.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/face.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/font.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/glyph_quads.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/glyph_textures.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/layout.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/runs.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/shaper.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/skyline.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/text_cache.cpp"
    "${PROJECT_SOURCE_DIR}/src/text/utf8.cpp")

add_library(vellis_text ${VELLIS_TEXT_SOURCES})
add_library(vellis::text ALIAS vellis_text)
vellis_set_options(vellis_text)
generate_export_header(vellis_text
    EXPORT_FILE_NAME "${CMAKE_CURRENT_BINARY_DIR}/include/vellis/text/export.hpp")
if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(vellis_text PUBLIC VELLIS_TEXT_STATIC_DEFINE)
endif()
target_include_directories(vellis_text PRIVATE src)
target_link_libraries(vellis_text PUBLIC vellis::vellis PRIVATE PkgConfig::VELLIS_TEXT_NEEDS)
if(VELLIS_HAS_VERSION_SCRIPT)
    target_link_options(vellis_text PRIVATE "-Wl,--version-script=${symbols}")
    set_target_properties(vellis_text PROPERTIES LINK_DEPENDS "${symbols}")
endif()
vellis_tune_linking(vellis_text)
if(VELLIS_COVERAGE)
    target_compile_options(vellis_text PRIVATE --coverage)
    target_link_options(vellis_text PRIVATE --coverage)
endif()
set_target_properties(vellis_text PROPERTIES
    OUTPUT_NAME vellis-text
    EXPORT_NAME text
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
# Installed, it finds vellis beside it, wherever that is.
if(CMAKE_EXECUTABLE_FORMAT STREQUAL "ELF")
    set_target_properties(vellis_text PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()
# A project around this one builds it where it is linked.
if(NOT vellis_is_top_level AND NOT VELLIS_INSTALL)
    set_target_properties(vellis_text PROPERTIES EXCLUDE_FROM_ALL ON)
endif()
