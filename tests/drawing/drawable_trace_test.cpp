#include <vellis/drawing/drawable.hpp>

#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"
#include "support/switch_arguments.hpp"

namespace {

using vellis::BufferAccess;
using vellis::BufferUsage;
using vellis::Drawable;
using vellis::IndexBuffer;
using vellis::test::FakeGl;

VELLIS_TAKES_SWITCHES_ALONE(Drawable::enableFaceCulling);
VELLIS_TAKES_SWITCHES_ALONE(Drawable::enableLineSmooth);
VELLIS_TAKES_SWITCHES_ALONE(Drawable::enablePolygonSmooth);
VELLIS_TAKES_SWITCHES_ALONE(Drawable::enablePointSprite);

/// A drawable of a given size, without a binding.
class CountedShape : public Drawable {
public:
    explicit CountedShape(unsigned int numVertices, PrimitiveType type = PrimitiveType::Points)
        : Drawable(type) {
        numVertices_ = numVertices;
    }
};

/// A drawable as its base constructor leaves it.
class Bare : public Drawable {
public:
    Bare() : Drawable(PrimitiveType::Lines) {}
};

TEST(DrawableTrace, ConstructionMakesNoCallAndLeavesNothingToDraw) {
    FakeGl gl;
    const Bare bare;
    EXPECT_EQ(bare.numVertices(), 0u);
    EXPECT_EQ(bare.getAttributesBinding(), nullptr);
    EXPECT_GL_CALLS(gl);
    bare.draw(0, 0);
    EXPECT_GL_CALLS(gl, "glDrawArrays(GL_LINES, 0, 0)");
}

TEST(DrawableTrace, CountOfZeroDrawsWhatRemains) {
    FakeGl gl;
    const CountedShape shape(12);
    shape.draw(5, 0);
    shape.draw(5, 3);
    shape.draw(0, 0);
    shape.draw(12, 0);
    EXPECT_GL_CALLS(gl, "glDrawArrays(GL_POINTS, 5, 7)", "glDrawArrays(GL_POINTS, 5, 3)",
                    "glDrawArrays(GL_POINTS, 0, 12)", "glDrawArrays(GL_POINTS, 12, 0)");
}

TEST(DrawableTrace, FirstBeyondTheEndGivesACountThatGlRefuses) {
    FakeGl gl;
    const CountedShape shape(12);
    shape.draw(13, 0);
    EXPECT_GL_CALLS(gl, "glDrawArrays(GL_POINTS, 13, -1)");
    const auto indices =
        IndexBuffer<unsigned short>::make(10, BufferUsage::Static, BufferAccess::Draw);
    gl.forget();
    shape.draw(*indices, 12, 0);
    EXPECT_EQ(gl.takeCalls()[1], "glDrawElements(GL_POINTS, -2, GL_UNSIGNED_SHORT, 24)");
    gl.ignoreTheRest();
}

template <class T>
void drawsIndices(const char* type) {
    FakeGl gl;
    const CountedShape shape(3, Drawable::PrimitiveType::TriangleStrip);
    const auto indices = IndexBuffer<T>::make(10, BufferUsage::Static, BufferAccess::Draw);
    gl.forget();
    shape.draw(*indices, 4, 0);
    const std::string offset = std::to_string(4 * sizeof(T));
    const std::vector<std::string> expected = {
        "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 1)",
        std::string("glDrawElements(GL_TRIANGLE_STRIP, 6, ") + type + ", " + offset + ")",
        "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0)"};
    EXPECT_EQ(gl.takeCalls(), expected);
    EXPECT_FALSE(indices->isBound());
    shape.draw(*indices, 1, 2);
    EXPECT_EQ(gl.takeCalls()[1], std::string("glDrawElements(GL_TRIANGLE_STRIP, 2, ") + type +
                                     ", " + std::to_string(sizeof(T)) + ")");
    gl.ignoreTheRest();
}

TEST(DrawableTrace, BytesAreDrawnAsIndices) {
    drawsIndices<unsigned char>("GL_UNSIGNED_BYTE");
}

TEST(DrawableTrace, ShortsAreDrawnAsIndicesFromAByteOffset) {
    drawsIndices<unsigned short>("GL_UNSIGNED_SHORT"); // 6 indices from byte 8
}

TEST(DrawableTrace, IntsAreDrawnAsIndices) {
    drawsIndices<unsigned int>("GL_UNSIGNED_INT");
}

/// A drawable that counts its draws, to see that they are virtual.
class CountingDraws : public Drawable {
public:
    CountingDraws() : Drawable(PrimitiveType::Points) {}
    void draw(unsigned int, unsigned int) const override { ++draws; }
    void draw(const IndexBuffer<unsigned int>&, unsigned int, unsigned int) const override {
        ++draws;
    }
    void draw(const IndexBuffer<unsigned short>&, unsigned int, unsigned int) const override {
        ++draws;
    }
    void draw(const IndexBuffer<unsigned char>&, unsigned int, unsigned int) const override {
        ++draws;
    }
    mutable int draws = 0;
};

TEST(DrawableTrace, EveryDrawCanBeOverridden) {
    FakeGl gl;
    const auto ints = IndexBuffer<unsigned int>::make(1, BufferUsage::Static, BufferAccess::Draw);
    const auto shorts =
        IndexBuffer<unsigned short>::make(1, BufferUsage::Static, BufferAccess::Draw);
    const auto bytes = IndexBuffer<unsigned char>::make(1, BufferUsage::Static, BufferAccess::Draw);
    gl.forget();
    const CountingDraws counting;
    const Drawable& drawable = counting;
    drawable.draw(0, 1);
    drawable.draw(*ints, 0, 1);
    drawable.draw(*shorts, 0, 1);
    drawable.draw(*bytes, 0, 1);
    EXPECT_EQ(counting.draws, 4);
    EXPECT_GL_CALLS(gl);
    gl.ignoreTheRest();
}

// Where a pointer to a virtual member is known to be its place in the virtual table.
#if defined(__GXX_ABI_VERSION) && !defined(_MSC_VER)

using PlainDraw = void (Drawable::*)(unsigned int, unsigned int) const;
template <class T>
using IndexedDraw = void (Drawable::*)(const IndexBuffer<T>&, unsigned int, unsigned int) const;

/// The place of a virtual member in the virtual table.
template <class Member>
std::size_t slotOf(Member member) {
    std::size_t offset = 0; // in bytes; some processors set its lowest bit as a mark
    static_assert(sizeof(member) >= sizeof(offset));
    std::memcpy(&offset, &member, sizeof(offset));
    return offset / sizeof(void*);
}

TEST(DrawableTrace, VirtualTableHasTheDestructorThenTheDrawsWithIndicesThenThePlainOne) {
    const std::vector<std::size_t> slots = {slotOf<IndexedDraw<unsigned int>>(&Drawable::draw),
                                            slotOf<IndexedDraw<unsigned short>>(&Drawable::draw),
                                            slotOf<IndexedDraw<unsigned char>>(&Drawable::draw),
                                            slotOf<PlainDraw>(&Drawable::draw)};
    // A destructor has two: one for objects of their own, one for those made with new.
    EXPECT_EQ(slots, (std::vector<std::size_t>{2, 3, 4, 5}));
}

#endif

/// An enumerator and the GL name that draws carry.
struct PrimitiveRow {
    Drawable::PrimitiveType type;
    const char* name;
};

/// GoogleTest would read every byte, the unset ones, too.
void PrintTo(const PrimitiveRow& row, std::ostream* out) {
    *out << row.name;
}

class PrimitiveTrace : public testing::TestWithParam<PrimitiveRow> {};

TEST_P(PrimitiveTrace, ReachesGlUnchanged) {
    FakeGl gl;
    CountedShape(1, GetParam().type).draw(0, 1);
    EXPECT_EQ(gl.takeCalls().front(), std::string("glDrawArrays(") + GetParam().name + ", 0, 1)");
}

INSTANTIATE_TEST_SUITE_P(
    Types, PrimitiveTrace,
    testing::Values(PrimitiveRow{Drawable::PrimitiveType::Points, "GL_POINTS"},
                    PrimitiveRow{Drawable::PrimitiveType::Lines, "GL_LINES"},
                    PrimitiveRow{Drawable::PrimitiveType::LineLoop, "GL_LINE_LOOP"},
                    PrimitiveRow{Drawable::PrimitiveType::LineStrip, "GL_LINE_STRIP"},
                    PrimitiveRow{Drawable::PrimitiveType::Triangles, "GL_TRIANGLES"},
                    PrimitiveRow{Drawable::PrimitiveType::TriangleStrip, "GL_TRIANGLE_STRIP"},
                    PrimitiveRow{Drawable::PrimitiveType::TriangleFan, "GL_TRIANGLE_FAN"},
                    PrimitiveRow{Drawable::PrimitiveType::Quads, "GL_QUADS"},
                    PrimitiveRow{Drawable::PrimitiveType::QuadStrip, "GL_QUAD_STRIP"},
                    PrimitiveRow{Drawable::PrimitiveType::Polygon, "GL_POLYGON"}),
    [](const auto& row) { return std::string(row.param.name); });

/// A raster switch and the GL calls that it makes.
struct SwitchRow {
    const char* name;
    std::function<void()> call;
    std::vector<std::string> expected;
};

/// GoogleTest would read every byte, the unset ones, too.
void PrintTo(const SwitchRow& row, std::ostream* out) {
    *out << row.name;
}

class RasterSwitchTrace : public testing::TestWithParam<SwitchRow> {};

TEST_P(RasterSwitchTrace, MakesItsCallsInOrder) {
    FakeGl gl;
    GetParam().call();
    EXPECT_EQ(gl.takeCalls(), GetParam().expected);
}

using Face = Drawable::Face;
using Hint = Drawable::SmoothHint;
using Mode = Drawable::PolygonMode;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Switches, RasterSwitchTrace, testing::Values(
    SwitchRow{"CullFront", [] { Drawable::enableFaceCulling(Face::Front); }, {"glCullFace(GL_FRONT)", "glEnable(GL_CULL_FACE)"}},
    SwitchRow{"CullBack", [] { Drawable::enableFaceCulling(Face::Back); }, {"glCullFace(GL_BACK)", "glEnable(GL_CULL_FACE)"}},
    SwitchRow{"CullBoth", [] { Drawable::enableFaceCulling(Face::FrontAndBack); }, {"glCullFace(GL_FRONT_AND_BACK)", "glEnable(GL_CULL_FACE)"}},
    SwitchRow{"CullOn", [] { Drawable::enableFaceCulling(true); }, {"glEnable(GL_CULL_FACE)"}},
    SwitchRow{"CullOff", [] { Drawable::enableFaceCulling(false); }, {"glDisable(GL_CULL_FACE)"}},
    SwitchRow{"CullDisabled", [] { Drawable::disableFaceCulling(); }, {"glDisable(GL_CULL_FACE)"}},
    SwitchRow{"LineSmoothFastest", [] { Drawable::enableLineSmooth(Hint::Fastest); }, {"glEnable(GL_LINE_SMOOTH)", "glHint(GL_LINE_SMOOTH_HINT, GL_FASTEST)"}},
    SwitchRow{"LineSmoothNicest", [] { Drawable::enableLineSmooth(Hint::Nicest); }, {"glEnable(GL_LINE_SMOOTH)", "glHint(GL_LINE_SMOOTH_HINT, GL_NICEST)"}},
    SwitchRow{"LineSmoothDontCare", [] { Drawable::enableLineSmooth(Hint::DontCare); }, {"glEnable(GL_LINE_SMOOTH)", "glHint(GL_LINE_SMOOTH_HINT, GL_DONT_CARE)"}},
    SwitchRow{"LineSmoothOn", [] { Drawable::enableLineSmooth(true); }, {"glEnable(GL_LINE_SMOOTH)"}},
    SwitchRow{"LineSmoothOff", [] { Drawable::enableLineSmooth(false); }, {"glDisable(GL_LINE_SMOOTH)"}},
    SwitchRow{"LineSmoothDisabled", [] { Drawable::disableLineSmooth(); }, {"glDisable(GL_LINE_SMOOTH)"}},
    SwitchRow{"PolygonSmoothFastest", [] { Drawable::enablePolygonSmooth(Hint::Fastest); }, {"glEnable(GL_POLYGON_SMOOTH)", "glHint(GL_POLYGON_SMOOTH_HINT, GL_FASTEST)"}},
    SwitchRow{"PolygonSmoothNicest", [] { Drawable::enablePolygonSmooth(Hint::Nicest); }, {"glEnable(GL_POLYGON_SMOOTH)", "glHint(GL_POLYGON_SMOOTH_HINT, GL_NICEST)"}},
    SwitchRow{"PolygonSmoothDontCare", [] { Drawable::enablePolygonSmooth(Hint::DontCare); }, {"glEnable(GL_POLYGON_SMOOTH)", "glHint(GL_POLYGON_SMOOTH_HINT, GL_DONT_CARE)"}},
    SwitchRow{"PolygonSmoothOn", [] { Drawable::enablePolygonSmooth(true); }, {"glEnable(GL_POLYGON_SMOOTH)"}},
    SwitchRow{"PolygonSmoothOff", [] { Drawable::enablePolygonSmooth(false); }, {"glDisable(GL_POLYGON_SMOOTH)"}},
    SwitchRow{"PolygonSmoothDisabled", [] { Drawable::disablePolygonSmooth(); }, {"glDisable(GL_POLYGON_SMOOTH)"}},
    SwitchRow{"PointSpriteOn", [] { Drawable::enablePointSprite(true); }, {"glEnable(GL_POINT_SPRITE)", "glGetError()", "glEnable(GL_VERTEX_PROGRAM_POINT_SIZE)"}},
    SwitchRow{"PointSpriteOff", [] { Drawable::enablePointSprite(false); }, {"glDisable(GL_POINT_SPRITE)", "glGetError()", "glDisable(GL_VERTEX_PROGRAM_POINT_SIZE)"}},
    SwitchRow{"PointSpriteDisabled", [] { Drawable::disablePointSprite(); }, {"glDisable(GL_POINT_SPRITE)", "glGetError()", "glDisable(GL_VERTEX_PROGRAM_POINT_SIZE)"}},
    SwitchRow{"LineWidth", [] { Drawable::setLineWidth(2.5f); }, {"glLineWidth(2.5)"}},
    SwitchRow{"PointSize", [] { Drawable::setPointSize(3.5f); }, {"glPointSize(3.5)", "glDisable(GL_VERTEX_PROGRAM_POINT_SIZE)"}},
    SwitchRow{"PolygonModePoint", [] { Drawable::setPolygonMode(Face::Front, Mode::Point); }, {"glPolygonMode(GL_FRONT, GL_POINT)"}},
    SwitchRow{"PolygonModeLine", [] { Drawable::setPolygonMode(Face::Back, Mode::Line); }, {"glPolygonMode(GL_BACK, GL_LINE)"}},
    SwitchRow{"PolygonModeFill", [] { Drawable::setPolygonMode(Face::FrontAndBack, Mode::Fill); }, {"glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)"}}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

TEST(DrawableTrace, EnablePointSpriteSwallowsOneError) {
    FakeGl gl;
    gl.queueError(GL_INVALID_ENUM);
    gl.queueError(GL_INVALID_VALUE);
    Drawable::enablePointSprite(true);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    gl.forget();
}

} // namespace
