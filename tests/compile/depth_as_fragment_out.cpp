#include <vellis/framebuffer.hpp>

void attach(vellis::Framebuffer& framebuffer, const vellis::Texture2D<vellis::depth16>& depth) {
    framebuffer.attachFragmentOut(depth);
}

int main() {}
