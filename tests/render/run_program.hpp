#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "render/temporary_folder.hpp"

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
    return "'" + path.string() + "'";
}

inline std::vector<std::string> lines(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> result;
    for (std::string line; std::getline(stream, line);)
        result.push_back(line);
    return result;
}

/// Runs a program to its end.
/// \param environment  Variables as the shell takes them before a command.
inline Outcome runProgram(const std::filesystem::path& program, const std::string& arguments,
                          const std::string& environment = "") {
    const TemporaryFolder folder;
    const std::filesystem::path output = folder.path() / "output";
    const std::filesystem::path errors = folder.path() / "errors";
    const std::string command = environment + " " + quoted(program) + " " + arguments + " >" +
                                quoted(output) + " 2>" + quoted(errors);
    const int status = std::system(command.c_str());
    return {status == 0, contents(output), contents(errors)};
}
