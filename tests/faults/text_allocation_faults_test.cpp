/// Fonts and texts with each of their allocations failing in turn, until they succeed.

#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/text.hpp>

#include "canvas/canvas_fixture.hpp"
#include "faults/failing_allocations.hpp"
#include "support/allocation_count.hpp"
#include "support/stderr_capture.hpp"
#include "text/random_number.hpp"
#include "text/skyline.hpp"
#include "text/test_font.hpp"

namespace {

using vellis::test::FailingAllocations;
using vellis::test::Lines;
using vellis::test::numLiveAllocations;
using vellis::test::only;
using vellis::text::Anchor;
using vellis::text::Font;
using Extent = FailingAllocations::Extent;

constexpr const char* name = "DejaVuSans.ttf";
constexpr const char* words = "office AV\n\u0627\u0644\u0639 12 \u05D0 e\u0302\u0301 \xFF \u4E2D";

/// Calls an attempt with allocation 1, 2, 3 ... failing until one succeeds. Each has objects of its
/// own, of which nothing may be left. The attempt gets what is to fail, and says whether it did
/// not. \return how many failed.
std::size_t failUntilItSucceeds(Extent extent,
                                const std::function<bool(std::size_t, Extent)>& attempt) {
    attempt(std::size_t{1} << 30, extent); // what is made once in a process is there then
    for (std::size_t number = 1; number < 2000; ++number) {
        SCOPED_TRACE("with allocation " + std::to_string(number) + " failing");
        const bool hasSucceeded = attempt(number, extent);
        if (hasSucceeded || testing::Test::HasFailure())
            return number - 1;
    }
    ADD_FAILURE() << "it never succeeds";
    return 0;
}

/// Whether an action succeeds with an allocation failing. One that fails must be told.
template <class Action>
bool succeeds(std::size_t number, Extent extent, Action action) {
    try {
        const FailingAllocations failing(number, extent);
        action();
    } catch (const std::bad_alloc&) {
        return false;
    }
    EXPECT_FALSE(FailingAllocations::haveFailed()) << "and nobody was told";
    return true;
}

/// Expects that at its end there is as much memory in use as at its beginning.
class KeepsNothing {
public:
    KeepsNothing() = default;
    ~KeepsNothing() { EXPECT_EQ(numLiveAllocations(), numLive_); }
    KeepsNothing(const KeepsNothing&) = delete;
    KeepsNothing& operator=(const KeepsNothing&) = delete;

private:
    std::ptrdiff_t numLive_ = numLiveAllocations();
};

/// What a text measures, and how many glyphs it has.
struct Measured {
    explicit Measured(Font& font) : extents(font.measure(words)), shape(font.shape(words)) {}

    bool operator==(const Measured& other) const {
        return extents.advance == other.extents.advance &&
               extents.ink.right == other.extents.ink.right &&
               extents.ink.bottom == other.extents.ink.bottom &&
               shape->glyphs.size() == other.shape->glyphs.size();
    }

    vellis::text::Extents extents;
    std::shared_ptr<const vellis::text::ShapedText> shape;
};

class TextAllocationFaults : public testing::TestWithParam<Extent> {
protected:
    void SetUp() override {
        SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
        path = vellis::test::findFont(name);
        if (path.empty())
            GTEST_SKIP() << "there is no " << name;
        bytes = vellis::test::bytesOf(path);
        reference = load();
        ASSERT_NE(reference, nullptr);
    }

    std::shared_ptr<Font> load() const { return Font::load(bytes.data(), bytes.size(), 16.f); }

    std::string path;
    std::vector<std::uint8_t> bytes;
    std::shared_ptr<Font> reference;
};

INSTANTIATE_TEST_SUITE_P(Faults, TextAllocationFaults,
                         testing::Values(Extent::One, Extent::AndAfter));

TEST_P(TextAllocationFaults, LoadingFromMemoryLeavesNothing) {
    const std::size_t numFailed =
        failUntilItSucceeds(GetParam(), [&](std::size_t number, Extent extent) {
            const KeepsNothing nothing;
            std::shared_ptr<Font> font;
            const bool hasSucceeded = succeeds(number, extent, [&] { font = load(); });
            EXPECT_EQ(font != nullptr, hasSucceeded);
            return hasSucceeded;
        });
    EXPECT_GE(numFailed, 3u);
}

TEST_P(TextAllocationFaults, LoadingAFileLeavesNothing) {
    const std::size_t numFailed =
        failUntilItSucceeds(GetParam(), [&](std::size_t number, Extent extent) {
            const KeepsNothing nothing;
            std::shared_ptr<Font> font;
            const bool hasSucceeded =
                succeeds(number, extent, [&] { font = Font::load(path, 16.f); });
            EXPECT_EQ(font != nullptr, hasSucceeded);
            return hasSucceeded;
        });
    EXPECT_GE(numFailed, 4u);
}

TEST_P(TextAllocationFaults, RefusingAFontLeavesNothing) {
    failUntilItSucceeds(GetParam(), [&](std::size_t number, Extent extent) {
        const KeepsNothing nothing;
        bool hasSucceeded = false;
        vellis::test::stderrOf([&] {
            hasSucceeded = succeeds(number, extent, [] {
                EXPECT_EQ(Font::load("text", 4, 16.f), nullptr);
                EXPECT_EQ(Font::load("/a/font/that/is/not.ttf", 16.f), nullptr);
            });
        });
        return hasSucceeded;
    });
}

TEST_P(TextAllocationFaults, AFontThatCouldNotShapeCanAfterwards) {
    const Measured expected(*reference);
    const std::size_t numFailed =
        failUntilItSucceeds(GetParam(), [&](std::size_t number, Extent extent) {
            const KeepsNothing nothing;
            const auto font = load();
            const bool hasSucceeded =
                succeeds(number, extent, [&] { EXPECT_TRUE(Measured(*font) == expected); });
            EXPECT_TRUE(Measured(*font) == expected);
            return hasSucceeded;
        });
    EXPECT_GE(numFailed, 5u);
}

TEST_P(TextAllocationFaults, AFontThatCouldNotRenderCanAfterwards) {
    const std::uint32_t glyph = reference->shape("W")->glyphs[0].index;
    const auto expected = reference->render(glyph).coverage;
    const std::size_t numFailed =
        failUntilItSucceeds(GetParam(), [&](std::size_t number, Extent extent) {
            const KeepsNothing nothing;
            const auto font = load();
            const bool hasSucceeded = succeeds(number, extent, [&] { font->render(glyph); });
            EXPECT_EQ(font->render(glyph).coverage, expected);
            return hasSucceeded;
        });
    EXPECT_GE(numFailed, 1u);
}

TEST_P(TextAllocationFaults, PlacesAreThereAfterwards) {
    const std::size_t expected = place(*reference, words).size();
    failUntilItSucceeds(GetParam(), [&](std::size_t number, Extent extent) {
        const KeepsNothing nothing;
        const auto font = load();
        const bool hasSucceeded = succeeds(number, extent, [&] { place(*font, words); });
        EXPECT_EQ(place(*font, words).size(), expected);
        return hasSucceeded;
    });
}

TEST(SkylineFaults, NothingMovesWhereThereIsNoMemory) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    std::mt19937 random(11);
    vellis::text::Skyline undisturbed(512);
    vellis::text::Skyline skyline(512);
    int numFailed = 0;
    for (int i = 0; i < 400; ++i) {
        const unsigned int width = 1 + vellis::test::randomBelow(random, 40);
        const unsigned int height = 1 + vellis::test::randomBelow(random, 40);
        const auto expected = undisturbed.add(width, height);
        std::optional<vellis::text::Skyline::Place> place;
        if (!succeeds(1, Extent::One, [&] { place = skyline.add(width, height); })) {
            ++numFailed;
            place = skyline.add(width, height);
        }
        ASSERT_EQ(place.has_value(), expected.has_value()) << i;
        if (place) {
            EXPECT_EQ(place->x, expected->x) << i;
            EXPECT_EQ(place->y, expected->y) << i;
        }
    }
    EXPECT_GE(numFailed, 4);
}

/// Drawing with a canvas.
class TextDrawingFaults : public vellis::test::CanvasTest,
                          public testing::WithParamInterface<Extent> {
protected:
    void SetUp() override {
        SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
        if (vellis::test::findFont(name).empty())
            GTEST_SKIP() << "there is no " << name;
        gl.setState(GL_UNPACK_ROW_LENGTH, {9});
    }

    static std::shared_ptr<Font> load(float pixels) {
        return Font::load(vellis::test::findFont(name), pixels);
    }

    void draw(const std::shared_ptr<Font>& font, const char* text) const {
        vellis::text::draw(canvas, font, {0.25, 0.5}, text, white, Anchor::Center);
    }

    /// How many there are of those made since gl.forget().
    std::size_t numTextures() const {
        return gl.countOf("glGenTextures") - gl.countOf("glDeleteTextures");
    }

    /// Calls what draws with a canvas and a font of its own, of which nothing may be left.
    template <class Work>
    void inTheEndNothingIsLeft(float pixels, Work work) {
        canvas.reset();
        gl.forget();
        const std::ptrdiff_t numLive = numLiveAllocations();
        canvas = vellis::Canvas::make();
        work(load(pixels));
        canvas.reset();
        EXPECT_EQ(numLiveAllocations(), numLive);
        EXPECT_EQ(numTextures(), 0u);
        const Lines calls = gl.takeCalls();
        EXPECT_EQ(only(calls, {"glPixelStorei(GL_UNPACK_ROW_LENGTH, 0)"}).size(),
                  only(calls, {"glPixelStorei(GL_UNPACK_ROW_LENGTH, 9)"}).size());
    }

    /// Draws a text with each allocation failing in turn, and then again with the same canvas.
    std::size_t failDrawing(float pixels, const char* text) {
        return failUntilItSucceeds(GetParam(), [&](std::size_t number, Extent extent) {
            bool hasSucceeded = false;
            inTheEndNothingIsLeft(pixels, [&](const std::shared_ptr<Font>& font) {
                canvas->begin(glm::mat4(1.f));
                hasSucceeded = succeeds(number, extent, [&] { draw(font, text); });
                canvas->end();
                const std::size_t numBefore = numTextures();
                const std::size_t numUploads = gl.countOf("glTexImage2D");
                const std::size_t numDraws = gl.countOf("glDrawElements");
                canvas->begin(glm::mat4(1.f));
                draw(font, text);
                canvas->end();
                EXPECT_EQ(gl.countOf("glDrawElements"), numDraws + 1);
                EXPECT_EQ(gl.countOf("glTexImage2D"), numUploads + 1 - numBefore);
                EXPECT_EQ(numTextures(), 1u);
            });
            return hasSucceeded;
        });
    }
};

INSTANTIATE_TEST_SUITE_P(Faults, TextDrawingFaults, testing::Values(Extent::One, Extent::AndAfter));

TEST_P(TextDrawingFaults, WhatCouldNotBeDrawnIsDrawnAfterwards) {
    EXPECT_GE(failDrawing(16.f, "Hamburg 42"), 10u);
}

TEST_P(TextDrawingFaults, SoItIsWithTexelsOfFourComponents) {
    const int hasRed = GLAD_GL_ARB_texture_rg;
    GLAD_GL_ARB_texture_rg = 0;
    EXPECT_GE(failDrawing(16.f, "Hamburg 42"), 10u);
    GLAD_GL_ARB_texture_rg = hasRed;
}

TEST_P(TextDrawingFaults, SoItIsWithALargeGlyph) {
    EXPECT_GE(failDrawing(900.f, "W"), 10u);
}

TEST_P(TextDrawingFaults, APictureThatCouldNotBeRecordedCanBeAfterwards) {
    failUntilItSucceeds(GetParam(), [&](std::size_t number, Extent extent) {
        bool hasSucceeded = false;
        inTheEndNothingIsLeft(16.f, [&](const std::shared_ptr<Font>& font) {
            const auto record = [&] {
                canvas->beginPicture(glm::mat4(1.f));
                draw(font, "Hamburg 42");
                return canvas->endPicture();
            };
            hasSucceeded = succeeds(number, extent, [&] { record(); });
            const std::shared_ptr<vellis::Picture> picture = record();
            canvas->begin(glm::mat4(1.f));
            canvas->drawPicture(picture);
            canvas->end();
            EXPECT_EQ(gl.countOf("glDrawElements"), 1u);
        });
        return hasSucceeded;
    });
}

} // namespace
