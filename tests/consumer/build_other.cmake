# Builds the library alone, of the kind that the build around the tests is not.
#
# Definitions: source, build, build_type, shared and text (booleans), settings

include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
include("${settings}")
run("Configuring" "${CMAKE_COMMAND}" -C "${settings}" -G "${CONSUMER_GENERATOR}" -S "${source}" -B "${build}"
    "-DCMAKE_BUILD_TYPE=${build_type}"
    -DBUILD_SHARED_LIBS=${shared}
    -DVELLIS_BUILD_TEXT=${text}
    -DVELLIS_WARNINGS_AS_ERRORS=ON
    -DVELLIS_BUILD_TESTS=OFF
    -DVELLIS_BUILD_EXAMPLES=OFF)
run("Building" "${CMAKE_COMMAND}" --build "${build}" --parallel 2)
