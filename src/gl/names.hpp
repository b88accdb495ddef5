#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <vector>

#include "gl/thread.hpp"

/// The names of GL objects: where they exist, and their deletion.
///
/// An object remembers where it was made by an index: that of the group of Contexts that share it,
/// or of the one Context, for what GL never shares. Elsewhere its name counts as 0, and when it
/// ends there its name waits.
namespace vellis::gl {

/// The kinds of objects that have a name, in the order in which they are deleted.
enum class Kind : unsigned char {
    VertexArray,
    Framebuffer,
    Program,
    Shader,
    Buffer,
    Texture,
    Renderbuffer,
};
constexpr std::size_t numKinds = 7;

/// The names of one index whose objects have ended where they could not be deleted.
class WaitingNames {
public:
    /// Names for an index that nothing has had.
    WaitingNames();

    /// Forgets them: nobody knows the index any more.
    ~WaitingNames();

    WaitingNames(const WaitingNames&) = delete;
    WaitingNames& operator=(const WaitingNames&) = delete;

    /// Lets go of them.
    struct Release {
        void operator()(WaitingNames* names) const noexcept {
            if (names->numOwners_.fetch_sub(1, std::memory_order_acq_rel) == 1)
                delete names;
        }
    };

    /// An owner of names: a group has as many as it has Contexts.
    using Owned = std::unique_ptr<WaitingNames, Release>;

    /// Another owner.
    Owned share() {
        numOwners_.fetch_add(1, std::memory_order_relaxed);
        return Owned(this);
    }

    /// The names of what the process made without a Context, whose index is 0.
    static WaitingNames& ofProcess();

    /// The index.
    unsigned int index() const { return index_; }

    /// Deletes them in the GL context that is current: with one call for each kind, but one for
    /// each program and shader.
    void deleteAll() { release(true); }

    /// Forgets them: their GL context is gone.
    void forget() { release(false); }

    /// Keeps a name of that index until it can be deleted. Where all is gone that knew the index,
    /// so is the name. Without memory it is left to the end of its GL context.
    static void add(Kind kind, unsigned int index, unsigned int name) noexcept;

    /// Whether there are any.
    bool any() const { return any_.load(std::memory_order_relaxed); }

private:
    struct Process {};
    explicit WaitingNames(Process) : index_(0), next_(nullptr) {}

    void release(bool deletes);

    unsigned int index_;
    std::atomic<unsigned int> numOwners_ = 1;
    std::atomic<bool> any_ = false;
    std::vector<unsigned int> names_[numKinds];
    WaitingNames* next_; ///< of the list of all
};

/// How many names have a label, see gl/labels.hpp. Most programs give none, and nothing is looked
/// for then.
inline std::atomic<std::size_t> numLabels = 0;

inline bool haveLabels() {
    return numLabels.load(std::memory_order_relaxed) != 0;
}

/// Deletes a name in the GL context that is current.
void deleteName(Kind kind, unsigned int name) noexcept;

/// Remembers that an object of that kind was used where it does not exist.
/// \return 0, which takes the place of its name.
[[gnu::cold]] unsigned int refuse(Kind kind);

/// Whether GL shares objects of that kind between contexts.
constexpr bool isShared(Kind kind) {
    return kind != Kind::VertexArray && kind != Kind::Framebuffer;
}

/// The index that an object of that kind gets which is made here.
inline unsigned int indexHere(Kind kind) {
    return isShared(kind) ? thread().group : thread().context;
}

/// Whether an object of that kind and index exists here.
inline bool isHere(Kind kind, unsigned int index) {
    return index == indexHere(kind);
}

/// The name of an object of that kind and index as it is here: 0 where it does not exist.
inline unsigned int nameHere(Kind kind, unsigned int index, unsigned int name) {
    return isHere(kind, index) ? name : refuse(kind);
}

/// Whether a buffer exists here. It is noted where it does not.
template <class Buffer>
bool existsOrRefuse(const Buffer& buffer) {
    return buffer.exists() || refuse(Kind::Buffer) != 0;
}

/// canDelete() where the name is of another Context or something has a label.
[[gnu::cold]] bool canDeleteOther(Kind kind, unsigned int index, unsigned int name) noexcept;

/// Whether a name of that kind and index can be deleted here and now. If not, it waits, but for the
/// name 0. Its label is forgotten in any case. Asks whether another thread has taken over the
/// Context that was in use here.
inline bool canDelete(Kind kind, unsigned int index, unsigned int name) noexcept {
    const bool isOwn = index == getShared(isShared(kind) ? thread().group : thread().context);
    return (isOwn && !haveLabels()) || canDeleteOther(kind, index, name);
}

} // namespace vellis::gl
