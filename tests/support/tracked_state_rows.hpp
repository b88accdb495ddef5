#pragma once

#include <string>
#include <vector>

#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

/// \file
/// The tracked states as their print and diff must show them, for the tests of both.

/// Two values of a tracked state, and their texts.
struct TrackedStateRow {
    std::string label;
    unsigned int pname;
    std::string query; ///< the GL call that reads it
    std::vector<double> first;
    std::string firstText;
    std::vector<double> second;
    std::string secondText;
};

/// All of them, in the order of the print.
const std::vector<TrackedStateRow>& trackedStateRows();

/// Lets GL have the first or the second value of every state.
void setFirstValues(vellis::test::FakeGl& gl);
void setSecondValues(vellis::test::FakeGl& gl);
