#include <cstring>

#include <vellis/gl.hpp>

#include "gl/entry_point.hpp"
#include "state/later_enumerators.hpp"
#include "state/snapshot_access.hpp"

namespace vellis::state::snapshot {
namespace {

/// Those of a buffer that is bound at an index: its name, and two of 64 bits.
constexpr unsigned int rangeWords = 5;

/// The most words that one command writes, and those that queries may write past them.
constexpr unsigned int mostWords = mostDrawBuffers + slack;

int* integers(Word* words) {
    return reinterpret_cast<int*>(words); // the signed ones of the same type
}

/// Bytes are kept as they are, so that a `bool` can be made of each.
void keep(unsigned char byte, Word* word) {
    const unsigned char truth = byte != GL_FALSE ? 1 : 0;
    std::memcpy(word, &truth, 1);
}

template <class T, unsigned int N, class Get>
void readAs(Word* words, Get get) {
    T values[N] = {};
    get(values);
    std::memcpy(words, values, sizeof values);
}

void readEnabledList(unsigned int pname, unsigned int size, Word* words) {
    if (size == 1 || glIsEnabledi == nullptr) {
        keep(glIsEnabled(pname), words);
        for (unsigned int i = 1; i < size; ++i)
            words[i] = words[0];
        return;
    }
    for (unsigned int i = 0; i < size; ++i)
        keep(glIsEnabledi(pname, i), words + i);
}

void readMaskList(unsigned int pname, unsigned int size, Word* words) {
    const bool hasOne = size == 1 || glGetBooleani_v == nullptr;
    for (unsigned int i = 0; i < size; ++i) {
        unsigned char bytes[4] = {};
        if (hasOne)
            glGetBooleanv(pname, bytes);
        else
            glGetBooleani_v(pname, i, bytes);
        std::memcpy(words + i, bytes, sizeof bytes);
    }
}

void readDrawBuffers(unsigned int size, Word* words) {
    glGetIntegerv(GL_DRAW_BUFFER, integers(words));
    for (unsigned int i = 1; i < size; ++i)
        glGetIntegerv(GL_DRAW_BUFFER0 + i, integers(words + i));
}

/// What a buffer that is bound at an index is asked for: the queries follow each other.
struct RangeQueries {
    unsigned int binding;
    unsigned int start;
    unsigned int size;
};
constexpr RangeQueries rangeQueries[] = {
    {GL_UNIFORM_BUFFER_BINDING, GL_UNIFORM_BUFFER_START, GL_UNIFORM_BUFFER_SIZE},
    {GL_TRANSFORM_FEEDBACK_BUFFER_BINDING, GL_TRANSFORM_FEEDBACK_BUFFER_START,
     GL_TRANSFORM_FEEDBACK_BUFFER_SIZE},
    {GL_SHADER_STORAGE_BUFFER_BINDING, GL_SHADER_STORAGE_BUFFER_BINDING + 1,
     GL_SHADER_STORAGE_BUFFER_BINDING + 2},
    {GL_ATOMIC_COUNTER_BUFFER_BINDING, GL_ATOMIC_COUNTER_BUFFER_BINDING + 1,
     GL_ATOMIC_COUNTER_BUFFER_BINDING + 2},
};

void readSize(unsigned int pname, unsigned int index, Word* words) {
    GLint64 value = 0;
    callIfLoaded(glGetInteger64i_v, pname, index, &value);
    std::memcpy(words, &value, sizeof value);
}

/// The range of a buffer that is bound at an index.
void readRange(unsigned int pname, unsigned int index, Word* words) {
    for (const RangeQueries& row : rangeQueries) {
        if (row.binding == pname) {
            readSize(row.start, index, words + 1);
            readSize(row.size, index, words + 3);
        }
    }
}

void readPointer(unsigned int index, unsigned int pname, Word* words) {
    void* pointer = nullptr;
    glGetVertexAttribPointerv(index, pname, &pointer);
    std::memcpy(words, &pointer, sizeof pointer);
}

void readOther(const Shape& shape, const Piece& piece, unsigned int index, unsigned int size,
               Word* words) {
    const unsigned int pname = piece.pname;
    switch (piece.query) {
    case Query::Enabled:
    case Query::AttributeInteger:
    case Query::Range:
        break; // asked for without a detour
    case Query::Integer:
        glGetIntegerv(pname, integers(words));
        break;
    case Query::EnabledOfIndex:
        keep(glIsEnabled(pname + index), words);
        break;
    case Query::Float:
        readAs<float, 4>(words, [=](float* values) { glGetFloatv(pname, values); });
        break;
    case Query::Double:
        readAs<double, 2>(words, [=](double* values) { glGetDoublev(pname, values); });
        break;
    case Query::Boolean: {
        unsigned char bytes[4] = {};
        glGetBooleanv(pname, bytes);
        keep(bytes[0], words);
        break;
    }
    case Query::EnabledList:
        readEnabledList(pname, size, words);
        break;
    case Query::MaskList:
        readMaskList(pname, size, words);
        break;
    case Query::DrawBuffers:
        readDrawBuffers(size, words);
        break;
    case Query::AttributePointer:
        readPointer(index, pname, words);
        break;
    case Query::AttributeFloat:
        // The first one's is the vertex itself where the fixed function is, or may be.
        if (index != 0 || (shape.has & (V32 | Compatible)) == V32)
            readAs<float, 4>(words,
                             [=](float* values) { glGetVertexAttribfv(index, pname, values); });
        break;
    case Query::MaskWord:
        glGetIntegeri_v(pname, 0, integers(words));
        break;
    }
}

/// Asks for the piece at which a walk is. Most of them are of a few kinds, which take no detour.
inline void readPiece(const Shape& shape, const Walk& at, Word* words) {
    const unsigned int pname = at.pname();
    const unsigned int size = at.size();
    words[0] = 0; // what GL refuses to tell is 0
    switch (at.query()) {
    case Query::Enabled:
        return keep(glIsEnabled(pname), words);
    case Query::AttributeInteger:
        return glGetVertexAttribiv(at.index(), pname, integers(words));
    case Query::Range:
        for (unsigned int i = 1; i < rangeWords; ++i)
            words[i] = 0; // where there is no buffer, there is no range
        glGetIntegeri_v(pname, at.index(), integers(words));
        if (words[0] != 0)
            readRange(pname, at.index(), words);
        return;
    case Query::Integer:
        if (size == 1)
            return glGetIntegerv(pname, integers(words));
        [[fallthrough]];
    default:
        for (unsigned int i = 1; i < size; ++i)
            words[i] = 0;
        readOther(shape, at.piece(), at.index(), size, words);
    }
}

void readIntegers(const std::uint16_t* pnames, unsigned int number, Word* words) {
    for (unsigned int i = 0; i < number; ++i) {
        words[i] = 0;
        glGetIntegerv(pnames[i], integers(words + i));
    }
}

bool areEqual(const Word* some, const Word* others, unsigned int size) {
    for (unsigned int i = 0; i < size; ++i) {
        if (some[i] != others[i])
            return false;
    }
    return true;
}

} // namespace

void UnitSwitch::move(Per per, unsigned int index, bool isOfUnit) {
    const bool isClient = per == Per::ClientUnit;
    if (isAway_ && (!isOfUnit || isClient != isClient_))
        leave();
    if (!isOfUnit)
        return;
    if (!isAway_) {
        int active = 0;
        glGetIntegerv(isClient ? GL_CLIENT_ACTIVE_TEXTURE : GL_ACTIVE_TEXTURE, &active);
        saved_ = current_ = static_cast<unsigned int>(active);
        isAway_ = true;
        isClient_ = isClient;
    }
    const unsigned int unit = GL_TEXTURE0 + index;
    if (unit == current_)
        return;
    current_ = unit;
    if (isClient)
        glClientActiveTexture(unit);
    else
        glActiveTexture(unit);
}

void UnitSwitch::leave() {
    isAway_ = false;
    if (current_ == saved_)
        return;
    if (isClient_)
        glClientActiveTexture(saved_);
    else
        glActiveTexture(saved_);
    current_ = saved_;
}

void read(const Shape& shape, Word* words) {
    UnitSwitch units;
    for (Walk at(shape); at.next();) {
        if (at.isFirst())
            units.goTo(at.piece().per, at.index());
        if (const unsigned int number = at.numIntegers()) {
            readIntegers(at.pnames(), number, words + at.offset());
            at.skip();
        } else {
            readPiece(shape, at, words + at.offset());
        }
    }
}

namespace {

/// Puts back what differs of a command, or of a piece.
Gone putBack(const Piece& piece, unsigned int index, const Word* before, const Word* now,
             unsigned int size) {
    if (areEqual(before, now, size))
        return 0;
    Word wanted[mostWords];
    std::memcpy(wanted, before, size * sizeof(Word));
    const Gone gone = forgetGone(piece, wanted);
    if (!areEqual(wanted, now, size))
        write(piece, index, wanted, size);
    return gone;
}

} // namespace

void restore(const Shape& shape, const Word* words) {
    UnitSwitch units;
    Gone gone = 0;
    Walk at(shape);
    for (bool isThere = at.next(); isThere;) {
        const Piece& piece = at.piece();
        const unsigned int index = at.index();
        const Word* const before = words + at.offset();
        if (at.isFirst())
            units.goTo(piece.per, index);
        Word now[mostWords];
        if (const unsigned int number = at.numIntegers()) {
            readIntegers(at.pnames(), number, now);
            for (unsigned int i = 0; i < number; ++i)
                putBack(at.pieceAfter(i), index, before + i, now + i, 1);
            at.skip();
            isThere = at.next();
            continue;
        }
        const bool isAsked = (piece.needs & gone) == 0;
        unsigned int size = 0;
        do { // the rows of one command
            if (isAsked)
                readPiece(shape, at, now + size);
            size += at.size();
            isThere = at.next();
        } while (isThere && at.piece().write == Write::WithPrevious);
        if (isAsked)
            gone |= putBack(piece, index, before, now, size);
    }
}

} // namespace vellis::state::snapshot
