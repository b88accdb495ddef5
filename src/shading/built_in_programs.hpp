#pragma once

#include <array>

namespace vellis {

/// The two sources of a built-in program.
struct BuiltInProgram {
    const char* vertexSource;
    const char* fragmentSource;
};

/// The built-in programs, by the value of ProgramManager::BuiltIn.
extern const std::array<BuiltInProgram, 6> builtInPrograms;

/// What takes the place of their first line, which names their version, in a core context.
extern const BuiltInProgram corePreambles;

} // namespace vellis
