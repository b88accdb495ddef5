#include <vellis/state/snapshot.hpp>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>

#include <vellis/gl.hpp>

#include "gl/log.hpp"
#include "gl/thread.hpp"
#include "state/snapshot_access.hpp"
#include "state/snapshot_text.hpp"

namespace vellis::state {
namespace {

using snapshot::Piece;
using snapshot::Shape;
using snapshot::Walk;
using snapshot::Word;

/// The shape stands before the values.
constexpr unsigned int shapeWords = sizeof(Shape) / sizeof(Word);
static_assert(sizeof(Shape) % sizeof(Word) == 0);

Shape shapeOf(const Word* words) {
    Shape shape;
    std::memcpy(&shape, words, sizeof shape);
    return shape;
}

/// Whether there is a GL whose state can be asked for.
bool isThereGl() {
    return glGetIntegerv != nullptr && gl::thread().context != gl::nowhere;
}

/// Fills words with the shape and the values.
void take(const Shape& shape, Word* words) {
    std::memcpy(words, &shape, sizeof shape);
    read(shape, words + shapeWords);
}

/// Whether what is restored has what was taken. Which vertex array is bound may change.
bool isOfHere(const Shape& taken) {
    if (taken.context != gl::thread().context || !isThereGl())
        return false;
    const Shape here = Shape::here(taken.groups);
    constexpr unsigned int changing = snapshot::Array0 | snapshot::OfArray;
    return ((taken.has ^ here.has) & ~changing) == 0 &&
           std::memcmp(taken.counts, here.counts, sizeof here.counts) == 0;
}

bool restoreHere(const Word* words) {
    const Shape shape = shapeOf(words);
    if (!isOfHere(shape)) {
        internal::printLine(internal::logTitle,
                            "a snapshot of GL state from another Context is not restored");
        return false;
    }
    restore(shape, words + shapeWords);
    return true;
}

Difference makeDifference(const std::string& name, const std::string& before,
                          const std::string& after) {
    const auto text = std::make_shared<const std::string>(name + before + after);
    const std::string_view view = *text;
    return {view.substr(0, name.size()), view.substr(name.size(), before.size()),
            view.substr(name.size() + before.size()), text};
}

/// Writes what both have where it differs, from \p out on; counts it alone where that is null.
std::size_t compare(const Word* before, const Word* after, Difference* out) {
    const Shape shapes[] = {shapeOf(before), shapeOf(after)};
    std::size_t number = 0;
    Walk a(shapes[0]);
    Walk b(shapes[1]);
    for (bool isThere = a.next() && b.next(); isThere;) {
        if (a.isBefore(b)) {
            isThere = a.next();
            continue;
        }
        if (b.isBefore(a)) {
            isThere = b.next();
            continue;
        }
        const Word* const old = before + shapeWords + a.offset();
        const Word* const now = after + shapeWords + b.offset();
        if (a.size() != b.size() || std::memcmp(old, now, a.size() * sizeof(Word)) != 0) {
            if (out != nullptr)
                out[number] = makeDifference(nameText(a.piece(), a.index()),
                                             valueText(a.piece(), old, a.size()),
                                             valueText(a.piece(), now, b.size()));
            ++number;
        }
        isThere = a.next() && b.next();
    }
    return number;
}

} // namespace

Snapshot Snapshot::take() {
    Snapshot taken;
    if (!isThereGl())
        return taken;
    const Shape shape = Shape::here(snapshot::Everything);
    taken.words_ = std::vector<Word>(shapeWords + shape.size() + snapshot::slack);
    state::take(shape, taken.words_.data());
    std::fill(taken.words_.end() - snapshot::slack, taken.words_.end(), 0);
    return taken;
}

bool Snapshot::restore() const {
    if (isEmpty()) {
        internal::printLine(internal::logTitle, "an empty snapshot of GL state is not restored");
        return false;
    }
    return restoreHere(words_.data());
}

std::vector<Difference> differences(const Snapshot& before, const Snapshot& after) {
    if (before.isEmpty() || after.isEmpty())
        return {};
    const Word* const words[] = {before.words_.data(), after.words_.data()};
    std::vector<Difference> all(compare(words[0], words[1], nullptr));
    compare(words[0], words[1], all.data());
    return all;
}

std::ostream& operator<<(std::ostream& stream, const Difference& difference) {
    return stream << difference.name << ": " << difference.before << " -> " << difference.after;
}

Kept::Kept() {
    take(snapshot::Everything);
}

Kept::Kept(Group groups) {
    // What is no group is nothing.
    take(static_cast<unsigned int>(groups) & (snapshot::Everything & ~snapshot::Others));
}

void Kept::take(unsigned int groups) {
    if (!isThereGl() || groups == 0)
        return;
    const Shape shape = Shape::here(groups);
    const std::size_t size = shapeWords + shape.size() + snapshot::slack;
    if (size > sizeof few_ / sizeof *few_)
        many_.reset(new Word[size]);
    words_ = many_ != nullptr ? many_.get() : few_;
    state::take(shape, words_);
}

Kept::~Kept() {
    if (words_ != nullptr)
        restoreHere(words_);
}

void reset() {
    if (!isThereGl())
        return;
    Shape shape = Shape::here(snapshot::Everything);
    if ((shape.has & snapshot::Compatible) == 0)
        shape.has &= ~snapshot::OfArray; // where no vertex array is bound, nothing belongs to it
    Walk at(shape);
    for (bool isThere = at.next(); isThere;) {
        const Piece& piece = at.piece();
        const unsigned int index = at.index();
        Word words[snapshot::mostDrawBuffers + snapshot::slack];
        unsigned int size = 0;
        do { // the rows of one command
            initialWords(at.piece(), at.size(), words + size);
            size += at.size();
            isThere = at.next();
        } while (isThere && at.piece().write == snapshot::Write::WithPrevious);
        if (piece.initial != snapshot::Initial::AsItIs)
            write(piece, index, words, size);
    }
}

} // namespace vellis::state
