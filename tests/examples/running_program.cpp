#include "examples/running_program.hpp"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/run_program.hpp"

namespace {

/// Becomes the program; ends the process where that fails.
[[noreturn]] void become(std::vector<std::string> command, std::vector<std::string> environment,
                         const std::filesystem::path& folder) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (std::string& variable : environment) {
        if (variable.find('=') == variable.npos)
            unsetenv(variable.c_str());
        else
            putenv(variable.data());
    }
    const bool redirected = std::freopen((folder / "output").c_str(), "w", stdout) != nullptr &&
                            std::freopen((folder / "errors").c_str(), "w", stderr) != nullptr;
    std::vector<char*> arguments;
    for (std::string& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    if (redirected)
        execvp(arguments.front(), arguments.data());
    _exit(127);
}

} // namespace

RunningProgram::RunningProgram(const std::vector<std::string>& command,
                               const std::vector<std::string>& environment)
    : process_(fork()) {
    if (process_ < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (process_ == 0)
        become(command, environment, folder_.path());
}

RunningProgram::~RunningProgram() {
    if (exitStatus())
        return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

std::string RunningProgram::output() const {
    return contents(folder_.path() / "output");
}

std::string RunningProgram::errors() const {
    return contents(folder_.path() / "errors");
}

std::optional<int> RunningProgram::exitStatus() {
    int status = 0;
    if (!exitStatus_ && waitpid(process_, &status, WNOHANG) == process_)
        exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return exitStatus_;
}

std::optional<int> RunningProgram::wait() {
    eventually([this] { return exitStatus().has_value(); });
    return exitStatus_;
}
