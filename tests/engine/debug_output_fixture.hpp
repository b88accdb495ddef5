#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/engine/debug_output.hpp>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace vellis::test {

using Lines = std::vector<std::string>;
using Floats = VertexAttributeBuffer<float>;

inline std::shared_ptr<Floats> makeBuffer() {
    return Floats::make(1, BufferUsage::Static, BufferAccess::Draw);
}

/// Settings that show all, in \p texts.
inline internal::DebugOutputSettings into(Lines& texts) {
    internal::DebugOutputSettings settings;
    settings.showsRepeats = true;
    settings.callback = [&texts](const internal::DebugMessage& message) {
        texts.push_back(internal::text_of(message));
    };
    return settings;
}

/// A fake GL that can complain, and where the messages of a test go.
class DebugOutputTest : public testing::Test {
protected:
    ~DebugOutputTest() override {
        internal::stop_debug_output();
        gl.ignoreTheRest();
    }

    /// Has GL complain in each call of an entry point.
    template <class Result, class... Parameters>
    void complainIn(Result(GLAD_API_PTR*& entryPoint)(Parameters...)) {
        gl.answer(entryPoint, [this](Parameters...) {
            gl.sendMessage("boom");
            return Result();
        });
    }

    FakeGl gl;
    Lines texts;
};

} // namespace vellis::test
