#pragma once

#include <csignal>

#include <gtest/gtest.h>

namespace vellis::test {

/// How a program ends that calls std::abort, for EXPECT_EXIT.
#ifdef _WIN32
inline const testing::ExitedWithCode aborted(3);
#else
inline const testing::KilledBySignal aborted(SIGABRT);
#endif

} // namespace vellis::test
