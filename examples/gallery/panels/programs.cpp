#include <gallery/panels/programs.hpp>

#include <string>

#include <common/build_program.hpp>

namespace gallery {
namespace {

using common::buildProgram;

constexpr char colorVertexSource[] = R"(
IN vec3 position;
IN vec3 color;
OUT vec3 vertexColor;

void main() {
    vertexColor = color;
    gl_Position = vec4(position.xy, -position.z, 1.0);
}
)";

constexpr char colorFragmentSource[] = R"(
IN vec3 vertexColor;
DECL_OUT0;

void main() {
    OUT0 = vec4(vertexColor, 1.0);
}
)";

constexpr char litVertexSource[] = R"(
IN vec3 position;
IN vec3 color;
IN vec3 normal;
OUT vec3 vertexColor;
OUT vec3 vertexNormal;

void main() {
    vertexColor = color;
    vertexNormal = normal;
    gl_Position = vec4(position.xy, -position.z, 1.0);
}
)";

constexpr char litFragmentSource[] = R"(
IN vec3 vertexColor;
IN vec3 vertexNormal;
DECL_OUT0;

const vec3 toLight = vec3(-0.42, 0.64, 0.64);
const vec3 toHalfway = vec3(-0.23, 0.35, 0.91);
const vec3 backColor = vec3(0.925, 0.784, 0.431);

void main() {
    vec3 surface = vertexColor;
    vec3 towards = normalize(vertexNormal);
#ifdef TWO_SIDED
    if (!gl_FrontFacing) {
        surface = backColor;
        towards = -towards;
    }
#endif
    float light = 0.7 + 0.38 * max(dot(towards, toLight), 0.0);
    float gloss = 0.14 * pow(max(dot(towards, toHalfway), 0.0), 24.0);
    OUT0 = vec4(surface * light + gloss, 1.0);
}
)";

constexpr char threeOutputsFragmentSource[] = R"(
IN vec3 vertexColor;
IN vec3 vertexNormal;

const vec3 nearColor = vec3(0.925, 0.784, 0.431);
const vec3 farColor = vec3(0.149, 0.275, 0.392);

void main() {
    gl_FragData[0] = vec4(vertexColor, 1.0);
    gl_FragData[1] = vec4(0.5 + 0.5 * normalize(vertexNormal), 1.0);
    float place = clamp(2.5 * gl_FragCoord.z - 0.75, 0.0, 1.0);
    gl_FragData[2] = vec4(mix(nearColor, farColor, place), 1.0);
}
)";

constexpr char discVertexSource[] = R"(
IN vec3 position;
IN vec3 color;
IN float size;
OUT vec3 vertexColor;

void main() {
    vertexColor = color;
    gl_PointSize = size;
    gl_Position = vec4(position.xy, -position.z, 1.0);
}
)";

constexpr char discFragmentSource[] = R"(
IN vec3 vertexColor;
DECL_OUT0;

void main() {
    if (distance(gl_PointCoord, vec2(0.5)) > 0.5)
        discard;
    OUT0 = vec4(vertexColor, 1.0);
}
)";

} // namespace

std::shared_ptr<vellis::Program> makeColorProgram() {
    return buildProgram(colorVertexSource, colorFragmentSource);
}

std::shared_ptr<vellis::Program> makeLitProgram() {
    return buildProgram(litVertexSource, litFragmentSource);
}

std::shared_ptr<vellis::Program> makeTwoSidedProgram() {
    return buildProgram(litVertexSource, "#define TWO_SIDED\n" + std::string(litFragmentSource));
}

std::shared_ptr<vellis::Program> makeThreeOutputsProgram() {
    return buildProgram(litVertexSource, threeOutputsFragmentSource);
}

std::shared_ptr<vellis::Program> makeDiscProgram() {
    return buildProgram(discVertexSource, discFragmentSource);
}

} // namespace gallery
