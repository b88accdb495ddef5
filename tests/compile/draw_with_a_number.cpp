#include <vellis/shading.hpp>

void draw(vellis::Program& program, const vellis::Drawable& drawable,
          const vellis::IndexBuffer<unsigned int>& indices) {
    program.draw(drawable, indices, 0, 3, 1.f);
}

int main() {}
