#pragma once

#include <condition_variable>
#include <mutex>

namespace vellis::test {

/// Where a number of threads wait for each other, again and again.
class Barrier {
public:
    explicit Barrier(int numThreads) : numThreads_(numThreads) {}

    void wait() {
        std::unique_lock lock(mutex_);
        const int round = round_;
        if (++numWaiting_ == numThreads_) {
            numWaiting_ = 0;
            ++round_;
            changed_.notify_all();
        } else {
            changed_.wait(lock, [&] { return round_ != round; });
        }
    }

private:
    const int numThreads_;
    int numWaiting_ = 0;
    int round_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
};

} // namespace vellis::test
