#include "examples/x_server.hpp"

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include <unistd.h>

bool XServer::isInstalled() {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access((std::filesystem::path(folder) / "Xvfb").c_str(), X_OK) == 0)
            return true;
    }
    return false;
}

// It takes a number that is free and writes it to its standard output.
XServer::XServer()
    : program_({"Xvfb", "-displayfd", "1", "-noreset", "-nolisten", "tcp", "-screen", "0",
                "1600x1600x24"}) {
    std::string number;
    const auto isReady = [&] {
        number = program_.output();
        return !number.empty() && number.back() == '\n';
    };
    if (eventually(isReady))
        display_ = ":" + number.substr(0, number.size() - 1);
}
