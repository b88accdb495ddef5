#include <vellis/shading.hpp>
#include <vellis/texture.hpp>

void draw(vellis::Program& program, const vellis::Drawable& drawable,
          const vellis::Texture& texture) {
    program.draw(drawable, texture);
}

int main() {}
