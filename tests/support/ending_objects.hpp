#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/shading/program_manager.hpp>

namespace vellis::test {

/// What an object does as it ends.
using Ending = std::function<void()>;

/// The registry of buffers, and buffers that do something as they end.
struct Buffers {
    using Registry = BufferObjectManager;
    using Object = BufferObject;

    static std::shared_ptr<Object> make(Ending ending = [] {}) {
        struct Ended : VertexAttributeBuffer<unsigned char> {
            explicit Ended(Ending function)
                : VertexAttributeBuffer(nullptr, 4, BufferUsage::Static, BufferAccess::Draw),
                  ending(std::move(function)) {}
            ~Ended() override { ending(); }
            Ending ending;
        };
        return std::make_shared<Ended>(std::move(ending));
    }
};

/// The registry of programs, and programs that do something as they end.
struct Programs {
    using Registry = ProgramManager;
    using Object = Program;

    static std::shared_ptr<Object> make(Ending ending = [] {}) {
        struct Ended : Program {
            explicit Ended(Ending function) : ending(std::move(function)) {}
            ~Ended() override { ending(); }
            Ending ending;
        };
        return std::make_shared<Ended>(std::move(ending));
    }
};

} // namespace vellis::test
