#pragma once

#include <vector>

#include "workloads/workload.hpp"

namespace vellis::bench {

/// The drawing of words that were shaped before, each side in a way of its own:
///
///   raw       a PlainQuads
///   vellis    a call of text::draw for each word
///   picture   a picture that was recorded before
///   imgui     Dear ImGui, where it is found
///
/// `words/kept` is with a driver, `words/calls` without one.
std::vector<Workload> textWorkloads();

/// Whether `raw` and `vellis` leave the same pixels, byte for byte.
bool haveSamePixels();

} // namespace vellis::bench
