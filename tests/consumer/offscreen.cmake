# The target that consumers get their context from: offscreen.
add_library(offscreen STATIC IMPORTED)
set_target_properties(offscreen PROPERTIES
    IMPORTED_LOCATION "${OFFSCREEN_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${OFFSCREEN_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES "${CMAKE_DL_LIBS}")
