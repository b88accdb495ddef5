#include <vellis/gl.hpp>
#include <vellis/state.hpp>

int main() {
    vellis::state::State<int, 1, GL_DEPTH_FUNC> record{};
    vellis::state::get(record);
    vellis::state::set(record);
}
