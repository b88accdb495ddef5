# What `cmake --install` puts into a prefix: the headers, the library, a CMake package, a pkg-config
# file and the licence; the same of vellis::text, where that is built. No installed file names an
# absolute path, so the prefix can be moved.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# The components that the packages are made of: vellis_runtime and vellis_development, and the same of
# vellis_text. The licence is in none, since packages have a place of their own for it.
set(vellis_development COMPONENT vellis_development)
set(vellis_cmake_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vellis")

# A prefix can hold the shared and the static library, each with a file of targets of its own.
if(BUILD_SHARED_LIBS)
    set(vellis_kind shared)
else()
    set(vellis_kind static)
endif()

# vellis_install_library(target package): the library, and its file of targets, <package>-<kind>.cmake.
function(vellis_install_library target package)
    set(runtime COMPONENT ${target}_runtime)
    set(development COMPONENT ${target}_development)
    install(TARGETS ${target}
        EXPORT ${target}
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" ${runtime}
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" ${runtime}
            NAMELINK_COMPONENT ${target}_development
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" ${development}
        INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
    install(EXPORT ${target}
        FILE ${package}-${vellis_kind}.cmake
        NAMESPACE vellis::
        DESTINATION "${vellis_cmake_dir}"
        ${development})
endfunction()

vellis_install_library(vellis vellis)
install(
    DIRECTORY
        "${PROJECT_SOURCE_DIR}/include/vellis"
        "${PROJECT_BINARY_DIR}/include/vellis"
        "${VELLIS_GENERATED_INCLUDE_DIR}/vellis"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    ${vellis_development}
    FILES_MATCHING PATTERN "*.hpp" PATTERN "*.h" PATTERN "*.inc"
    PATTERN "vellis/text" EXCLUDE PATTERN "vellis/text.hpp" EXCLUDE)
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE"
    DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/vellis"
    COMPONENT vellis_license)

list(JOIN VELLIS_TEXT_MODULES " " vellis_text_modules)
configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/vellisConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/package/vellisConfig.cmake"
    INSTALL_DESTINATION "${vellis_cmake_dir}"
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/package/vellisConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(
    FILES
        "${PROJECT_BINARY_DIR}/package/vellisConfig.cmake"
        "${PROJECT_BINARY_DIR}/package/vellisConfigVersion.cmake"
    DESTINATION "${vellis_cmake_dir}"
    ${vellis_development})

# pkg-config. A static library's file holds everything that linking needs in its plain fields: nobody
# need know of --static. It names the archive itself, since -lvellis would take a shared library that
# stands beside it.
#
# vellis_install_pkg_config(target package description DEFINITION macro REQUIRES module... NEEDS flag...)
#
# NEEDS are the linker's flags for what a static library needs beyond REQUIRES, and DEFINITION is what
# its headers need to be told.
set(vellis_pkgconfig_dir "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH vellis_pc_prefix "${vellis_pkgconfig_dir}" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" vellis_pc_prefix "${vellis_pc_prefix}")
file(RELATIVE_PATH vellis_pc_libdir "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH vellis_pc_includedir
    "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
function(vellis_install_pkg_config target package description)
    cmake_parse_arguments(PARSE_ARGV 3 arg "" "DEFINITION" "REQUIRES;NEEDS")
    list(JOIN arg_REQUIRES " " requires)
    set(cflags "-I\${includedir}")
    set(libs "-L\${libdir} -l${package}")
    if(NOT BUILD_SHARED_LIBS)
        string(APPEND cflags " -D${arg_DEFINITION}")
        set(archive "${CMAKE_STATIC_LIBRARY_PREFIX}${package}${CMAKE_STATIC_LIBRARY_SUFFIX}")
        list(JOIN arg_NEEDS " " needs)
        string(STRIP "\${libdir}/${archive} ${needs}" libs)
    endif()
    configure_file("${PROJECT_SOURCE_DIR}/cmake/package.pc.in"
        "${PROJECT_BINARY_DIR}/package/${package}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/package/${package}.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
        COMPONENT ${target}_development)
endfunction()

set(needs ${CMAKE_DL_LIBS})
list(TRANSFORM needs PREPEND "-l")
vellis_install_pkg_config(vellis vellis "${PROJECT_DESCRIPTION}"
    DEFINITION VELLIS_STATIC_DEFINE
    REQUIRES glm
    NEEDS ${needs})

if(TARGET vellis_text)
    vellis_install_library(vellis_text vellis-text)
    install(FILES "${PROJECT_SOURCE_DIR}/include/vellis/text.hpp"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vellis"
        COMPONENT vellis_text_development)
    install(
        DIRECTORY
            "${PROJECT_SOURCE_DIR}/include/vellis/text"
            "${PROJECT_BINARY_DIR}/include/vellis/text"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vellis"
        COMPONENT vellis_text_development
        FILES_MATCHING PATTERN "*.hpp")
    set(requires vellis)
    if(NOT BUILD_SHARED_LIBS)
        list(APPEND requires ${VELLIS_TEXT_MODULES})
    endif()
    vellis_install_pkg_config(vellis_text vellis-text "${VELLIS_TEXT_DESCRIPTION}"
        DEFINITION VELLIS_TEXT_STATIC_DEFINE
        REQUIRES ${requires})
endif()
