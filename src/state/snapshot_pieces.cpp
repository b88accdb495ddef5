#include "state/snapshot_pieces.hpp"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <tuple>

#include <vellis/gl.hpp>

#include "gl/capability.hpp"
#include "gl/joined_names.hpp"
#include "gl/thread.hpp"
#include "state/later_enumerators.hpp"

namespace vellis::state::snapshot {

const Piece pieces[] = {
#define VELLIS_PIECE(name, query, count, print, needs, per, write, target, initial, groups)        \
    {GL_##name,    target,       needs,    Initial::initial, count,                                \
     Query::query, Print::print, Per::per, Write::write,     groups},
#include "state/snapshot_pieces.inc"
#undef VELLIS_PIECE
};
const unsigned int numPieces = static_cast<unsigned int>(std::size(pieces));

static_assert(std::size(pieces) <= 256);

namespace {

constexpr const char* nameList[] = {
#define VELLIS_PIECE(name, query, count, print, needs, per, write, target, initial, groups) #name,
#include "state/snapshot_pieces.inc"
#undef VELLIS_PIECE
};
constexpr auto names = joinNames<joinNames<8192>(nameList).size>(nameList);
static_assert(isReadable(names, sizeof "GL_"));

/// A limit of the context, so far as it is sensible.
unsigned int limit(unsigned int pname, int least = 0, int most = 1024) {
    int value = 0;
    glGetIntegerv(pname, &value);
    return static_cast<unsigned int>(std::clamp(value, least, most));
}

/// The bits of what the context has, but for what depends on what is bound.
unsigned int capabilities() {
    const int version = GLVersion.major * 10 + GLVersion.minor;
    const struct {
        bool has;
        unsigned int bit;
    } rows[] = {
        {gl::keepsFixedFunctions(), Compatible},
        {GLAD_GL_VERSION_3_0 != 0, V30},
        {GLAD_GL_VERSION_3_1 != 0, V31},
        {GLAD_GL_VERSION_3_2 != 0, V32},
        {version >= 40, V40},
        {version >= 42, V42},
        {version >= 43, V43},
        {version >= 44, V44},
        {version >= 46, V46},
        {glBindSampler != nullptr, Samplers},
        {glBindProgramPipeline != nullptr, Pipelines},
        {glClipControl != nullptr, ClipControl},
        {glVertexAttribDivisorARB != nullptr, Instances},
        {glBindFramebuffer != nullptr, Framebuffers},
        {glBindVertexArray != nullptr, Arrays},
    };
    unsigned int bits = OfDraw | OfRead;
    for (const auto& row : rows)
        bits |= row.has ? row.bit : 0;
    return bits;
}

/// Whether attributes and the index buffer can be asked for: a core context has none of its own.
unsigned int arrayBits(unsigned int has) {
    int array = 0;
    if ((has & Arrays) != 0)
        glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &array);
    if (array != 0)
        return OfArray;
    return (has & Compatible) != 0 ? OfArray | Array0 : 0;
}

/// What there are several of, how many of them GL tells, and for which pieces that is asked.
struct Limit {
    Per per;
    unsigned int pname;
    unsigned int needs;
    unsigned int groups;
};
constexpr Limit limits[] = {
    {Per::Attribute, GL_MAX_VERTEX_ATTRIBS, 0, Others},
    {Per::ClientUnit, GL_MAX_TEXTURE_COORDS, Compatible, Others},
    {Per::UniformBuffer, GL_MAX_UNIFORM_BUFFER_BINDINGS, V31, Buffers},
    {Per::FeedbackBuffer, GL_MAX_TRANSFORM_FEEDBACK_SEPARATE_ATTRIBS, V30, Buffers},
    {Per::StorageBuffer, GL_MAX_SHADER_STORAGE_BUFFER_BINDINGS, V43, Buffers},
    {Per::CounterBuffer, GL_MAX_ATOMIC_COUNTER_BUFFER_BINDINGS, V42, Buffers},
    {Per::Unit, GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, 0, Textures},
    {Per::FixedUnit, GL_MAX_TEXTURE_UNITS, Compatible, Others},
    {Per::ClipDistance, GL_MAX_CLIP_DISTANCES, 0, Others},
};

} // namespace

std::string nameOf(const Piece& piece) {
    NameReader reader(names, "GL_");
    const char* name = reader.next();
    for (const Piece* row = pieces; row != &piece; ++row)
        name = reader.next();
    return name;
}

Shape Shape::here(unsigned int groups) {
    Shape shape = {};
    shape.context = gl::thread().context;
    shape.groups = groups;
    shape.has = capabilities();
    if ((groups & (Buffers | Others)) != 0)
        shape.has |= arrayBits(shape.has);
    for (const Limit& row : limits) {
        if ((row.groups & groups) != 0 && (row.needs & ~shape.has) == 0)
            shape.counts[static_cast<unsigned int>(row.per)] = limit(row.pname);
    }
    shape.counts[static_cast<unsigned int>(Per::Context)] = 1;
    const bool hasLists = (groups & (Blending | Others)) != 0;
    shape.counts[static_cast<unsigned int>(Per::DrawBuffer)] =
        hasLists ? limit(GL_MAX_DRAW_BUFFERS, 1, static_cast<int>(mostDrawBuffers)) : 1;
    return shape;
}

unsigned int Shape::size() const {
    unsigned int all = 0;
    for (const Piece& piece : pieces)
        all += contains(piece) ? count(piece.per) * size(piece) : 0;
    return all;
}

bool Walk::nextBlock() {
    do {
        begin_ = end_;
        if (begin_ == numPieces)
            return false;
        const Per per = pieces[begin_].per;
        numRows_ = index_ = 0;
        count_ = shape_.count(per);
        for (; end_ < numPieces && pieces[end_].per == per; ++end_) {
            if (!shape_.contains(pieces[end_]))
                continue;
            rows_[numRows_] = static_cast<std::uint8_t>(end_);
            pnames_[numRows_] = pieces[end_].pname;
            queries_[numRows_] = pieces[end_].query;
            sizes_[numRows_++] = static_cast<std::uint8_t>(shape_.size(pieces[end_]));
        }
        numIntegers_ = per == Per::Unit ? numRows_ : 0;
    } while (count_ == 0 || numRows_ == 0);
    return true;
}

bool Walk::isBefore(const Walk& other) const {
    return std::tie(begin_, index_, rows_[at_]) <
           std::tie(other.begin_, other.index_, other.rows_[other.at_]);
}

} // namespace vellis::state::snapshot
