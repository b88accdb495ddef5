#pragma once

#include <glm/vec4.hpp>

namespace plot {

inline const glm::vec4 paper(0.98f, 0.97f, 0.95f, 1.0f);
inline const glm::vec4 ink(0.17f, 0.23f, 0.28f, 1.0f);
inline const glm::vec4 pale(0.45f, 0.48f, 0.50f, 1.0f); ///< of what is read last
inline const glm::vec4 frame(0.85f, 0.82f, 0.77f, 1.0f);
inline const glm::vec4 teal(0.16f, 0.62f, 0.56f, 1.0f);
inline const glm::vec4 sand(0.93f, 0.78f, 0.43f, 1.0f);
inline const glm::vec4 coral(0.91f, 0.44f, 0.32f, 1.0f);
inline const glm::vec4 white(1.0f);

} // namespace plot
