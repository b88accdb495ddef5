#include <vellis/vellis.hpp>

#include <vellis/gl.hpp>

int main() {
    return vellis::engine::init() && glad_glBindBuffer == nullptr ? 1 : 0;
}
