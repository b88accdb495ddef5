#pragma once

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <list>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/environment_variable.hpp"
#include "support/temporary_folder.hpp"

/// How a program ended, and what it wrote.
struct Outcome {
    bool succeeded;
    std::string output;
    std::string errors;
};

/// What is in a file.
inline std::string contents(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// A path as the shell takes it.
inline std::string quoted(const std::filesystem::path& path) {
#ifdef _WIN32
    constexpr char quote = '"';
#else
    constexpr char quote = '\'';
#endif
    return quote + path.string() + quote;
}

inline std::vector<std::string> lines(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> result;
    for (std::string line; std::getline(stream, line);)
        result.push_back(line);
    return result;
}

/// The environment of a program that asks for EGL and finds no driver.
inline const std::vector<std::string> noEgl = {"OFFSCREEN_PLATFORM=egl",
                                               "__EGL_VENDOR_LIBRARY_FILENAMES=/nonexistent"};

/// Runs a command in the shell, which makes the file \p output before it does anything else. A
/// busy system may refuse a new process, as Wine does at times: a shell that has not begun is
/// started again, a few times. What has begun is not: its failure is the test's to judge.
/// \param error  Why the shell does not start, or empty.
/// \return       What std::system has returned.
inline int runShell(const std::string& command, const std::filesystem::path& output,
                    std::string& error) {
    constexpr int attempts = 3;
    for (int attempt = 1;; ++attempt) {
        errno = 0;
        const int status = std::system(command.c_str());
        if (status == 0 || std::filesystem::exists(output))
            return status;
        if (attempt == attempts) {
            error = "The shell does not start: status " + std::to_string(status) + ", " +
                    std::strerror(errno) + ".\n";
            return status;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
}

/// Runs a program to its end.
/// \param environment  Variables that it gets, `NAME=value`, or does not get, `NAME`.
inline Outcome runProgram(std::filesystem::path program, const std::string& arguments,
                          const std::vector<std::string>& environment = {}) {
    const TemporaryFolder folder;
    const std::filesystem::path output = folder.path() / "output";
    const std::filesystem::path errors = folder.path() / "errors";
    std::string command = quoted(program.make_preferred()) + " " + arguments + " >" +
                          quoted(output) + " 2>" + quoted(errors);
#ifdef _WIN32
    command = '"' + command + '"'; // the shell takes the outermost quotes away
#endif
    std::list<EnvironmentVariable> variables;
    for (const std::string& variable : environment) {
        const std::size_t end = variable.find('=');
        variables.emplace_back(variable.substr(0, end),
                               end != variable.npos ? std::optional(variable.substr(end + 1))
                                                    : std::nullopt);
    }
    std::string error;
    const int status = runShell(command, output, error);
    return {status == 0, contents(output), error + contents(errors)};
}
