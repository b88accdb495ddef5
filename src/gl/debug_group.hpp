#pragma once

#include <string_view>

namespace vellis::gl {

/// A group of GL's calls with a name, for the time of a scope, which debuggers show: where debug
/// output is on for the Context in use or it has labels, and GL has groups. Elsewhere it does
/// nothing.
class DebugGroup {
public:
    /// `glPushDebugGroup`.
    explicit DebugGroup(std::string_view name);
    /// `glPopDebugGroup`.
    ~DebugGroup();
    DebugGroup(const DebugGroup&) = delete;
    DebugGroup& operator=(const DebugGroup&) = delete;

private:
    bool isPushed_;
};

} // namespace vellis::gl
