#pragma once

/// \file
/// GL state: as a whole, taken, compared and put back; typed records of pieces of it; and the
/// tracked states, printed and compared.

#include <vellis/state/snapshot.hpp>
#include <vellis/state/state.hpp>
#include <vellis/state/tracked_states.hpp>
