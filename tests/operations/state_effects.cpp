#include "operations/state_effects.hpp"

#include <algorithm>
#include <map>
#include <sstream>
#include <stdexcept>

namespace vellis::test {
namespace {

using Arguments = std::vector<std::string>;

/// The entry point and the arguments of a line such as `glBindBuffer(GL_ARRAY_BUFFER, 1)`.
struct Call {
    explicit Call(const std::string& line) : entryPoint(line.substr(0, line.find('('))) {
        std::string inside = line.substr(entryPoint.size() + 1);
        inside.resize(inside.rfind(')'));
        std::istringstream stream(inside);
        for (std::string argument; std::getline(stream, argument, ',');)
            arguments.push_back(argument.substr(argument.find_first_not_of(' ')));
    }

    std::string entryPoint;
    Arguments arguments;
};

std::string join(Arguments::const_iterator begin, Arguments::const_iterator end) {
    std::string text;
    for (auto argument = begin; argument != end; ++argument)
        text += (argument != begin ? ", " : "") + *argument;
    return text;
}

/// Calls that set one piece of state, whose value is all their arguments.
const std::map<std::string, std::string> setters = {
    {"glActiveTexture", "GL_ACTIVE_TEXTURE"},
    {"glBindVertexArray", "GL_VERTEX_ARRAY_BINDING"},
    {"glUseProgram", "GL_CURRENT_PROGRAM"},
    {"glBlendColor", "GL_BLEND_COLOR"},
    {"glBlendEquation", "GL_BLEND_EQUATION_RGB"},
    {"glBlendEquationSeparate", "GL_BLEND_EQUATION_RGB"},
    {"glBlendFuncSeparate", "GL_BLEND_SRC_RGB"},
    {"glClearColor", "GL_COLOR_CLEAR_VALUE"},
    {"glClearDepth", "GL_DEPTH_CLEAR_VALUE"},
    {"glClearStencil", "GL_STENCIL_CLEAR_VALUE"},
    {"glColorMask", "GL_COLOR_WRITEMASK"},
    {"glCullFace", "GL_CULL_FACE_MODE"},
    {"glDepthFunc", "GL_DEPTH_FUNC"},
    {"glDepthMask", "GL_DEPTH_WRITEMASK"},
    {"glDepthRange", "GL_DEPTH_RANGE"},
    {"glDrawBuffer", "GL_DRAW_BUFFER"},
    {"glDrawBuffers", "GL_DRAW_BUFFER"},
    {"glLineWidth", "GL_LINE_WIDTH"},
    {"glLogicOp", "GL_LOGIC_OP_MODE"},
    {"glPointSize", "GL_POINT_SIZE"},
    {"glPolygonMode", "GL_POLYGON_MODE"},
    {"glReadBuffer", "GL_READ_BUFFER"},
    {"glScissor", "GL_SCISSOR_BOX"},
    {"glStencilFunc", "GL_STENCIL_FUNC"},
    {"glStencilFuncSeparate", "GL_STENCIL_FUNC"},
    {"glStencilMask", "GL_STENCIL_WRITEMASK"},
    {"glStencilOp", "GL_STENCIL_FAIL"},
    {"glStencilOpSeparate", "GL_STENCIL_FAIL"},
    {"glViewport", "GL_VIEWPORT"},
    {"glAlphaFunc", "GL_ALPHA_TEST_FUNC"},
    {"glBindProgramPipeline", "GL_PROGRAM_PIPELINE_BINDING"},
    {"glBindSampler", "GL_SAMPLER_BINDING"},
    {"glClientActiveTexture", "GL_CLIENT_ACTIVE_TEXTURE"},
    {"glClipControl", "GL_CLIP_ORIGIN"},
    {"glColor4f", "GL_CURRENT_COLOR"},
    {"glColorMaski", "GL_COLOR_WRITEMASK"},
    {"glFrontFace", "GL_FRONT_FACE"},
    {"glLineStipple", "GL_LINE_STIPPLE_PATTERN"},
    {"glMatrixMode", "GL_MATRIX_MODE"},
    {"glPolygonOffset", "GL_POLYGON_OFFSET_FACTOR"},
    {"glPrimitiveRestartIndex", "GL_PRIMITIVE_RESTART_INDEX"},
    {"glProvokingVertex", "GL_PROVOKING_VERTEX"},
    {"glSampleCoverage", "GL_SAMPLE_COVERAGE_VALUE"},
    {"glSampleMaski", "GL_SAMPLE_MASK_VALUE"},
    {"glShadeModel", "GL_SHADE_MODEL"},
    {"glStencilMaskSeparate", "GL_STENCIL_WRITEMASK"},
};

/// Calls whose first argument says which piece of state they set, and its name there.
const std::map<std::string, std::map<std::string, Arguments>> targetedSetters = {
    {"glBindBuffer",
     {{"GL_ARRAY_BUFFER", {"GL_ARRAY_BUFFER_BINDING"}},
      {"GL_ELEMENT_ARRAY_BUFFER", {"GL_ELEMENT_ARRAY_BUFFER_BINDING"}},
      {"GL_PIXEL_PACK_BUFFER", {"GL_PIXEL_PACK_BUFFER_BINDING"}},
      {"GL_PIXEL_UNPACK_BUFFER", {"GL_PIXEL_UNPACK_BUFFER_BINDING"}},
      {"GL_COPY_READ_BUFFER", {"GL_COPY_READ_BUFFER"}},
      {"GL_COPY_WRITE_BUFFER", {"GL_COPY_WRITE_BUFFER"}},
      {"GL_TEXTURE_BUFFER", {"GL_TEXTURE_BUFFER"}},
      {"GL_TRANSFORM_FEEDBACK_BUFFER", {"GL_TRANSFORM_FEEDBACK_BUFFER_BINDING"}},
      {"GL_UNIFORM_BUFFER", {"GL_UNIFORM_BUFFER_BINDING"}}}},
    {"glBindTexture",
     {{"GL_TEXTURE_1D", {"GL_TEXTURE_BINDING_1D"}},
      {"GL_TEXTURE_2D", {"GL_TEXTURE_BINDING_2D"}},
      {"GL_TEXTURE_3D", {"GL_TEXTURE_BINDING_3D"}},
      {"GL_TEXTURE_RECTANGLE", {"GL_TEXTURE_BINDING_RECTANGLE"}},
      {"GL_TEXTURE_CUBE_MAP", {"GL_TEXTURE_BINDING_CUBE_MAP"}},
      {"GL_TEXTURE_1D_ARRAY", {"GL_TEXTURE_BINDING_1D_ARRAY"}},
      {"GL_TEXTURE_2D_ARRAY", {"GL_TEXTURE_BINDING_2D_ARRAY"}},
      {"GL_TEXTURE_BUFFER", {"GL_TEXTURE_BINDING_BUFFER"}},
      {"GL_TEXTURE_2D_MULTISAMPLE", {"GL_TEXTURE_BINDING_2D_MULTISAMPLE"}},
      {"GL_TEXTURE_2D_MULTISAMPLE_ARRAY", {"GL_TEXTURE_BINDING_2D_MULTISAMPLE_ARRAY"}}}},
    {"glBindRenderbuffer", {{"GL_RENDERBUFFER", {"GL_RENDERBUFFER_BINDING"}}}},
    {"glBindFramebuffer",
     {{"GL_FRAMEBUFFER", {"GL_DRAW_FRAMEBUFFER_BINDING", "GL_READ_FRAMEBUFFER_BINDING"}},
      {"GL_DRAW_FRAMEBUFFER", {"GL_DRAW_FRAMEBUFFER_BINDING"}},
      {"GL_READ_FRAMEBUFFER", {"GL_READ_FRAMEBUFFER_BINDING"}}}},
};

/// Calls that set no state of the context: they ask, draw, make and delete, or work on objects. Any
/// other call must be in one of the tables.
const char* const stateless[] = {
    "glAttachShader",
    "glBindAttribLocation",
    "glBlitFramebuffer",
    "glBufferData",
    "glBufferSubData",
    "glCheckFramebufferStatus",
    "glClear",
    "glCompileShader",
    "glCreate",
    "glDebugMessage",
    "glDelete",
    "glDisableVertexAttribArray",
    "glDrawArrays",
    "glDrawElements",
    "glEnableVertexAttribArray",
    "glFlushMappedBufferRange",
    "glFramebufferRenderbuffer",
    "glFramebufferTexture2D",
    "glGen",
    "glGet",
    "glIs",
    "glLinkProgram",
    "glMapBufferRange",
    "glObjectLabel",
    "glPopDebugGroup",
    "glPushDebugGroup",
    "glReadPixels",
    "glRenderbufferStorage",
    "glShaderSource",
    "glTexImage",
    "glTexParameter",
    "glTexSubImage",
    "glUniform",
    "glUnmapBuffer",
    "glVertexAttrib",
};

bool isStateless(const std::string& entryPoint) {
    return std::any_of(std::begin(stateless), std::end(stateless),
                       [&](const char* prefix) { return entryPoint.rfind(prefix, 0) == 0; });
}

bool isKnown(const std::string& state, const std::string& value) {
    const auto& known = knownStates();
    return std::any_of(known.begin(), known.end(), [&](const KnownState& row) {
        return row.state == state && row.value == value;
    });
}

Effect::Kind kindOf(const std::string& state, const std::vector<std::string>& values) {
    const std::string& last = values.back();
    const bool isSwitch = last == "on" || last == "off";
    if (isKnown(state, last) && values.size() > 1)
        return Effect::Kind::PutBack;
    if (isKnown(state, last) && !isSwitch)
        return Effect::Kind::Saved;
    return isSwitch || last == "0" ? Effect::Kind::Value : Effect::Kind::Asked;
}

/// Some state belongs to an object. Where the object of before is bound again, its own was not
/// touched.
struct OwnedState {
    const char* state;
    const char* owner;
};
constexpr OwnedState ownedStates[] = {
    {"GL_DRAW_BUFFER", "GL_DRAW_FRAMEBUFFER_BINDING"},
    {"GL_READ_BUFFER", "GL_DRAW_FRAMEBUFFER_BINDING"},
    {"GL_ELEMENT_ARRAY_BUFFER_BINDING", "GL_VERTEX_ARRAY_BINDING"},
};

void dropStateOfOtherObjects(std::vector<Effect>& effects) {
    const auto isPutBack = [&](const std::string& state) {
        return std::any_of(effects.begin(), effects.end(), [&](const Effect& effect) {
            return effect.state == state && effect.kind == Effect::Kind::PutBack;
        });
    };
    for (const OwnedState& owned : ownedStates) {
        if (!isPutBack(owned.owner))
            continue;
        effects.erase(
            std::remove_if(effects.begin(), effects.end(),
                           [&](const Effect& effect) { return effect.state == owned.state; }),
            effects.end());
    }
}

} // namespace

std::vector<StateSet> stateSetBy(const std::string& line) {
    const Call call(line);
    const Arguments& arguments = call.arguments;
    if (call.entryPoint == "glEnable" || call.entryPoint == "glDisable")
        return {{arguments[0], call.entryPoint == "glEnable" ? "on" : "off"}};
    if (call.entryPoint == "glEnablei" || call.entryPoint == "glDisablei")
        return {{arguments[0], call.entryPoint == "glEnablei" ? "on" : "off"}};
    if (call.entryPoint == "glEnableClientState" || call.entryPoint == "glDisableClientState")
        return {{arguments[0], call.entryPoint == "glEnableClientState" ? "on" : "off"}};
    for (const char* byParameter :
         {"glHint", "glPixelStorei", "glPixelTransferf", "glClampColor", "glPointParameterf",
          "glPointParameterfv", "glPointParameteri"}) {
        if (call.entryPoint == byParameter)
            return {{arguments[0], arguments[1]}};
    }
    if (call.entryPoint == "glBindBufferBase" || call.entryPoint == "glBindBufferRange")
        return {{arguments[0] + "_BINDING", arguments[2]}};
    const auto setter = setters.find(call.entryPoint);
    if (setter != setters.end())
        return {{setter->second, join(arguments.begin(), arguments.end())}};
    const auto targeted = targetedSetters.find(call.entryPoint);
    if (targeted != targetedSetters.end()) {
        std::vector<StateSet> sets;
        for (const std::string& state : targeted->second.at(arguments[0]))
            sets.push_back({state, arguments[1]});
        return sets;
    }
    if (!isStateless(call.entryPoint))
        throw std::logic_error(call.entryPoint + " is in no table of state_effects.cpp");
    return {};
}

std::vector<Effect> effectsOf(const Use& use) {
    struct History {
        std::string state;
        std::vector<std::string> values;
    };
    std::vector<History> histories;
    for (const std::string& call : use.calls) {
        for (const StateSet& set : stateSetBy(call)) {
            auto history = std::find_if(histories.begin(), histories.end(),
                                        [&](const History& h) { return h.state == set.state; });
            if (history == histories.end())
                history = histories.insert(histories.end(), {set.state, {}});
            history->values.push_back(set.value);
        }
    }
    std::vector<Effect> effects;
    for (const auto& [state, values] : histories)
        effects.push_back({state, kindOf(state, values), values.back()});
    dropStateOfOtherObjects(effects);
    return effects;
}

} // namespace vellis::test
