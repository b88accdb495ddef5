#pragma once

#include <atomic>
#include <cstddef>
#include <optional>
#include <utility>

#include "gl/entry_points.hpp"
#include "gl/loader.hpp"
#include "gl/names.hpp"
#include "gl/thread.hpp"

namespace vellis {
class Context;
}

namespace vellis::gl {

/// An object of a type that only its owner knows, and how to destroy it.
struct Kept {
    void* object;
    void (*destroy)(void* object);
};

/// What each Context has one of, and the process, too.
enum class Slot : unsigned char {
    Programs,        ///< the registry of programs
    ProgramProxies,  ///< Program::current() and Program::null()
    StreamingBuffer, ///< what the Toolbox knows of its buffer
    Buffers,         ///< the registry of buffers
    TrackedStates,   ///< what diff_gl_states() remembers
    DebugOutput,     ///< what takes GL's debug messages
};
constexpr std::size_t numSlots = 6;

/// What the library keeps for one GL context. It lives for as long as its Context, or a scope that
/// goes back to it. A thread that has it in use beyond that has nothing in use from then on.
class ContextState {
public:
    /// For the GL context that is current. It is in use nowhere.
    ContextState(Context& itself, WaitingNames::Owned group, loader::OwnedTable table)
        : context(&itself),
          groupNames(std::move(group)),
          ownNames(std::in_place),
          entryPoints(std::move(table)) {}
    ~ContextState();
    ContextState(const ContextState&) = delete;
    ContextState& operator=(const ContextState&) = delete;

    /// One user more or less.
    /// @{
    void keep() { numUsers_.fetch_add(1, std::memory_order_relaxed); }
    void release() {
        if (numUsers_.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }
    /// @}

    /// The object of a slot, of which there is always the same type; made on first use.
    template <class T>
    T& at(Slot slot) {
        return *static_cast<T*>(at(
            slot, [] { return static_cast<void*>(new T()); },
            [](void* object) { delete static_cast<T*>(object); }));
    }

    /// Whether a slot has one.
    bool has(Slot slot) const { return slots_[static_cast<std::size_t>(slot)].object != nullptr; }

    /// Destroys the objects of all slots.
    void emptySlots();

    Context* context; ///< null once that is disposed of or abandoned
    /// The names that wait of what GL shares, for all of the group; empty once `context` is null.
    WaitingNames::Owned groupNames;
    std::optional<WaitingNames> ownNames; ///< those of what it does not share
    loader::OwnedTable entryPoints;       ///< of the GL context
    loader::NativeContext native = {};    ///< the GL context itself
    std::atomic<Thread*> user = nullptr;  ///< the thread that has it in use
    const void* binding = nullptr;        ///< Thread::binding, while no thread has it in use
    bool isClosing = false;               ///< whether it is past making things for good
    bool isWatched = false;               ///< whether debug output is on: see Thread::unbound

private:
    void* at(Slot slot, void* (*make)(), void (*destroy)(void* object));

    std::atomic<unsigned int> numUsers_ = 1;
    Kept slots_[numSlots] = {};
};

/// Has this thread use \p state, or the process's own where it is null. A thread that had it in use
/// has nothing in use from then on. Entry points stay as they are.
void enter(ContextState* state) noexcept;

/// Has a thread that ends put down what it has in use.
void putDown(Thread& thread) noexcept;

/// The same as enter(), with the entry points that belong to it.
inline void enterWithEntryPoints(ContextState* state) noexcept {
    enter(state);
    loader::publish(state != nullptr ? state->entryPoints.get() : loader::processTable());
}

/// Says whether debug output is on for the Context in use, or for the process, and for this thread.
void watch(bool on) noexcept;

/// Whether it is.
inline bool isWatched() {
    return thread().unbound != 0;
}

/// From now on none of the names exist that were made with the Context in use on this thread.
inline void forgetNamesHere() {
    thread().group = nowhere;
    thread().context = nowhere;
}

} // namespace vellis::gl
