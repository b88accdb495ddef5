#pragma once

/// \file
/// Diagnostics on standard error: logs and assertions, dumps of what GL holds, tracked GL state.

#include <vellis/internal/diagnostics.hpp>
#include <vellis/internal/dumps.hpp>
#include <vellis/internal/tracked_states.hpp>
