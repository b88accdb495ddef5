#include <vellis/texture.hpp>

int main() {
    vellis::Renderbuffer<vellis::sampler2d> renderbuffer(64, 64);
}
