#pragma once

#include <vector>

#include <glm/vec2.hpp>

namespace gears {

/// A gear in its place.
struct Gear {
    unsigned int teeth;
    glm::vec2 centre; ///< in modules
};

/// The gear that meshes with another one.
/// \param direction  From the middle of that one to the middle of the new one, as an angle.
Gear meshingWith(const Gear& driver, unsigned int teeth, float direction);

/// The angle that a gear is turned by when the one that drives it is turned by \p driverAngle, so
/// that the teeth of each stand in the middle of the gaps of the other.
float drivenAngle(const Gear& driver, float driverAngle, const Gear& driven);

/// Three gears, of which the first drives the others.
std::vector<Gear> makeTrain();

/// The angles of such gears when the first is turned by \p driverAngle.
std::vector<float> trainAngles(const std::vector<Gear>& train, float driverAngle);

} // namespace gears
