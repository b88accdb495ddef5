#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <list>
#include <optional>
#include <sstream>
#include <string>
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
    const int status = std::system(command.c_str());
    return {status == 0, contents(output), contents(errors)};
}
