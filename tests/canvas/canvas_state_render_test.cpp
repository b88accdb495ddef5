/// What a canvas leaves of the caller's GL state, and what of it changes the picture.

#include <vellis/canvas.hpp>

#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <vellis/buffers.hpp>
#include <vellis/gl.hpp>
#include <vellis/texture.hpp>

#include <offscreen/image.hpp>

#include "canvas/star.hpp"
#include "support/pixels.hpp"
#include "support/render_test.hpp"

namespace {

using namespace vellis;
using test::halfBlue;
using test::pixelMatrix;
using test::red;
using test::side;
using test::star;
using test::stateOf;

class CanvasStateRender : public RenderTest {
protected:
    CanvasStateRender() : RenderTest(side) {}
};

/// What a canvas can do that uses GL's state in ways of its own.
struct Work {
    const char* name;
    void (*draw)(Canvas& canvas);

    bool hasGlsOwn = false; ///< lines or areas of GL's own, whose edges may take the pixels beside
};

/// Makes a buffer, and leaves the one bound that was.
std::shared_ptr<VertexAttributeBuffer<glm::vec2>> starBuffer() {
    const int bound = stateOf(GL_ARRAY_BUFFER_BINDING);
    auto buffer =
        VertexAttributeBuffer<glm::vec2>::make(star, BufferUsage::Static, BufferAccess::Draw);
    glBindBuffer(GL_ARRAY_BUFFER, static_cast<unsigned int>(bound));
    return buffer;
}

void drawBuffer(Canvas& canvas) {
    const auto buffer = starBuffer();
    canvas.drawLineLoop(Stroke(halfBlue, 5.f), 0, 5, buffer);
    canvas.drawTriangles(red, 0, 3, buffer);
    canvas.drawPoints(red, 9.f, 0, 5, buffer);
}

void drawLongLine(Canvas& canvas) {
    std::vector<glm::vec2> points;
    for (int i = 0; i < 6000; ++i) {
        const float angle = static_cast<float>(i) * 0.03f;
        points.emplace_back(64.f + 60.f * std::cos(angle), 64.f + 60.f * std::sin(1.3f * angle));
    }
    canvas.drawLineStrip(Stroke(halfBlue, 1.f), points);
}

void drawPicture(Canvas& canvas) {
    canvas.end();
    canvas.beginPicture(pixelMatrix);
    canvas.drawLineLoop(Stroke(halfBlue, 5.f), star);
    canvas.drawPoints(red, 9.f, star);
    canvas.drawTriangleFan(red, star);
    const auto picture = canvas.endPicture();
    canvas.begin(pixelMatrix);
    canvas.drawPicture(picture);
}

void drawImages(Canvas& canvas) {
    using Color = glm::vec<4, unsigned char>;
    const std::vector<Color> texels(16, Color(200));
    const auto texture = Texture2D<Color>::make(4, 4, texels.data(), Sampler::linear_clamp());
    const PixelQuad quad = {{-3.f, -3.f}, {6.f, 0.f}, {0.f, 6.f}, {}};
    for (const glm::vec2& place : star) {
        canvas.drawImage(texture, ImageFrame(place, place + 9.f).rotated(0.3));
        canvas.drawQuads(texture, {Texels::Coverage, true}, red, glm::dvec3(place, 0.), &quad, 1);
    }
}

const Work works[] = {
    {"nothing", [](Canvas&) {}},
    {"lines", [](Canvas& canvas) { canvas.drawLines(Stroke(red, 3.f), star); }},
    {"aliased lines", [](Canvas& canvas) { canvas.drawLines(Stroke::aliased(red), star); }, true},
    {"dashes", [](Canvas& canvas) { canvas.drawDashLineStrip(red, 4.f, 3.f, star); }},
    {"a stroke that paints once",
     [](Canvas& canvas) { canvas.drawLineLoop(Stroke(halfBlue, 7.f), star); }},
    {"points", [](Canvas& canvas) { canvas.drawPoints(red, 5.f, star); }},
    {"bullseyes", [](Canvas& canvas) { canvas.drawBullseyes(red, halfBlue, 15.f, star); }},
    {"areas", [](Canvas& canvas) { canvas.drawTriangleFan(halfBlue, star); }, true},
    {"a buffer", drawBuffer, true},
    {"more than a buffer holds", drawLongLine},
    {"a picture", drawPicture, true},
    {"images", drawImages, true},
};

using Values = std::map<std::string, std::vector<double>>;

/// All state that a canvas could change, and what the library tracks.
Values allState() {
    struct Row {
        const char* name;
        unsigned int pname;
        std::size_t count;
    };
    static const Row rows[] = {
#define VELLIS_TRACKED_STATE(name, kind, count) {#name, GL_##name, count},
#include "state/tracked_states.inc"
#undef VELLIS_TRACKED_STATE
        {"ARRAY_BUFFER_BINDING", GL_ARRAY_BUFFER_BINDING, 1},
        {"ELEMENT_ARRAY_BUFFER_BINDING", GL_ELEMENT_ARRAY_BUFFER_BINDING, 1},
        {"PIXEL_UNPACK_BUFFER_BINDING", GL_PIXEL_UNPACK_BUFFER_BINDING, 1},
        {"PIXEL_PACK_BUFFER_BINDING", GL_PIXEL_PACK_BUFFER_BINDING, 1},
        {"CURRENT_PROGRAM", GL_CURRENT_PROGRAM, 1},
        {"DRAW_FRAMEBUFFER_BINDING", GL_DRAW_FRAMEBUFFER_BINDING, 1},
        {"READ_FRAMEBUFFER_BINDING", GL_READ_FRAMEBUFFER_BINDING, 1},
        {"DRAW_BUFFER", GL_DRAW_BUFFER, 1},
        {"LINE_WIDTH", GL_LINE_WIDTH, 1},
        {"LINE_SMOOTH", GL_LINE_SMOOTH, 1},
        {"POLYGON_MODE", GL_POLYGON_MODE, 2},
        {"POLYGON_SMOOTH", GL_POLYGON_SMOOTH, 1},
        {"CULL_FACE", GL_CULL_FACE, 1},
        {"CULL_FACE_MODE", GL_CULL_FACE_MODE, 1},
        {"COLOR_LOGIC_OP", GL_COLOR_LOGIC_OP, 1},
        {"LOGIC_OP_MODE", GL_LOGIC_OP_MODE, 1},
        {"ALPHA_TEST", GL_ALPHA_TEST, 1},
        {"MULTISAMPLE", GL_MULTISAMPLE, 1},
        {"POLYGON_OFFSET_FILL", GL_POLYGON_OFFSET_FILL, 1},
        {"SAMPLE_ALPHA_TO_COVERAGE", GL_SAMPLE_ALPHA_TO_COVERAGE, 1},
        {"POINT_SPRITE", GL_POINT_SPRITE, 1},
    };
    Values result;
    for (const Row& row : rows) {
        std::vector<double> values(16, 0.);
        glGetDoublev(row.pname, values.data());
        values.resize(row.count);
        result[row.name] = values;
    }
    if (GLAD_GL_VERSION_3_1 != 0)
        result["PRIMITIVE_RESTART"] = {double(glIsEnabled(GL_PRIMITIVE_RESTART))};
    int lastUnit = stateOf(GL_MAX_TEXTURE_IMAGE_UNITS) - 1;
    const int active = stateOf(GL_ACTIVE_TEXTURE);
    glActiveTexture(GL_TEXTURE0 + static_cast<unsigned int>(lastUnit));
    result["the last unit's texture"] = {double(stateOf(GL_TEXTURE_BINDING_2D))};
    if (GLAD_GL_ARB_sampler_objects != 0)
        result["the last unit's sampler"] = {double(stateOf(GL_SAMPLER_BINDING))};
    glActiveTexture(static_cast<unsigned int>(active));
    for (unsigned int i = 0; i < 8; ++i) {
        for (const GLenum pname : std::initializer_list<GLenum>{
                 GL_VERTEX_ATTRIB_ARRAY_ENABLED, GL_VERTEX_ATTRIB_ARRAY_SIZE,
                 GL_VERTEX_ATTRIB_ARRAY_STRIDE, GL_VERTEX_ATTRIB_ARRAY_TYPE,
                 GL_VERTEX_ATTRIB_ARRAY_NORMALIZED, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING}) {
            int value = 0;
            glGetVertexAttribiv(i, pname, &value);
            result["attribute " + std::to_string(i)].push_back(double(value));
        }
    }
    while (glGetError() != GL_NO_ERROR) { // of states that a context does not know
    }
    return result;
}

/// The names of what is another now.
std::string changesSince(const Values& before) {
    std::string result;
    for (const auto& [name, values] : allState()) {
        if (values != before.at(name))
            result += name + "; ";
    }
    return result;
}

/// Objects that are bound while a canvas draws.
struct Bound {
    Bound() {
        buffer->bind();
        glEnableVertexAttribArray(1);
        glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 12, reinterpret_cast<const void*>(4));
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices->id());
        glBindBuffer(GL_PIXEL_UNPACK_BUFFER, buffer->id());
        glActiveTexture(GL_TEXTURE0 + 3);
        glActiveTexture(GL_TEXTURE0 +
                        static_cast<unsigned int>(stateOf(GL_MAX_TEXTURE_IMAGE_UNITS) - 1));
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        glActiveTexture(GL_TEXTURE0 + 3);
    }
    ~Bound() {
        glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
        glDisableVertexAttribArray(1);
        buffer->unbind();
        glDeleteTextures(1, &texture);
        glActiveTexture(GL_TEXTURE0);
    }
    Bound(const Bound&) = delete;
    Bound& operator=(const Bound&) = delete;

    std::shared_ptr<VertexAttributeBuffer<float>> buffer = VertexAttributeBuffer<float>::make(
        std::vector<float>(1000, 0.5f), BufferUsage::Static, BufferAccess::Draw);
    std::shared_ptr<IndexBuffer<unsigned short>> indices =
        IndexBuffer<unsigned short>::make({0, 1, 2}, BufferUsage::Static, BufferAccess::Draw);
    unsigned int texture = 0;
};

/// State that is switched, with what puts it back.
struct Setting {
    const char* name;
    void (*set)();
    void (*unset)();
};

const Setting settings[] = {
    {"blending",
     [] {
         glEnable(GL_BLEND);
         glBlendFuncSeparate(GL_DST_COLOR, GL_ONE, GL_ZERO, GL_SRC_COLOR);
         glBlendEquationSeparate(GL_FUNC_SUBTRACT, GL_MIN);
     },
     [] {
         glDisable(GL_BLEND);
         glBlendFunc(GL_ONE, GL_ZERO);
         glBlendEquation(GL_FUNC_ADD);
     }},
    {"culling",
     [] {
         glEnable(GL_CULL_FACE);
         glCullFace(GL_FRONT_AND_BACK);
     },
     [] {
         glDisable(GL_CULL_FACE);
         glCullFace(GL_BACK);
     }},
    {"the logical operation",
     [] {
         glEnable(GL_COLOR_LOGIC_OP);
         glLogicOp(GL_CLEAR);
     },
     [] {
         glDisable(GL_COLOR_LOGIC_OP);
         glLogicOp(GL_COPY);
     }},
    {"the alpha test",
     [] {
         if (isCore())
             return;
         glEnable(GL_ALPHA_TEST);
         glAlphaFunc(GL_NEVER, 0.f);
     },
     [] {
         if (isCore())
             return;
         glDisable(GL_ALPHA_TEST);
         glAlphaFunc(GL_ALWAYS, 0.f);
     }},
    {"lines in place of polygons", [] { glPolygonMode(GL_FRONT_AND_BACK, GL_LINE); },
     [] { glPolygonMode(GL_FRONT_AND_BACK, GL_FILL); }},
    {"smoothing",
     [] {
         glEnable(GL_LINE_SMOOTH);
         glEnable(GL_POLYGON_SMOOTH);
         glLineWidth(isForwardCompatible() ? 0.5f : 5.f);
     },
     [] {
         glDisable(GL_LINE_SMOOTH);
         glDisable(GL_POLYGON_SMOOTH);
         glLineWidth(1.f);
     }},
    {"an offset of polygons",
     [] {
         glEnable(GL_POLYGON_OFFSET_FILL);
         glPolygonOffset(0.f, 4e6f);
     },
     [] { glDisable(GL_POLYGON_OFFSET_FILL); }},
    {"alpha to coverage", [] { glEnable(GL_SAMPLE_ALPHA_TO_COVERAGE); },
     [] { glDisable(GL_SAMPLE_ALPHA_TO_COVERAGE); }},
    {"primitive restart",
     [] {
         if (GLAD_GL_VERSION_3_1 == 0)
             return;
         glEnable(GL_PRIMITIVE_RESTART);
         glPrimitiveRestartIndex(2);
     },
     [] {
         if (GLAD_GL_VERSION_3_1 != 0)
             glDisable(GL_PRIMITIVE_RESTART);
     }},
};

/// Sets or unsets the switches of all rows.
void setAll(bool on) {
    for (const Setting& setting : settings)
        on ? setting.set() : setting.unset();
}

/// What the tests of all works set: all at once, since software drivers are slow.
const Setting settingsTogether[] = {
    {"nothing", [] {}, [] {}},
    {"everything", [] { setAll(true); }, [] { setAll(false); }},
    {"two polygon modes",
     [] {
         if (isCore())
             return;
         glPolygonMode(GL_FRONT, GL_FILL);
         glPolygonMode(GL_BACK, GL_POINT);
     },
     [] { glPolygonMode(GL_FRONT_AND_BACK, GL_FILL); }},
};

void drawWork(const Work& work) {
    const auto canvas = Canvas::make();
    canvas->begin(pixelMatrix);
    work.draw(*canvas);
    canvas->end();
}

std::vector<unsigned char> pictureOf(const Work& work) {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    drawWork(work);
    return offscreen::readPixels(side, side).pixels;
}

TEST_F(CanvasStateRender, PutsAllStateBack) {
    for (const Setting& setting : settingsTogether) {
        setting.set();
        glClearColor(0.25f, 0.5f, 0.75f, 1.f);
        const Bound bound;
        const Values before = allState();
        for (const Work& work : works) {
            drawWork(work);
            EXPECT_EQ(changesSince(before), "") << setting.name << ", " << work.name;
        }
        setting.unset();
    }
}

TEST_F(CanvasStateRender, PutsDepthAndColorMasksAndScissorBack) {
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_SCISSOR_TEST);
    glScissor(3, 4, 100, 90);
    glColorMask(GL_TRUE, GL_FALSE, GL_TRUE, GL_FALSE);
    for (const bool testsDepth : {true, false}) {
        (testsDepth ? glEnable : glDisable)(GL_DEPTH_TEST);
        const Values before = allState();
        for (const Work& work : works) {
            drawWork(work);
            EXPECT_EQ(changesSince(before), "") << work.name;
        }
    }
}

TEST_F(CanvasStateRender, DrawsTheSameUnderStateThatIsOffMeanwhile) {
    for (const Work& work : works) {
        const auto expected = pictureOf(work);
        for (const Setting& setting : settingsTogether) {
            setting.set();
            const auto drawn = pictureOf(work);
            setting.unset();
            EXPECT_EQ(drawn, expected) << setting.name << ", " << work.name;
        }
    }
}

/// How many pixels differ from those that were cleared.
std::size_t numTouched(const std::vector<unsigned char>& picture) {
    std::size_t result = 0;
    for (std::size_t i = 0; i < picture.size(); i += 4)
        result += picture[i] + picture[i + 1] + picture[i + 2] > 0 ? 1u : 0u;
    return result;
}

TEST_F(CanvasStateRender, StaysWithinTheCallersScissor) {
    for (const Work& work : works) {
        const auto whole = pictureOf(work);
        glClear(GL_COLOR_BUFFER_BIT);
        glEnable(GL_SCISSOR_TEST);
        glScissor(40, 30, 20, 25);
        const auto part = pictureOf(work);
        glDisable(GL_SCISSOR_TEST);
        glClear(GL_COLOR_BUFFER_BIT);
        for (unsigned int y = 0; y < side; ++y) {
            for (unsigned int x = 0; x < side; ++x) {
                const std::size_t at = 4 * (std::size_t{side - 1 - y} * side + x);
                const bool isInside = x >= 40 && x < 60 && y >= 30 && y < 55;
                for (std::size_t i = at; i < at + 3; ++i)
                    ASSERT_NEAR(part[i], isInside ? whole[i] : 0, 1)
                        << work.name << " at " << x << ", " << y;
            }
        }
    }
}

TEST_F(CanvasStateRender, DrawsNothingInAnEmptyViewport) {
    glViewport(0, 0, 0, 0);
    for (const Work& work : works)
        EXPECT_EQ(numTouched(pictureOf(work)), 0u) << work.name;
    glViewport(0, 0, side, side);
}

TEST_F(CanvasStateRender, FollowsTheViewport) {
    for (const Work& work : works) {
        const auto whole = pictureOf(work);
        glViewport(-32, 16, side, side);
        const auto moved = pictureOf(work);
        glViewport(0, 0, side, side);
        std::size_t numDifferent = 0;
        for (unsigned int y = 16; y < side; ++y) {
            for (unsigned int x = 0; x < side - 32; ++x) {
                const std::size_t to = 4 * (std::size_t{side - 1 - y} * side + x);
                const std::size_t from = 4 * (std::size_t{side - 1 - (y - 16)} * side + x + 32);
                for (std::size_t i = 0; i < 3; ++i)
                    numDifferent += std::abs(moved[to + i] - whole[from + i]) > 1 ? 1u : 0u;
            }
        }
        // Without the mask, one pixel on the line between two pieces may be either's.
        const bool hasMask = glGenFramebuffers != nullptr;
        EXPECT_LE(numDifferent, work.hasGlsOwn ? 240u : hasMask ? 0u : 3u) << work.name;
    }
}

TEST_F(CanvasStateRender, TestsTheDepthOfTheCaller) {
    glEnable(GL_DEPTH_TEST);
    for (const Work& work : works) {
        glClearDepth(0.);
        EXPECT_EQ(numTouched(pictureOf(work)), 0u) << work.name;
        glClearDepth(1.);
        glClear(GL_DEPTH_BUFFER_BIT);
        const auto drawn = pictureOf(work);
        EXPECT_EQ(numTouched(drawn) > 0, std::string(work.name) != "nothing") << work.name;
    }
}

TEST_F(CanvasStateRender, OffsetsOfPolygonsMoveAreasAlone) {
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(0.f, 1e9f); // behind all there is
    for (const Work& work : works) {
        const std::string name = work.name;
        const bool isArea = name == "areas";
        const bool isNothing = name == "nothing";
        glClearDepth(0.75);
        EXPECT_EQ(numTouched(pictureOf(work)) > 0, !isArea && !isNothing) << name;
    }
    glClearDepth(1.);
    glDisable(GL_POLYGON_OFFSET_FILL);
}

TEST_F(CanvasStateRender, WritesNoDepthWhereItIsAntialiased) {
    glEnable(GL_DEPTH_TEST);
    for (const Work& work : works) {
        const std::string name = work.name;
        const bool isSolid =
            name == "aliased lines" || name == "areas" || name == "a buffer" || name == "a picture";
        pictureOf(work);
        std::vector<float> depths(std::size_t{side} * side);
        glReadPixels(0, 0, side, side, GL_DEPTH_COMPONENT, GL_FLOAT, depths.data());
        bool isWritten = false;
        for (const float depth : depths)
            isWritten = isWritten || depth < 1.f;
        EXPECT_EQ(isWritten, isSolid) << name;
    }
}

TEST_F(CanvasStateRender, KeepsToTheCallersColorMask) {
    for (const Work& work : works) {
        const auto whole = pictureOf(work);
        glColorMask(GL_FALSE, GL_TRUE, GL_FALSE, GL_TRUE);
        const auto masked = pictureOf(work);
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        for (std::size_t i = 0; i < masked.size(); i += 4) {
            ASSERT_EQ(masked[i + 1], whole[i + 1]) << work.name;
            ASSERT_EQ(masked[i] == whole[i] || masked[i] == 0, true) << work.name;
        }
        glClear(GL_COLOR_BUFFER_BIT);
    }
}

TEST_F(CanvasStateRender, DrawsIntoTheCallersFramebuffer) {
    unsigned int texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, side, side, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindTexture(GL_TEXTURE_2D, 0);
    if (glGenFramebuffers == nullptr)
        GTEST_SKIP() << "the context has no framebuffer objects";
    std::map<std::string, std::vector<unsigned char>> expected;
    for (const Work& work : works)
        expected[work.name] = pictureOf(work);
    glClear(GL_COLOR_BUFFER_BIT);
    unsigned int framebuffer = 0;
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    for (const Work& work : works) {
        const auto drawn = pictureOf(work);
        std::size_t numDifferent = 0; // rows may be the other way up within
        for (std::size_t i = 0; i < drawn.size(); ++i)
            numDifferent += std::abs(drawn[i] - expected[work.name][i]) > 2 ? 1u : 0u;
        EXPECT_LE(numDifferent, work.hasGlsOwn ? 800u : 0u) << work.name;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    EXPECT_EQ(numTouched(offscreen::readPixels(side, side).pixels), 0u);
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteTextures(1, &texture);
}

} // namespace
