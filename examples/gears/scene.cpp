#include "scene.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>

#include <glm/common.hpp>
#include <glm/gtc/matrix_transform.hpp>

#include <common/build_program.hpp>
#include <vellis/framebuffer.hpp>

#include "spur_gear.hpp"

namespace gears {
namespace {

using vellis::Drawable;
using vellis::Framebuffer;
using vellis::Uniform;

const glm::vec4 paper(0.98f, 0.973f, 0.953f, 1.0f);

/// The colours of the gears, in their order.
const glm::vec3 colors[] = {
    {0.906f, 0.435f, 0.318f}, // coral
    {0.165f, 0.616f, 0.561f}, // teal
    {0.271f, 0.482f, 0.616f}, // blue
};

constexpr char vertexSource[] = R"(
uniform mat4 toEye;
uniform mat4 toClip;
IN vec3 position;
IN vec3 normal;
OUT vec3 eyePosition;
OUT vec3 eyeNormal;

void main() {
    vec4 place = toEye * vec4(position, 1.0);
    eyePosition = place.xyz;
    eyeNormal = mat3(toEye) * normal;
    gl_Position = toClip * place;
}
)";

/// A light at the upper left behind the viewer, the sky above and the ground below.
constexpr char fragmentSource[] = R"(
uniform vec3 color;
IN vec3 eyePosition;
IN vec3 eyeNormal;
DECL_OUT0;

const vec3 toLight = vec3(-0.42, 0.64, 0.64);
const vec3 skyColor = vec3(0.60, 0.61, 0.64);
const vec3 groundColor = vec3(0.50, 0.47, 0.46);

void main() {
    vec3 towards = normalize(eyeNormal);
    vec3 halfway = normalize(toLight - normalize(eyePosition));
    vec3 around = mix(groundColor, skyColor, 0.5 + 0.5 * towards.y);
    float light = 0.44 * max(dot(towards, toLight), 0.0);
    float gloss = 0.10 * pow(max(dot(towards, halfway), 0.0), 24.0);
    OUT0 = vec4(color * (around + light) + gloss, 1.0);
}
)";

/// The rectangle that the gears cover as seen from the front.
struct Bounds {
    glm::vec2 lowest;
    glm::vec2 highest;

    glm::vec2 centre() const { return 0.5f * (lowest + highest); }
    glm::vec2 halfSize() const { return 0.5f * (highest - lowest); }
};

Bounds boundsOf(const std::vector<Gear>& train) {
    Bounds bounds{train.front().centre, train.front().centre};
    for (const Gear& gear : train) {
        bounds.lowest = glm::min(bounds.lowest, gear.centre - tipRadius(gear.teeth));
        bounds.highest = glm::max(bounds.highest, gear.centre + tipRadius(gear.teeth));
    }
    return bounds;
}

/// The camera: what it does to places in the scene, and how it projects them.
struct Camera {
    glm::mat4 toEye;
    glm::mat4 toClip;
};

/// A camera that sees all of a rectangle at z = 0.
Camera cameraFor(const Bounds& bounds, const glm::uvec2& size, const View& view) {
    const float aspect = static_cast<float>(size.x) / static_cast<float>(size.y);
    const float angle = glm::radians(20.0f);
    const glm::vec2 half = bounds.halfSize();
    const float distance = 1.12f * std::max(half.x / aspect, half.y) / std::tan(0.5f * angle);
    glm::mat4 toEye = glm::translate(glm::mat4(1.0f), {0.0f, 0.0f, -distance});
    toEye = glm::rotate(toEye, view.aroundX, {1.0f, 0.0f, 0.0f});
    toEye = glm::rotate(toEye, view.aroundY, {0.0f, 1.0f, 0.0f});
    toEye = glm::translate(toEye, -glm::vec3(bounds.centre(), 0.0f));
    const float reach = glm::length(half) + halfThickness;
    return {toEye,
            glm::perspective(angle, aspect, std::max(1.0f, distance - reach), distance + reach)};
}

} // namespace

Scene::Body::Body(const std::shared_ptr<vellis::Program>& program, unsigned int teeth)
    : Body(program, makeSolid(teeth)) {}

Scene::Body::Body(const std::shared_ptr<vellis::Program>& program, const Solid& solid)
    : positions_(vellis::VertexAttributeBuffer<glm::vec3>::make(
          solid.positions, vellis::BufferUsage::Static, vellis::BufferAccess::Draw)),
      normals_(vellis::VertexAttributeBuffer<glm::vec3>::make(
          solid.normals, vellis::BufferUsage::Static, vellis::BufferAccess::Draw)),
      indices_(vellis::IndexBuffer<unsigned short>::make(solid.indices, vellis::BufferUsage::Static,
                                                         vellis::BufferAccess::Draw)),
      triangles_(program, {"position", positions_}, {"normal", normals_}) {}

Scene::Scene() : program_(common::buildProgram(vertexSource, fragmentSource)), train_(makeTrain()) {
    bodies_.reserve(train_.size());
    for (const Gear& gear : train_)
        bodies_.emplace_back(program_, gear.teeth);
}

void Scene::draw(const glm::uvec2& size, const View& view, float driverAngle) const {
    const Camera camera = cameraFor(boundsOf(train_), size, view);
    const std::vector<float> angles = trainAngles(train_, driverAngle);

    Framebuffer::setViewport(0, 0, size.x, size.y);
    Framebuffer::clear(paper, 1.0f, 0);
    Framebuffer::enableDepthTest(Framebuffer::FragmentComparator::LESS);
    Drawable::enableFaceCulling(Drawable::Face::Back);
    for (std::size_t i = 0; i < train_.size(); ++i) {
        const glm::mat4 placed = glm::translate(camera.toEye, glm::vec3(train_[i].centre, 0.0f));
        const glm::mat4 turned = glm::rotate(placed, angles[i], {0.0f, 0.0f, 1.0f});
        bodies_[i].draw(*program_, Uniform("toEye", turned), Uniform("toClip", camera.toClip),
                        Uniform("color", colors[i % std::size(colors)]));
    }
}

} // namespace gears
