#pragma once

/// \file
/// Diagnostics on standard error: logs and assertions, dumps of what GL holds, tracked GL state,
/// GL's debug messages, and names for objects.

#include <vellis/engine/debug_output.hpp>
#include <vellis/engine/diagnostics.hpp>
#include <vellis/engine/dumps.hpp>
#include <vellis/engine/labels.hpp>
#include <vellis/state/tracked_states.hpp>
