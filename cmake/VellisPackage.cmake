# What `cpack -G DEB` makes of the installed files: libvellis1, the shared library, and libvellis-dev,
# what programs are built with. scripts/checks/package.sh makes and checks them.

# Whoever makes packages is their maintainer, named as Debian's own tools would have it.
set(maintainer "The vellis authors <vellis@example.org>")
if(DEFINED ENV{DEBFULLNAME} AND DEFINED ENV{DEBEMAIL})
    set(maintainer "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
endif()
set(VELLIS_PACKAGE_MAINTAINER "${maintainer}" CACHE STRING "Name and address of who makes packages")

set(runtime_package libvellis${PROJECT_VERSION_MAJOR})
set(development_package libvellis-dev)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vellis)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${VELLIS_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

set(description
    "The library draws with OpenGL 2.1, vertex array objects, framebuffer objects
and mapped buffer ranges: buffers, shaders, programs, drawables, textures and
framebuffers as C++ classes, beside plain GL calls.")
set(CPACK_DEBIAN_VELLIS_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_VELLIS_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_VELLIS_RUNTIME_DESCRIPTION
    "object layer over OpenGL 2.1 - shared library\n${description}
.
This package has the shared library.")
set(CPACK_DEBIAN_VELLIS_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
# CPack writes maintainer scripts that call ldconfig, too, of which lintian warns: once is enough.
file(WRITE "${PROJECT_BINARY_DIR}/package/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_VELLIS_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/package/triggers")
# It opens the GL library of the context at run time, so no tool finds that.
set(CPACK_DEBIAN_VELLIS_RUNTIME_PACKAGE_RECOMMENDS "libgl1 | libegl1")
# What unpacks the relocations belongs to no symbol, so that no tool finds that, either.
if(vellis_packs_relocations)
    set(CPACK_DEBIAN_VELLIS_RUNTIME_PACKAGE_DEPENDS "libc6 (>= 2.36)")
endif()

set(CPACK_DEBIAN_VELLIS_DEVELOPMENT_PACKAGE_NAME ${development_package})
set(CPACK_DEBIAN_VELLIS_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_VELLIS_DEVELOPMENT_DESCRIPTION
    "object layer over OpenGL 2.1 - development files\n${description}
.
This package has what programs are built with: the headers, a CMake package
and a pkg-config file.")
set(CPACK_DEBIAN_VELLIS_DEVELOPMENT_PACKAGE_DEPENDS "libglm-dev")

set(CPACK_COMPONENTS_ALL vellis_development)
if(BUILD_SHARED_LIBS)
    list(PREPEND CPACK_COMPONENTS_ALL vellis_runtime)
    string(APPEND CPACK_DEBIAN_VELLIS_DEVELOPMENT_PACKAGE_DEPENDS
        ", ${runtime_package} (= ${PROJECT_VERSION})")
endif()

# The documents that every Debian package has. They are no part of a plain `cmake --install`.
set(folder "${PROJECT_BINARY_DIR}/package")
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
foreach(component IN ITEMS runtime development)
    install(FILES "${folder}/copyright" "${folder}/changelog.gz"
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${${component}_package}"
        COMPONENT vellis_${component}
        EXCLUDE_FROM_ALL)
endforeach()

include(CPack)
