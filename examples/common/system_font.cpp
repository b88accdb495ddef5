#include <common/system_font.hpp>

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

namespace common {
namespace {

namespace fs = std::filesystem;

/// Of Linux, BSD, macOS and Windows, and the user's own.
std::vector<fs::path> fontFolders() {
    std::vector<fs::path> folders = {"/usr/share/fonts", "/usr/local/share/fonts", "/Library/Fonts",
                                     "/System/Library/Fonts", "C:/Windows/Fonts"};
    if (const char* const home = std::getenv("HOME")) {
        for (const char* const below : {".local/share/fonts", ".fonts", "Library/Fonts"})
            folders.push_back(fs::path(home) / below);
    }
    return folders;
}

/// In a folder or below; what cannot be read is passed over.
std::string findBelow(const fs::path& folder, const std::string& name) {
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied,
                                           error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (entry->path().filename() == name)
            return entry->path().string();
    }
    return {};
}

} // namespace

std::string findSystemFont(const std::string& name) {
    for (const fs::path& folder : fontFolders()) {
        std::string path = findBelow(folder, name);
        if (!path.empty())
            return path;
    }
    return {};
}

} // namespace common
