#pragma once

#include <vector>

#include "fuzz/machine/operations.hpp"

namespace vellis::test {

/// operations(), and what a host does with its GL contexts and with Contexts; often enough that
/// most runs have several.
const std::vector<Operation>& operationsOfSeveralContexts();

} // namespace vellis::test
