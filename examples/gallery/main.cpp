/// Draws every panel of the gallery off screen and leaves one PNG file each, and `gallery.png` with
/// all of them, in a folder.

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gallery/contact_sheet.hpp>
#include <gallery/panel.hpp>
#include <gallery/probe.hpp>
#include <gallery/render.hpp>
#include <offscreen/context.hpp>
#include <offscreen/image.hpp>
#include <offscreen/requirement.hpp>
#include <vellis/engine.hpp>

namespace {

namespace fs = std::filesystem;

/// A context that the library can work in, current while it lives.
class Session {
public:
    /// \throws std::runtime_error with one sentence where there can be none.
    Session() : context_(open()) {
        if (!vellis::engine::init())
            throw std::runtime_error("The GL entry points cannot be loaded: install a GL driver, "
                                     "for instance with `apt-get install libgl1-mesa-dri`.");
        const std::string missing = offscreen::missingRequirement();
        if (!missing.empty())
            throw std::runtime_error(missing);
    }

    ~Session() { vellis::engine::dispose(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

private:
    static std::unique_ptr<offscreen::Context> open() {
        offscreen::Settings settings;
        settings.width = gallery::framebufferSize;
        settings.height = gallery::framebufferSize;
        std::string error;
        if (!offscreen::platformFromEnvironment(settings.platform, error))
            throw std::runtime_error(error);
        auto context = offscreen::Context::open(settings, error);
        if (context == nullptr)
            throw std::runtime_error(error);
        return context;
    }

    std::unique_ptr<offscreen::Context> context_;
};

void makeFolder(const fs::path& folder) {
    std::error_code code;
    fs::create_directories(folder, code);
    if (!code && !fs::is_directory(folder, code) && !code)
        code = std::make_error_code(std::errc::not_a_directory);
    if (code) {
        throw std::runtime_error("The output folder " + folder.string() +
                                 " cannot be made: " + code.message() + ". Name another one.");
    }
}

/// Writes a picture and says where.
void write(const fs::path& path, const offscreen::Image& image) {
    std::string error;
    if (!offscreen::writePng(path, image, error))
        throw std::runtime_error(error + " Make room for it, or name another folder.");
    std::cout << fs::absolute(path).lexically_normal().string() << '\n';
}

/// Tells of every probe that fails.
/// \return whether none does.
bool checkAll(const std::vector<gallery::Panel>& panels,
              const std::vector<offscreen::Image>& pictures) {
    bool right = true;
    for (std::size_t i = 0; i < panels.size(); ++i) {
        for (const std::string& failure : gallery::check(panels[i], pictures[i])) {
            std::cerr << failure << '\n';
            right = false;
        }
    }
    return right;
}

/// \return whether every panel shows what it must.
bool makeGallery(const fs::path& folder) {
    const Session session;
    makeFolder(folder);
    const std::vector<gallery::Panel>& panels = gallery::panels();
    std::vector<offscreen::Image> pictures;
    for (const gallery::Panel& panel : panels) {
        pictures.push_back(gallery::render(panel));
        write(folder / (std::string(panel.name) + ".png"), pictures.back());
    }
    write(folder / "gallery.png", gallery::contactSheet(panels, pictures));
    return checkAll(panels, pictures);
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 2) {
        std::cerr << "Usage: vellis_gallery [folder for the pictures]\n";
        return EXIT_FAILURE;
    }
    try {
        return makeGallery(argc == 2 ? argv[1] : ".") ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
