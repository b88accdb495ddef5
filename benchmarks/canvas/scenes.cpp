#include "canvas/scenes.hpp"

#include <cmath>
#include <random>

#include <glm/gtc/matrix_transform.hpp>

namespace vellis::bench {
namespace {

constexpr float pi = 3.14159265f;

/// Numbers that are the same with every standard library.
class Numbers {
public:
    float between(float low, float high) {
        return low + (high - low) * static_cast<float>(engine_() - std::minstd_rand::min()) /
                         static_cast<float>(std::minstd_rand::max());
    }
    /// A place at least that far from the edges of the picture.
    glm::vec2 place(float margin = 0.f) {
        const float x = between(margin, edge - margin);
        return {x, between(margin, edge - margin)};
    }

    static constexpr float edge = static_cast<float>(pictureSize);

private:
    std::minstd_rand engine_{1};
};

glm::vec2 direction(float angle) {
    return {std::cos(angle), std::sin(angle)};
}

} // namespace

const glm::vec4 sceneColor(0.2f, 0.4f, 0.6f, 1.f);

glm::mat4 pixelsToClip() {
    return glm::ortho(0.f, Numbers::edge, 0.f, Numbers::edge);
}

std::vector<glm::vec2> shortLines(unsigned int numLines) {
    Numbers numbers;
    std::vector<glm::vec2> points;
    for (unsigned int i = 0; i < numLines; ++i) {
        const glm::vec2 start = numbers.place();
        const float length = numbers.between(5.f, 20.f);
        points.push_back(start);
        points.push_back(start + length * direction(numbers.between(0.f, 2.f * pi)));
    }
    return points;
}

std::vector<glm::vec2> walk(unsigned int numPoints) {
    Numbers numbers;
    std::vector<glm::vec2> points;
    glm::vec2 place = numbers.place();
    float angle = 0.f;
    for (unsigned int i = 0; i < numPoints; ++i) {
        points.push_back(place);
        angle += numbers.between(-1.f, 1.f);
        glm::vec2 next = place + numbers.between(5.f, 10.f) * direction(angle);
        for (int axis = 0; axis < 2; ++axis) {
            if (next[axis] < 0.f || next[axis] > Numbers::edge) {
                next[axis] = 2.f * place[axis] - next[axis];
                angle = axis == 0 ? pi - angle : -angle;
            }
        }
        place = next;
    }
    return points;
}

std::vector<glm::vec2> scattered(unsigned int numPoints) {
    constexpr float margin = 8.f;
    Numbers numbers;
    std::vector<glm::vec2> points(numPoints);
    for (glm::vec2& point : points)
        point = numbers.place(margin);
    return points;
}

} // namespace vellis::bench
