#include "fuzz/machine/faulty_gl.hpp"

#include <cstring>
#include <string>
#include <vector>

#include <vellis/gl.hpp>

#include "fuzz/machine/pixel_stores.hpp"
#include "support/fake_gl.hpp"

namespace vellis::test {
namespace {

/// What a context may lack.
enum class Extension {
#define VELLIS_EXTENSION(extension, name) extension,
#define VELLIS_EXTENSION_ENTRY_POINT(extension, entryPoint)
#include "support/extensions.inc"
#undef VELLIS_EXTENSION
#undef VELLIS_EXTENSION_ENTRY_POINT
    UnsignedUniforms
};

#define VELLIS_EXTENSION(extension, name)
#define VELLIS_EXTENSION_ENTRY_POINT(extension, name)                                              \
    {#name, static_cast<unsigned int>(Extension::extension), [](bool isThere) {                    \
         void* const recorder = FakeGl::lookUp(#name);                                             \
         glad_##name = isThere ? reinterpret_cast<decltype(glad_##name)>(recorder) : nullptr;      \
     }},
// clang-format off
constexpr OptionalEntryPoint optionalEntryPoints[] = {
#include "support/extensions.inc"
    VELLIS_EXTENSION_ENTRY_POINT(UnsignedUniforms, glUniform1ui)
    VELLIS_EXTENSION_ENTRY_POINT(UnsignedUniforms, glUniform1uiv)
    VELLIS_EXTENSION_ENTRY_POINT(UnsignedUniforms, glUniform3uiv)
    VELLIS_EXTENSION_ENTRY_POINT(UnsignedUniforms, glUniform4uiv)
    VELLIS_EXTENSION_ENTRY_POINT(UnsignedUniforms, glUniform1uiEXT)
    VELLIS_EXTENSION_ENTRY_POINT(UnsignedUniforms, glUniform1uivEXT)
    VELLIS_EXTENSION_ENTRY_POINT(UnsignedUniforms, glUniform3uivEXT)
    VELLIS_EXTENSION_ENTRY_POINT(UnsignedUniforms, glUniform4uivEXT)
};
// clang-format on
#undef VELLIS_EXTENSION
#undef VELLIS_EXTENSION_ENTRY_POINT

/// What the programs of a run have, as bytes choose it: what the sources say, nothing, and what no
/// compiler would report.
const std::vector<ActiveVariable> uniformSets[] = {
    {{"mvp", GL_FLOAT_MAT4},
     {"color", GL_FLOAT_VEC4},
     {"image", GL_SAMPLER_2D},
     {"weights[0]", GL_FLOAT, 3},
     {"size", GL_INT_VEC2},
     {"light.color", GL_FLOAT_VEC4},
     {"light.isOn", GL_BOOL},
     {"bones[0]", GL_FLOAT_MAT2, 2}},
    {},
    {{"mvp", 0},
     {"color", GL_FLOAT_VEC4, 0},
     {"color", GL_FLOAT, -1},
     {"", GL_INT},
     {"image", GL_SAMPLER_2D, 4},
     {"size", GL_UNSIGNED_INT_VEC3}},
    {{"weights[0]", GL_UNSIGNED_INT_VEC4, 300},
     {"weights[0]", GL_FLOAT, 2},
     {std::string(400, 'm'), GL_FLOAT},
     {"mvp", GL_FLOAT_MAT3, 1, -1}},
};

constexpr unsigned int numFaults = 24;

} // namespace

void resetState() {
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    for (const GLenum pixelStore : pixelStores)
        glPixelStorei(pixelStore, 0);
    glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_ONE, GL_ZERO);
    glBlendEquation(GL_FUNC_ADD);
    glViewport(0, 0, 64, 64);
    glScissor(0, 0, 64, 64);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glClearColor(0.f, 0.f, 0.f, 0.f);
    glLineWidth(1.f);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    for (const int capability : {GL_BLEND, GL_DEPTH_TEST, GL_STENCIL_TEST, GL_SCISSOR_TEST,
                                 GL_CULL_FACE, GL_LINE_SMOOTH, GL_POLYGON_SMOOTH, GL_POINT_SPRITE,
                                 GL_VERTEX_PROGRAM_POINT_SIZE, GL_COLOR_LOGIC_OP, GL_MULTISAMPLE})
        glDisable(static_cast<GLenum>(capability));
    glActiveTexture(GL_TEXTURE0);
    while (glGetError() != GL_NO_ERROR) {
    }
}

void chooseContents(RecordedGl& gl, Bytes& bytes) {
    gl.setActiveUniforms(bytes.oneOf(uniformSets));
    const GLint textureSize = static_cast<GLint>(bytes.below(5));
    for (const int size : {GL_TEXTURE_WIDTH, GL_TEXTURE_HEIGHT, GL_TEXTURE_DEPTH})
        gl.setState(static_cast<GLenum>(size), {textureSize});
}

void chooseContents(RecordedGl& gl) {
    Bytes none(nullptr, 0);
    chooseContents(gl, none);
}

void Faults::begin(RecordedGl& gl, Bytes& bytes, bool mayMemoryFail) {
    const unsigned int fault = bytes.below(numFaults);
    switch (fault) {
    case numFaults - 1:
        return gl.failToCreate();
    case numFaults - 2:
        return gl.failToMap();
    case numFaults - 3:
        return gl.runOutOfMemory();
    case numFaults - 4:
        return gl.failToLink("log");
    case numFaults - 5:
        return gl.queueError(GL_OUT_OF_MEMORY);
    case numFaults - 6:
    case numFaults - 7:
        if (mayMemoryFail)
            failing_.emplace(bytes.below(32) + 1, fault == numFaults - 6
                                                      ? FailingAllocations::Extent::AndAfter
                                                      : FailingAllocations::Extent::One);
        return;
    default:
        return;
    }
}

void Faults::end(RecordedGl& gl) {
    if (failing_.has_value() && FailingAllocations::haveFailed())
        hasMemoryFailed_ = true;
    failing_.reset();
    gl.failToCreate(false);
    gl.failToMap(false);
    gl.runOutOfMemory(false);
    gl.setLinkLog("");
}

const OptionalEntryPoint* findOptional(const char* name) {
    for (const OptionalEntryPoint& entryPoint : optionalEntryPoints) {
        if (std::strcmp(entryPoint.name, name) == 0)
            return &entryPoint;
    }
    return nullptr;
}

void setMissing(unsigned int extensions) {
    for (const OptionalEntryPoint& entryPoint : optionalEntryPoints)
        entryPoint.set((extensions >> entryPoint.extension) % 2 == 0);
}

} // namespace vellis::test
