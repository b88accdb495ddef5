#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <sys/types.h>

#include "support/temporary_folder.hpp"

/// Waits until something holds, as long as a slow machine may need.
/// \return whether it does.
template <class Condition>
bool eventually(Condition condition) {
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 30s;
    while (std::chrono::steady_clock::now() < end) {
        if (condition())
            return true;
        std::this_thread::sleep_for(20ms);
    }
    return condition();
}

/// A program that runs beside the test, and no longer than it.
class RunningProgram {
public:
    /// \param command      The program, which is searched for where it is no path, and its
    ///                     arguments.
    /// \param environment  Variables to set, or to unset where they have no `=`.
    explicit RunningProgram(const std::vector<std::string>& command,
                            const std::vector<std::string>& environment = {});
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    /// What it has written so far.
    /// @{
    std::string output() const;
    std::string errors() const;
    /// @}

    /// Its exit status once it has ended: empty before, and -1 where a signal ended it.
    std::optional<int> exitStatus();

    /// Waits for it to end.
    /// \return the same, empty where it takes too long.
    std::optional<int> wait();

private:
    TemporaryFolder folder_;
    pid_t process_;
    std::optional<int> exitStatus_;
};
