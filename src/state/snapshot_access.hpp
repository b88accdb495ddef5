#pragma once

#include "state/snapshot_pieces.hpp"

/// \file
/// GL's side of a Snapshot: asking and writing.

namespace vellis::state::snapshot {

/// Goes through texture units, and back to the active ones in the end.
class UnitSwitch {
public:
    UnitSwitch() = default;
    ~UnitSwitch() { leave(); }
    UnitSwitch(const UnitSwitch&) = delete;
    UnitSwitch& operator=(const UnitSwitch&) = delete;

    /// Makes the unit active that a piece is of, if it is of one, else those of before.
    void goTo(Per per, unsigned int index) {
        const bool isOfUnit = per == Per::Unit || per == Per::FixedUnit || per == Per::ClientUnit;
        if (isOfUnit || isAway_)
            move(per, index, isOfUnit);
    }

private:
    void move(Per per, unsigned int index, bool isOfUnit);
    void leave();

    bool isAway_ = false;
    bool isClient_ = false;
    unsigned int saved_ = 0;   ///< as an enumerator of GL's
    unsigned int current_ = 0; ///< the same
};

/// Asks GL for all pieces. The words have room for those of the shape and the slack.
void read(const Shape& shape, Word* words);

/// Asks GL for all pieces again, and writes what differs. The context has all of the shape.
void restore(const Shape& shape, const Word* words);

/// What a piece has of objects that are gone: bits of Needs.
using Gone = unsigned int;

/// Writes the \p size words of a command, which begins with \p piece.
void write(const Piece& piece, unsigned int index, const Word* words, unsigned int size);

/// Writes 0 in place of names whose objects are gone.
/// \return which pieces have lost what they belong to.
Gone forgetGone(const Piece& piece, Word* words);

/// The values of a piece that reset() sets.
void initialWords(const Piece& piece, unsigned int size, Word* words);

} // namespace vellis::state::snapshot
