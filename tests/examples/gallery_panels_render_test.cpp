#include <gallery/frame/panel.hpp>

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include <gmock/gmock.h>

#include <gallery/frame/contact_sheet.hpp>
#include <gallery/frame/font.hpp>
#include <gallery/frame/picture.hpp>
#include <gallery/frame/render.hpp>

#include "support/render_test.hpp"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class GalleryRender : public RenderTest {
protected:
    // Panels have framebuffers of their own.
    GalleryRender() : RenderTest(1, {Extension::Framebuffers}) {}

    void SetUp() override {
        RenderTest::SetUp();
        if (!goesOn())
            return;
        // Once in a process: it takes long.
        for (std::size_t i = pictures.size(); i < gallery::panels().size(); ++i)
            pictures.push_back(gallery::render(gallery::panels()[i]));
    }

    static inline std::vector<offscreen::Image> pictures;
};

/// The colour that most pixels have.
gallery::Color dominantColor(const offscreen::Image& image) {
    std::map<std::array<unsigned char, 3>, int> counts;
    for (std::size_t i = 0; i < image.pixels.size(); i += 4)
        ++counts[{image.pixels[i], image.pixels[i + 1], image.pixels[i + 2]}];
    const auto most =
        std::max_element(counts.begin(), counts.end(),
                         [](const auto& a, const auto& b) { return a.second < b.second; });
    return {most->first[0], most->first[1], most->first[2]};
}

offscreen::Image onePicture(gallery::Color color) {
    return gallery::filled(gallery::panelSize, gallery::panelSize, color);
}

TEST_F(GalleryRender, EveryPanelShowsWhatItMust) {
    SKIP_IN_FORWARD_COMPATIBLE("lines wider than 1");
    for (std::size_t i = 0; i < pictures.size(); ++i)
        EXPECT_THAT(gallery::check(gallery::panels()[i], pictures[i]), IsEmpty());
    const offscreen::Image again = gallery::render(gallery::panels().front());
    EXPECT_EQ(again.pixels, pictures.front().pixels) << "a panel left a switch behind";
}

TEST_F(GalleryRender, NoPanelPassesWithItsDominantColorOrThePictureOfAnother) {
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const gallery::Panel& panel = gallery::panels()[i];
        EXPECT_THAT(gallery::check(panel, onePicture(dominantColor(pictures[i]))), Not(IsEmpty()))
            << panel.name;
        for (std::size_t other = 0; other < pictures.size(); ++other) {
            if (other != i) {
                EXPECT_THAT(gallery::check(panel, pictures[other]), Not(IsEmpty()))
                    << panel.name << " with the picture of " << gallery::panels()[other].name;
            }
        }
    }
}

/// The part of a picture that is as large as a panel.
offscreen::Image cutOut(const offscreen::Image& image, unsigned int left, unsigned int top) {
    offscreen::Image part(gallery::panelSize, gallery::panelSize);
    for (unsigned int row = 0; row < part.height; ++row)
        std::copy_n(image.at(left, top + row), std::size_t{4} * part.width, part.at(0, row));
    return part;
}

TEST(GalleryContactSheet, HoldsEveryPicture) {
    std::vector<offscreen::Image> pictures;
    std::vector<unsigned int> sizes;
    for (const gallery::Group& group : gallery::groups()) {
        sizes.push_back(static_cast<unsigned int>(group.panels.size()));
        for (std::size_t i = 0; i < group.panels.size(); ++i)
            pictures.push_back(onePicture({static_cast<unsigned char>(pictures.size()), 0, 99}));
    }
    const offscreen::Image sheet = gallery::contactSheet(gallery::groups(), pictures);
    const gallery::SheetLayout layout(sizes);
    auto picture = pictures.begin();
    for (unsigned int group = 0; group < sizes.size(); ++group) {
        for (unsigned int i = 0; i < sizes[group]; ++i)
            EXPECT_EQ(cutOut(sheet, layout.left(i), layout.top(group, i)).pixels,
                      (*picture++).pixels);
    }
}

TEST(GalleryContactSheet, HasRoomForGroupsOfAnySize) {
    const unsigned int caption = gallery::textHeight(gallery::TextSize::Caption);
    const unsigned int heading = gallery::textHeight(gallery::TextSize::Heading);
    for (unsigned int size = 1; size < 40; ++size) {
        const gallery::SheetLayout layout({size, 1, size});
        for (unsigned int i = 0; i < size; ++i)
            EXPECT_GT(layout.width(), layout.left(i) + gallery::panelSize);
        EXPECT_GT(layout.headingTop(1), layout.top(0, size - 1) + gallery::panelSize + caption);
        EXPECT_GT(layout.top(2, 0), layout.headingTop(2) + heading);
        EXPECT_GT(layout.height(), layout.top(2, size - 1) + gallery::panelSize + caption);
    }
}

TEST(GalleryPanels, NonePassesWithABlankPicture) {
    for (const gallery::Panel& panel : gallery::panels()) {
        EXPECT_THAT(gallery::check(panel, onePicture(gallery::palette::paper)), Not(IsEmpty()))
            << panel.name;
        EXPECT_THAT(gallery::check(panel, offscreen::Image(gallery::panelSize, gallery::panelSize)),
                    Not(IsEmpty()))
            << panel.name;
    }
}

TEST(GalleryPanels, HaveNamesOfTheirOwn) {
    std::set<std::string> names = {"gallery"};
    for (const gallery::Panel& panel : gallery::panels())
        EXPECT_TRUE(names.insert(panel.name).second) << panel.name;
}

TEST(GalleryPanels, HaveCaptionsAsWideAsAPanelAtMost) {
    for (const gallery::Panel& panel : gallery::panels())
        EXPECT_LE(gallery::textWidth(panel.caption, gallery::TextSize::Caption), gallery::panelSize)
            << panel.caption;
}

TEST(GalleryPanels, AreDrawnWithNoMoreSamplesThanAPanelMayAskFor) {
    for (const gallery::Panel& panel : gallery::panels()) {
        EXPECT_GE(panel.sampling, 1u) << panel.name;
        EXPECT_LE(panel.sampling, gallery::maxSampling) << panel.name;
    }
}

/// A white picture with a black right half, and probes held against it.
class GalleryProbe : public ::testing::Test {
protected:
    static constexpr gallery::Color white{255, 255, 255};
    static constexpr gallery::Color black{0, 0, 0};
    static constexpr gallery::Color red{255, 0, 0};

    GalleryProbe() : picture(onePicture(white)) {
        gallery::fill(picture, 120, 0, 120, gallery::panelSize, black);
    }

    std::vector<std::string> check(const gallery::Probe& probe) const {
        return gallery::check({"halves", "", 1, nullptr, {probe}}, picture);
    }

    offscreen::Image picture;
};

TEST_F(GalleryProbe, OfAColorNamesPanelPlaceAndColors) {
    EXPECT_THAT(check(gallery::ColorAt{{119, 7}, white}), IsEmpty());
    EXPECT_THAT(check(gallery::ColorAt{{120, 7}, white}),
                ElementsAre("Panel halves: at (120, 7) the colour is #000000, not #ffffff."));
}

TEST_F(GalleryProbe, OfAColorAllowsItsTolerance) {
    EXPECT_THAT(check(gallery::ColorAt{{0, 0}, {245, 255, 255}, 10}), IsEmpty());
    EXPECT_THAT(check(gallery::ColorAt{{0, 0}, {244, 255, 255}, 10}), Not(IsEmpty()));
}

TEST_F(GalleryProbe, OfAnEdgeFindsIt) {
    EXPECT_THAT(check(gallery::EdgeBetween{{110, 9}, {130, 9}, white, black}), IsEmpty());
    EXPECT_THAT(check(gallery::EdgeBetween{{130, 50}, {110, 70}, black, white}), IsEmpty());
}

TEST_F(GalleryProbe, OfAnEdgeRefusesOneThatIsNotThere) {
    EXPECT_THAT(check(gallery::EdgeBetween{{100, 9}, {110, 9}, white, black}),
                ElementsAre(HasSubstr("from (100, 9) to (110, 9) the colour does not change once "
                                      "from #ffffff to #000000")));
    EXPECT_THAT(check(gallery::EdgeBetween{{110, 9}, {130, 9}, black, white}), Not(IsEmpty()));
    EXPECT_THAT(check(gallery::EdgeBetween{{110, 9}, {130, 9}, red, black}), Not(IsEmpty()));
    EXPECT_THAT(check(gallery::EdgeBetween{{110, 9}, {110, 9}, white, black}), Not(IsEmpty()));
}

TEST_F(GalleryProbe, OfAnEdgeRefusesASecondOneBehind) {
    gallery::fill(picture, 125, 0, 2, gallery::panelSize, white);
    EXPECT_THAT(check(gallery::EdgeBetween{{110, 9}, {135, 9}, white, black}), Not(IsEmpty()));
}

TEST_F(GalleryProbe, OfAnEdgeAllowsThreePixelsOfOtherColors) {
    gallery::fill(picture, 120, 0, 3, gallery::panelSize, red);
    EXPECT_THAT(check(gallery::EdgeBetween{{110, 9}, {130, 9}, white, black}), IsEmpty());
    gallery::fill(picture, 120, 0, 4, gallery::panelSize, red);
    EXPECT_THAT(check(gallery::EdgeBetween{{110, 9}, {130, 9}, white, black}), Not(IsEmpty()));
}

TEST_F(GalleryProbe, OfMixedColorsCountsThem) {
    gallery::fill(picture, 120, 0, 3, gallery::panelSize, red);
    EXPECT_THAT(check(gallery::MixedBetween{{110, 9}, {130, 9}, white, black, 3, 3}), IsEmpty());
    EXPECT_THAT(check(gallery::MixedBetween{{110, 9}, {130, 9}, white, black, 4, 9}),
                ElementsAre(HasSubstr("3 pixels are neither #ffffff nor #000000; they should be "
                                      "4 to 9.")));
    EXPECT_THAT(check(gallery::MixedBetween{{110, 9}, {130, 9}, white, black, 0, 2}),
                Not(IsEmpty()));
}

TEST_F(GalleryProbe, OfAnyKindFailsOnAPictureOfAnotherSize) {
    picture = gallery::filled(10, 10, white);
    EXPECT_THAT(check(gallery::ColorAt{{0, 0}, white}),
                ElementsAre("Panel halves: the picture has not the size of a panel."));
}

} // namespace
