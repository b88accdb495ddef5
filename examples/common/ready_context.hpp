#pragma once

#include <memory>

#include <common/initialised_library.hpp>
#include <offscreen/context.hpp>

namespace common {

/// A context without a window that the library can work in. It is current, and the library is
/// initialised, while the object lives.
class ReadyContext {
public:
    /// \param width, height  The size of the default framebuffer.
    /// \throws std::runtime_error with one sentence where there can be none.
    ReadyContext(unsigned int width, unsigned int height);

private:
    std::unique_ptr<offscreen::Context> context_;
    InitialisedLibrary library_; // goes first
};

} // namespace common
