#include "gl/enumerator_names.hpp"

#include <vellis/gl.hpp>

namespace vellis::gl {
namespace {

#define VELLIS_NAMED(enumerator)                                                                   \
    { enumerator, #enumerator }

constexpr EnumeratorName errorNames[] = {
    VELLIS_NAMED(GL_INVALID_ENUM),
    VELLIS_NAMED(GL_INVALID_VALUE),
    VELLIS_NAMED(GL_INVALID_OPERATION),
    VELLIS_NAMED(GL_STACK_OVERFLOW),
    VELLIS_NAMED(GL_STACK_UNDERFLOW),
    VELLIS_NAMED(GL_OUT_OF_MEMORY),
    VELLIS_NAMED(GL_INVALID_FRAMEBUFFER_OPERATION),
};

constexpr EnumeratorName framebufferStatusNames[] = {
    VELLIS_NAMED(GL_FRAMEBUFFER_UNDEFINED),
    VELLIS_NAMED(GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT),
    VELLIS_NAMED(GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT),
    VELLIS_NAMED(GL_FRAMEBUFFER_INCOMPLETE_DRAW_BUFFER),
    VELLIS_NAMED(GL_FRAMEBUFFER_INCOMPLETE_READ_BUFFER),
    VELLIS_NAMED(GL_FRAMEBUFFER_UNSUPPORTED),
    VELLIS_NAMED(GL_FRAMEBUFFER_INCOMPLETE_MULTISAMPLE),
    VELLIS_NAMED(GL_FRAMEBUFFER_INCOMPLETE_LAYER_TARGETS),
};

constexpr EnumeratorName variableTypeNames[] = {
    VELLIS_NAMED(GL_INT),        VELLIS_NAMED(GL_FLOAT),        VELLIS_NAMED(GL_FLOAT_VEC2),
    VELLIS_NAMED(GL_FLOAT_VEC3), VELLIS_NAMED(GL_FLOAT_VEC4),   VELLIS_NAMED(GL_INT_VEC2),
    VELLIS_NAMED(GL_INT_VEC3),   VELLIS_NAMED(GL_INT_VEC4),     VELLIS_NAMED(GL_BOOL),
    VELLIS_NAMED(GL_BOOL_VEC2),  VELLIS_NAMED(GL_BOOL_VEC3),    VELLIS_NAMED(GL_BOOL_VEC4),
    VELLIS_NAMED(GL_FLOAT_MAT2), VELLIS_NAMED(GL_FLOAT_MAT3),   VELLIS_NAMED(GL_FLOAT_MAT4),
    VELLIS_NAMED(GL_SAMPLER_2D), VELLIS_NAMED(GL_SAMPLER_CUBE),
};

constexpr EnumeratorName blendEquationNames[] = {
    VELLIS_NAMED(GL_FUNC_ADD),
    VELLIS_NAMED(GL_MIN),
    VELLIS_NAMED(GL_MAX),
    VELLIS_NAMED(GL_FUNC_SUBTRACT),
    VELLIS_NAMED(GL_FUNC_REVERSE_SUBTRACT),
};

constexpr EnumeratorName comparisonNames[] = {
    VELLIS_NAMED(GL_NEVER),  VELLIS_NAMED(GL_LESS),    VELLIS_NAMED(GL_EQUAL),
    VELLIS_NAMED(GL_LEQUAL), VELLIS_NAMED(GL_GREATER), VELLIS_NAMED(GL_NOTEQUAL),
    VELLIS_NAMED(GL_GEQUAL), VELLIS_NAMED(GL_ALWAYS),
};

constexpr EnumeratorName stencilOperationNames[] = {
    VELLIS_NAMED(GL_ZERO),      VELLIS_NAMED(GL_INVERT),    VELLIS_NAMED(GL_KEEP),
    VELLIS_NAMED(GL_REPLACE),   VELLIS_NAMED(GL_INCR),      VELLIS_NAMED(GL_DECR),
    VELLIS_NAMED(GL_INCR_WRAP), VELLIS_NAMED(GL_DECR_WRAP),
};

constexpr EnumeratorName colorBufferNames[] = {VELLIS_NAMED(GL_FRONT), VELLIS_NAMED(GL_BACK)};

#undef VELLIS_NAMED

} // namespace

const EnumeratorNames errors = errorNames;
const EnumeratorNames framebufferStatuses = framebufferStatusNames;
const EnumeratorNames variableTypes = variableTypeNames;
const EnumeratorNames blendEquations = blendEquationNames;
const EnumeratorNames comparisons = comparisonNames;
const EnumeratorNames stencilOperations = stencilOperationNames;
const EnumeratorNames colorBuffers = colorBufferNames;

const char* EnumeratorNames::find(unsigned int value) const {
    for (const EnumeratorName* name = begin; name != end; ++name) {
        if (name->value == value)
            return name->name;
    }
    return nullptr;
}

} // namespace vellis::gl
