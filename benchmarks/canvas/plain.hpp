#pragma once

#include <vector>

#include <glm/vec2.hpp>

namespace vellis::bench {

/// GL alone: draws points from a buffer that was filled once, with one call and one of the
/// library's built-in programs. What Canvas is measured against.
class Plain {
public:
    /// \param primitive  GL's enumerator. GL_POINTS are round, soft and blended, 3 pixels wide.
    Plain(unsigned int primitive, const std::vector<glm::vec2>& points);
    ~Plain();
    Plain(const Plain&) = delete;
    Plain& operator=(const Plain&) = delete;

    void draw() const;

private:
    bool isSoft() const;

    unsigned int primitive_;
    unsigned int count_;
    unsigned int program_;
    unsigned int vertexArray_ = 0;
    unsigned int buffer_ = 0;
};

constexpr float plainPointSize = 3.f;

} // namespace vellis::bench
