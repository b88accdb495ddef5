#include <vellis/shading.hpp>

void draw(vellis::Program& program, const vellis::Drawable& drawable) {
    program.draw(drawable, vellis::Uniform("radius", 3.f), glm::vec4(1.f));
}

int main() {}
