#include <common/picture_file.hpp>

#include <iostream>
#include <stdexcept>
#include <string>

namespace common {

void writePicture(const std::filesystem::path& path, const offscreen::Image& image) {
    std::string error;
    if (!offscreen::writePng(path, image, error))
        throw std::runtime_error(error + " Make room for it, or name another place.");
    std::cout << std::filesystem::absolute(path).lexically_normal().string() << '\n';
}

} // namespace common
