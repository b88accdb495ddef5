#pragma once

#include <glm/gtc/matrix_transform.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

/// Where panels are seen from.
namespace gallery {

/// Straight from the front: x and y run from -1 to 1 over the panel.
inline const glm::mat4 flatView(1.0f);

/// In perspective from \p eye towards \p target, with y upwards.
inline glm::mat4 viewFrom(const glm::vec3& eye, const glm::vec3& target = glm::vec3(0.0f)) {
    return glm::perspective(glm::radians(30.0f), 1.0f, 0.1f, 100.0f) *
           glm::lookAt(eye, target, glm::vec3(0.0f, 1.0f, 0.0f));
}

} // namespace gallery
