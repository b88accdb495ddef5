#pragma once

#include <cstdio>
#include <string>

namespace vellis::test {

/// Keeps what is written to standard error while it lives: through `stderr`, `std::cerr` and
/// whatever else ends at the file descriptor.
///
/// \code
/// StderrCapture capture;
/// vellis::internal::log("title", "message");
/// EXPECT_EQ(capture.take(), "title: message\n");
/// \endcode
///
/// At the end of the scope standard error is as it was; what nobody took is dropped. Captures may
/// nest.
class StderrCapture {
public:
    StderrCapture();
    ~StderrCapture();
    StderrCapture(const StderrCapture&) = delete;
    StderrCapture& operator=(const StderrCapture&) = delete;

    /// The text written since the start, or since the last take().
    std::string take();

private:
    std::FILE* file_;
    int original_;
    long taken_ = 0;
};

/// What \p function writes to standard error.
template <class Function>
std::string stderrOf(Function function) {
    StderrCapture capture;
    function();
    return capture.take();
}

} // namespace vellis::test
