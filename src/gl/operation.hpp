#pragma once

#include <utility>

#include "gl/thread.hpp"

namespace vellis::gl {

/// Says for the time of a scope which operation of the library runs, for GL's debug messages. One
/// within another counts until it ends. Draws have none: see Thread::program.
class Operation {
public:
    /// \param name  A literal, such as `"BufferObject::load"`.
    explicit Operation(const char* name) : before_(std::exchange(thread().operation, name)) {}
    ~Operation() { thread().operation = before_; }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

private:
    const char* before_;
};

} // namespace vellis::gl
