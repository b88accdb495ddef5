#pragma once

namespace vellis::state {

/// Writes the values of the record of that enumerator, which must be one of the table, with its
/// command. \p words are the bytes of the values, one after the other.
[[gnu::cold]] void writeRecord(unsigned int pname, const void* words);

} // namespace vellis::state
