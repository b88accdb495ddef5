#include "gear_train.hpp"

#include <cmath>

#include "spur_gear.hpp"

namespace gears {

Gear meshingWith(const Gear& driver, unsigned int teeth, float direction) {
    const float distance = pitchRadius(driver.teeth) + pitchRadius(teeth);
    return {teeth, driver.centre + onCircle(direction, distance)};
}

float drivenAngle(const Gear& driver, float driverAngle, const Gear& driven) {
    const glm::vec2 between = driven.centre - driver.centre;
    const float direction = std::atan2(between.y, between.x);
    // How far the driver's tooth has turned past the line between the middles, in teeth. The gear
    // that is driven turns the other way, and has a gap there.
    const float teethPast = (driverAngle - direction) / pitchAngle(driver.teeth);
    return direction + pi - (teethPast + 0.5f) * pitchAngle(driven.teeth);
}

std::vector<Gear> makeTrain() {
    const Gear driver{24, {0.0f, 0.0f}};
    return {driver, meshingWith(driver, 16, -0.15f), meshingWith(driver, 12, 1.25f)};
}

std::vector<float> trainAngles(const std::vector<Gear>& train, float driverAngle) {
    std::vector<float> angles = {driverAngle};
    for (std::size_t i = 1; i < train.size(); ++i)
        angles.push_back(drivenAngle(train.front(), driverAngle, train[i]));
    return angles;
}

} // namespace gears
