#include "support/tracked_state_rows.hpp"

const std::vector<TrackedStateRow>& trackedStateRows() {
    // clang-format off
    static const std::vector<TrackedStateRow> rows = {
        {"COLOR_WRITEMASK", GL_COLOR_WRITEMASK, "glGetBooleanv(GL_COLOR_WRITEMASK, out)", {1, 0, 1, 0}, "true, false, true, false", {1, 0, 1, 1}, "true, false, true, true"},
        {"DEPTH_WRITEMASK", GL_DEPTH_WRITEMASK, "glGetBooleanv(GL_DEPTH_WRITEMASK, out)", {0}, "false", {1}, "true"},
        {"BLEND", GL_BLEND, "glGetBooleanv(GL_BLEND, out)", {0}, "false", {1}, "true"},
        {"BLEND_COLOR", GL_BLEND_COLOR, "glGetFloatv(GL_BLEND_COLOR, out)", {0.25, 0.5, 0.75, 1}, "0.25, 0.5, 0.75, 1", {0.25, 0.5, 0.75, 0.1}, "0.25, 0.5, 0.75, 0.1"},
        {"BLEND_SRC_RGB", GL_BLEND_SRC_RGB, "glGetFloatv(GL_BLEND_SRC_RGB, out)", {GL_SRC_ALPHA}, "770", {1}, "1"},
        {"BLEND_DST_RGB", GL_BLEND_DST_RGB, "glGetFloatv(GL_BLEND_DST_RGB, out)", {GL_SRC_ALPHA}, "770", {1}, "1"},
        {"BLEND_SRC_ALPHA", GL_BLEND_SRC_ALPHA, "glGetFloatv(GL_BLEND_SRC_ALPHA, out)", {GL_SRC_ALPHA}, "770", {1}, "1"},
        {"BLEND_DST_ALPHA", GL_BLEND_DST_ALPHA, "glGetFloatv(GL_BLEND_DST_ALPHA, out)", {GL_SRC_ALPHA}, "770", {1}, "1"},
        {"BLEND_EQUATION_RGB", GL_BLEND_EQUATION_RGB, "glGetIntegerv(GL_BLEND_EQUATION_RGB, out)", {GL_FUNC_ADD}, "GL_FUNC_ADD", {GL_MIN}, "GL_MIN"},
        {"BLEND_EQUATION_ALPHA", GL_BLEND_EQUATION_ALPHA, "glGetIntegerv(GL_BLEND_EQUATION_ALPHA, out)", {GL_FUNC_SUBTRACT}, "GL_FUNC_SUBTRACT", {GL_FUNC_REVERSE_SUBTRACT}, "GL_FUNC_REVERSE_SUBTRACT"},
        {"DEPTH_TEST", GL_DEPTH_TEST, "glGetBooleanv(GL_DEPTH_TEST, out)", {0}, "false", {1}, "true"},
        {"DEPTH_FUNC", GL_DEPTH_FUNC, "glGetIntegerv(GL_DEPTH_FUNC, out)", {GL_LESS}, "GL_LESS", {GL_GEQUAL}, "GL_GEQUAL"},
        {"DEPTH_RANGE", GL_DEPTH_RANGE, "glGetFloatv(GL_DEPTH_RANGE, out)", {0, 1}, "0, 1", {0.25, 0.123456789}, "0.25, 0.123457"},
        {"STENCIL_TEST", GL_STENCIL_TEST, "glGetBooleanv(GL_STENCIL_TEST, out)", {0}, "false", {1}, "true"},
        {"STENCIL_FUNC", GL_STENCIL_FUNC, "glGetIntegerv(GL_STENCIL_FUNC, out)", {GL_ALWAYS}, "GL_ALWAYS", {GL_NEVER}, "GL_NEVER"},
        {"STENCIL_REF", GL_STENCIL_REF, "glGetIntegerv(GL_STENCIL_REF, out)", {0}, "0x0", {171}, "0xab"},
        {"STENCIL_VALUE_MASK", GL_STENCIL_VALUE_MASK, "glGetIntegerv(GL_STENCIL_VALUE_MASK, out)", {-1}, "0xffffffff", {255}, "0xff"},
        {"STENCIL_WRITEMASK", GL_STENCIL_WRITEMASK, "glGetIntegerv(GL_STENCIL_WRITEMASK, out)", {-1}, "0xffffffff", {255}, "0xff"},
        {"STENCIL_FAIL", GL_STENCIL_FAIL, "glGetIntegerv(GL_STENCIL_FAIL, out)", {GL_KEEP}, "GL_KEEP", {GL_ZERO}, "GL_ZERO"},
        {"STENCIL_PASS_DEPTH_FAIL", GL_STENCIL_PASS_DEPTH_FAIL, "glGetIntegerv(GL_STENCIL_PASS_DEPTH_FAIL, out)", {GL_REPLACE}, "GL_REPLACE", {GL_INVERT}, "GL_INVERT"},
        {"STENCIL_PASS_DEPTH_PASS", GL_STENCIL_PASS_DEPTH_PASS, "glGetIntegerv(GL_STENCIL_PASS_DEPTH_PASS, out)", {GL_INCR}, "GL_INCR", {GL_DECR_WRAP}, "GL_DECR_WRAP"},
        {"STENCIL_BACK_FUNC", GL_STENCIL_BACK_FUNC, "glGetIntegerv(GL_STENCIL_BACK_FUNC, out)", {GL_NOTEQUAL}, "GL_NOTEQUAL", {GL_LEQUAL}, "GL_LEQUAL"},
        {"STENCIL_BACK_REF", GL_STENCIL_BACK_REF, "glGetIntegerv(GL_STENCIL_BACK_REF, out)", {1}, "0x1", {2147483647}, "0x7fffffff"},
        {"STENCIL_BACK_VALUE_MASK", GL_STENCIL_BACK_VALUE_MASK, "glGetIntegerv(GL_STENCIL_BACK_VALUE_MASK, out)", {-1}, "0xffffffff", {255}, "0xff"},
        {"STENCIL_BACK_WRITEMASK", GL_STENCIL_BACK_WRITEMASK, "glGetIntegerv(GL_STENCIL_BACK_WRITEMASK, out)", {-1}, "0xffffffff", {255}, "0xff"},
        {"STENCIL_BACK_FAIL", GL_STENCIL_BACK_FAIL, "glGetIntegerv(GL_STENCIL_BACK_FAIL, out)", {GL_KEEP}, "GL_KEEP", {GL_INCR_WRAP}, "GL_INCR_WRAP"},
        {"STENCIL_BACK_PASS_DEPTH_FAIL", GL_STENCIL_BACK_PASS_DEPTH_FAIL, "glGetIntegerv(GL_STENCIL_BACK_PASS_DEPTH_FAIL, out)", {GL_DECR}, "GL_DECR", {GL_REPLACE}, "GL_REPLACE"},
        {"STENCIL_BACK_PASS_DEPTH_PASS", GL_STENCIL_BACK_PASS_DEPTH_PASS, "glGetIntegerv(GL_STENCIL_BACK_PASS_DEPTH_PASS, out)", {GL_ZERO}, "GL_ZERO", {GL_KEEP}, "GL_KEEP"},
        {"SCISSOR_TEST", GL_SCISSOR_TEST, "glGetBooleanv(GL_SCISSOR_TEST, out)", {0}, "false", {1}, "true"},
        {"SCISSOR_BOX", GL_SCISSOR_BOX, "glGetIntegerv(GL_SCISSOR_BOX, out)", {-1, 2, 30, 40}, "-1, 2, 30, 40", {-1, 2, 30, 41}, "-1, 2, 30, 41"},
        {"ACTIVE_TEXTURE", GL_ACTIVE_TEXTURE, "glGetIntegerv(GL_ACTIVE_TEXTURE, out)", {GL_TEXTURE0}, "GL_TEXTURE0", {GL_TEXTURE3}, "GL_TEXTURE3"},
        {"TEXTURE_BINDING_1D", GL_TEXTURE_BINDING_1D, "glGetIntegerv(GL_TEXTURE_BINDING_1D, out)", {0}, "0", {32}, "32"},
        {"TEXTURE_BINDING_1D_ARRAY", GL_TEXTURE_BINDING_1D_ARRAY, "glGetIntegerv(GL_TEXTURE_BINDING_1D_ARRAY, out)", {0}, "0", {33}, "33"},
        {"TEXTURE_BINDING_2D", GL_TEXTURE_BINDING_2D, "glGetIntegerv(GL_TEXTURE_BINDING_2D, out)", {0}, "0", {34}, "34"},
        {"TEXTURE_BINDING_2D_ARRAY", GL_TEXTURE_BINDING_2D_ARRAY, "glGetIntegerv(GL_TEXTURE_BINDING_2D_ARRAY, out)", {0}, "0", {35}, "35"},
        {"TEXTURE_BINDING_3D", GL_TEXTURE_BINDING_3D, "glGetIntegerv(GL_TEXTURE_BINDING_3D, out)", {0}, "0", {36}, "36"},
        {"TEXTURE_BINDING_CUBE_MAP", GL_TEXTURE_BINDING_CUBE_MAP, "glGetIntegerv(GL_TEXTURE_BINDING_CUBE_MAP, out)", {0}, "0", {37}, "37"},
        {"TEXTURE_BINDING_RECTANGLE", GL_TEXTURE_BINDING_RECTANGLE, "glGetIntegerv(GL_TEXTURE_BINDING_RECTANGLE, out)", {0}, "0", {38}, "38"},
        {"RENDERBUFFER_BINDING", GL_RENDERBUFFER_BINDING, "glGetIntegerv(GL_RENDERBUFFER_BINDING, out)", {0}, "0", {39}, "39"},
        {"VERTEX_ARRAY_BINDING", GL_VERTEX_ARRAY_BINDING, "glGetIntegerv(GL_VERTEX_ARRAY_BINDING, out)", {0}, "0", {40}, "40"},
        {"POINT_SIZE", GL_POINT_SIZE, "glGetFloatv(GL_POINT_SIZE, out)", {1}, "1", {41.125}, "41.125"},
        {"PROGRAM_POINT_SIZE", GL_PROGRAM_POINT_SIZE, "glGetBooleanv(GL_VERTEX_PROGRAM_POINT_SIZE, out)", {0}, "false", {1}, "true"},
        {"POINT_SIZE_GRANULARITY", GL_POINT_SIZE_GRANULARITY, "glGetFloatv(GL_POINT_SIZE_GRANULARITY, out)", {1}, "1", {43.125}, "43.125"},
        {"SMOOTH_LINE_WIDTH_GRANULARITY", GL_SMOOTH_LINE_WIDTH_GRANULARITY, "glGetFloatv(GL_SMOOTH_LINE_WIDTH_GRANULARITY, out)", {1}, "1", {44.125}, "44.125"},
        {"COLOR_CLEAR_VALUE", GL_COLOR_CLEAR_VALUE, "glGetFloatv(GL_COLOR_CLEAR_VALUE, out)", {0, 0, 0, 0}, "0, 0, 0, 0", {1e-10, 1e6, 100000, -2.5}, "1e-10, 1e+06, 100000, -2.5"},
        {"DEPTH_CLEAR_VALUE", GL_DEPTH_CLEAR_VALUE, "glGetFloatv(GL_DEPTH_CLEAR_VALUE, out)", {1}, "1", {46.125}, "46.125"},
        {"STENCIL_CLEAR_VALUE", GL_STENCIL_CLEAR_VALUE, "glGetIntegerv(GL_STENCIL_CLEAR_VALUE, out)", {0}, "0", {47}, "47"},
        {"VIEWPORT", GL_VIEWPORT, "glGetIntegerv(GL_VIEWPORT, out)", {0, 0, 800, 600}, "0, 0, 800, 600", {0, 0, 640, 480}, "0, 0, 640, 480"},
        {"READ_BUFFER", GL_READ_BUFFER, "glGetIntegerv(GL_READ_BUFFER, out)", {GL_BACK}, "GL_BACK", {GL_COLOR_ATTACHMENT0}, "unknown enum : 0x8ce0"},
        {"PACK_ALIGNMENT", GL_PACK_ALIGNMENT, "glGetIntegerv(GL_PACK_ALIGNMENT, out)", {4}, "0x4", {150}, "0x96"},
        {"PACK_ROW_LENGTH", GL_PACK_ROW_LENGTH, "glGetIntegerv(GL_PACK_ROW_LENGTH, out)", {4}, "0x4", {153}, "0x99"},
        {"PACK_SKIP_PIXELS", GL_PACK_SKIP_PIXELS, "glGetIntegerv(GL_PACK_SKIP_PIXELS, out)", {4}, "0x4", {156}, "0x9c"},
        {"PACK_SKIP_ROWS", GL_PACK_SKIP_ROWS, "glGetIntegerv(GL_PACK_SKIP_ROWS, out)", {4}, "0x4", {159}, "0x9f"},
        {"UNPACK_ALIGNMENT", GL_UNPACK_ALIGNMENT, "glGetIntegerv(GL_UNPACK_ALIGNMENT, out)", {4}, "0x4", {162}, "0xa2"},
        {"UNPACK_ROW_LENGTH", GL_UNPACK_ROW_LENGTH, "glGetIntegerv(GL_UNPACK_ROW_LENGTH, out)", {4}, "0x4", {165}, "0xa5"},
        {"UNPACK_SKIP_PIXELS", GL_UNPACK_SKIP_PIXELS, "glGetIntegerv(GL_UNPACK_SKIP_PIXELS, out)", {4}, "0x4", {168}, "0xa8"},
        {"UNPACK_SKIP_ROWS", GL_UNPACK_SKIP_ROWS, "glGetIntegerv(GL_UNPACK_SKIP_ROWS, out)", {4}, "0x4", {171}, "0xab"},
    };
    // clang-format on
    return rows;
}

void setFirstValues(vellis::test::FakeGl& gl) {
    for (const TrackedStateRow& row : trackedStateRows())
        gl.setState(row.pname, row.first);
}

void setSecondValues(vellis::test::FakeGl& gl) {
    for (const TrackedStateRow& row : trackedStateRows())
        gl.setState(row.pname, row.second);
}
