/// The operations of state records and of diagnostics, and what a program does with GL itself.

#include <algorithm>
#include <iterator>
#include <vector>

#include <vellis/gl.hpp>

#include "fuzz/machine/operations.hpp"
#include "fuzz/machine/pixel_stores.hpp"

namespace vellis::test {
namespace {

/// Reads a record and writes it back, which changes nothing.
template <class Record>
void getAndSet() {
    Record record{};
    state::get(record);
    state::set(record);
}

constexpr void (*recordsGetAndSet[])() = {
#define VELLIS_STATE(T, N, pname, queries, command) getAndSet<state::State<T, N, pname>>,
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
};

void getAndSetRecord(World&, Bytes& bytes) {
    bytes.oneOf(recordsGetAndSet)();
}

void setAlignment(World&, Bytes& bytes) {
    static constexpr int alignments[] = {4, 1, 2, 8, 3, 0};
    const int alignment = bytes.oneOf(alignments);
    if (bytes.flag())
        state::set(state::State<int, 1, GL_PACK_ALIGNMENT>{{alignment}});
    else
        state::set(state::State<int, 1, GL_UNPACK_ALIGNMENT>{{alignment}});
}

void setPixelStore(World&, Bytes& bytes) {
    // Small ones: the memory of the world must do for all transfers.
    static constexpr int values[] = {0, 1, 2, 3, -1};
    static constexpr int lengths[] = {0, 1, 17, 20, -1};
    const std::size_t parameter = bytes.below(std::size(pixelStores));
    const bool isLength = parameter % pixelStoresPerDirection < 2;
    glPixelStorei(pixelStores[parameter], bytes.oneOf(isLength ? lengths : values));
}

void setUnit(World&, Bytes& bytes) {
    const int unit = static_cast<int>(bytes.below(4) != 3 ? bytes.below(4) : bytes.next());
    state::set(state::State<int, 1, GL_ACTIVE_TEXTURE>{{GL_TEXTURE0 + unit}});
}

void takeSnapshot(World& world, Bytes& bytes) {
    pick(world.snapshots, bytes) = state::Snapshot::take();
}

/// Whether a piece may be another than in the snapshot that was restored: its name is gone, or the
/// object that it belongs to.
bool mayDiffer(const state::Difference& difference) {
    static constexpr const char* ofObjects[] = {"GL_DRAW_BUFFER", "GL_READ_BUFFER",
                                                "GL_ELEMENT_ARRAY_BUFFER", "GL_VERTEX_ATTRIB"};
    return difference.after == "0" ||
           std::any_of(std::begin(ofObjects), std::end(ofObjects),
                       [&](const char* prefix) { return difference.name.rfind(prefix, 0) == 0; });
}

void restoreSnapshot(World& world, Bytes& bytes) {
    const state::Snapshot& snapshot = pick(world.snapshots, bytes);
    if (snapshot.isEmpty() || !snapshot.restore())
        return;
    const state::Snapshot now = state::Snapshot::take();
    const auto left = differences(snapshot, now);
    world.require(std::all_of(left.begin(), left.end(), mayDiffer),
                  "a snapshot is not restored as it was taken");
    world.require(snapshot.restore() && now == state::Snapshot::take(),
                  "restoring a snapshot again changes something");
}

void keepState(World&, Bytes& bytes) {
    state::Kept kept(static_cast<state::Group>(bytes.next()));
    if (bytes.flag())
        kept.dismiss();
}

void resetState(World&, Bytes&) {
    state::reset();
}

/// All states that are looked at.
std::vector<GLenum> everything() {
    std::vector<GLenum> all;
    for (const ObservedState& state : observedStates())
        all.push_back(state.pname);
    return all;
}

void check(World&, Bytes& bytes) {
    internal::check_glerror();
    internal::check_framebuffer_complete(bytes.flag() ? GL_READ_FRAMEBUFFER : bytes.next());
}

constexpr const char* labels[] = {"", "water", "a label that needs memory of its own", nullptr};

/// Labels what there is, with and without the name of its object known in the Context in use.
void label(World& world, Bytes& bytes) {
    const char* const text = bytes.oneOf(labels);
    const std::size_t place = bytes.below(2);
    internal::label(world.vertices[place].object, text);
    internal::label(world.pixels[place].object, text);
    internal::label(world.vertexShaders[place], text);
    internal::label(world.programs[place].object, text);
    internal::label(world.shapes[place].drawable, text);
    internal::label_of(world.programs[place].object);
}

void debugOutput(World&, Bytes& bytes) {
    internal::DebugOutputSettings settings;
    settings.callback = [](const internal::DebugMessage&) {};
    if (bytes.flag())
        internal::start_debug_output(settings);
    else
        internal::stop_debug_output();
}

} // namespace

std::vector<Operation> stateOperations() {
    return {
        {"state: get and set", getAndSetRecord, {}},
        {"state: set an alignment", setAlignment, {{}, {GL_PACK_ALIGNMENT, GL_UNPACK_ALIGNMENT}}},
        {"state: set a pixel store",
         setPixelStore,
         {{}, {std::begin(pixelStores), std::end(pixelStores)}}},
        {"state: set the texture unit", setUnit, {{}, {GL_ACTIVE_TEXTURE}}},
        {"state: take a snapshot", takeSnapshot, {}},
        {"state: restore a snapshot", restoreSnapshot, {{}, everything()}},
        {"state: keep", keepState, {}},
        {"state: reset", resetState, {{}, everything()}},
        {"internal: checks", check, {}},
        {"internal: label", label, {}},
        {"internal: start or stop debug output", debugOutput, {}},
    };
}

} // namespace vellis::test
