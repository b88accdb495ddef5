#include "shading/built_in_programs.hpp"

namespace vellis {
namespace {

constexpr char softPointsVertex2D[] = "#version 120 \n"
                                      "uniform mat4 mvp; \n"
                                      "uniform float radius; \n"
                                      "attribute vec2 position; \n"
                                      "void main() { \n"
                                      "  gl_PointSize = radius; \n"
                                      "  gl_Position = mvp*vec4(position, 0.0, 1.0); \n"
                                      "} \n";

constexpr char softPointsVertex3D[] = "#version 120 \n"
                                      "uniform mat4 mvp; \n"
                                      "uniform float radius; \n"
                                      "attribute vec3 position; \n"
                                      "void main() { \n"
                                      "  gl_PointSize = radius; \n"
                                      "  gl_Position = mvp*vec4(position, 1.0); \n"
                                      "} \n";

constexpr char uniformColorVertex2D[] = "#version 120 \n"
                                        "uniform mat4 mvp; \n"
                                        "attribute vec2 position; \n"
                                        "void main() { \n"
                                        "  gl_Position = mvp*vec4(position, 0.0, 1.0); \n"
                                        "} \n";

constexpr char uniformColorVertex3D[] = "#version 120 \n"
                                        "uniform mat4 mvp; \n"
                                        "attribute vec3 position; \n"
                                        "void main() { \n"
                                        "  gl_Position = mvp*vec4(position, 1.0); \n"
                                        "} \n";

constexpr char dashLinesVertex2D[] = "#version 120 \n"
                                     "uniform mat4 mvp; \n"
                                     "attribute vec3 position_t; \n"
                                     "varying float cumulativeDist; \n"
                                     "void main() { \n"
                                     "  cumulativeDist = position_t[2]; \n"
                                     "  gl_Position = mvp*vec4(position_t.xy, 0.0, 1.0); \n"
                                     "} \n";

constexpr char dashLinesVertex3D[] = "#version 120 \n"
                                     "uniform mat4 mvp; \n"
                                     "attribute vec4 position_t; \n"
                                     "varying float cumulativeDist; \n"
                                     "void main() { \n"
                                     "  cumulativeDist = position_t[3]; \n"
                                     "  gl_Position = mvp*vec4(position_t.xyz, 1.0); \n"
                                     "} \n";

constexpr char softPointsFragment2D[] = "#version 120 \n"
                                        "uniform vec4 color; \n"
                                        "uniform float softness; \n"
                                        "void main() { \n"
                                        "  float d = length(gl_PointCoord*2.0-1.0); \n"
                                        "  if (d > 1.0) discard; \n"
                                        "  float t = (d-(1.0-softness))/softness; \n"
                                        "  float a = d < (1.0-softness) ? 1.0 : 1.0-t*t; \n"
                                        "  gl_FragColor = vec4(color.rgb, a*color.a); \n"
                                        "} \n";

/// Nothing is discarded: outside the disc the alpha falls below zero.
constexpr char softPointsFragment3D[] = "#version 120 \n"
                                        "uniform vec4 color; \n"
                                        "uniform float softness; \n"
                                        "void main() { \n"
                                        "  float d = length(gl_PointCoord*2.0-1.0); \n"
                                        "  float t = (d-(1.0-softness))/softness; \n"
                                        "  float a = d < (1.0-softness) ? 1.0 : 1.0-t*t; \n"
                                        "  gl_FragColor = vec4(color.rgb, a*color.a); \n"
                                        "} \n";

constexpr char uniformColorFragment[] = "#version 120 \n"
                                        "uniform vec4 color; \n"
                                        "void main() { \n"
                                        "  gl_FragColor = color; \n"
                                        "} \n";

constexpr char dashLinesFragment[] = "#version 120 \n"
                                     "uniform vec4 color; \n"
                                     "uniform vec2 dash; \n"
                                     "varying float cumulativeDist; \n"
                                     "void main() { \n"
                                     "  float t = mod(cumulativeDist, dash[0]+dash[1]); \n"
                                     "  if (t > dash[0]) discard; \n"
                                     "  gl_FragColor = color; \n"
                                     "} \n";

} // namespace

const std::array<BuiltInProgram, 6> builtInPrograms = {{
    {softPointsVertex2D, softPointsFragment2D},
    {softPointsVertex3D, softPointsFragment3D},
    {uniformColorVertex2D, uniformColorFragment},
    {uniformColorVertex3D, uniformColorFragment},
    {dashLinesVertex2D, dashLinesFragment},
    {dashLinesVertex3D, dashLinesFragment},
}};

const BuiltInProgram corePreambles = {
    "#version 150 \n"
    "#define attribute in \n"
    "#define varying out ",
    "#version 150 \n"
    "#define varying in \n"
    "#define gl_FragColor OUT0 \n"
    "out vec4 OUT0; ",
};

} // namespace vellis
