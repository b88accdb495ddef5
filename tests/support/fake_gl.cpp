#include "support/fake_gl.hpp"

#include <gtest/gtest.h>

namespace vellis::test {
namespace {

std::string listed(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += "  " + line + '\n';
    return text;
}

} // namespace

FakeGl::FakeGl() : swap_(static_cast<CallListener&>(*this)) {
    restartNames();
}

FakeGl::~FakeGl() {
    // A test that ended early had no chance to look.
    if (calls().empty() || ::testing::Test::HasFatalFailure())
        return;
    ADD_FAILURE() << calls().size() << " GL calls that the test did not look at:\n"
                  << listed(calls());
}

} // namespace vellis::test
