#include "gl/context_state.hpp"

namespace vellis::gl {
namespace {

/// Puts down what this thread has in use.
void leave() {
    ContextState* const state = std::exchange(thread.state, nullptr);
    if (state == nullptr) {
        thread.processBinding = thread.binding;
        return;
    }
    if (state->user.load(std::memory_order_relaxed) == &thread) {
        state->binding = thread.binding;
        state->user.store(nullptr, std::memory_order_release);
    }
    state->release();
}

/// Sets an index that another thread compares with.
void setForOther(unsigned int& index) {
#if defined(__GNUC__)
    __atomic_store_n(&index, nowhere, __ATOMIC_RELAXED);
#else
    index = nowhere;
#endif
}

/// Takes up \p state, from whichever thread has it.
void take(ContextState& state) {
    state.keep();
    thread.state = &state;
    if (Thread* const former = state.user.exchange(&thread, std::memory_order_acq_rel)) {
        setForOther(former->group);
        setForOther(former->context);
    }
    const bool isThere = state.context != nullptr;
    thread.group = isThere ? state.groupNames->index() : nowhere;
    thread.context = isThere ? state.ownNames->index() : nowhere;
    thread.binding = state.binding;
    releaseAtEndOfThread();
}

} // namespace

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

void enter(ContextState* state) {
    if (state == thread.state &&
        (state == nullptr || state->user.load(std::memory_order_relaxed) == &thread))
        return;
    leave();
    if (state != nullptr) {
        take(*state);
    } else {
        thread.group = 0;
        thread.context = 0;
        thread.binding = thread.processBinding;
    }
}

} // namespace vellis::gl
