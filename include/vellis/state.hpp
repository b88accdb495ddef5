#pragma once

/// \file
/// GL state: typed records of it, read and written back; and the tracked states, printed and
/// compared.

#include <vellis/state/state.hpp>
#include <vellis/state/tracked_states.hpp>
