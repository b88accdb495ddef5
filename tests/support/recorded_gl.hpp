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

/// What all fake contexts do: they answer calls from a script, and write them down.
class RecordedGl : public GlScript, protected CallListener {
public:
    ~RecordedGl() override = default;

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

    /// Answers calls of an entry point with a function of one's own, in place of the model's:
    /// \code
    /// gl.answer(glad_glGetUniformLocation, [](GLuint, const GLchar*) -> GLint { return 7; });
    /// \endcode
    template <class Result, class... Parameters, class Function>
    void answer(Result(GLAD_API_PTR*& entryPoint)(Parameters...), Function function) {
        answers.set(entryPoint, std::move(function));
    }

    /// Makes it the one that answers the calls of this thread.
    /// \return false where it is current on another thread.
    bool makeCurrent() { return test::makeCurrent(this); }

protected:
    RecordedGl() { answerAll(answers, recording); }
    explicit RecordedGl(const RecordedGl* sharing) : GlScript(sharing) {
        answerAll(answers, recording);
    }

    void called(EntryPoint entryPoint, const Argument* arguments) override;
    /// The line of a call.
    std::string line(EntryPoint entryPoint, const Argument* arguments) const;
    const std::vector<std::string>& calls() const { return calls_; }

private:
    std::vector<std::string> calls_;
};

/// Compares what was called with a list, and says where they part. Use EXPECT_GL_CALLS.
class CallExpectation {
public:
    CallExpectation(const char* file, int line) : file_(file), line_(line) {}

    /// Each of \p expected is a line or a vector of lines.
    template <class... Expected>
    void check(RecordedGl& gl, const Expected&... expected) {
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
