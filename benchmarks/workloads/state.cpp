#include <vellis/gl.hpp>

#include "state/state_guard.hpp"
#include "workloads/groups.hpp"

namespace vellis::bench {
namespace {

/// What the scope does between saving and restoring.
void blend() {
    glEnable(GL_BLEND);
    glBlendEquation(GL_FUNC_ADD);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

unsigned int asEnum(int value) {
    return static_cast<unsigned int>(value);
}

struct RawScope {
    void operator()() const {
        unsigned char enabled = GL_FALSE;
        glGetBooleanv(GL_BLEND, &enabled);
        int sourceRgb = 0;
        int destinationRgb = 0;
        int sourceAlpha = 0;
        int destinationAlpha = 0;
        glGetIntegerv(GL_BLEND_SRC_RGB, &sourceRgb);
        glGetIntegerv(GL_BLEND_DST_RGB, &destinationRgb);
        glGetIntegerv(GL_BLEND_SRC_ALPHA, &sourceAlpha);
        glGetIntegerv(GL_BLEND_DST_ALPHA, &destinationAlpha);
        int equationRgb = 0;
        int equationAlpha = 0;
        glGetIntegerv(GL_BLEND_EQUATION_RGB, &equationRgb);
        glGetIntegerv(GL_BLEND_EQUATION_ALPHA, &equationAlpha);
        blend();
        if (enabled == GL_TRUE)
            glEnable(GL_BLEND);
        else
            glDisable(GL_BLEND);
        glBlendFuncSeparate(asEnum(sourceRgb), asEnum(destinationRgb), asEnum(sourceAlpha),
                            asEnum(destinationAlpha));
        glBlendEquationSeparate(asEnum(equationRgb), asEnum(equationAlpha));
    }
};

struct Scope {
    void operator()() const {
        const state::StateGuard<state::State<bool, 1, GL_BLEND>,
                                state::State<int, 4, GL_BLEND_SRC_RGB>,
                                state::State<int, 2, GL_BLEND_EQUATION_RGB>>
            guard;
        blend();
    }
};

} // namespace

std::vector<Workload> stateWorkloads() {
    return {
        {"state/blending",
         "save the three blend records, blend, put them back",
         {{"raw", makeSide<RawScope>}, {"vellis", makeSide<Scope>}}},
    };
}

} // namespace vellis::bench
