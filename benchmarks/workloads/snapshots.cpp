#include <utility>
#include <vector>

#include <vellis/gl.hpp>
#include <vellis/state/snapshot.hpp>

#include "state/later_enumerators.hpp"
#include "workloads/groups.hpp"

namespace vellis::bench {
namespace {

using state::Group;

/// What stands in the table of pieces, so far as a query by hand needs it.
struct Row {
    unsigned int pname;
    unsigned int target;
    enum Query {
        Integer,
        Float,
        Double,
        Boolean,
        Enabled,
        EnabledOfIndex,
        EnabledList,
        MaskList,
        DrawBuffers,
        Range,
        AttributeInteger,
        AttributePointer,
        AttributeFloat,
        MaskWord,
    } query;
    enum Per {
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
    } per;
    unsigned int groups;
};

enum Groups : unsigned int { Blending = 1, Buffers = 2, PixelStore = 4, Textures = 8, Others = 16 };

constexpr Row rows[] = {
#define VELLIS_PIECE(name, query, count, print, needs, per, write, target, initial, groups)        \
    {GL_##name, target, Row::query, Row::per, groups},
#include "state/snapshot_pieces.inc"
#undef VELLIS_PIECE
};

unsigned int limit(unsigned int pname) {
    int value = 0;
    glGetIntegerv(pname, &value);
    return static_cast<unsigned int>(value);
}

/// The queries as one writes them by hand: loops over enumerators, with the values in an array.
class Queries {
public:
    explicit Queries(unsigned int groups) : values_(1u << 14) {
        for (const Row& row : rows) {
            if ((row.groups & groups) != 0 && isKnown(row))
                at_[row.per][row.query].push_back(row);
        }
        askLimits();
    }

    /// Makes them all.
    void ask() {
        askLimits();
        int* out = values_.data();
        askPlain(out);
        askAttributes(out);
        for (const Row::Per per :
             {Row::UniformBuffer, Row::FeedbackBuffer, Row::StorageBuffer, Row::CounterBuffer}) {
            for (const Row& row : at_[per][Row::Range]) {
                for (unsigned int i = 0; i < counts_[per]; ++i)
                    glGetIntegeri_v(row.pname, i, out++);
            }
        }
        askUnits(out);
    }

private:
    void askLimits() {
        static constexpr std::pair<Row::Per, unsigned int> limits[] = {
            {Row::Attribute, GL_MAX_VERTEX_ATTRIBS},
            {Row::ClientUnit, GL_MAX_TEXTURE_COORDS},
            {Row::UniformBuffer, GL_MAX_UNIFORM_BUFFER_BINDINGS},
            {Row::FeedbackBuffer, GL_MAX_TRANSFORM_FEEDBACK_SEPARATE_ATTRIBS},
            {Row::StorageBuffer, GL_MAX_SHADER_STORAGE_BUFFER_BINDINGS},
            {Row::CounterBuffer, GL_MAX_ATOMIC_COUNTER_BUFFER_BINDINGS},
            {Row::Unit, GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS},
            {Row::FixedUnit, GL_MAX_TEXTURE_UNITS},
            {Row::ClipDistance, GL_MAX_CLIP_DISTANCES},
        };
        for (const auto& [per, pname] : limits)
            counts_[per] = limit(pname);
        numDrawBuffers_ = limit(GL_MAX_DRAW_BUFFERS);
    }

    /// Whether the context has it.
    static bool isKnown(const Row& row) {
        int value[16];
        void* pointer = nullptr;
        if (row.query == Row::AttributePointer)
            glGetVertexAttribPointerv(1, row.pname, &pointer);
        else if (row.query == Row::AttributeInteger || row.query == Row::AttributeFloat)
            glGetVertexAttribiv(1, row.pname, value);
        else if (row.query == Row::Enabled || row.query == Row::EnabledOfIndex)
            glIsEnabled(row.pname);
        else
            glGetIntegerv(row.pname, value);
        bool known = true;
        while (glGetError() != GL_NO_ERROR)
            known = false;
        return known;
    }

    void askPlain(int*& out) {
        const auto& plain = at_[Row::Context];
        for (const Row& row : plain[Row::Integer]) {
            glGetIntegerv(row.pname, out);
            out += 2;
        }
        for (const Row& row : plain[Row::Enabled])
            *out++ = glIsEnabled(row.pname);
        for (unsigned int i = 0; i < counts_[Row::ClipDistance]; ++i) {
            for (const Row& row : at_[Row::ClipDistance][Row::EnabledOfIndex])
                *out++ = glIsEnabled(row.pname + i);
        }
        float floats[4];
        for (const Row& row : plain[Row::Float])
            glGetFloatv(row.pname, floats);
        double doubles[2];
        for (const Row& row : plain[Row::Double])
            glGetDoublev(row.pname, doubles);
        unsigned char bytes[4];
        for (const Row& row : plain[Row::Boolean])
            glGetBooleanv(row.pname, bytes);
        for (unsigned int i = 0; i < numDrawBuffers_; ++i) {
            for (const Row& row : plain[Row::EnabledList])
                *out++ = glIsEnabledi(row.pname, i);
            for (const Row& row : plain[Row::MaskList])
                glGetBooleani_v(row.pname, i, bytes);
            if (!plain[Row::DrawBuffers].empty())
                glGetIntegerv(GL_DRAW_BUFFER0 + i, out++);
        }
        for (const Row& row : plain[Row::MaskWord])
            glGetIntegeri_v(row.pname, 0, out++);
    }

    void askAttributes(int*& out) {
        for (unsigned int i = 0; i < counts_[Row::Attribute]; ++i) {
            for (const Row& row : at_[Row::Attribute][Row::AttributeInteger])
                glGetVertexAttribiv(i, row.pname, out++);
            void* pointer = nullptr;
            for (const Row& row : at_[Row::Attribute][Row::AttributePointer])
                glGetVertexAttribPointerv(i, row.pname, &pointer);
            float floats[4];
            for (const Row& row : at_[Row::Attribute][Row::AttributeFloat]) {
                if (i != 0)
                    glGetVertexAttribfv(i, row.pname, floats);
            }
        }
        for (const Row& row : at_[Row::ClientUnit][Row::Enabled]) {
            for (unsigned int i = 0; i < counts_[Row::ClientUnit]; ++i) {
                glClientActiveTexture(GL_TEXTURE0 + i);
                *out++ = glIsEnabled(row.pname);
            }
            glClientActiveTexture(GL_TEXTURE0);
        }
    }

    void askUnits(int*& out) {
        const auto& units = at_[Row::Unit][Row::Integer];
        if (units.empty())
            return;
        for (unsigned int i = 0; i < counts_[Row::Unit]; ++i) {
            glActiveTexture(GL_TEXTURE0 + i);
            for (const Row& row : units)
                glGetIntegerv(row.pname, out++);
        }
        for (unsigned int i = 0; i < counts_[Row::FixedUnit]; ++i) {
            glActiveTexture(GL_TEXTURE0 + i);
            for (const Row& row : at_[Row::FixedUnit][Row::Enabled])
                *out++ = glIsEnabled(row.pname);
        }
        glActiveTexture(GL_TEXTURE0);
    }

    std::vector<Row> at_[10][14];
    unsigned int counts_[10] = {};
    unsigned int numDrawBuffers_ = 0;
    std::vector<int> values_;
};

struct RawTake {
    Queries queries{Blending | Buffers | PixelStore | Textures | Others};
    void operator()() { queries.ask(); }
};

struct Take {
    void operator()() const { state::Snapshot::take(); }
};

/// What the scope does between taking and restoring.
void drawOverlay() {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glActiveTexture(GL_TEXTURE1);
}

struct RawKept {
    Queries queries{Blending | Buffers | PixelStore | Textures};
    void operator()() {
        queries.ask();
        drawOverlay();
        // Asked again, what is another is written.
        queries.ask();
        glDisable(GL_BLEND);
        glBlendFunc(GL_ONE, GL_ZERO);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
        glActiveTexture(GL_TEXTURE0);
    }
};

struct Kept {
    void operator()() const {
        const state::Kept kept(Group::Blending | Group::Buffers | Group::PixelStore |
                               Group::Textures);
        drawOverlay();
    }
};

} // namespace

std::vector<Workload> snapshotWorkloads() {
    return {
        {"snapshot/take",
         "ask for all of GL's state",
         {{"raw", makeSide<RawTake>}, {"vellis", makeSide<Take>}},
         Where::Driver,
         Calls::Different},
        {"snapshot/kept",
         "keep four groups of state, change some of it, put that back",
         {{"raw", makeSide<RawKept>}, {"vellis", makeSide<Kept>}},
         Where::Driver,
         Calls::Different},
    };
}

} // namespace vellis::bench
