#include "spur_gear.hpp"

#include <algorithm>
#include <cmath>

#include <glm/common.hpp>

namespace gears {
namespace {

constexpr unsigned int flankPoints = 12;
constexpr unsigned int arcPoints = 4;

/// The angle between the start of an involute and a point of it, as seen from the middle of the
/// circle that it unwinds from.
float involute(float pressure) {
    return std::tan(pressure) - pressure;
}

/// Half the thickness of a tooth as an angle, at a distance from the gear's middle.
float halfToothAngle(unsigned int teeth, float radius) {
    const float pitch = pitchRadius(teeth);
    const float base = pitch * std::cos(pressureAngle);
    // Within the circle that the involute unwinds from, the flank goes straight to the middle.
    const float pressure = std::acos(std::min(1.0f, base / radius));
    const float atPitch = 0.5f * (0.5f * pi - 0.5f * backlash) / pitch;
    return atPitch + involute(pressureAngle) - involute(pressure);
}

/// Points from at(0) to at(1).
template <class At>
std::vector<glm::vec2> along(unsigned int count, At at) {
    std::vector<glm::vec2> points;
    for (unsigned int i = 0; i < count; ++i)
        points.push_back(at(static_cast<float>(i) / static_cast<float>(count - 1)));
    return points;
}

/// A flank of a tooth.
/// \param side  -1 for the one that comes first going counterclockwise, 1 for the other.
std::vector<glm::vec2> flank(unsigned int teeth, float toothAngle, float side, float fromRadius,
                             float toRadius) {
    return along(flankPoints, [&](float at) {
        const float radius = glm::mix(fromRadius, toRadius, at);
        return onCircle(toothAngle + side * halfToothAngle(teeth, radius), radius);
    });
}

std::vector<glm::vec2> arc(float radius, float fromAngle, float toAngle) {
    return along(arcPoints,
                 [&](float at) { return onCircle(glm::mix(fromAngle, toAngle, at), radius); });
}

/// Makes ends of stretches the same points, which rounding keeps them from being.
void joinEnds(std::vector<std::vector<glm::vec2>>& stretches) {
    for (std::size_t i = 0; i < stretches.size(); ++i)
        stretches[(i + 1) % stretches.size()].front() = stretches[i].back();
}

} // namespace

glm::vec2 onCircle(float angle, float radius) {
    return {radius * std::cos(angle), radius * std::sin(angle)};
}

std::vector<std::vector<glm::vec2>> outline(unsigned int teeth) {
    const float tip = tipRadius(teeth);
    const float root = rootRadius(teeth);
    const float halfTip = halfToothAngle(teeth, tip);
    const float halfRoot = halfToothAngle(teeth, root);
    std::vector<std::vector<glm::vec2>> stretches;
    for (unsigned int i = 0; i < teeth; ++i) {
        const float tooth = static_cast<float>(i) * pitchAngle(teeth);
        const float next = tooth + pitchAngle(teeth);
        stretches.push_back(flank(teeth, tooth, -1.0f, root, tip));
        stretches.push_back(arc(tip, tooth - halfTip, tooth + halfTip));
        stretches.push_back(flank(teeth, tooth, 1.0f, tip, root));
        stretches.push_back(arc(root, tooth + halfRoot, next - halfRoot));
    }
    joinEnds(stretches);
    return stretches;
}

} // namespace gears
