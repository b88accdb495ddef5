#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "support/recorded_gl.hpp"

namespace vellis::test {

/// One of several fake GL contexts, beside the FakeGl that has put recorders in the place of the
/// entry points. Each has a script, bindings and calls of its own.
///
/// \code
/// TEST(SharingTrace, ABufferIsDeletedInAContextThatHasIt) {
///     FakeGl gl;
///     FakeContext first;
///     FakeContext second(&first); // shares the first one's objects
///     first.makeCurrent();
///     gladLoadGLLoader(FakeGl::lookUp);
///     auto buffer = ...;
///     second.makeCurrent();
///     buffer.reset();
///     EXPECT_THAT(second.liveNames(), IsEmpty());
///     EXPECT_THAT(second.violations(), IsEmpty());
/// }
/// \endcode
///
/// **Threads.** A context is current on one thread at a time, and answers the calls of that thread;
/// a thread that ends leaves its context current on none. The FakeGl is current until the first
/// context is made so, and again with FakeGl::makeCurrent(). What a context has recorded is looked
/// at on the thread where it is current, or while it is current on none. Contexts that share
/// objects lock them for the calls that use them: an answer() that takes the place of such a call
/// has no lock.
///
/// **Names.** Contexts share buffers, textures, renderbuffers, shaders and programs. The names of
/// what contexts share, and those of a context's own vertex arrays, framebuffers and queries, begin
/// at 100001, at 200001 and so on, in the order of the contexts: no context has a name that is
/// valid in another, also not later in the life of the FakeGl.
///
/// **Violations.** A call that uses a name which the context does not have is one: in whatever
/// parameter, of another context's, of another kind or deleted, unless it is that of a shader or a
/// program, which GL keeps while they are in use. So is a second deletion. glIs… use no name.
/// Violations that nobody has looked at when the context goes are a failure of the test.
///
/// **The loader.** The context is one of GL 2.1 with all extensions that the loader knows, so that
/// gladLoadGLLoader() succeeds with FakeGl::lookUp and with lookUpOther().
class FakeContext : public RecordedGl {
public:
    /// Makes a context, which is current on no thread.
    /// \param sharing  Whose objects it shares, or null.
    explicit FakeContext(const FakeContext* sharing = nullptr);
    ~FakeContext() override;

    /// Makes the context current on this thread, in place of what is.
    /// \return false where it is current on another thread.
    bool makeCurrent();

    /// Leaves this thread without a context, also without the FakeGl.
    static void releaseCurrent();

    /// Whether the context is current on this thread.
    bool isCurrentHere() const { return currentListener() == this; }

    /// The calls that used a name which the context does not have; they count as looked at from now
    /// on, and stay in the list.
    std::vector<std::string> violations();

    /// A lookup like FakeGl::lookUp, whose recorders of some entry points, glBindBuffer, glClear
    /// and glDrawArrays among them, are other functions that do the same.
    static void* lookUpOther(const char* name) { return findOtherRecorder(name); }

    /// How many calls came through those other functions.
    std::size_t callsThroughOther() const { return numOtherCalls; }

private:
    void calling(EntryPoint entryPoint, const Argument* arguments) override;
    bool usesForeignName(EntryPoint entryPoint, const Argument* arguments) const;

    std::vector<std::string> violations_;
    std::size_t numLookedAt_ = 0;
};

} // namespace vellis::test
