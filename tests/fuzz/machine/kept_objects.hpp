#pragma once

#include <string>
#include <vector>

#include <vellis/vellis.hpp>

namespace vellis::test {

/// What the library makes once for the process, all of it made on the GL that is current, and kept
/// from run to run.
class KeptObjects {
public:
    KeptObjects();

    /// Puts the registries back as they were at first: what a run has added is released.
    void restore() const;

private:
    ProgramManager programs_;
    BufferObjectManager buffers_;
};

/// What is wrong with a list of names: something where \p found has what \p allowed lacks.
std::string strayNames(const char* what, std::vector<std::string> found,
                       const std::vector<std::string>& allowed);

} // namespace vellis::test
