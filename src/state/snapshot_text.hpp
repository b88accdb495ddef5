#pragma once

#include <string>

#include "state/snapshot_pieces.hpp"

/// \file
/// Pieces of a Snapshot as text.

namespace vellis::state::snapshot {

/// The name of a piece, with its number among several.
std::string nameText(const Piece& piece, unsigned int index);

/// The values of a piece.
std::string valueText(const Piece& piece, const Word* words, unsigned int size);

} // namespace vellis::state::snapshot
