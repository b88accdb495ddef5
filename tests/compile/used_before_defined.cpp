// Templates whose instances the library has, used before the sources that define them are read: a
// specialization that is declared only there would be refused.

#include <glm/mat4x4.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>
#include <vellis/state.hpp>

void useBeforeTheirDefinition(vellis::Program& program);

void useBeforeTheirDefinition(vellis::Program& program) {
    vellis::state::State<int, 4, GL_VIEWPORT> viewport{};
    vellis::state::get(viewport);
    vellis::state::set(viewport);
    program.setUniform("radius", 1.f);
    program.setUniform("weights", std::vector<float>(3));
    program.setUniform("color", glm::vec4(1.f));
    program.setUniform("mvp", glm::mat4(1.f));
}

#include "shading/uniform.cpp" // NOLINT(bugprone-suspicious-include)
#include "state/state.cpp"     // NOLINT(bugprone-suspicious-include)
