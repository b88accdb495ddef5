#pragma once

#include <ostream>
#include <vector>

#include "support/fake_gl.hpp"

namespace vellis::test {

/// A way in which GL can fail.
struct GlFault {
    const char* id;             ///< for the names of tests
    const char* fault;          ///< what GL does, for the page
    const char* effect;         ///< what the caller sees and what is left, for the page
    void (*set)(FakeGl&, bool); ///< switches it on and off
    void (*expect)(FakeGl&);    ///< holds the effect against the library, with the fault on
};

/// For messages of tests.
inline std::ostream& operator<<(std::ostream& stream, const GlFault& fault) {
    return stream << fault.fault;
}

/// All of them.
const std::vector<GlFault>& glFaults();

} // namespace vellis::test
