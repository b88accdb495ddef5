#pragma once

#include <cstdint>
#include <string>

/// \file
/// What a Snapshot consists of.

namespace vellis::state::snapshot {

/// What a context may have, as bits: a piece says what it needs.
enum Needs : unsigned int {
    Compatible = 1u << 0, ///< the fixed function
    V30 = 1u << 1,        ///< OpenGL 3.0, and so on
    V31 = 1u << 2,
    V32 = 1u << 3,
    V40 = 1u << 4,
    V42 = 1u << 5,
    V43 = 1u << 6,
    V44 = 1u << 7,
    V46 = 1u << 8,
    Samplers = 1u << 9, ///< sampler objects, and so on
    Pipelines = 1u << 10,
    ClipControl = 1u << 11,
    Instances = 1u << 12,
    Framebuffers = 1u << 13,
    Arrays = 1u << 14,
    Array0 = 1u << 15,  ///< no vertex array object is bound, and attributes are there all the same
    OfArray = 1u << 16, ///< that the piece belongs to the vertex array, and so on
    OfDraw = 1u << 17,
    OfRead = 1u << 18,
};

/// The values of Group, and what belongs to none of them.
enum Groups : unsigned int {
    Blending = 1,
    Buffers = 2,
    PixelStore = 4,
    Textures = 8,
    Others = 16,
    Everything = 31,
};

/// How GL is asked.
enum class Query : std::uint32_t {
    Integer,
    Float,
    Double,
    Boolean,
    Enabled,
    EnabledOfIndex, ///< the index is added to the name
    EnabledList,    ///< of each draw buffer
    MaskList,
    DrawBuffers,
    Range, ///< the buffer, the offset and the size
    AttributeInteger,
    AttributePointer,
    AttributeFloat,
    MaskWord,
};

/// How values are written as text. Names of objects come last, with their kinds.
enum class Print : std::uint32_t {
    Decimal,
    Hexadecimal,
    Float,
    Boolean,
    MaskList,
    Enum,
    ColorBuffer,
    Unit,
    Range,
    Buffer,
    Texture,
    Sampler,
    VertexArray,
    Framebuffer,
    Renderbuffer,
    Program,
    Pipeline,
};

/// What there are several of.
enum class Per : std::uint32_t {
    Context,
    Attribute,
    ClientUnit,
    UniformBuffer,
    FeedbackBuffer,
    StorageBuffer,
    CounterBuffer,
    Unit,
    FixedUnit,
    ClipDistance,
    DrawBuffer, ///< of lists
};
constexpr unsigned int numPer = 11;

/// How a piece is put back.
enum class Write : std::uint32_t {
    Never,        ///< it cannot change
    WithPrevious, ///< by the command of the row above
    Record,       ///< as the State of that name
    Call,         ///< by a command of its own
    Switch,
    SwitchList,
    ClientSwitch,
    MaskList,
    DrawBuffers,
    Store,
    Transfer,
    Hint,
    Buffer,
    Range,
    Texture,
    Sampler,
    Framebuffers,
    VertexArray,
    Attribute,
    AttributeSwitch,
    AttributeDivisor,
    AttributeValue,
};

/// What reset() sets the values of a piece to.
enum class Initial : std::uint32_t {
    AsItIs, ///< it sets none
    Zero,
    One,
    Four,
    AllBits,
    Unit0,
    CounterClockwise,
    Fill,
    LowerLeft,
    NegativeOneToOne,
};

/// A piece of state: a row of snapshot_pieces.inc, in little room.
struct Piece {
    std::uint16_t pname;
    std::uint16_t target;
    std::uint32_t needs : 19;
    Initial initial : 4;
    std::uint32_t count : 3;
    Query query : 4;
    Print print : 5;
    Per per : 4;
    Write write : 5;
    std::uint32_t groups : 5;
};
static_assert(sizeof(Piece) == 12);

/// All of them.
extern const Piece pieces[];
extern const unsigned int numPieces;

/// The name of a piece.
std::string nameOf(const Piece& piece);

/// What values are kept in: 32 bits of whatever type.
using Word = unsigned int;

/// What the state of a context consists of: what it has, and how many.
struct Shape {
    unsigned int context; ///< the index of the Context
    unsigned int has;     ///< bits of Needs
    unsigned int groups;  ///< bits of Groups
    unsigned int counts[numPer];

    /// That of the current context, for some groups.
    static Shape here(unsigned int groups);

    /// Whether there is such a piece.
    bool contains(const Piece& piece) const {
        return (piece.needs & ~has) == 0 && (piece.groups & groups) != 0;
    }

    unsigned int count(Per per) const { return counts[static_cast<unsigned int>(per)]; }

    /// How many words a piece has.
    unsigned int size(const Piece& piece) const {
        if (piece.count == 0)
            return count(Per::DrawBuffer);
        return piece.query == Query::Double ? 2u * piece.count : piece.count;
    }

    /// How many words all pieces have.
    unsigned int size() const;
};

/// More draw buffers than drivers have.
constexpr unsigned int mostDrawBuffers = 16;

/// No block of rows has more.
constexpr unsigned int mostPieces = 160;

/// The words that queries may write past the last piece: some give more values than are kept.
constexpr unsigned int slack = 4;

/// Goes through all pieces of a shape, in their order.
class Walk {
public:
    explicit Walk(const Shape& shape) : shape_(shape) {}

    /// Goes on to the first piece, or the next one.
    /// \return false after the last.
    bool next() {
        offset_ += size_;
        if (++at_ >= numRows_) {
            at_ = 0;
            if (++index_ >= count_ && !nextBlock())
                return false;
        }
        size_ = sizes_[at_];
        return true;
    }

    const Piece& piece() const { return pieces[rows_[at_]]; }
    unsigned int pname() const { return pnames_[at_]; } ///< the piece's
    Query query() const { return queries_[at_]; }       ///< the piece's
    unsigned int index() const { return index_; }       ///< among what there are several of
    unsigned int offset() const { return offset_; }     ///< of its first word
    unsigned int size() const { return size_; }         ///< in words
    bool isFirst() const { return at_ == 0; }           ///< of its index

    /// \name Short cut
    /// Of texture units there are many, and all their pieces are one integer each.
    /// @{

    /// How many pieces of this index there are, from the first on; 0 where they are not like that.
    unsigned int numIntegers() const { return at_ == 0 ? numIntegers_ : 0; }
    /// What they are asked for.
    const std::uint16_t* pnames() const { return pnames_; }
    /// The piece that comes so many later.
    const Piece& pieceAfter(unsigned int number) const { return pieces[rows_[at_ + number]]; }
    /// Has next() go on to the first of the next index.
    void skip() {
        at_ = numIntegers_ - 1;
        offset_ += at_;
    }

    /// @}

    /// Whether this piece comes before the other's, of whatever shape.
    bool isBefore(const Walk& other) const;

private:
    bool nextBlock();

    const Shape& shape_;
    unsigned int offset_ = 0;
    unsigned int size_ = 0;
    unsigned int at_ = 0; ///< among the rows that there are
    unsigned int numRows_ = 0;
    unsigned int index_ = 0;
    unsigned int count_ = 0;
    unsigned int begin_ = 0; ///< of the block: of the rows of which there are as many
    unsigned int end_ = 0;
    std::uint8_t rows_[mostPieces]; ///< those of the block that there are
    std::uint8_t sizes_[mostPieces];
    Query queries_[mostPieces];
    unsigned int numIntegers_ = 0;
    std::uint16_t pnames_[mostPieces];
};

} // namespace vellis::state::snapshot
