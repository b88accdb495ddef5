#include "gl/context_state.hpp"

#include <mutex>

namespace vellis::gl {
namespace {

/// What guards which thread has a Context in use: each thread changes that of others.
std::mutex mutex; // which needs neither construction nor destruction

/// ContextState::isWatched, of the process.
bool isProcessWatched = false;

void setWatched(Thread& thread, bool on) noexcept {
    setShared(thread.unbound, on ? watched : 0);
    setShared(thread.program, 0u);
}

/// Takes from \p other what it has in use, for whoever comes next. \p index is what it compares
/// with from then on.
void putDown(Thread& other, unsigned int index) noexcept {
    if (other.state != nullptr) {
        other.state->binding = other.binding;
        other.state->user.store(nullptr, std::memory_order_relaxed);
        setShared(other.state, static_cast<ContextState*>(nullptr));
        other.binding = other.processBinding;
    }
    setShared(other.group, index);
    setShared(other.context, index);
    setWatched(other, isProcessWatched);
}

/// Has this thread use \p state, from whichever thread has it.
void pickUp(ContextState& state) noexcept {
    if (Thread* const former = state.user.load(std::memory_order_relaxed))
        putDown(*former, nowhere);
    state.user.store(&thread(), std::memory_order_relaxed);
    const bool isThere = state.context != nullptr;
    setShared(thread().group, isThere ? state.groupNames->index() : nowhere);
    setShared(thread().context, isThere ? state.ownNames->index() : nowhere);
    setShared(thread().state, &state);
    setWatched(thread(), state.isWatched);
    thread().processBinding = std::exchange(thread().binding, state.binding);
}

} // namespace

ContextState::~ContextState() {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (Thread* const last = user.load(std::memory_order_relaxed))
            putDown(*last, nowhere);
    }
    emptySlots();
}

void* ContextState::at(Slot slot, void* (*make)(), void (*destroy)(void* object)) {
    Kept& kept = slots_[static_cast<std::size_t>(slot)];
    if (kept.object == nullptr)
        kept = {make(), destroy};
    return kept.object;
}

void ContextState::emptySlots() {
    for (Kept& slot : slots_) {
        if (const Kept kept = std::exchange(slot, {}); kept.object != nullptr)
            kept.destroy(kept.object);
    }
}

void enter(ContextState* state) noexcept {
    // Another thread takes this one's from it, but never gives it one.
    if (state == getShared(thread().state) && (state != nullptr || getShared(thread().group) == 0))
        return;
    if (state != nullptr)
        releaseAtEndOfThread();
    const std::lock_guard<std::mutex> lock(mutex);
    putDown(thread(), 0);
    if (state != nullptr)
        pickUp(*state);
}

void watch(bool on) noexcept {
    const std::lock_guard<std::mutex> lock(mutex);
    bool& isOn = thread().state != nullptr ? thread().state->isWatched : isProcessWatched;
    isOn = on;
    setWatched(thread(), on);
}

void putDown(Thread& thread) noexcept {
    const std::lock_guard<std::mutex> lock(mutex);
    putDown(thread, 0);
}

} // namespace vellis::gl
