#pragma once

#include "support/gl_recorders.hpp"
#include "support/recorded_gl.hpp"

namespace vellis::test {

/// A GL without a driver: while one lives, all `glad_gl…` pointers are recorders that write each
/// call down and answer it from a script.
///
/// \code
/// TEST(BufferTrace, CreationAllocatesAnEmptyStore) {
///     FakeGl gl;
///     const auto buffer = VertexAttributeBuffer<float>::make(4, ...);
///     EXPECT_GL_CALLS(gl, "glGenBuffers(1, {1})",
///                         "glBindBuffer(GL_ARRAY_BUFFER, 1)",
///                         "glBufferData(GL_ARRAY_BUFFER, 16, null, GL_STATIC_DRAW)",
///                         "glBindBuffer(GL_ARRAY_BUFFER, 0)");
///     gl.failToMap();
///     EXPECT_EQ(buffer->map(MapAccess::ReadOnly), nullptr);
///     gl.ignoreTheRest();
/// }
/// \endcode
///
/// **Calls.** EXPECT_GL_CALLS compares all calls since the last look with a list. Calls that nobody
/// has looked at when the FakeGl goes are a failure of the test: look at them, or let go of them
/// with forget(). Objects of the library that delete GL objects must go before the FakeGl, so
/// declare it first, and end the test with ignoreTheRest() where their deletion is not what it is
/// about.
///
/// **Lines.** See formatCall(). An enumerator goes by the name that its parameter's group gives it,
/// else by the newest name up to GL 2.1 (GL_VERTEX_PROGRAM_POINT_SIZE, GL_BLEND_EQUATION_RGB), an
/// unknown one by its value, `0x8fff`. A pixel pointer is an offset while a buffer is bound to the
/// matching pixel target.
///
/// **Answers.** A small model of a context answers out of the box, GlScript's functions change what
/// it says, and answer() replaces the model's function for one entry point:
///
/// - Names count up from 1 through all kinds of objects. liveNames() and doubleDeletes() check for
///   leaks.
/// - Queries of state give what setState() has set, the current bindings, else one 0.
/// - Buffers keep their bytes, maps point into them.
/// - Shaders compile, programs link, without active uniforms and attributes until some are set.
/// - Any other call with a result gives 0 or null.
///
/// **The loader.** All its flags are 1, GLVersion is as it was. Set a flag, or remove() an entry
/// point, to fake a context that lacks it: everything is put back in the end. lookUp() serves
/// gladLoadGLLoader().
///
/// **Threads.** It answers the calls of the thread that made it. A call on a thread where no
/// context is current gives 0 or null: see takeCallsWithoutContext(). For several contexts see
/// FakeContext.
///
/// **Benchmarks.** With setRecording(false) it is a null driver: answers still come, nothing is
/// recorded, and a call allocates nothing. Names count on; buffers keep no bytes.
class FakeGl : public RecordedGl {
public:
    FakeGl();
    ~FakeGl() override;

    /// Takes an entry point away: `gl.remove(glad_glGenVertexArrays)`.
    template <class Result, class... Parameters>
    static void remove(Result(GLAD_API_PTR*& entryPoint)(Parameters...)) {
        entryPoint = nullptr;
    }

    /// The recorder of the entry point of that name, or null: a lookup for gladLoadGLLoader(). Set
    /// the string GL_VERSION for it to succeed.
    static void* lookUp(const char* name) { return findRecorder(name); }

private:
    RecorderSwap swap_;
};

} // namespace vellis::test
