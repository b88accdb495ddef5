#pragma once

/// \file
/// Diagnostics on standard error: logs and assertions, tracked GL state.

#include <vellis/internal/diagnostics.hpp>
#include <vellis/internal/tracked_states.hpp>
