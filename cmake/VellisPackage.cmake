# What `cpack -G DEB` makes of the installed files: libvellis1, the shared library, and libvellis-dev,
# what programs are built with; libvellis-text1 and libvellis-text-dev, where vellis::text is built.
# scripts/checks/package.sh makes and checks them.

# Whoever makes packages is their maintainer, named as Debian's own tools would have it.
set(maintainer "The vellis authors <vellis@example.org>")
if(DEFINED ENV{DEBFULLNAME} AND DEFINED ENV{DEBEMAIL})
    set(maintainer "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
endif()
set(VELLIS_PACKAGE_MAINTAINER "${maintainer}" CACHE STRING "Name and address of who makes packages")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vellis)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${VELLIS_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
# CPack writes maintainer scripts that call ldconfig, too, of which lintian warns: once is enough.
set(folder "${PROJECT_BINARY_DIR}/package")
file(WRITE "${folder}/triggers" "activate-noawait ldconfig\n")

# vellis_add_packages(target package SUMMARY line DESCRIPTION text RUNTIME_DEPENDS package...
#     DEVELOPMENT_DEPENDS package...)
#
# A library's two packages, lib<package><first number> and lib<package>-dev; of a static one the second.
set(CPACK_COMPONENTS_ALL "")
macro(vellis_add_packages target package)
    cmake_parse_arguments(arg "" "SUMMARY;DESCRIPTION" "RUNTIME_DEPENDS;DEVELOPMENT_DEPENDS" ${ARGN})
    set(${target}_runtime_package lib${package}${PROJECT_VERSION_MAJOR})
    set(${target}_development_package lib${package}-dev)
    string(TOUPPER "CPACK_DEBIAN_${target}" variables)
    if(BUILD_SHARED_LIBS)
        list(APPEND CPACK_COMPONENTS_ALL ${target}_runtime)
        list(APPEND arg_DEVELOPMENT_DEPENDS "${${target}_runtime_package} (= ${PROJECT_VERSION})")
    endif()
    list(APPEND CPACK_COMPONENTS_ALL ${target}_development)

    set(${variables}_RUNTIME_PACKAGE_NAME ${${target}_runtime_package})
    set(${variables}_RUNTIME_PACKAGE_SECTION libs)
    set(${variables}_RUNTIME_DESCRIPTION
        "${arg_SUMMARY} - shared library\n${arg_DESCRIPTION}\n.\nThis package has the shared library.")
    set(${variables}_RUNTIME_PACKAGE_SHLIBDEPS ON)
    set(${variables}_RUNTIME_PACKAGE_CONTROL_EXTRA "${folder}/triggers")
    # What unpacks the relocations belongs to no symbol, so that no tool finds that.
    if(vellis_packs_relocations)
        list(APPEND arg_RUNTIME_DEPENDS "libc6 (>= 2.36)")
    endif()
    list(JOIN arg_RUNTIME_DEPENDS ", " ${variables}_RUNTIME_PACKAGE_DEPENDS)

    set(${variables}_DEVELOPMENT_PACKAGE_NAME ${${target}_development_package})
    set(${variables}_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(${variables}_DEVELOPMENT_DESCRIPTION
        "${arg_SUMMARY} - development files\n${arg_DESCRIPTION}
.
This package has what programs are built with: the headers, a CMake package
and a pkg-config file.")
    list(JOIN arg_DEVELOPMENT_DEPENDS ", " ${variables}_DEVELOPMENT_PACKAGE_DEPENDS)
endmacro()

vellis_add_packages(vellis vellis
    SUMMARY "object layer over OpenGL 2.1"
    DESCRIPTION
"vellis has C++ classes for what OpenGL 2.1 draws with, which are used beside
plain GL calls: buffers, shaders, programs, drawables, textures, framebuffers.
A canvas draws any number of antialiased lines, points, areas and images, and
diagnostics say what GL refuses and which of its state has changed. The window
and the GL context are those of the program, from any toolkit."
    DEVELOPMENT_DEPENDS libglm-dev)
# It opens the GL library of the context at run time, so no tool finds that.
set(CPACK_DEBIAN_VELLIS_RUNTIME_PACKAGE_RECOMMENDS "libgl1 | libegl1")

if(TARGET vellis_text)
    # Where shared, the tool that finds what a library needs finds vellis here, and knows no package of it.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}")
    set(needs "libvellis-dev (= ${PROJECT_VERSION})")
    if(NOT BUILD_SHARED_LIBS)
        list(APPEND needs libfreetype-dev libharfbuzz-dev libfribidi-dev pkgconf)
    endif()
    vellis_add_packages(vellis_text vellis-text
        SUMMARY "text in all scripts for vellis"
        DESCRIPTION
"vellis-text draws and measures words on a canvas of vellis, in any script, at
any angle, and in order with lines and areas. FreeType renders the glyphs of a font,
HarfBuzz shapes texts, and FriBidi finds the directions in which they run."
        RUNTIME_DEPENDS "${vellis_runtime_package} (>= ${PROJECT_VERSION})"
        DEVELOPMENT_DEPENDS ${needs})
endif()

# The documents that every Debian package has. They are no part of a plain `cmake --install`.
file(STRINGS "${PROJECT_SOURCE_DIR}/LICENSE" license REGEX "^Copyright")
string(REGEX REPLACE "^Copyright \\(c\\) " "" copyright_holder "${license}")
file(READ "${PROJECT_SOURCE_DIR}/LICENSE" license)
string(REGEX REPLACE "^.*\n(Permission is)" "\\1" license "${license}")
string(REGEX REPLACE "\n\n" "\n.\n" license "${license}")
string(STRIP "${license}" license)
string(REPLACE "\n" "\n " license " ${license}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/debian-copyright.in" "${folder}/copyright" @ONLY)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE "${folder}/changelog" "\
vellis (${PROJECT_VERSION}) unstable; urgency=medium

  * Release ${PROJECT_VERSION}.

 -- ${VELLIS_PACKAGE_MAINTAINER}  ${date}
")
file(ARCHIVE_CREATE OUTPUT "${folder}/changelog.gz" PATHS "${folder}/changelog"
    FORMAT raw COMPRESSION GZip COMPRESSION_LEVEL 9)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    install(FILES "${folder}/copyright" "${folder}/changelog.gz"
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${${component}_package}"
        COMPONENT ${component}
        EXCLUDE_FROM_ALL)
endforeach()

include(CPack)
