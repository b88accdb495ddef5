#include <vellis/buffers.hpp>

int main() {
    vellis::IndexBuffer<int>::make(3, vellis::BufferUsage::Static, vellis::BufferAccess::Draw);
}
