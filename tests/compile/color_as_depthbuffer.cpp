#include <vellis/framebuffer.hpp>

void attach(vellis::Framebuffer& framebuffer,
            const vellis::Texture2D<glm::vec<4, unsigned char>>& color) {
    framebuffer.attachDepthbuffer(color);
}

int main() {}
