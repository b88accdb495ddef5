#include <cmath>

#include <glm/mat4x4.hpp>

#include <vellis/drawing.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>

#include "workloads/groups.hpp"

namespace vellis::bench {
namespace {

using BuiltIn = ProgramManager::BuiltIn;

const glm::mat4 mvp(0.5f);
const glm::vec4 color(0.2f, 0.4f, 0.6f, 1.f);
const glm::vec4 color2(1.f, 0.8f, 0.6f, 1.f);

constexpr float pointSize = 3.f;
constexpr float dash = 0.2f;
constexpr float gap = 0.1f;

/// Points on a circle.
template <class V>
std::vector<V> circle(unsigned int count) {
    std::vector<V> points(count, V(0.f));
    for (unsigned int i = 0; i < count; ++i) {
        const float angle = 6.2831853f * static_cast<float>(i) / static_cast<float>(count);
        points[i].x = 0.9f * std::cos(angle);
        points[i].y = 0.9f * std::sin(angle);
    }
    return points;
}

Variables toolboxUniforms(unsigned int) {
    return {{"color", GL_FLOAT_VEC4},
            {"dash", GL_FLOAT_VEC2},
            {"mvp", GL_FLOAT_MAT4},
            {"radius", GL_FLOAT},
            {"softness", GL_FLOAT}};
}

Variables dashAttributes() {
    return {{"position_t", GL_FLOAT_VEC3}};
}

// --- By hand ---

/// A built-in program in GL's numbers: its name, and the locations of what the Toolbox sets.
struct RawProgram {
    RawProgram(BuiltIn builtIn, const char* attribute) {
        const std::shared_ptr<Program>& program = ProgramManager::instance().get(builtIn);
        name = program->id();
        position = program->getAttribLoc(attribute);
        const auto location = [&](const char* uniform) {
            return glGetUniformLocation(name, uniform);
        };
        colorLocation = location("color");
        mvpLocation = location("mvp");
        radiusLocation = location("radius");
        softnessLocation = location("softness");
        dashLocation = location("dash");
    }

    unsigned int name;
    unsigned int position;
    int colorLocation;
    int mvpLocation;
    int radiusLocation;
    int softnessLocation;
    int dashLocation;
};

/// The Toolbox's buffer.
unsigned int sharedBuffer() {
    return Toolbox::getVertexBuffer()->id();
}

template <class V>
void uploadRaw(unsigned int buffer, const V* points, unsigned int count) {
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(count * sizeof(V)), points);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

/// A vertex array object with one attribute over a buffer, for the time of a call.
class RawVertexArray {
public:
    template <class V>
    RawVertexArray(const RawProgram& program, unsigned int buffer, const V*) {
        glUseProgram(program.name);
        glGenVertexArrays(1, &name_);
        glBindVertexArray(name_);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glVertexAttribPointer(program.position, V::length(), GL_FLOAT, GL_FALSE, sizeof(V),
                              nullptr);
        glEnableVertexAttribArray(program.position);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        glBindVertexArray(0);
        glUseProgram(0);
    }
    ~RawVertexArray() { glDeleteVertexArrays(1, &name_); }
    RawVertexArray(const RawVertexArray&) = delete;
    RawVertexArray& operator=(const RawVertexArray&) = delete;

    /// Draws, with the uniforms that \p setUniforms sets.
    template <class SetUniforms>
    void draw(const RawProgram& program, unsigned int primitive, unsigned int count,
              SetUniforms setUniforms) const {
        glUseProgram(program.name);
        glBindVertexArray(name_);
        setUniforms();
        glDrawArrays(primitive, 0, static_cast<int>(count));
        glBindVertexArray(0);
        glUseProgram(0);
    }

    void drawFlat(const RawProgram& program, unsigned int primitive, unsigned int count,
                  const glm::vec4& flatColor) const {
        draw(program, primitive, count, [&] {
            glUniform4fv(program.colorLocation, 1, &flatColor[0]);
            glUniformMatrix4fv(program.mvpLocation, 1, GL_FALSE, &mvp[0][0]);
        });
    }

private:
    unsigned int name_ = 0;
};

template <unsigned int primitive>
class RawFlat {
public:
    explicit RawFlat(unsigned int count) : points_(circle<glm::vec2>(count)) {}

    void operator()() const {
        const auto count = static_cast<unsigned int>(points_.size());
        uploadRaw(buffer_, points_.data(), count);
        RawVertexArray(program_, buffer_, points_.data())
            .drawFlat(program_, primitive, count, color);
    }

private:
    std::vector<glm::vec2> points_;
    RawProgram program_ = {BuiltIn::UniformColor2D, "position"};
    unsigned int buffer_ = sharedBuffer();
};

class RawFlatFromBuffer {
public:
    explicit RawFlatFromBuffer(unsigned int count)
        : count_(count),
          buffer_(VertexAttributeBuffer<glm::vec2>::make(circle<glm::vec2>(count),
                                                         BufferUsage::Static, BufferAccess::Draw)) {
    }

    void operator()() const {
        RawVertexArray(program_, name_, static_cast<const glm::vec2*>(nullptr))
            .drawFlat(program_, GL_LINE_STRIP, count_, color);
    }

private:
    unsigned int count_;
    std::shared_ptr<VertexAttributeBuffer<glm::vec2>> buffer_;
    unsigned int name_ = buffer_->id();
    RawProgram program_ = {BuiltIn::UniformColor2D, "position"};
};

/// Blended discs, one over the other: what points and bullseyes share.
class RawDiscs {
public:
    explicit RawDiscs(unsigned int count) : points_(circle<glm::vec2>(count)) {}

    struct Disc {
        const glm::vec4& color;
        float size;
        float softness;
    };

protected:
    void draw(std::initializer_list<Disc> discs) const {
        const auto count = static_cast<unsigned int>(points_.size());
        uploadRaw(buffer_, points_.data(), count);
        const RawVertexArray vertexArray(program_, buffer_, points_.data());
        withBlending([&] {
            for (const Disc& disc : discs) {
                vertexArray.draw(program_, GL_POINTS, count, [&] {
                    glUniform4fv(program_.colorLocation, 1, &disc.color[0]);
                    glUniform1f(program_.radiusLocation, disc.size);
                    glUniform1f(program_.softnessLocation, disc.softness);
                    glUniformMatrix4fv(program_.mvpLocation, 1, GL_FALSE, &mvp[0][0]);
                });
            }
        });
    }

private:
    template <class Draw>
    static void withBlending(Draw drawDiscs) {
        unsigned char enabled = GL_FALSE;
        glGetBooleanv(GL_BLEND, &enabled);
        int factors[4] = {};
        glGetIntegerv(GL_BLEND_SRC_RGB, &factors[0]);
        glGetIntegerv(GL_BLEND_DST_RGB, &factors[1]);
        glGetIntegerv(GL_BLEND_SRC_ALPHA, &factors[2]);
        glGetIntegerv(GL_BLEND_DST_ALPHA, &factors[3]);
        int equations[2] = {};
        glGetIntegerv(GL_BLEND_EQUATION_RGB, &equations[0]);
        glGetIntegerv(GL_BLEND_EQUATION_ALPHA, &equations[1]);
        glEnable(GL_BLEND);
        glBlendEquation(GL_FUNC_ADD);
        glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_SRC_ALPHA,
                            GL_ONE_MINUS_SRC_ALPHA);
        glEnable(GL_POINT_SPRITE);
        glGetError();
        glEnable(GL_VERTEX_PROGRAM_POINT_SIZE);
        drawDiscs();
        glDisable(GL_POINT_SPRITE);
        glGetError();
        glDisable(GL_VERTEX_PROGRAM_POINT_SIZE);
        if (enabled == GL_TRUE)
            glEnable(GL_BLEND);
        else
            glDisable(GL_BLEND);
        const auto gl = [](int value) { return static_cast<unsigned int>(value); };
        glBlendFuncSeparate(gl(factors[0]), gl(factors[1]), gl(factors[2]), gl(factors[3]));
        glBlendEquationSeparate(gl(equations[0]), gl(equations[1]));
    }

    std::vector<glm::vec2> points_;
    RawProgram program_ = {BuiltIn::SoftPoints2D, "position"};
    unsigned int buffer_ = sharedBuffer();
};

struct RawPoints : RawDiscs {
    using RawDiscs::RawDiscs;
    void operator()() const { draw({{color, pointSize, 0.1f}}); }
};

struct RawBullseyes : RawDiscs {
    using RawDiscs::RawDiscs;
    void operator()() const {
        draw({{color, pointSize, 0.1f},
              {color2, pointSize * 0.7f, 0.2f},
              {color, pointSize * 0.3f, 0.4f}});
    }
};

class RawDashes {
public:
    explicit RawDashes(unsigned int count)
        : points_(circle<glm::vec2>(count)),
          withDistances_(count, glm::vec3(0.f)) {}

    void operator()() {
        const auto count = static_cast<unsigned int>(points_.size());
        float distance = 0.f;
        for (unsigned int i = 0; i < count; ++i) {
            if (i > 0) {
                const glm::vec2 step = points_[i] - points_[i - 1];
                distance += std::sqrt(step.y * step.y + step.x * step.x);
            }
            withDistances_[i] = glm::vec3(points_[i], distance);
        }
        uploadRaw(buffer_, withDistances_.data(), count);
        RawVertexArray(program_, buffer_, withDistances_.data())
            .draw(program_, GL_LINE_STRIP, count, [&] {
                glUniform4fv(program_.colorLocation, 1, &color[0]);
                const float pattern[] = {dash, gap};
                glUniform2fv(program_.dashLocation, 1, pattern);
                glUniformMatrix4fv(program_.mvpLocation, 1, GL_FALSE, &mvp[0][0]);
            });
    }

private:
    std::vector<glm::vec2> points_;
    std::vector<glm::vec3> withDistances_;
    RawProgram program_ = {BuiltIn::DashLines2D, "position_t"};
    unsigned int buffer_ = sharedBuffer();
};

class RawQuad {
public:
    void operator()() const {
        uploadRaw(buffer_, points_.data(), 4);
        draw(GL_TRIANGLE_FAN, color);
        draw(GL_LINE_LOOP, color2);
    }

private:
    void draw(unsigned int primitive, const glm::vec4& flatColor) const {
        RawVertexArray(program_, buffer_, points_.data())
            .drawFlat(program_, primitive, 4, flatColor);
    }

    std::vector<glm::vec3> points_ = circle<glm::vec3>(4);
    RawProgram program_ = {BuiltIn::UniformColor3D, "position"};
    unsigned int buffer_ = sharedBuffer();
};

class RawRect {
public:
    void operator()() const {
        const glm::vec2 corners[] = {{-0.5f, -0.5f}, {-0.5f, 0.5f}, {0.5f, -0.5f}, {0.5f, 0.5f}};
        uploadRaw(buffer_, corners, 4);
        RawVertexArray(program_, buffer_, corners).drawFlat(program_, GL_TRIANGLE_STRIP, 4, color);
    }

private:
    RawProgram program_ = {BuiltIn::UniformColor2D, "position"};
    unsigned int buffer_ = sharedBuffer();
};

// --- Through the Toolbox ---

/// The points of a call.
struct Points {
    explicit Points(unsigned int count) : points(circle<glm::vec2>(count)) {}
    unsigned int count() const { return static_cast<unsigned int>(points.size()); }
    std::vector<glm::vec2> points;
};

using FlatFunction = void (*)(const glm::vec4&, unsigned int, const glm::vec2*, const glm::mat4&);

template <FlatFunction drawFlat>
struct Flat : Points {
    using Points::Points;
    void operator()() const { drawFlat(color, count(), points.data(), mvp); }
};

struct FlatFromBuffer {
    explicit FlatFromBuffer(unsigned int size)
        : count(size),
          buffer(VertexAttributeBuffer<glm::vec2>::make(circle<glm::vec2>(size),
                                                        BufferUsage::Static, BufferAccess::Draw)) {}
    void operator()() const { Toolbox::drawLineStrip(color, 0, count, buffer, mvp); }
    unsigned int count;
    std::shared_ptr<VertexAttributeBuffer<glm::vec2>> buffer;
};

struct Discs : Points {
    using Points::Points;
    void operator()() const { Toolbox::drawPoints(color, pointSize, count(), points.data(), mvp); }
};

struct Bullseyes : Points {
    using Points::Points;
    void operator()() const {
        Toolbox::drawBullseyes(color, color2, pointSize, count(), points.data(), mvp);
    }
};

struct Dashes : Points {
    using Points::Points;
    void operator()() const {
        Toolbox::drawDashLineStrip(color, dash, gap, count(), points.data(), mvp);
    }
};

struct Quad {
    void operator()() const { Toolbox::drawQuad(color, color2, points.data(), mvp); }
    std::vector<glm::vec3> points = circle<glm::vec3>(4);
};

struct Rect {
    void operator()() const { Toolbox::drawRect(color, {-0.5f, -0.5f}, {0.5f, 0.5f}, mvp); }
};

template <class Raw, class Vellis>
Workload workload(const char* name, const char* description, std::vector<unsigned int> sizes = {12},
                  Variables (*attributes)() = flatAttributes) {
    return {name,
            description,
            {{"raw", makeSide<Raw>}, {"vellis", makeSide<Vellis>}},
            Where::Both,
            Calls::Same,
            std::move(sizes),
            toolboxUniforms,
            attributes};
}

} // namespace

std::vector<Workload> toolboxWorkloads() {
    // The Toolbox's buffer takes 128 points of two numbers, and 85 of three.
    const std::vector<unsigned int> sizes = {2, 12, 32, 64, 85};
    return {
        workload<RawFlat<GL_LINES>, Flat<Toolbox::drawLines>>("toolbox/lines", "drawLines"),
        workload<RawFlat<GL_LINE_STRIP>, Flat<Toolbox::drawLineStrip>>("toolbox/line_strip",
                                                                       "drawLineStrip", sizes),
        workload<RawFlat<GL_LINE_LOOP>, Flat<Toolbox::drawLineLoop>>("toolbox/line_loop",
                                                                     "drawLineLoop"),
        workload<RawFlat<GL_TRIANGLE_FAN>, Flat<Toolbox::drawTriangleFan>>("toolbox/triangle_fan",
                                                                           "drawTriangleFan"),
        workload<RawFlat<GL_TRIANGLE_STRIP>, Flat<Toolbox::drawTriangleStrip>>(
            "toolbox/triangle_strip", "drawTriangleStrip"),
        workload<RawPoints, Discs>("toolbox/points", "drawPoints"),
        workload<RawBullseyes, Bullseyes>("toolbox/bullseyes", "drawBullseyes"),
        workload<RawDashes, Dashes>("toolbox/dashes", "drawDashLineStrip", sizes, dashAttributes),
        workload<RawQuad, Quad>("toolbox/quad", "drawQuad with an outline", {4}),
        workload<RawRect, Rect>("toolbox/rect", "drawRect", {4}),
        workload<RawFlatFromBuffer, FlatFromBuffer>(
            "toolbox/buffer", "drawLineStrip from the caller's buffer", {2, 100, 10000, 100000}),
    };
}

} // namespace vellis::bench
