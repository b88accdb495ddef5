/// Draws every panel of the gallery off screen and leaves one PNG file each, and `gallery.png` with
/// all of them, in a folder.

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include <common/output_folder.hpp>
#include <common/picture_file.hpp>
#include <common/ready_context.hpp>
#include <gallery/frame/contact_sheet.hpp>
#include <gallery/frame/panel.hpp>
#include <gallery/frame/probe.hpp>
#include <gallery/frame/render.hpp>
#include <offscreen/image.hpp>

namespace {

namespace fs = std::filesystem;

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
    const common::ReadyContext context(1, 1); // panels have framebuffers of their own
    common::makeFolder(folder);
    const std::vector<gallery::Panel>& panels = gallery::panels();
    std::vector<offscreen::Image> pictures;
    for (const gallery::Panel& panel : panels) {
        pictures.push_back(gallery::render(panel));
        common::writePicture(folder / (std::string(panel.name) + ".png"), pictures.back());
    }
    common::writePicture(folder / "gallery.png",
                         gallery::contactSheet(gallery::groups(), pictures));
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
