#pragma once

#include <string>
#include <thread>
#include <vector>

namespace vellis::test {

/// Does the same on a number of threads at once, each with its index.
/// \return the first thing that \p work says, which is why it cannot be done here; or nothing.
template <class Work>
std::string onThreads(int numThreads, Work work) {
    std::vector<std::string> reasons(static_cast<std::size_t>(numThreads));
    std::vector<std::thread> threads;
    for (int i = 0; i < numThreads; ++i)
        threads.emplace_back([&, i] { reasons[static_cast<std::size_t>(i)] = work(i); });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::string& reason : reasons) {
        if (!reason.empty())
            return reason;
    }
    return {};
}

} // namespace vellis::test
