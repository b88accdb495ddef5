#include <vellis/detail/per_thread.hpp>

#include <thread>

#include <gtest/gtest.h>

namespace {

/// Counts how many of it there are.
struct Counted {
    explicit Counted(int number) : value(number) { ++alive; }
    Counted(Counted&& other) noexcept : value(other.value) { ++alive; }
    Counted& operator=(Counted&& other) noexcept {
        value = other.value;
        return *this;
    }
    ~Counted() { --alive; }

    int value;
    static inline int alive = 0;
};

using PerThread = vellis::detail::PerThread<Counted>;

TEST(PerThreadTrace, KeepsOneObjectUntilItIsReleased) {
    EXPECT_EQ(PerThread::set(Counted(1)).value, 1);
    EXPECT_EQ(Counted::alive, 1);
    EXPECT_EQ(PerThread::set(Counted(2)).value, 2);
    EXPECT_EQ(Counted::alive, 1);
    PerThread::release();
    EXPECT_EQ(Counted::alive, 0);
    PerThread::release();
    EXPECT_EQ(Counted::alive, 0);
    EXPECT_EQ(PerThread::set(Counted(3)).value, 3);
    EXPECT_EQ(Counted::alive, 1);
    PerThread::release();
}

TEST(PerThreadTrace, ThreadsHaveObjectsOfTheirOwnWhichEndWithThem) {
#ifdef __MINGW32__
    GTEST_SKIP() << "what a thread keeps is gone before its destructors run";
#endif
    Counted& own = PerThread::set(Counted(1));
    std::thread([] {
        EXPECT_EQ(PerThread::set(Counted(2)).value, 2);
        PerThread::releaseAtEnd();
        EXPECT_EQ(Counted::alive, 2);
    }).join();
    EXPECT_EQ(Counted::alive, 1);
    EXPECT_EQ(own.value, 1);
    PerThread::release();
}

} // namespace
