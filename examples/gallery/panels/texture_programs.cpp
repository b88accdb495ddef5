#include <gallery/panels/programs.hpp>

#include <common/build_program.hpp>

namespace gallery {
namespace {

using common::buildProgram;

constexpr char colorMapVertexSource[] = R"(
IN vec2 position;
IN float value;
OUT float place;

void main() {
    place = value;
    gl_Position = vec4(position, 0.0, 1.0);
}
)";

constexpr char colorMapFragmentSource[] = R"(
uniform sampler1D colors;
IN float place;
DECL_OUT0;

void main() {
    OUT0 = texture1D(colors, place);
}
)";

constexpr char pictureVertexSource[] = R"(
uniform mat4 mvp;
IN vec3 position;
IN vec2 coordinate;
OUT vec2 place;

void main() {
    place = coordinate;
    gl_Position = mvp * vec4(position, 1.0);
}
)";

constexpr char pictureFragmentSource[] = R"(
uniform sampler2D picture;
IN vec2 place;
DECL_OUT0;

void main() {
    OUT0 = texture2D(picture, place);
}
)";

constexpr char litPictureVertexSource[] = R"(
IN vec3 position;
IN vec3 normal;
IN vec2 coordinate;
OUT vec2 place;
OUT vec3 towards;

void main() {
    place = coordinate;
    towards = normal;
    gl_Position = vec4(position.xy, -position.z, 1.0);
}
)";

constexpr char litPictureFragmentSource[] = R"(
uniform sampler2D picture;
IN vec2 place;
IN vec3 towards;
DECL_OUT0;

const vec3 toLight = vec3(-0.42, 0.64, 0.64);

void main() {
    float light = 0.42 + 0.58 * max(dot(normalize(towards), toLight), 0.0);
    OUT0 = vec4(texture2D(picture, place).rgb * light, 1.0);
}
)";

constexpr char solidVertexSource[] = R"(
uniform mat4 mvp;
IN vec3 position;
IN vec3 normal;
OUT vec3 place;
OUT float light;

const vec3 toLight = vec3(-0.3, 0.72, 0.62);

void main() {
    place = position;
    light = 0.7 + 0.36 * max(dot(normal, toLight), 0.0);
    gl_Position = mvp * vec4(position, 1.0);
}
)";

constexpr char solidFragmentSource[] = R"(
uniform sampler3D solid;
uniform float texels;
IN vec3 place;
IN float light;
DECL_OUT0;

void main() {
    // From the middle of the first texel to that of the last: beyond, the texture repeats.
    vec3 coordinate = 0.5 + 0.5 * place * (texels - 1.0) / texels;
    OUT0 = vec4(texture3D(solid, coordinate).rgb * light, 1.0);
}
)";

} // namespace

std::shared_ptr<vellis::Program> makeColorMapProgram() {
    return buildProgram(colorMapVertexSource, colorMapFragmentSource);
}

std::shared_ptr<vellis::Program> makePictureProgram() {
    return buildProgram(pictureVertexSource, pictureFragmentSource);
}

std::shared_ptr<vellis::Program> makeLitPictureProgram() {
    return buildProgram(litPictureVertexSource, litPictureFragmentSource);
}

std::shared_ptr<vellis::Program> makeSolidProgram() {
    return buildProgram(solidVertexSource, solidFragmentSource);
}

} // namespace gallery
