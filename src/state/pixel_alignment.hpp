#pragma once

#include <vellis/gl.hpp>

#include "state/state_guard.hpp"

namespace vellis::state {

/// Sets a row alignment of pixel transfers and puts the one before it back at the end of the scope.
///
/// \tparam pname  `GL_UNPACK_ALIGNMENT` or `GL_PACK_ALIGNMENT`.
template <unsigned int pname>
class PixelAlignment {
public:
    /// Sets the alignment to \p numBytes.
    explicit PixelAlignment(unsigned int numBytes) {
        glPixelStorei(pname, static_cast<int>(numBytes));
    }

private:
    StateGuard<State<int, 1, pname>> saved_;
};

/// The alignment of rows that GL reads from memory.
using UnpackAlignment = PixelAlignment<GL_UNPACK_ALIGNMENT>;

/// The alignment of rows that GL writes to memory.
using PackAlignment = PixelAlignment<GL_PACK_ALIGNMENT>;

} // namespace vellis::state
