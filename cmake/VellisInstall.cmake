# What `cmake --install` puts into a prefix: the headers, the library, a CMake package, a pkg-config
# file and the licence. No installed file names an absolute path, so the prefix can be moved.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# The components that the packages are made of; the licence is in neither, since packages have a place
# of their own for it.
set(vellis_runtime COMPONENT vellis_runtime)
set(vellis_development COMPONENT vellis_development)
set(vellis_cmake_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vellis")

install(TARGETS vellis
    EXPORT vellis
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" ${vellis_runtime}
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" ${vellis_runtime}
        NAMELINK_COMPONENT vellis_development
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" ${vellis_development}
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(
    DIRECTORY
        "${PROJECT_SOURCE_DIR}/include/vellis"
        "${PROJECT_BINARY_DIR}/include/vellis"
        "${VELLIS_GENERATED_INCLUDE_DIR}/vellis"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    ${vellis_development}
    FILES_MATCHING PATTERN "*.hpp" PATTERN "*.h" PATTERN "*.inc")
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE"
    DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/vellis"
    COMPONENT vellis_license)

# A prefix can hold the shared and the static library, each with a file of targets of its own.
if(BUILD_SHARED_LIBS)
    set(vellis_kind shared)
else()
    set(vellis_kind static)
endif()
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
install(EXPORT vellis
    FILE vellis-${vellis_kind}.cmake
    NAMESPACE vellis::
    DESTINATION "${vellis_cmake_dir}"
    ${vellis_development})

# pkg-config. A static library's file holds everything that linking needs in its plain fields: nobody
# need know of --static. It names the archive itself, since -lvellis would take a shared library that
# stands beside it.
set(vellis_pc_libs "-L\${libdir} -lvellis")
set(vellis_pc_cflags "-I\${includedir}")
if(NOT BUILD_SHARED_LIBS)
    set(archive "${CMAKE_STATIC_LIBRARY_PREFIX}vellis${CMAKE_STATIC_LIBRARY_SUFFIX}")
    set(vellis_pc_libs "\${libdir}/${archive}")
    foreach(library IN LISTS CMAKE_DL_LIBS)
        string(APPEND vellis_pc_libs " -l${library}")
    endforeach()
    string(APPEND vellis_pc_cflags " -DVELLIS_STATIC_DEFINE")
endif()
set(vellis_pkgconfig_dir "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH vellis_pc_prefix "${vellis_pkgconfig_dir}" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" vellis_pc_prefix "${vellis_pc_prefix}")
file(RELATIVE_PATH vellis_pc_libdir "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH vellis_pc_includedir
    "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/vellis.pc.in"
    "${PROJECT_BINARY_DIR}/package/vellis.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/package/vellis.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    ${vellis_development})
