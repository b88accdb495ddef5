#include <vellis/gl.hpp>
#include <vellis/state.hpp>

int main() {
    vellis::state::State<float, 1, GL_DEPTH_FUNC> record{};
    vellis::state::get(record);
}
