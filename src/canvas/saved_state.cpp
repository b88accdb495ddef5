#include "canvas/saved_state.hpp"

#include <vellis/gl.hpp>

#include "canvas/programs.hpp"
#include "gl/capability.hpp"

namespace vellis::canvas {
namespace {

int integer(unsigned int name) {
    int result = 0;
    glGetIntegerv(name, &result);
    return result;
}

unsigned int gl(int value) {
    return static_cast<unsigned int>(value);
}

bool isOn(unsigned int capability) {
    return glIsEnabled(capability) != GL_FALSE;
}

bool boolean(unsigned int name) {
    unsigned char result = GL_FALSE;
    glGetBooleanv(name, &result);
    return result != GL_FALSE;
}

/// The program in use; 0 for one that has been deleted, which ends when another is used.
int lastingProgram() {
    const int program = integer(GL_CURRENT_PROGRAM);
    int isDeleted = GL_FALSE;
    if (program != 0)
        glGetProgramiv(gl(program), GL_DELETE_STATUS, &isDeleted);
    return isDeleted == GL_FALSE ? program : 0;
}

/// Which contexts have a switch.
enum class Where : unsigned char { All, FixedFunctions, Restart };

struct OffSwitch {
    unsigned int capability;
    Where where;
};

/// What is off while a batch draws.
constexpr OffSwitch switches[] = {
    {GL_CULL_FACE, Where::All},
    {GL_COLOR_LOGIC_OP, Where::All},
    {GL_SAMPLE_ALPHA_TO_COVERAGE, Where::All},
    {GL_POLYGON_SMOOTH, Where::All},
    {GL_LINE_SMOOTH, Where::All},
    {GL_ALPHA_TEST, Where::FixedFunctions},
    {GL_PRIMITIVE_RESTART, Where::Restart},
};

bool isThere(Where where, const Capabilities& capabilities) {
    return where == Where::All ||
           (where == Where::Restart ? capabilities.hasRestart : capabilities.hasFixedFunctions);
}

/// The blend factors and equations, in the order of the commands that set them.
constexpr unsigned int factorNames[] = {GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA,
                                        GL_BLEND_DST_ALPHA};
constexpr unsigned int equationNames[] = {GL_BLEND_EQUATION_RGB, GL_BLEND_EQUATION_ALPHA};

} // namespace

SavedState::SavedState(const Capabilities& capabilities) : capabilities_(capabilities) {
    static_assert(sizeof switches / sizeof *switches == numSwitches);
    glGetIntegerv(GL_VIEWPORT, viewport_);
    program_ = lastingProgram();
    arrayBuffer_ = integer(GL_ARRAY_BUFFER_BINDING);
    if (capabilities.hasVertexArrays)
        vertexArray_ = integer(GL_VERTEX_ARRAY_BINDING);
    else
        readVertexArrays();
    for (int i = 0; i < 4; ++i)
        factors_[i] = integer(factorNames[i]);
    for (int i = 0; i < 2; ++i)
        equations_[i] = integer(equationNames[i]);
    polygonModes_[1] = 0;
    glGetIntegerv(GL_POLYGON_MODE, polygonModes_);
    glGetFloatv(GL_LINE_WIDTH, &lineWidth_);
    blends_ = isOn(GL_BLEND);
    testsDepth_ = isOn(GL_DEPTH_TEST);
    writesDepth_ = testsDepth_ && boolean(GL_DEPTH_WRITEMASK);
    const bool isMultisampled = integer(GL_SAMPLE_BUFFERS) > 0;
    multisample_ = {GL_MULTISAMPLE, isMultisampled && isOn(GL_MULTISAMPLE), false};
    offset_ = {GL_POLYGON_OFFSET_FILL, isOn(GL_POLYGON_OFFSET_FILL), false};

    for (std::size_t i = 0; i < numSwitches; ++i) {
        isOn_[i] = isThere(switches[i].where, capabilities) && isOn(switches[i].capability);
        if (isOn_[i])
            glDisable(switches[i].capability);
    }
    if (polygonModes_[0] != GL_FILL || (polygonModes_[1] != GL_FILL && polygonModes_[1] != 0))
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    if (lineWidth_ != 1.f)
        glLineWidth(1.f);
    isBlendOn_ = blends_;
    setBlending();
}

SavedState::~SavedState() {
    setDepthMask(true);
    multisample_.set(true);
    offset_.set(true);
    setBlend(blends_);
    glBlendFuncSeparate(gl(factors_[0]), gl(factors_[1]), gl(factors_[2]), gl(factors_[3]));
    glBlendEquationSeparate(gl(equations_[0]), gl(equations_[1]));
    if (lineWidth_ != 1.f)
        glLineWidth(lineWidth_);
    if (polygonModes_[0] != polygonModes_[1] && capabilities_.hasFixedFunctions) {
        glPolygonMode(GL_FRONT, gl(polygonModes_[0]));
        glPolygonMode(GL_BACK, gl(polygonModes_[1]));
    } else if (polygonModes_[0] != GL_FILL) {
        glPolygonMode(GL_FRONT_AND_BACK, gl(polygonModes_[0]));
    }
    for (std::size_t i = 0; i < numSwitches; ++i) {
        if (isOn_[i])
            glEnable(switches[i].capability);
    }
    if (capabilities_.hasVertexArrays)
        glBindVertexArray(gl(vertexArray_));
    else
        restoreVertexArrays();
    glBindBuffer(GL_ARRAY_BUFFER, gl(arrayBuffer_));
    glUseProgram(gl(program_));
}

void SavedState::setBlending() {
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glBlendEquationSeparate(GL_FUNC_ADD, GL_FUNC_ADD);
}

void SavedState::prepareFor(Kind kind, bool isOpaque) {
    setBlend(!isOpaque);
    multisample_.set(kind == Kind::Triangles || kind == Kind::Images);
    offset_.set(kind == Kind::Triangles);
    setDepthMask(kind == Kind::Triangles || kind == Kind::Lines);
}

void SavedState::setDepthMask(bool on) {
    if (!writesDepth_ || isDepthMaskOff_ == !on)
        return;
    glDepthMask(static_cast<unsigned char>(on));
    isDepthMaskOff_ = !on;
}

void SavedState::Switch::set(bool on) {
    if (!wasOn || isOff == !on)
        return;
    state::switchCapability(capability, on);
    isOff = !on;
}

void SavedState::setBlend(bool on) {
    if (isBlendOn_ == on)
        return;
    state::switchCapability(GL_BLEND, on);
    isBlendOn_ = on;
}

void SavedState::readVertexArrays() {
    elementBuffer_ = integer(GL_ELEMENT_ARRAY_BUFFER_BINDING);
    for (unsigned int i = 0; i < numLocations; ++i) {
        Array& array = arrays_[i];
        glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &array.isEnabled);
        glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_SIZE, &array.size);
        glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_TYPE, &array.type);
        glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_NORMALIZED, &array.isNormalized);
        glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_STRIDE, &array.stride);
        glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &array.buffer);
        glGetVertexAttribPointerv(i, GL_VERTEX_ATTRIB_ARRAY_POINTER, &array.pointer);
    }
}

void SavedState::restoreVertexArrays() const {
    for (unsigned int i = 0; i < numLocations; ++i) {
        const Array& array = arrays_[i];
        glBindBuffer(GL_ARRAY_BUFFER, gl(array.buffer));
        glVertexAttribPointer(i, array.size, gl(array.type),
                              static_cast<unsigned char>(array.isNormalized), array.stride,
                              array.pointer);
        if (array.isEnabled != 0)
            glEnableVertexAttribArray(i);
        else
            glDisableVertexAttribArray(i);
    }
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, gl(elementBuffer_));
}

} // namespace vellis::canvas
