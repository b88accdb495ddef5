/// The operations of state records and of diagnostics, and what a program does with GL itself.

#include <vellis/gl.hpp>

#include "fuzz/machine/operations.hpp"

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
#include "state/state_records.inc"
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

void setUnit(World&, Bytes& bytes) {
    const int unit = static_cast<int>(bytes.below(4) != 3 ? bytes.below(4) : bytes.next());
    state::set(state::State<int, 1, GL_ACTIVE_TEXTURE>{{GL_TEXTURE0 + unit}});
}

void check(World&, Bytes& bytes) {
    internal::check_glerror();
    internal::check_framebuffer_complete(bytes.flag() ? GL_READ_FRAMEBUFFER : bytes.next());
}

} // namespace

std::vector<Operation> stateOperations() {
    return {
        {"state: get and set", getAndSetRecord, {}},
        {"state: set an alignment", setAlignment, {{}, {GL_PACK_ALIGNMENT, GL_UNPACK_ALIGNMENT}}},
        {"state: set the texture unit", setUnit, {{}, {GL_ACTIVE_TEXTURE}}},
        {"internal: checks", check, {}},
    };
}

} // namespace vellis::test
