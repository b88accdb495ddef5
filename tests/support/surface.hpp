#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <vellis/context.hpp>

#include <offscreen/context.hpp>

namespace vellis::test {

/// A GL context without a window, and the library's Context for it.
class Surface {
public:
    /// Makes both; they are current and in use.
    /// \param sharing  Whose objects it shares, or null.
    /// \param error    Why the result is null.
    static std::unique_ptr<Surface> open(const Surface* sharing, std::string& error);

    /// Disposes of the Context.
    ~Surface();

    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    /// Makes the GL context current and uses the Context.
    bool use() { return gl->makeCurrent() && context->use(); }

    /// Leaves the thread without a current GL context, and with the process's own in use.
    void leave();

    /// Another Context for the same GL context, which is in use then.
    std::shared_ptr<Context> makeAnother() const;

    std::unique_ptr<offscreen::Context> gl;
    std::shared_ptr<Context> context;

private:
    Surface() = default;
};

/// Whether the platform of the tests tells which GL context is current.
bool tellsWhatIsCurrent();

/// Skips a test where nobody tells which GL context is current, so that use() takes its caller's
/// word.
#define SKIP_WHERE_NOBODY_TELLS_WHAT_IS_CURRENT()                                                  \
    if (!vellis::test::tellsWhatIsCurrent())                                                       \
    GTEST_SKIP() << "the platform does not tell which GL context is current"

/// A test that opens surfaces. Where it gets none that has all that the library asks for, it is
/// skipped.
class SurfaceTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Opens one more; skips the test where there can be none. Ask goesOn() then.
    std::unique_ptr<Surface> open(const Surface* sharing = nullptr);

    static bool goesOn() { return !HasFatalFailure() && !IsSkipped(); }

private:
    void skip(const std::string& reason) { GTEST_SKIP() << reason; }
};

} // namespace vellis::test
