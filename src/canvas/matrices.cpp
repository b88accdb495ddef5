#include "canvas/matrices.hpp"

namespace vellis::canvas {

glm::mat4 product(const glm::mat4& a, const glm::mat4& b) {
    glm::mat4 result(0.f);
    for (int column = 0; column < 4; ++column) {
        for (int i = 0; i < 4; ++i) {
            for (int row = 0; row < 4; ++row)
                result[column][row] += a[i][row] * b[column][i];
        }
    }
    return result;
}

glm::mat4 behindShift(const glm::mat4& matrix, const glm::dvec3& shift) {
    glm::mat4 result = matrix;
    const glm::dvec4 place = placeOf(matrix, shift);
    for (int row = 0; row < 4; ++row)
        result[3][row] = static_cast<float>(place[row]);
    return result;
}

glm::dvec4 placeOf(const glm::mat4& matrix, const glm::dvec3& point) {
    glm::dvec4 result(0.);
    for (int row = 0; row < 4; ++row) {
        result[row] = double{matrix[3][row]};
        for (int i = 0; i < 3; ++i)
            result[row] += double{matrix[i][row]} * point[i];
    }
    return result;
}

bool isFinite(const glm::mat4& matrix) {
    float sum = 0.f; // 0 times what is not finite is not 0
    for (int i = 0; i < 16; ++i)
        sum += matrix[i / 4][i % 4] * 0.f;
    return sum == 0.f;
}

} // namespace vellis::canvas
