#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <vellis/gl.hpp>

#include "support/gl_recorders.hpp"
#include "support/gl_script.hpp"

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
/// **Benchmarks.** With setRecording(false) it is a null driver: answers still come, nothing is
/// recorded, and a call allocates nothing. Names count on; buffers keep no bytes.
class FakeGl : public GlScript, private CallListener {
public:
    FakeGl();
    ~FakeGl() override;

    /// \name Calls
    /// @{

    /// The calls that nobody has looked at, in order; they count as looked at from now on.
    std::vector<std::string> takeCalls();
    /// Lets go of the calls so far: those of a test's set-up.
    void forget() { calls_.clear(); }
    /// Lets go of all calls, also of those to come: what is left is the end of the test's objects.
    void ignoreTheRest();
    /// How many of the calls that nobody has looked at are of that entry point. They still have to
    /// be looked at. A name that GL does not have is a failure of the test.
    std::size_t countOf(std::string_view entryPoint) const;
    void setRecording(bool on) { recording = on; }
    /// @}

    /// \name Entry points
    /// @{

    /// Answers calls of an entry point with a function of one's own, in place of the model's:
    /// \code
    /// gl.answer(glad_glGetUniformLocation, [](GLuint, const GLchar*) -> GLint { return 7; });
    /// \endcode
    template <class Result, class... Parameters, class Function>
    void answer(Result(GLAD_API_PTR*& entryPoint)(Parameters...), Function function) {
        answers.set(entryPoint, std::move(function));
    }

    /// Takes an entry point away: `gl.remove(glad_glGenVertexArrays)`.
    template <class Result, class... Parameters>
    static void remove(Result(GLAD_API_PTR*& entryPoint)(Parameters...)) {
        entryPoint = nullptr;
    }

    /// The recorder of the entry point of that name, or null: a lookup for gladLoadGLLoader(). Set
    /// the string GL_VERSION for it to succeed.
    static void* lookUp(const char* name) { return findRecorder(name); }
    /// @}

private:
    void called(EntryPoint entryPoint, const Argument* arguments) override;

    std::vector<std::string> calls_;
    RecorderSwap swap_;
};

/// Compares what was called with a list, and says where they part. Use EXPECT_GL_CALLS.
class CallExpectation {
public:
    CallExpectation(const char* file, int line) : file_(file), line_(line) {}

    /// Each of \p expected is a line or a vector of lines.
    template <class... Expected>
    void check(FakeGl& gl, const Expected&... expected) {
        (add(expected), ...);
        compare(gl.takeCalls());
    }

private:
    void add(const std::vector<std::string>& lines) {
        expected_.insert(expected_.end(), lines.begin(), lines.end());
    }
    void add(std::string_view line) { expected_.emplace_back(line); }
    void compare(const std::vector<std::string>& made) const;

    const char* file_;
    int line_;
    std::vector<std::string> expected_;
};

} // namespace vellis::test

/// Expects that the GL calls since the last look are exactly these, in this order:
/// `EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)", ...)`. Lists of lines
/// (`std::vector<std::string>`) may stand between the lines. Without lines: that there were none.
#define EXPECT_GL_CALLS(...) ::vellis::test::CallExpectation(__FILE__, __LINE__).check(__VA_ARGS__)
