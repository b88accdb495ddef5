# vellis::text, a library of its own beside vellis, where FreeType, HarfBuzz and FriBidi are installed.

find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
    pkg_check_modules(VELLIS_TEXT_NEEDS QUIET IMPORTED_TARGET freetype2 harfbuzz fribidi)
endif()
if(NOT VELLIS_TEXT_NEEDS_FOUND)
    message(STATUS "vellis::text is left out: it needs freetype2, harfbuzz and fribidi")
    return()
endif()

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
if(VELLIS_COVERAGE)
    target_compile_options(vellis_text PRIVATE --coverage)
    target_link_options(vellis_text PRIVATE --coverage)
endif()
set_target_properties(vellis_text PROPERTIES
    OUTPUT_NAME vellis-text
    EXPORT_NAME text
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
