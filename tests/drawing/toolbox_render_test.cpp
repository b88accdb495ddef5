// needs: a program of its own

/// The Toolbox on a driver.
///
/// engine::dispose ends the Toolbox for the rest of the process, and its buffer and programs live
/// in one context. So these tests share one context for the process, which other render tests do
/// not, and are a program of their own.

#include <vellis/drawing/toolbox.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading/program.hpp>
#include <vellis/state.hpp>

#include <offscreen/context.hpp>
#include <offscreen/image.hpp>

#include "support/extension.hpp"
#include "support/render_test.hpp"

namespace {

using namespace vellis;

constexpr unsigned int size = 256;

/// The context of the process.
class Stage : public testing::Environment {
public:
    void SetUp() override {
        std::string error;
        context_ = offscreen::Context::open(renderSettings(size, size), error);
        ASSERT_NE(context_, nullptr) << error;
        ASSERT_TRUE(loadForTests(*context_));
    }
    void TearDown() override {
        if (context_ == nullptr)
            return;
        engine::dispose();
        context_.reset();
    }

private:
    std::unique_ptr<offscreen::Context> context_;
};

[[maybe_unused]] const testing::Environment* const stage =
    testing::AddGlobalTestEnvironment(new Stage); // which owns it

const glm::vec4 white(1.f);
const glm::vec4 red(1.f, 0.f, 0.f, 1.f);
const glm::vec4 green(0.f, 1.f, 0.f, 1.f);
const glm::vec4 blue(0.f, 0.f, 1.f, 1.f);
const glm::vec4 black(0.f, 0.f, 0.f, 1.f);

/// Pixels from the lower left corner on to clip coordinates. The middle of a pixel is at a half.
const glm::mat4 pixels = [] {
    glm::mat4 matrix(1.f);
    matrix[0][0] = matrix[1][1] = 2.f / static_cast<float>(size);
    matrix[3][0] = matrix[3][1] = -1.f;
    return matrix;
}();

template <class V>
constexpr bool is2D = std::is_same_v<V, glm::vec2>;

/// A point of either kind at these pixels.
template <class V>
V point(float x, float y) {
    V result(0.f);
    result.x = x;
    result.y = y;
    return result;
}

/// A picture of the framebuffer, whose rows count from below.
class Picture {
public:
    Picture() : image_(offscreen::readPixels(size, size)) {}

    /// The channels of a pixel, 0 to 255.
    glm::vec4 at(int x, int y) const {
        const unsigned char* rgba =
            image_.at(static_cast<unsigned int>(x), size - 1 - static_cast<unsigned int>(y));
        return {rgba[0], rgba[1], rgba[2], rgba[3]};
    }

    /// Whether the pixel has that colour, its alpha aside.
    bool has(const glm::vec4& color, int x, int y) const { return isBetween(color, color, x, y); }

    /// Whether each channel of the pixel but alpha is between those of two colours.
    bool isBetween(const glm::vec4& a, const glm::vec4& b, int x, int y) const {
        constexpr float rounding = 2.f;
        const glm::vec4 found = at(x, y);
        for (glm::length_t i = 0; i < 3; ++i) {
            const auto [low, high] = std::minmax({255.f * a[i], 255.f * b[i]});
            if (found[i] < low - rounding || found[i] > high + rounding)
                return false;
        }
        return true;
    }

    /// How many pixels are not black.
    int numDrawn() const {
        int count = 0;
        for (int y = 0; y < static_cast<int>(size); ++y) {
            for (int x = 0; x < static_cast<int>(size); ++x)
                count += has(black, x, y) ? 0 : 1;
        }
        return count;
    }

private:
    offscreen::Image image_;
};

class ToolboxRender : public testing::Test {
protected:
    ToolboxRender() { clear(); }
    ~ToolboxRender() override { EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)); }

    static void clear() {
        glClearColor(0.f, 0.f, 0.f, 1.f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    }
};

struct PointName {
    template <class V>
    static std::string GetName(int) {
        return is2D<V> ? "2D" : "3D";
    }
};

/// What exists for 2D and 3D points.
template <class V>
class ToolboxFamilyRender : public ToolboxRender {
protected:
    /// The corners of the square from pixel 64 to pixel 192: lower left, upper left, lower right,
    /// upper right.
    static constexpr float low = 64.5f;
    static constexpr float high = 192.5f;
    const V a = point<V>(low, low);
    const V b = point<V>(low, high);
    const V c = point<V>(high, low);
    const V d = point<V>(high, high);

    /// The same corners at the edges of pixels, and the square a little larger: what fills it
    /// covers the lines through the others.
    static std::array<V, 4> corners() {
        return {point<V>(64.f, 64.f), point<V>(64.f, 195.f), point<V>(195.f, 64.f),
                point<V>(195.f, 195.f)};
    }

    /// Expects which sides, diagonals and halves of the square are green.
    static void isDrawn(bool left, bool falling, bool right, bool rising, bool leftHalf,
                        bool topHalf) {
        const Picture picture;
        EXPECT_EQ(picture.has(green, 64, 100), left);
        EXPECT_EQ(picture.has(green, 100, 156), falling);
        EXPECT_EQ(picture.has(green, 192, 100), right);
        EXPECT_EQ(picture.has(green, 100, 100), rising);
        EXPECT_EQ(picture.has(green, 80, 110), leftHalf);
        EXPECT_EQ(picture.has(green, 140, 180), topHalf);
        for (const int outside : {60, 196}) {
            EXPECT_TRUE(picture.has(black, outside, 128));
            EXPECT_TRUE(picture.has(black, 128, outside));
        }
    }
};

using PointTypes = testing::Types<glm::vec2, glm::vec3>;
TYPED_TEST_SUITE(ToolboxFamilyRender, PointTypes, PointName);

TYPED_TEST(ToolboxFamilyRender, LinesJoinEachTwo) {
    Toolbox::drawLines(green, {this->a, this->b, this->c, this->d}, pixels);
    this->isDrawn(true, false, true, false, false, false);
}

TYPED_TEST(ToolboxFamilyRender, LineStripJoinsAll) {
    Toolbox::drawLineStrip(green, {this->a, this->b, this->c, this->d}, pixels);
    this->isDrawn(true, true, true, false, false, false);
}

TYPED_TEST(ToolboxFamilyRender, LineLoopReturnsToTheFirst) {
    Toolbox::drawLineLoop(green, {this->a, this->b, this->c, this->d}, pixels);
    this->isDrawn(true, true, true, true, false, false);
}

TYPED_TEST(ToolboxFamilyRender, TriangleStripFillsBetweenNeighbours) {
    const auto corners = this->corners();
    Toolbox::drawTriangleStrip(green, 4, corners.data(), pixels);
    this->isDrawn(true, true, true, true, true, true);
    EXPECT_EQ(Picture().numDrawn(), 131 * 131);
}

TYPED_TEST(ToolboxFamilyRender, TriangleFanFillsAroundTheFirst) {
    const auto corners = this->corners();
    Toolbox::drawTriangleFan(green, 4, corners.data(), pixels);
    // The quarter at the top belongs to no triangle.
    this->isDrawn(true, true, true, true, true, false);
}

TYPED_TEST(ToolboxFamilyRender, FirstAndCountChooseAmongThePoints) {
    const TypeParam points[] = {this->a, this->b, this->b, this->c, this->c, this->d};
    Toolbox::drawLines(green, 2, 2, points, pixels);
    this->isDrawn(false, true, false, false, false, false);
    this->clear();
    Toolbox::drawLines(green, 4, points, pixels);
    this->isDrawn(true, true, false, false, false, false);
}

TYPED_TEST(ToolboxFamilyRender, CallersBufferIsDrawn) {
    const auto buffer = VertexAttributeBuffer<TypeParam>::make(
        {this->a, this->b, this->c, this->d}, BufferUsage::Static, BufferAccess::Draw);
    Toolbox::drawLines(green, 2, 2, buffer, pixels);
    this->isDrawn(false, false, true, false, false, false);
    Toolbox::drawLineStrip(green, 0, 0, buffer, pixels); // all of them
    this->isDrawn(true, true, true, false, false, false);
}

TYPED_TEST(ToolboxFamilyRender, NullPointsDrawTheLastOnesAgain) {
    Toolbox::drawLines(red, {this->a, this->b, this->c, this->d}, pixels);
    const TypeParam* const none = nullptr;
    Toolbox::drawLines(green, 4, none, pixels);
    this->isDrawn(true, false, true, false, false, false);
}

TYPED_TEST(ToolboxFamilyRender, TooManyPointsAreRefusedByGl) {
    Toolbox::drawLines(red, {this->a, this->b}, pixels);
    const std::vector<TypeParam> many(200, this->c);
    Toolbox::drawLines(green, 200, many.data(), pixels);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    // Of what the buffer held the first line was drawn anew.
    EXPECT_TRUE(Picture().has(green, 64, 100));
    TypeParam first[2] = {};
    const auto buffer = Toolbox::getVertexBuffer();
    buffer->bind();
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, sizeof(first), first);
    buffer->unbind();
    EXPECT_EQ(first[0], this->a);
    EXPECT_EQ(first[1], this->b);
}

TYPED_TEST(ToolboxFamilyRender, AlphaOfFlatColorsIsWrittenNotBlended) {
    Toolbox::drawTriangleStrip(glm::vec4(0.f, 1.f, 0.f, 0.5f), {this->a, this->b, this->c, this->d},
                               pixels);
    EXPECT_TRUE(Picture().has(green, 128, 128));
}

TEST_F(ToolboxRender, DepthOfPointsReachesTheMatrix) {
    glm::mat4 tilted = pixels;
    tilted[2][1] = tilted[1][1]; // z goes up like y,
    tilted[2][2] = 0.f;          // and no deeper
    Toolbox::drawLines(green, {{10.5f, 20.5f, 100.f}, {200.5f, 20.5f, 100.f}}, tilted);
    EXPECT_TRUE(Picture().has(green, 100, 120));
    EXPECT_TRUE(Picture().has(black, 100, 20));
}

// Points. They stand on a corner of pixels, so that the distance from there to the middle of a
// pixel tells its shade.

constexpr int centre = 128;
constexpr float pointSize = 60.f;

/// How far the middle of a pixel is from the centre, in pixels.
float distanceTo(int x, int y) {
    const auto step = [](int to) { return static_cast<float>(to - centre) + 0.5f; };
    return std::hypot(step(x), step(y));
}

/// The alpha of a disc at a distance from its centre: full up to the rim, over which it fades.
float discAlpha(float distance, float diameter, float softness) {
    const float d = 2.f * distance / diameter;
    const float t = (d - (1.f - softness)) / softness;
    return d < 1.f - softness ? 1.f : std::max(0.f, 1.f - t * t);
}

glm::vec4 blended(const glm::vec4& under, const glm::vec4& color, float alpha) {
    return color * alpha + under * (1.f - alpha);
}

template <class V>
class ToolboxPointsRender : public ToolboxRender {
protected:
    /// Expects along rays from the centre in several directions what \p colorAt says for the
    /// distance, which a driver's rounding may shift by an eighth of a pixel in
    /// both directions.
    template <class ColorAt>
    static void profileIs(ColorAt colorAt) {
        constexpr float shift = 0.19f;
        const Picture picture;
        const glm::ivec2 directions[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 1}, {-1, 1}};
        for (const glm::ivec2& direction : directions) {
            for (int step = 0; step < 40; ++step) {
                const int x = centre + step * direction.x;
                const int y = centre + step * direction.y;
                const float distance = distanceTo(x, y);
                EXPECT_TRUE(
                    picture.isBetween(colorAt(distance - shift), colorAt(distance + shift), x, y))
                    << "at " << x << ", " << y << ": " << picture.at(x, y).x << ' '
                    << picture.at(x, y).y << ' ' << picture.at(x, y).z << ", distance " << distance;
            }
        }
    }

    const V middle = point<V>(centre, centre);
};

TYPED_TEST_SUITE(ToolboxPointsRender, PointTypes, PointName);

TYPED_TEST(ToolboxPointsRender, PointIsRoundWithASoftRim) {
    Toolbox::drawPoints(white, pointSize, {this->middle}, pixels);
    this->profileIs(
        [](float distance) { return blended(black, white, discAlpha(distance, pointSize, 0.1f)); });
}

TYPED_TEST(ToolboxPointsRender, PointIsBlendedByTheAlphaOfItsColor) {
    const glm::vec4 faint(1.f, 0.f, 0.f, 0.5f);
    Toolbox::drawPoints(faint, pointSize, {this->middle}, pixels);
    this->profileIs([&](float distance) {
        return blended(black, red, 0.5f * discAlpha(distance, pointSize, 0.1f));
    });
}

TYPED_TEST(ToolboxPointsRender, CornersOfTheSpriteStayAsTheyWere) {
    glClearColor(0.f, 0.f, 1.f, 1.f);
    glClear(GL_COLOR_BUFFER_BIT);
    Toolbox::drawPoints(white, pointSize, {this->middle}, pixels);
    const Picture picture;
    for (const int x : {centre - 29, centre + 28}) {
        for (const int y : {centre - 29, centre + 28}) {
            EXPECT_EQ(picture.at(x, y), 255.f * blue);
        }
    }
}

TYPED_TEST(ToolboxPointsRender, EveryPointIsDrawnAndNothingElse) {
    Toolbox::drawPoints(green, 10.f,
                        {point<TypeParam>(50.f, 50.f), point<TypeParam>(200.f, 60.f),
                         point<TypeParam>(90.f, 180.f)},
                        pixels);
    const Picture picture;
    EXPECT_TRUE(picture.has(green, 50, 50));
    EXPECT_TRUE(picture.has(green, 200, 60));
    EXPECT_TRUE(picture.has(green, 90, 180));
    EXPECT_NEAR(picture.numDrawn(), 3 * 78, 3 * 12); // the areas of circles
}

TYPED_TEST(ToolboxPointsRender, FirstAndCountChooseAmongThePoints) {
    const TypeParam points[] = {point<TypeParam>(50.f, 50.f), point<TypeParam>(100.f, 50.f),
                                point<TypeParam>(150.f, 50.f), point<TypeParam>(200.f, 50.f)};
    Toolbox::drawPoints(green, 10.f, 1, 2, points, pixels);
    const Picture picture;
    EXPECT_TRUE(picture.has(black, 50, 50));
    EXPECT_TRUE(picture.has(green, 100, 50));
    EXPECT_TRUE(picture.has(green, 150, 50));
    EXPECT_TRUE(picture.has(black, 200, 50));
}

TYPED_TEST(ToolboxPointsRender, BullseyeHasThreeRings) {
    Toolbox::drawBullseyes(red, green, pointSize, {this->middle}, pixels);
    this->profileIs([](float distance) {
        glm::vec4 color = blended(black, red, discAlpha(distance, pointSize, 0.1f));
        color = blended(color, green, discAlpha(distance, 0.7f * pointSize, 0.2f));
        return blended(color, red, discAlpha(distance, 0.3f * pointSize, 0.4f));
    });
    // The rings where they are full: up to 5, from 9 to 16 and from 21 to 27 pixels.
    const Picture picture;
    EXPECT_TRUE(picture.has(red, centre + 2, centre));
    EXPECT_TRUE(picture.has(green, centre + 12, centre));
    EXPECT_TRUE(picture.has(red, centre + 24, centre));
    EXPECT_TRUE(picture.has(black, centre + 31, centre));
}

TYPED_TEST(ToolboxPointsRender, TooManyPointsAreRefusedByGlAndTheErrorIsTaken) {
    Toolbox::drawPoints(red, 10.f, {point<TypeParam>(50.f, 50.f)}, pixels);
    const std::vector<TypeParam> many(200, this->middle);
    Toolbox::drawPoints(green, 10.f, 200, many.data(), pixels);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_TRUE(Picture().has(green, 50, 50)); // what the buffer held
}

// Dashes: 12 drawn, 8 left out. The lines begin a little before the middle of a pixel, so that a
// driver's rounding does not take it to be before the line.

/// The lengths of the runs of equal values, the first one of drawn pixels.
std::vector<int> runs(const std::vector<bool>& drawn) {
    std::vector<int> lengths = {0};
    bool current = true;
    for (const bool is : drawn) {
        if (is != current) {
            lengths.push_back(0);
            current = is;
        }
        ++lengths.back();
    }
    return lengths;
}

/// Expects runs of these lengths, each up to a pixel.
void runsAre(const std::vector<bool>& drawn, const std::vector<int>& expected) {
    const std::vector<int> found = runs(drawn);
    ASSERT_EQ(found.size(), expected.size()) << testing::PrintToString(found);
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(found[i], expected[i], 1) << "run " << i;
}

template <class V>
class ToolboxDashesRender : public ToolboxRender {};

TYPED_TEST_SUITE(ToolboxDashesRender, PointTypes, PointName);

TYPED_TEST(ToolboxDashesRender, PatternGoesOnAroundTheCorner) {
    // 90 pixels to the right end within a dash; then 70 up.
    Toolbox::drawDashLineStrip(green, 12.f, 8.f,
                               {point<TypeParam>(20.25f, 100.5f), point<TypeParam>(110.5f, 100.5f),
                                point<TypeParam>(110.5f, 170.5f)},
                               pixels);
    const Picture picture;
    std::vector<bool> drawn;
    for (int x = 20; x < 110; ++x)
        drawn.push_back(picture.has(green, x, 100));
    for (int y = 100; y < 170; ++y)
        drawn.push_back(picture.has(green, 110, y));
    runsAre(drawn, {12, 8, 12, 8, 12, 8, 12, 8, 12, 8, 12, 8, 12, 8, 12, 8});
}

TYPED_TEST(ToolboxDashesRender, LengthsAreInTheUnitsOfThePoints) {
    glm::mat4 doubled = pixels;
    doubled[0][0] *= 2.f;
    doubled[1][1] *= 2.f;
    Toolbox::drawDashLineStrip(
        green, 12.f, 8.f, {point<TypeParam>(10.125f, 50.25f), point<TypeParam>(70.25f, 50.25f)},
        doubled);
    const Picture picture;
    std::vector<bool> drawn;
    for (int x = 20; x < 140; ++x)
        drawn.push_back(picture.has(green, x, 100));
    runsAre(drawn, {24, 16, 24, 16, 24, 16});
}

TYPED_TEST(ToolboxDashesRender, NothingIsDrawnAsideOfTheLine) {
    Toolbox::drawDashLineStrip(green, 12.f, 8.f,
                               {point<TypeParam>(20.25f, 100.5f), point<TypeParam>(120.5f, 100.5f)},
                               pixels);
    EXPECT_NEAR(Picture().numDrawn(), 60, 5); // a pixel more or less for each dash
}

TEST_F(ToolboxRender, DepthCountsForTheLengthsOfDashes) {
    // 60 pixels are seen of a line of length 100.
    glm::mat4 deep = pixels;
    deep[2][2] = 0.01f;
    Toolbox::drawDashLineStrip(green, 20.f, 30.f, {{20.25f, 100.5f, 0.f}, {80.5f, 100.5f, 80.f}},
                               deep);
    const Picture picture;
    std::vector<bool> drawn;
    for (int x = 20; x < 80; ++x)
        drawn.push_back(picture.has(green, x, 100));
    runsAre(drawn, {12, 18, 12, 18});
}

TEST_F(ToolboxRender, QuadIsFilled) {
    Toolbox::drawQuad(
        green, {{64.f, 64.f, 0.f}, {192.f, 64.f, 0.f}, {192.f, 160.f, 0.f}, {64.f, 160.f, 0.f}},
        pixels);
    EXPECT_EQ(Picture().numDrawn(), 128 * 96);
    EXPECT_TRUE(Picture().has(green, 64, 64));
    EXPECT_TRUE(Picture().has(green, 191, 159));
}

TEST_F(ToolboxRender, OutlineOfAQuadIsOverItsFill) {
    const glm::vec3 corners[] = {
        {64.5f, 64.5f, 0.f}, {192.5f, 64.5f, 0.f}, {192.5f, 160.5f, 0.f}, {64.5f, 160.5f, 0.f}};
    Toolbox::drawQuad(green, red, corners, pixels);
    const Picture picture;
    EXPECT_TRUE(picture.has(green, 128, 128));
    EXPECT_TRUE(picture.has(green, 66, 66));
    EXPECT_TRUE(picture.has(green, 190, 158));
    for (const int y : {64, 160})
        EXPECT_TRUE(picture.has(red, 128, y)) << y;
    for (const int x : {64, 192})
        EXPECT_TRUE(picture.has(red, x, 128)) << x;
    EXPECT_TRUE(picture.has(black, 128, 62));
    EXPECT_TRUE(picture.has(black, 194, 128));
}

TEST_F(ToolboxRender, RectIsFilledWithItsCornersInEitherOrder) {
    const float left = 40.f, right = 100.f, bottom = 60.f, top = 90.f;
    const std::vector<std::pair<glm::vec2, glm::vec2>> orders = {{{left, bottom}, {right, top}},
                                                                 {{right, top}, {left, bottom}},
                                                                 {{left, top}, {right, bottom}},
                                                                 {{right, bottom}, {left, top}}};
    for (const auto& [a, b] : orders) {
        clear();
        Toolbox::drawRect(green, a, b, pixels);
        const Picture picture;
        EXPECT_EQ(picture.numDrawn(), 60 * 30);
        EXPECT_TRUE(picture.has(green, 40, 60));
        EXPECT_TRUE(picture.has(green, 99, 89));
    }
}

// State.

using Snapshot = std::map<std::string, std::vector<double>>;

template <class T, unsigned int N, unsigned int pname>
void add(Snapshot& snapshot, const char* name) {
    state::State<T, N, pname> record{};
    if (knows(pname))
        get(record);
    snapshot[name].assign(record.value, record.value + (knows(pname) ? N : 0));
}

/// Constants of the driver among the tracked states.
const std::set<std::string> constants = {"GL_POINT_SIZE_GRANULARITY",
                                         "GL_SMOOTH_LINE_WIDTH_GRANULARITY"};

/// A tracked state; none of them has more than four values.
std::vector<double> trackedState(unsigned int pname, unsigned int count) {
    double values[4] = {};
    if (!knows(pname))
        return {};
    glGetDoublev(pname, values);
    return {values, values + count};
}

/// All that has a record or is tracked, and what a call may leave changed besides; without values
/// where the context lacks it, as OpenGL 2.1 does the bindings of array and rectangle textures.
Snapshot takeSnapshot() {
    Snapshot snapshot;
#define VELLIS_STATE(T, N, pname, queries, command) add<T, N, pname>(snapshot, #pname);
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
#define VELLIS_TRACKED_STATE(name, kind, count)                                                    \
    snapshot.emplace("GL_" #name, trackedState(GL_##name, count));
#include "state/tracked_states.inc"
#undef VELLIS_TRACKED_STATE
    GLint buffer = -1;
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &buffer);
    snapshot["GL_ARRAY_BUFFER_BINDING"] = {static_cast<double>(buffer)};
    snapshot["GL_POINT_SPRITE"] = {!isCore() && glIsEnabled(GL_POINT_SPRITE) ? 1.0 : 0.0};
    return snapshot;
}

/// A family, whether it draws points, and a call of it.
struct FamilyRow {
    const char* name;
    bool drawsPoints;
    std::function<void()> call;
};

// clang-format off
const FamilyRow families[] = {
    {"Lines2D",          false, [] { Toolbox::drawLines(red, {{9.f, 9.f}, {50.f, 9.f}}, pixels); }},
    {"Lines3D",          false, [] { Toolbox::drawLines(red, {{9.f, 9.f, 0.f}, {50.f, 9.f, 0.f}}, pixels); }},
    {"LineStrip2D",      false, [] { Toolbox::drawLineStrip(red, {{9.f, 9.f}, {50.f, 9.f}}, pixels); }},
    {"LineStrip3D",      false, [] { Toolbox::drawLineStrip(red, {{9.f, 9.f, 0.f}, {50.f, 9.f, 0.f}}, pixels); }},
    {"LineLoop2D",       false, [] { Toolbox::drawLineLoop(red, {{9.f, 9.f}, {50.f, 9.f}}, pixels); }},
    {"LineLoop3D",       false, [] { Toolbox::drawLineLoop(red, {{9.f, 9.f, 0.f}, {50.f, 9.f, 0.f}}, pixels); }},
    {"TriangleFan2D",    false, [] { Toolbox::drawTriangleFan(red, {{9.f, 9.f}, {50.f, 9.f}, {9.f, 50.f}}, pixels); }},
    {"TriangleFan3D",    false, [] { Toolbox::drawTriangleFan(red, {{9.f, 9.f, 0.f}, {50.f, 9.f, 0.f}, {9.f, 50.f, 0.f}}, pixels); }},
    {"TriangleStrip2D",  false, [] { Toolbox::drawTriangleStrip(red, {{9.f, 9.f}, {50.f, 9.f}, {9.f, 50.f}}, pixels); }},
    {"TriangleStrip3D",  false, [] { Toolbox::drawTriangleStrip(red, {{9.f, 9.f, 0.f}, {50.f, 9.f, 0.f}, {9.f, 50.f, 0.f}}, pixels); }},
    {"Points2D",         true,  [] { Toolbox::drawPoints(red, 9.f, {{50.f, 50.f}}, pixels); }},
    {"Points3D",         true,  [] { Toolbox::drawPoints(red, 9.f, {{50.f, 50.f, 0.f}}, pixels); }},
    {"Bullseyes2D",      true,  [] { Toolbox::drawBullseyes(red, green, 9.f, {{50.f, 50.f}}, pixels); }},
    {"Bullseyes3D",      true,  [] { Toolbox::drawBullseyes(red, green, 9.f, {{50.f, 50.f, 0.f}}, pixels); }},
    {"DashLineStrip2D",  false, [] { Toolbox::drawDashLineStrip(red, 3.f, 1.f, {{9.f, 9.f}, {50.f, 9.f}}, pixels); }},
    {"DashLineStrip3D",  false, [] { Toolbox::drawDashLineStrip(red, 3.f, 1.f, {{9.f, 9.f, 0.f}, {50.f, 9.f, 0.f}}, pixels); }},
    {"Quad",             false, [] { Toolbox::drawQuad(red, {{9.f, 9.f, 0.f}, {50.f, 9.f, 0.f}, {9.f, 50.f, 0.f}}, pixels); }},
    {"QuadWithOutline",  false, [] { Toolbox::drawQuad(red, green, {{9.f, 9.f, 0.f}, {50.f, 9.f, 0.f}, {9.f, 50.f, 0.f}}, pixels); }},
    {"Rect",             false, [] { Toolbox::drawRect(red, {9.f, 9.f}, {50.f, 50.f}, pixels); }},
};
// clang-format on

/// Puts the state back that glPushAttrib and glPushClientAttrib would keep, which a core context
/// lacks.
class KeptRecords {
public:
    KeptRecords() {
#define VELLIS_STATE(T, N, pname, queries, command) keep<T, N, pname>();
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
    }
    ~KeptRecords() {
        for (const auto& record : records_)
            record();
        for (const int pname : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_PIXELS, GL_PACK_SKIP_ROWS,
                                GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_PIXELS, GL_UNPACK_SKIP_ROWS})
            glPixelStorei(static_cast<GLenum>(pname), 0);
        glBlendColor(0.f, 0.f, 0.f, 0.f);
        glStencilMask(~0u);
    }
    KeptRecords(const KeptRecords&) = delete;
    KeptRecords& operator=(const KeptRecords&) = delete;

private:
    template <class T, unsigned int N, unsigned int pname>
    void keep() {
        state::State<T, N, pname> record{};
        state::get(record);
        records_.emplace_back([record] { state::set(record); });
    }

    std::vector<std::function<void()>> records_;
};

/// All state of the snapshot set to what it is not by default, and put back in the end.
class ToolboxStateRender : public ToolboxRender, public testing::WithParamInterface<FamilyRow> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(Extension::VertexArrays);
        SKIP_WITHOUT(Extension::Framebuffers);
        if (isCore()) {
            kept = std::make_unique<KeptRecords>();
        } else {
            glPushAttrib(GL_ALL_ATTRIB_BITS);
            glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
        }
        program = Program::make("attribute vec4 position; void main() { gl_Position = position; }",
                                "void main() { gl_FragColor = vec4(1.0); }");
        glGenTextures(numTextures, textures);
        glGenBuffers(1, &buffer);
        glGenVertexArrays(1, &vertexArray);
        glGenRenderbuffers(numRenderbuffers, renderbuffers);
        glGenFramebuffers(1, &framebuffer);
    }
    void TearDown() override {
        if (IsSkipped())
            return;
        glUseProgram(0);
        glDeleteFramebuffers(1, &framebuffer);
        glDeleteRenderbuffers(numRenderbuffers, renderbuffers);
        glDeleteVertexArrays(1, &vertexArray);
        glDeleteBuffers(1, &buffer);
        glDeleteTextures(numTextures, textures);
        if (isCore()) {
            kept.reset();
        } else {
            glPopClientAttrib();
            glPopAttrib();
        }
    }

    void setObjects() {
        glActiveTexture(GL_TEXTURE3);
        struct BindingRow {
            GLenum target;
            GLenum binding;
        };
        constexpr BindingRow bindings[numTextures] = {
            {GL_TEXTURE_1D, GL_TEXTURE_BINDING_1D},
            {GL_TEXTURE_2D, GL_TEXTURE_BINDING_2D},
            {GL_TEXTURE_3D, GL_TEXTURE_BINDING_3D},
            {GL_TEXTURE_RECTANGLE, GL_TEXTURE_BINDING_RECTANGLE},
            {GL_TEXTURE_CUBE_MAP, GL_TEXTURE_BINDING_CUBE_MAP},
            {GL_TEXTURE_1D_ARRAY, GL_TEXTURE_BINDING_1D_ARRAY},
            {GL_TEXTURE_2D_ARRAY, GL_TEXTURE_BINDING_2D_ARRAY}};
        for (int i = 0; i < numTextures; ++i) {
            if (knows(bindings[i].binding))
                glBindTexture(bindings[i].target, textures[i]);
        }
        glReadBuffer(GL_NONE);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffer);
        attach(GL_COLOR_ATTACHMENT0, GL_RGBA8, renderbuffers[0]);
        // GL tells no stencil reference beyond what the stencil buffer holds.
        attach(GL_DEPTH_STENCIL_ATTACHMENT, GL_DEPTH24_STENCIL8, renderbuffers[1]);
        // The element buffer is a matter of the vertex array object: the same one for both, so that
        // the change to vertex array object 0 does not show there.
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
        glBindVertexArray(vertexArray);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glUseProgram(program->id());
    }

    static void setValues() {
        glCullFace(GL_FRONT);
        glDepthFunc(GL_GEQUAL);
        glClearStencil(5);
        glLogicOp(GL_XOR);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
        glPixelStorei(GL_PACK_ALIGNMENT, 2);
        glBlendEquationSeparate(GL_FUNC_SUBTRACT, GL_MAX);
        if (isCore()) {
            glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
        } else {
            glPolygonMode(GL_FRONT, GL_LINE);
            glPolygonMode(GL_BACK, GL_POINT);
        }
        for (const int pname : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_PIXELS, GL_PACK_SKIP_ROWS,
                                GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_PIXELS, GL_UNPACK_SKIP_ROWS})
            glPixelStorei(static_cast<GLenum>(pname), 3);
        glBlendColor(0.25f, 0.5f, 0.75f, 1.f);
        glStencilMask(0x55);
        glStencilFuncSeparate(GL_FRONT, GL_LESS, 3, 0x0F);
        glStencilOpSeparate(GL_FRONT, GL_INCR, GL_DECR, GL_INVERT);
        glStencilFuncSeparate(GL_BACK, GL_GREATER, 4, 0xF0);
        glStencilOpSeparate(GL_BACK, GL_ZERO, GL_REPLACE, GL_INCR_WRAP);
        glBlendFuncSeparate(GL_DST_COLOR, GL_ONE_MINUS_DST_COLOR, GL_DST_ALPHA, GL_CONSTANT_ALPHA);
        glViewport(1, 2, 30, 40);
        glScissor(5, 6, 70, 80);
        glPointSize(2.5f);
        glLineWidth(isForwardCompatible() ? 0.5f : 1.5f);
        glClearColor(0.25f, 0.5f, 0.75f, 0.f);
        glClearDepth(0.5);
        glDepthRange(0.25, 0.75);
        glDepthMask(GL_FALSE);
        glColorMask(GL_TRUE, GL_FALSE, GL_FALSE, GL_TRUE);
        constexpr GLenum capabilities[] = {
            GL_PROGRAM_POINT_SIZE, GL_LINE_SMOOTH, GL_POLYGON_SMOOTH, GL_CULL_FACE,   GL_DEPTH_TEST,
            GL_STENCIL_TEST,       GL_BLEND,       GL_COLOR_LOGIC_OP, GL_SCISSOR_TEST};
        if (!isCore())
            glEnable(GL_POINT_SPRITE);
        for (const GLenum capability : capabilities)
            glEnable(capability);
    }

    static void attach(GLenum attachment, GLenum format, GLuint renderbuffer) {
        glBindRenderbuffer(GL_RENDERBUFFER, renderbuffer);
        glRenderbufferStorage(GL_RENDERBUFFER, format, size, size);
        glFramebufferRenderbuffer(GL_DRAW_FRAMEBUFFER, attachment, GL_RENDERBUFFER, renderbuffer);
    }

    static constexpr int numTextures = 7;
    static constexpr int numRenderbuffers = 2;
    std::unique_ptr<KeptRecords> kept;
    std::shared_ptr<Program> program;
    GLuint textures[numTextures] = {};
    GLuint buffer = 0;
    GLuint vertexArray = 0;
    GLuint renderbuffers[numRenderbuffers] = {};
    GLuint framebuffer = 0;
};

TEST_P(ToolboxStateRender, IsAsBeforeButForWhatIsDocumented) {
    const Snapshot defaults = takeSnapshot();
    ASSERT_EQ(defaults.size(), 46u + 23u + 2u) << "23 tracked states name no record";
    setObjects();
    setValues();
    const Snapshot before = takeSnapshot();
    for (const auto& [name, values] : before)
        EXPECT_EQ(values == defaults.at(name), constants.count(name) == 1 || values.empty() ||
                                                   (name == "GL_POINT_SPRITE" && isCore()))
            << name;

    GetParam().call();

    Snapshot expected = before;
    expected["GL_CURRENT_PROGRAM"] = {0.0};
    expected["GL_VERTEX_ARRAY_BINDING"] = {0.0};
    expected["GL_ARRAY_BUFFER_BINDING"] = {0.0};
    if (GetParam().drawsPoints) {
        expected["GL_PROGRAM_POINT_SIZE"] = {0.0};
        expected["GL_POINT_SPRITE"] = {0.0};
    }
    for (const auto& [name, values] : takeSnapshot())
        EXPECT_EQ(values, expected.at(name)) << name;
}

TEST_P(ToolboxStateRender, OfTheDefaultsIsTheSameAfterwards) {
    const Snapshot before = takeSnapshot();
    GetParam().call();
    EXPECT_EQ(takeSnapshot(), before);
}

INSTANTIATE_TEST_SUITE_P(Families, ToolboxStateRender, testing::ValuesIn(families),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
