#include <offscreen/image.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <system_error>

#include <png.h>

namespace offscreen {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// A libpng reader or writer, freed in any case.
class PngImage {
public:
    PngImage() { image.version = PNG_IMAGE_VERSION; }
    ~PngImage() { png_image_free(&image); }
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;

    png_image image{};
};

/// A name beside \p path that no other writer uses.
std::filesystem::path temporaryBeside(const std::filesystem::path& path) {
    std::filesystem::path temporary = path;
    temporary += "." + std::to_string(std::random_device()()) + ".part";
    return temporary;
}

/// Writes the file.
/// \return empty, or why that failed.
std::string write(const std::filesystem::path& path, const Image& image) {
    File file(std::fopen(path.string().c_str(), "wb"));
    if (file == nullptr)
        return std::strerror(errno);
    PngImage png;
    png.image.width = image.width;
    png.image.height = image.height;
    png.image.format = PNG_FORMAT_RGBA;
    if (png_image_write_to_stdio(&png.image, file.get(), 0, image.pixels.data(), 0, nullptr) == 0)
        return png.image.message;
    // What the system still buffers may find the disk full only now.
    return std::fclose(file.release()) == 0 ? "" : std::strerror(errno);
}

/// Reads the file.
/// \return empty, or why that failed.
std::string read(const std::filesystem::path& path, Image& image) {
    const File file(std::fopen(path.string().c_str(), "rb"));
    if (file == nullptr)
        return std::strerror(errno);
    PngImage png;
    if (png_image_begin_read_from_stdio(&png.image, file.get()) == 0)
        return png.image.message;
    png.image.format = PNG_FORMAT_RGBA;
    image = Image(png.image.width, png.image.height);
    const bool done =
        png_image_finish_read(&png.image, nullptr, image.pixels.data(), 0, nullptr) != 0;
    return done ? "" : png.image.message;
}

} // namespace

bool writePng(const std::filesystem::path& path, const Image& image, std::string& error) {
    const std::filesystem::path temporary = temporaryBeside(path);
    std::string reason = write(temporary, image);
    std::error_code code;
    if (reason.empty()) {
        std::filesystem::rename(temporary, path, code);
        if (code)
            reason = code.message();
    }
    if (reason.empty())
        return true;
    std::filesystem::remove(temporary, code);
    error = "The picture " + path.string() + " cannot be written: " + reason + ".";
    return false;
}

bool readPng(const std::filesystem::path& path, Image& image, std::string& error) {
    const std::string reason = read(path, image);
    if (reason.empty())
        return true;
    error = "The picture " + path.string() + " cannot be read: " + reason + ".";
    return false;
}

} // namespace offscreen
