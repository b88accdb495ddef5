#pragma once

/// \file
/// Diagnostics on standard error, by the name that reads best: logs and assertions, the names of
/// GL's errors, dumps of what GL holds, the tracked GL state and what has changed of it.

#include <vellis/internal.hpp>

namespace vellis {

/// A second name of vellis::internal, where the functions are declared.
///
/// \code
/// vellis::diagnostics::print_gl_info();
/// if (const char* error = vellis::diagnostics::check_glerror())
///     vellis::diagnostics::log("after upload", "%s", error);
/// \endcode
namespace diagnostics = internal;

} // namespace vellis
