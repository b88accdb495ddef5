#pragma once

/// \file
/// Diagnostics on standard error: logs and assertions, dumps of what GL holds, tracked GL state.

#include <vellis/engine/diagnostics.hpp>
#include <vellis/engine/dumps.hpp>
#include <vellis/state/tracked_states.hpp>
