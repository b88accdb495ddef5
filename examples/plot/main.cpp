/// Draws a small plot with the Toolbox, off screen, and leaves it in a PNG file.

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>

#include <common/picture_file.hpp>
#include <common/ready_context.hpp>
#include <offscreen/image.hpp>
#include <vellis/drawing.hpp>
#include <vellis/gl.hpp>

namespace {

using vellis::Drawable;
using vellis::Toolbox;

constexpr unsigned int width = 640;
constexpr unsigned int height = 400;

const glm::vec4 ink(0.17f, 0.23f, 0.28f, 1.0f);
const glm::vec4 grid(0.85f, 0.82f, 0.77f, 1.0f);
const glm::vec4 teal(0.16f, 0.62f, 0.56f, 1.0f);
const glm::vec4 blue(0.27f, 0.48f, 0.62f, 0.75f);
const glm::vec4 coral(0.91f, 0.44f, 0.32f, 1.0f);
const glm::vec4 white(1.0f);

/// The curve: an oscillation that fades away.
float response(float time) {
    return 1.0f - std::exp(-0.4f * time) * std::cos(2.0f * time);
}

/// The place in pixels of a time from 0 to 10 and a value from 0 to 2; whole times and halves of
/// values are in the middle of pixels.
glm::vec2 at(float time, float value) {
    return {44.5f + 56.0f * time, 40.5f + 160.0f * value};
}

void drawPlot() {
    const glm::mat4 pixels = glm::ortho<float>(0.0f, width, 0.0f, height);
    glViewport(0, 0, width, height);
    glClearColor(0.98f, 0.97f, 0.95f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);

    for (float value = 0.5f; value <= 2.0f; value += 0.5f)
        Toolbox::drawDashLineStrip(grid, 6.0f, 4.0f, {at(0.0f, value), at(10.0f, value)}, pixels);
    for (float time = 1.0f; time <= 10.0f; time += 1.0f) {
        Toolbox::drawDashLineStrip(grid, 6.0f, 4.0f, {at(time, 0.0f), at(time, 2.0f)}, pixels);
        Toolbox::drawLines(ink, {at(time, 0.0f), at(time, 0.0f) - glm::vec2(0.0f, 6.0f)}, pixels);
    }
    Toolbox::drawLineStrip(ink, {at(0.0f, 2.1f), at(0.0f, 0.0f), at(10.2f, 0.0f)}, pixels);

    std::vector<glm::vec2> curve;
    for (int i = 0; i <= 120; ++i) {
        const float time = static_cast<float>(i) / 12.0f;
        curve.push_back(at(time, response(time)));
    }
    glEnable(GL_BLEND); // smooth lines are blended over what is there
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    Drawable::enableLineSmooth(Drawable::SmoothHint::Nicest);
    Drawable::setLineWidth(2.5f);
    Toolbox::drawLineStrip(teal, static_cast<unsigned int>(curve.size()), curve.data(), pixels);

    std::vector<glm::vec2> measured;
    for (int i = 1; i < 30; ++i) {
        const float time = static_cast<float>(i) / 3.0f;
        const float error = 0.09f * std::sin(12.9f * static_cast<float>(i * i));
        measured.push_back(at(time, response(time) + error));
    }
    Toolbox::drawPoints(blue, 9.0f, static_cast<unsigned int>(measured.size()), measured.data(),
                        pixels);
    const float highest = 1.472f;
    Toolbox::drawBullseyes(coral, white, 22.0f, {at(highest, response(highest))}, pixels);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "Usage: vellis_plot picture.png\n";
        return EXIT_FAILURE;
    }
    try {
        const common::ReadyContext context(width, height);
        drawPlot();
        common::writePicture(argv[1], offscreen::readPixels(width, height));
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
