#pragma once

#include <vellis/shading/program.hpp>

namespace vellis {

/// Uses a program and, at the end of the scope, none, also when an exception leaves it.
class ProgramUse {
public:
    /// Program::bind.
    explicit ProgramUse(const Program& program) : program_(program) { program.bind(); }

    /// Program::unbind.
    ~ProgramUse() { program_.unbind(); }

    ProgramUse(const ProgramUse&) = delete;
    ProgramUse& operator=(const ProgramUse&) = delete;

private:
    const Program& program_;
};

} // namespace vellis
