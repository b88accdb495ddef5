#include "fuzz/machine/fake_surroundings.hpp"

#include <algorithm>

#include <vellis/vellis.hpp>

#include "fuzz/machine/pixel_stores.hpp"

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

/// An entry point that such a context has not.
struct OptionalEntryPoint {
    Extension extension;
    void (*set)(bool isThere);
};

#define VELLIS_EXTENSION(extension, name)
#define VELLIS_EXTENSION_ENTRY_POINT(extension, name)                                              \
    {Extension::extension, [](bool isThere) {                                                      \
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

/// What is wrong with the list of names: something where \p found has what \p allowed lacks.
std::string strayNames(const char* what, std::vector<std::string> found,
                       const std::vector<std::string>& allowed) {
    const auto isAllowed = [&](const std::string& name) {
        return std::find(allowed.begin(), allowed.end(), name) != allowed.end();
    };
    found.erase(std::remove_if(found.begin(), found.end(), isAllowed), found.end());
    return found.empty() ? "" : what + found.front();
}

} // namespace

/// The registries with what the library keeps in them.
struct FakeSurroundings::Kept {
    ProgramManager programs = ProgramManager::instance();
    BufferObjectManager buffers = BufferObjectManager::instance();
};

FakeSurroundings::FakeSurroundings() {
    modelState();
    resetGl();
    gl_.setActiveUniforms(uniformSets[0]);
    for (unsigned int i = 0; i < 6; ++i)
        ProgramManager::instance().get(static_cast<ProgramManager::BuiltIn>(i));
    Toolbox::getVertexBuffer();
    Program::current();
    Program::null();
    kept_ = std::make_unique<Kept>();
    names_ = gl_.liveNames();
    gl_.forget();
}

FakeSurroundings::~FakeSurroundings() {
    kept_.reset(); // which empties the registries
    gl_.ignoreTheRest();
}

/// Lets the GL keep the state that operations put back; the rest is always 0.
void FakeSurroundings::modelState() {
    const auto switchTo = [this](GLint value) {
        return [this, value](GLenum capability) { gl_.setState(capability, {value}); };
    };
    gl_.answer(glad_glEnable, switchTo(1));
    gl_.answer(glad_glDisable, switchTo(0));
    gl_.answer(glad_glPixelStorei, [this](GLenum pname, GLint value) {
        const bool isAlignment = pname == GL_PACK_ALIGNMENT || pname == GL_UNPACK_ALIGNMENT;
        if (isAlignment ? value == 1 || value == 2 || value == 4 || value == 8 : value >= 0)
            gl_.setState(pname, {value});
    });
    gl_.answer(glad_glBlendFuncSeparate, [this](GLenum sourceRgb, GLenum destinationRgb,
                                                GLenum sourceAlpha, GLenum destinationAlpha) {
        gl_.setState(GL_BLEND_SRC_RGB, {sourceRgb});
        gl_.setState(GL_BLEND_DST_RGB, {destinationRgb});
        gl_.setState(GL_BLEND_SRC_ALPHA, {sourceAlpha});
        gl_.setState(GL_BLEND_DST_ALPHA, {destinationAlpha});
    });
    const auto setEquations = [this](GLenum rgb, GLenum alpha) {
        gl_.setState(GL_BLEND_EQUATION_RGB, {rgb});
        gl_.setState(GL_BLEND_EQUATION_ALPHA, {alpha});
    };
    gl_.answer(glad_glBlendEquationSeparate, setEquations);
    gl_.answer(glad_glBlendEquation, [=](GLenum mode) { setEquations(mode, mode); });
}

void FakeSurroundings::resetGl() {
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    for (const GLenum pixelStore : pixelStores)
        glPixelStorei(pixelStore, 0);
    glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_ONE, GL_ZERO);
    glBlendEquation(GL_FUNC_ADD);
    for (const int capability : {GL_BLEND, GL_DEPTH_TEST, GL_STENCIL_TEST, GL_SCISSOR_TEST,
                                 GL_CULL_FACE, GL_LINE_SMOOTH, GL_POLYGON_SMOOTH, GL_POINT_SPRITE,
                                 GL_VERTEX_PROGRAM_POINT_SIZE, GL_COLOR_LOGIC_OP, GL_MULTISAMPLE})
        glDisable(static_cast<GLenum>(capability));
    glActiveTexture(GL_TEXTURE0);
    while (glGetError() != GL_NO_ERROR) {
    }
    gl_.forget();
}

/// Takes away the entry points of the extensions whose bits are set.
void FakeSurroundings::setMissing(unsigned int extensions) {
    if (extensions == missing_)
        return;
    missing_ = extensions;
    for (const OptionalEntryPoint& entryPoint : optionalEntryPoints)
        entryPoint.set((extensions >> static_cast<unsigned int>(entryPoint.extension)) % 2 == 0);
}

void FakeSurroundings::begin(Bytes& bytes) {
    setMissing(bytes.below(4) == 3 ? bytes.next() : 0);
    gl_.setActiveUniforms(bytes.oneOf(uniformSets));
    const GLint textureSize = static_cast<GLint>(bytes.below(5));
    for (const int size : {GL_TEXTURE_WIDTH, GL_TEXTURE_HEIGHT, GL_TEXTURE_DEPTH})
        gl_.setState(static_cast<GLenum>(size), {textureSize});
}

void FakeSurroundings::beforeOperation(Bytes& bytes) {
    gl_.setRecording(true);
    switch (bytes.below(numFaults)) {
    case numFaults - 1:
        return gl_.failToCreate();
    case numFaults - 2:
        return gl_.failToMap();
    case numFaults - 3:
        return gl_.runOutOfMemory();
    case numFaults - 4:
        return gl_.failToLink("log");
    case numFaults - 5:
        return gl_.queueError(GL_OUT_OF_MEMORY);
    case numFaults - 6:
        failing_.emplace(bytes.below(32) + 1, FailingAllocations::Extent::AndAfter);
        return;
    case numFaults - 7:
        failing_.emplace(bytes.below(32) + 1, FailingAllocations::Extent::One);
        return;
    default:
        return;
    }
}

void FakeSurroundings::afterOperation() {
    failing_.reset();
    gl_.failToCreate(false);
    gl_.failToMap(false);
    gl_.runOutOfMemory(false);
    gl_.setLinkLog("");
    gl_.ignoreTheRest(); // what the machine itself asks is nobody's to look at
}

std::string FakeSurroundings::end(const std::set<std::string>& copiedNames) {
    afterOperation();
    gl_.setRecording(true);
    for (int i = 0; i < mostGenerations; ++i) {
        ProgramManager::instance() = kept_->programs;
        BufferObjectManager::instance() = kept_->buffers;
    }
    setMissing(0);
    resetGl();
    std::string problem = strayNames("left: ", gl_.liveNames(), names_);
    if (problem.empty())
        problem = strayNames("deleted twice: ", gl_.doubleDeletes(),
                             {copiedNames.begin(), copiedNames.end()});
    gl_.forgetDeletedNames();
    return problem;
}

} // namespace vellis::test
