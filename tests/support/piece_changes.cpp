#include "support/piece_changes.hpp"

#include <functional>
#include <map>

#include "state/later_enumerators.hpp"

namespace vellis::test {
namespace {

using Change = std::function<void(SpareObjects&)>;

bool contains(const std::string& text, const char* word) {
    return (" " + text + " ").find(std::string(" ") + word + " ") != std::string::npos;
}

int integer(GLenum pname) {
    int value = 0;
    glGetIntegerv(pname, &value);
    return value;
}

bool isCompatible() {
    if (GLAD_GL_VERSION_3_2 != 0)
        return (integer(GL_CONTEXT_PROFILE_MASK) & GL_CONTEXT_COMPATIBILITY_PROFILE_BIT) != 0;
    return GLAD_GL_VERSION_3_1 == 0;
}

/// A program that may be in use.
GLuint linkedProgram() {
    const std::string version = GLAD_GL_VERSION_3_2 != 0 ? "#version 150\n" : "";
    const std::string source = version + "void main() { gl_Position = vec4(0.0); }\n";
    const char* const text = source.c_str();
    const GLuint shader = glCreateShader(GL_VERTEX_SHADER);
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    const GLuint program = glCreateProgram();
    glAttachShader(program, shader);
    glLinkProgram(program);
    glDeleteShader(shader);
    return program;
}

/// What has a command of its own, or another than its neighbours.
const std::map<std::string, Change>& commands() {
    // clang-format off
    static const std::map<std::string, Change> all = {
        {"GL_DRAW_FRAMEBUFFER_BINDING", [](SpareObjects& o) { glBindFramebuffer(GL_DRAW_FRAMEBUFFER, o.framebuffer); }},
        {"GL_READ_FRAMEBUFFER_BINDING", [](SpareObjects& o) { glBindFramebuffer(GL_READ_FRAMEBUFFER, o.framebuffer); }},
        {"GL_DRAW_BUFFER", [](SpareObjects&) { glDrawBuffer(GL_NONE); }},
        {"GL_READ_BUFFER", [](SpareObjects&) { glReadBuffer(GL_NONE); }},
        {"GL_RENDERBUFFER_BINDING", [](SpareObjects& o) { glBindRenderbuffer(GL_RENDERBUFFER, o.renderbuffer); }},
        {"GL_VERTEX_ARRAY_BINDING", [](SpareObjects& o) { glBindVertexArray(o.vertexArray); }},
        {"GL_ELEMENT_ARRAY_BUFFER_BINDING", [](SpareObjects& o) { glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, o.buffer); }},
        {"GL_VERTEX_ATTRIB_ARRAY_SIZE", [](SpareObjects&) { glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 0, nullptr); }},
        {"GL_VERTEX_ATTRIB_ARRAY_TYPE", [](SpareObjects&) { glVertexAttribPointer(1, 4, GL_SHORT, GL_FALSE, 0, nullptr); }},
        {"GL_VERTEX_ATTRIB_ARRAY_NORMALIZED", [](SpareObjects&) { glVertexAttribPointer(1, 4, GL_SHORT, GL_TRUE, 0, nullptr); }},
        {"GL_VERTEX_ATTRIB_ARRAY_STRIDE", [](SpareObjects&) { glVertexAttribPointer(1, 4, GL_FLOAT, GL_FALSE, 32, nullptr); }},
        {"GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING", [](SpareObjects& o) {
             glBindBuffer(GL_ARRAY_BUFFER, o.buffer);
             glVertexAttribPointer(1, 4, GL_FLOAT, GL_FALSE, 0, nullptr);
             glBindBuffer(GL_ARRAY_BUFFER, 0);
         }},
        {"GL_VERTEX_ATTRIB_ARRAY_POINTER", [](SpareObjects&) {
             static const float memory[4] = {};
             glVertexAttribPointer(1, 4, GL_FLOAT, GL_FALSE, 0, memory);
         }},
        {"GL_VERTEX_ATTRIB_ARRAY_INTEGER", [](SpareObjects&) { glVertexAttribIPointer(1, 4, GL_INT, 0, nullptr); }},
        {"GL_VERTEX_ATTRIB_ARRAY_ENABLED", [](SpareObjects&) { glEnableVertexAttribArray(1); }},
        {"GL_VERTEX_ATTRIB_ARRAY_DIVISOR_ARB", [](SpareObjects&) { glVertexAttribDivisorARB(1, 3); }},
        {"GL_CURRENT_VERTEX_ATTRIB", [](SpareObjects&) { glVertexAttrib4f(1, 0.5f, 0.25f, 2.f, 3.f); }},
        {"GL_CLIENT_ACTIVE_TEXTURE", [](SpareObjects&) { glClientActiveTexture(GL_TEXTURE1); }},
        {"GL_CURRENT_COLOR", [](SpareObjects&) { glColor4f(0.5f, 0.25f, 0.f, 1.f); }},
        {"GL_SAMPLER_BINDING", [](SpareObjects& o) { glBindSampler(1, o.sampler); }},
        {"GL_ACTIVE_TEXTURE", [](SpareObjects&) { glActiveTexture(GL_TEXTURE1); }},
        {"GL_CURRENT_PROGRAM", [](SpareObjects& o) { glUseProgram(o.program); }},
        {"GL_PROGRAM_PIPELINE_BINDING", [](SpareObjects& o) { glBindProgramPipeline(o.pipeline); }},
        {"GL_BLEND_SRC_RGB", [](SpareObjects&) { glBlendFuncSeparate(GL_SRC_ALPHA, GL_ZERO, GL_ONE, GL_ZERO); }},
        {"GL_BLEND_DST_RGB", [](SpareObjects&) { glBlendFuncSeparate(GL_ONE, GL_ONE, GL_ONE, GL_ZERO); }},
        {"GL_BLEND_SRC_ALPHA", [](SpareObjects&) { glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_CONSTANT_ALPHA, GL_ZERO); }},
        {"GL_BLEND_DST_ALPHA", [](SpareObjects&) { glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_ONE, GL_DST_ALPHA); }},
        {"GL_BLEND_EQUATION_RGB", [](SpareObjects&) { glBlendEquationSeparate(GL_MIN, GL_FUNC_ADD); }},
        {"GL_BLEND_EQUATION_ALPHA", [](SpareObjects&) { glBlendEquationSeparate(GL_FUNC_ADD, GL_MAX); }},
        {"GL_BLEND_COLOR", [](SpareObjects&) { glBlendColor(0.25f, 0.5f, 0.75f, 1.f); }},
        {"GL_COLOR_WRITEMASK", [](SpareObjects&) { glColorMask(GL_TRUE, GL_FALSE, GL_TRUE, GL_FALSE); }},
        {"GL_DEPTH_WRITEMASK", [](SpareObjects&) { glDepthMask(GL_FALSE); }},
        {"GL_STENCIL_WRITEMASK", [](SpareObjects&) { glStencilMaskSeparate(GL_FRONT, 0x0F); }},
        {"GL_STENCIL_BACK_WRITEMASK", [](SpareObjects&) { glStencilMaskSeparate(GL_BACK, 0xF0); }},
        {"GL_COLOR_CLEAR_VALUE", [](SpareObjects&) { glClearColor(0.25f, 0.5f, 0.75f, 1.f); }},
        {"GL_DEPTH_CLEAR_VALUE", [](SpareObjects&) { glClearDepth(0.1); }},
        {"GL_STENCIL_CLEAR_VALUE", [](SpareObjects&) { glClearStencil(5); }},
        {"GL_LOGIC_OP_MODE", [](SpareObjects&) { glLogicOp(GL_XOR); }},
        {"GL_CLAMP_READ_COLOR", [](SpareObjects&) { glClampColor(GL_CLAMP_READ_COLOR, GL_FALSE); }},
        {"GL_CLAMP_VERTEX_COLOR", [](SpareObjects&) { glClampColor(GL_CLAMP_VERTEX_COLOR, GL_FALSE); }},
        {"GL_CLAMP_FRAGMENT_COLOR", [](SpareObjects&) { glClampColor(GL_CLAMP_FRAGMENT_COLOR, GL_FALSE); }},
        {"GL_DEPTH_FUNC", [](SpareObjects&) { glDepthFunc(GL_GEQUAL); }},
        {"GL_DEPTH_RANGE", [](SpareObjects&) { glDepthRange(0.1, 0.7); }},
        {"GL_STENCIL_FUNC", [](SpareObjects&) { glStencilFuncSeparate(GL_FRONT, GL_LESS, 0, ~0u); }},
        {"GL_STENCIL_REF", [](SpareObjects&) { glStencilFuncSeparate(GL_FRONT, GL_ALWAYS, 3, ~0u); }},
        {"GL_STENCIL_VALUE_MASK", [](SpareObjects&) { glStencilFuncSeparate(GL_FRONT, GL_ALWAYS, 0, 0x0Fu); }},
        {"GL_STENCIL_FAIL", [](SpareObjects&) { glStencilOpSeparate(GL_FRONT, GL_INCR, GL_KEEP, GL_KEEP); }},
        {"GL_STENCIL_PASS_DEPTH_FAIL", [](SpareObjects&) { glStencilOpSeparate(GL_FRONT, GL_KEEP, GL_DECR, GL_KEEP); }},
        {"GL_STENCIL_PASS_DEPTH_PASS", [](SpareObjects&) { glStencilOpSeparate(GL_FRONT, GL_KEEP, GL_KEEP, GL_INVERT); }},
        {"GL_STENCIL_BACK_FUNC", [](SpareObjects&) { glStencilFuncSeparate(GL_BACK, GL_LESS, 0, ~0u); }},
        {"GL_STENCIL_BACK_REF", [](SpareObjects&) { glStencilFuncSeparate(GL_BACK, GL_ALWAYS, 3, ~0u); }},
        {"GL_STENCIL_BACK_VALUE_MASK", [](SpareObjects&) { glStencilFuncSeparate(GL_BACK, GL_ALWAYS, 0, 0x0Fu); }},
        {"GL_STENCIL_BACK_FAIL", [](SpareObjects&) { glStencilOpSeparate(GL_BACK, GL_INCR, GL_KEEP, GL_KEEP); }},
        {"GL_STENCIL_BACK_PASS_DEPTH_FAIL", [](SpareObjects&) { glStencilOpSeparate(GL_BACK, GL_KEEP, GL_DECR, GL_KEEP); }},
        {"GL_STENCIL_BACK_PASS_DEPTH_PASS", [](SpareObjects&) { glStencilOpSeparate(GL_BACK, GL_KEEP, GL_KEEP, GL_INVERT); }},
        {"GL_SCISSOR_BOX", [](SpareObjects&) { glScissor(1, 2, 3, 4); }},
        {"GL_ALPHA_TEST_FUNC", [](SpareObjects&) { glAlphaFunc(GL_LESS, 0.f); }},
        {"GL_ALPHA_TEST_REF", [](SpareObjects&) { glAlphaFunc(GL_ALWAYS, 0.5f); }},
        {"GL_VIEWPORT", [](SpareObjects&) { glViewport(1, 2, 3, 4); }},
        {"GL_CLIP_ORIGIN", [](SpareObjects&) { glClipControl(GL_UPPER_LEFT, GL_NEGATIVE_ONE_TO_ONE); }},
        {"GL_CLIP_DEPTH_MODE", [](SpareObjects&) { glClipControl(GL_LOWER_LEFT, GL_ZERO_TO_ONE); }},
        {"GL_CLIP_DISTANCE0", [](SpareObjects&) { glEnable(GL_CLIP_DISTANCE0 + 1); }},
        {"GL_PRIMITIVE_RESTART_INDEX", [](SpareObjects&) { glPrimitiveRestartIndex(0xFFFFFFFF); }},
        {"GL_PROVOKING_VERTEX", [](SpareObjects&) { glProvokingVertex(GL_FIRST_VERTEX_CONVENTION); }},
        {"GL_CULL_FACE_MODE", [](SpareObjects&) { glCullFace(GL_FRONT); }},
        {"GL_FRONT_FACE", [](SpareObjects&) { glFrontFace(GL_CW); }},
        {"GL_POLYGON_MODE", [](SpareObjects&) { glPolygonMode(GL_FRONT_AND_BACK, GL_LINE); }},
        {"GL_POLYGON_OFFSET_FACTOR", [](SpareObjects&) { glPolygonOffset(2.f, 0.f); }},
        {"GL_POLYGON_OFFSET_UNITS", [](SpareObjects&) { glPolygonOffset(0.f, 3.f); }},
        {"GL_LINE_WIDTH", [](SpareObjects&) { glLineWidth(0.5f); }}, // wide ones are not everywhere
        {"GL_LINE_STIPPLE_REPEAT", [](SpareObjects&) { glLineStipple(2, 0xFFFF); }},
        {"GL_LINE_STIPPLE_PATTERN", [](SpareObjects&) { glLineStipple(1, 0x5555); }},
        {"GL_POINT_SIZE", [](SpareObjects&) { glPointSize(2.5f); }},
        {"GL_POINT_FADE_THRESHOLD_SIZE", [](SpareObjects&) { glPointParameterf(GL_POINT_FADE_THRESHOLD_SIZE, 2.f); }},
        {"GL_POINT_SPRITE_COORD_ORIGIN", [](SpareObjects&) { glPointParameteri(GL_POINT_SPRITE_COORD_ORIGIN, GL_LOWER_LEFT); }},
        {"GL_POINT_SIZE_MIN", [](SpareObjects&) { glPointParameterf(GL_POINT_SIZE_MIN, 0.5f); }},
        {"GL_POINT_SIZE_MAX", [](SpareObjects&) { glPointParameterf(GL_POINT_SIZE_MAX, 3.f); }},
        {"GL_POINT_DISTANCE_ATTENUATION", [](SpareObjects&) {
             const float values[] = {0.5f, 0.25f, 0.125f};
             glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, values);
         }},
        {"GL_SAMPLE_COVERAGE_VALUE", [](SpareObjects&) { glSampleCoverage(0.5f, GL_FALSE); }},
        {"GL_SAMPLE_COVERAGE_INVERT", [](SpareObjects&) { glSampleCoverage(1.f, GL_TRUE); }},
        {"GL_SAMPLE_MASK_VALUE", [](SpareObjects&) { glSampleMaski(0, 0x5); }},
        {"GL_SHADE_MODEL", [](SpareObjects&) { glShadeModel(GL_FLAT); }},
        {"GL_MATRIX_MODE", [](SpareObjects&) { glMatrixMode(GL_PROJECTION); }},
    };
    // clang-format on
    return all;
}

/// A value of a pixel store that GL does not begin with, and takes.
int otherStore(GLenum pname) {
    const bool isAlignment = pname == GL_PACK_ALIGNMENT || pname == GL_UNPACK_ALIGNMENT;
    return isAlignment ? 2 : 1;
}

void toggle(GLenum capability) {
    if (glIsEnabled(capability) == GL_TRUE)
        glDisable(capability);
    else
        glEnable(capability);
}

/// What all pieces of a kind have in common.
const std::map<std::string, std::function<void(const PieceRow&, SpareObjects&)>>& kinds() {
    using Row = const PieceRow&;
    using Objects = SpareObjects&;
    static const std::map<std::string, std::function<void(Row, Objects)>> all = {
        {"Switch", [](Row row, Objects) { toggle(row.pname); }},
        {"SwitchList", [](Row row, Objects) { toggle(row.pname); }},
        {"ClientSwitch", [](Row row, Objects) { glEnableClientState(row.pname); }},
        {"Store", [](Row row, Objects) { glPixelStorei(row.pname, otherStore(row.pname)); }},
        {"Transfer",
         [](Row row, Objects) {
             const bool isScale = row.name.find("_SCALE") != std::string::npos;
             glPixelTransferf(row.pname, isScale ? 0.f : 1.f);
         }},
        {"Hint", [](Row row, Objects) { glHint(row.pname, GL_FASTEST); }},
        {"Buffer", [](Row row, Objects objects) { glBindBuffer(row.target, objects.buffer); }},
        {"Range",
         [](Row row, Objects objects) {
             glBindBufferRange(row.target, 1, objects.buffer, 256, 64);
         }},
        {"Texture", [](Row row, Objects objects) { glBindTexture(row.target, objects.texture()); }},
    };
    return all;
}

} // namespace

const std::vector<PieceRow>& pieceRows() {
    static const std::vector<PieceRow> rows = {
#define VELLIS_PIECE(name, query, count, print, needs, per, write, target, initial, groups)        \
    {"GL_" #name, GL_##name, #needs, #per, #write, target, std::string(#initial) != "AsItIs"},
#include "state/snapshot_pieces.inc"
#undef VELLIS_PIECE
    };
    return rows;
}

bool isThere(const PieceRow& row) {
    const int version = GLVersion.major * 10 + GLVersion.minor;
    const auto lacks = [&](const char* need, bool isThere) {
        return contains(row.needs, need) && !isThere;
    };
    const bool canBind = glBindVertexArray != nullptr;
    const bool isArray0 = !canBind || integer(GL_VERTEX_ARRAY_BINDING) == 0;
    return !(lacks("Compatible", isCompatible()) || lacks("V30", version >= 30) ||
             lacks("V31", version >= 31) || lacks("V32", version >= 32) ||
             lacks("V40", version >= 40) || lacks("V42", version >= 42) ||
             lacks("V43", version >= 43) || lacks("V44", version >= 44) ||
             lacks("V46", version >= 46) || lacks("Samplers", glBindSampler != nullptr) ||
             lacks("Pipelines", glBindProgramPipeline != nullptr) ||
             lacks("ClipControl", glClipControl != nullptr) ||
             lacks("Instances", glVertexAttribDivisorARB != nullptr) ||
             lacks("Framebuffers", glBindFramebuffer != nullptr) || lacks("Arrays", canBind) ||
             lacks("OfArray", isCompatible() || !isArray0) ||
             lacks("Array0", isCompatible() && isArray0));
}

SpareObjects::SpareObjects() {
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, 1024, nullptr, GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    if (glGenVertexArrays != nullptr)
        glGenVertexArrays(1, &vertexArray);
    if (glGenFramebuffers != nullptr) {
        glGenFramebuffers(1, &framebuffer);
        glGenRenderbuffers(1, &renderbuffer);
    }
    program = linkedProgram();
    if (glGenSamplers != nullptr)
        glGenSamplers(1, &sampler);
    if (glGenProgramPipelines != nullptr)
        glGenProgramPipelines(1, &pipeline);
}

SpareObjects::~SpareObjects() {
    glDeleteBuffers(1, &buffer);
    if (glDeleteVertexArrays != nullptr)
        glDeleteVertexArrays(1, &vertexArray);
    if (glDeleteFramebuffers != nullptr) {
        glDeleteFramebuffers(1, &framebuffer);
        glDeleteRenderbuffers(1, &renderbuffer);
    }
    glDeleteProgram(program);
    if (glDeleteSamplers != nullptr)
        glDeleteSamplers(1, &sampler);
    if (glDeleteProgramPipelines != nullptr)
        glDeleteProgramPipelines(1, &pipeline);
    glDeleteTextures(static_cast<GLsizei>(textures_.size()), textures_.data());
}

GLuint SpareObjects::texture() {
    GLuint name = 0;
    glGenTextures(1, &name);
    textures_.push_back(name);
    return name;
}

bool change(const PieceRow& row, SpareObjects& objects) {
    // A name may be that of a list, too: what is written by kind comes first.
    if (const auto kind = kinds().find(row.write);
        kind != kinds().end() && commands().count(row.name) == 0) {
        kind->second(row, objects);
        return true;
    }
    const auto command = commands().find(row.name);
    if (command == commands().end())
        return false;
    command->second(objects);
    return true;
}

} // namespace vellis::test
