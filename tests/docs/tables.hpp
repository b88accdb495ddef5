#pragma once

#include <string>
#include <vector>

#include "operations/operations.hpp"

/// \file
/// The generated parts of the documentation's pages, in Markdown.

namespace vellis::test {

/// Every entry point, and the operations that call it.
std::string entryPointTable(const std::vector<Use>& uses);

/// For every class the operations that are among the uses.
std::string classTable(const std::vector<Use>& uses);

/// Every operation of a family, and the entry points that it calls, in the order of their first
/// call.
std::string operationTable(const std::vector<Use>& uses, const std::string& family);

/// For every class of a family a table of its operations and what they do to GL's state.
std::string stateTables(const std::vector<Use>& uses, const std::string& family);

/// The names of the entry points that the uses call.
std::vector<std::string> entryPoints(const std::vector<Use>& uses);

} // namespace vellis::test
