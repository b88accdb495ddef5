#include <offscreen/image.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <system_error>

// stb's single-file libraries: what they define stays in this file.
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#include <stb_image.h>
#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#include <stb_image_write.h>

namespace offscreen {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

struct FreePixels {
    void operator()(stbi_uc* pixels) const { stbi_image_free(pixels); }
};
using Pixels = std::unique_ptr<stbi_uc, FreePixels>;

constexpr int channels = 4;

/// Where stb_image_write leaves the bytes of a file.
void append(void* file, void* bytes, int count) {
    // A short write shows in ferror and at the close.
    std::fwrite(bytes, 1, static_cast<std::size_t>(count), static_cast<std::FILE*>(file));
}

/// A name beside \p path that no other writer uses.
std::filesystem::path temporaryBeside(const std::filesystem::path& path) {
    std::filesystem::path temporary = path;
    temporary += "." + std::to_string(std::random_device()()) + ".part";
    return temporary;
}

/// Writes the file.
/// \return empty, or why that failed.
std::string write(const std::filesystem::path& path, const Image& image) {
    if (image.pixels.empty())
        return "it has no pixels";
    File file(std::fopen(path.string().c_str(), "wb"));
    if (file == nullptr)
        return std::strerror(errno);
    const int width = static_cast<int>(image.width);
    if (stbi_write_png_to_func(append, file.get(), width, static_cast<int>(image.height), channels,
                               image.pixels.data(), width * channels) == 0)
        return "out of memory";
    // What the system still buffers may find the disk full only now.
    const bool failed = std::ferror(file.get()) != 0;
    return std::fclose(file.release()) == 0 && !failed ? "" : std::strerror(errno);
}

/// Reads the file.
/// \return empty, or why that failed.
std::string read(const std::filesystem::path& path, Image& image) {
    const File file(std::fopen(path.string().c_str(), "rb"));
    if (file == nullptr)
        return std::strerror(errno);
    int width = 0;
    int height = 0;
    const Pixels pixels(stbi_load_from_file(file.get(), &width, &height, nullptr, channels));
    if (pixels == nullptr)
        return stbi_failure_reason();
    image = Image(static_cast<unsigned int>(width), static_cast<unsigned int>(height));
    std::copy_n(pixels.get(), image.pixels.size(), image.pixels.begin());
    return "";
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
