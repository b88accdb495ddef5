#include "canvas/plain_shaders.hpp"

namespace vellis::canvas {

const char flatVertexSource[] = R"(uniform mat4 matrix;
IN vec3 position;
OUT vec4 paint;
#ifdef UNIFORM_STYLE
uniform vec4 styleColor;
#define color styleColor
#else
IN vec4 color;
#endif
void main() {
  paint = color;
  gl_Position = matrix * vec4(position, 1);
}
)";

const char flatFragmentSource[] = R"(IN vec4 paint;
void main() {
  OUT0 = paint;
}
)";

// A disc of less than a pixel keeps that size and fades by its area. The radius is that of the disc
// whose edge, a ramp of one pixel, has the same area.
const char discVertexSource[] = R"(uniform mat4 matrix;
uniform vec4 viewport;
IN vec2 corner;
IN vec3 center;
OUT vec4 paint;
OUT vec3 place;
#ifdef UNIFORM_STYLE
uniform float halfWidth;
uniform vec4 styleColor;
#define radius halfWidth
#define color styleColor
#else
IN float radius;
IN vec4 color;
#endif
void main() {
  float least = max(radius, .5), inner = sqrt(least * least - 1. / 12.), fade = radius / least;
  vec4 c = matrix * vec4(center, 1);
  paint = vec4(color.rgb, color.a * fade * fade);
  place = vec3(corner * vec2(1.7320508, 1) * (inner + .5), inner + .5);
  gl_Position = c.z < -c.w || c.w <= 0.
    ? vec4(2, 2, 2, 1)
    : vec4(c.xyz / c.w + vec3(place.xy * 2. / viewport.zw, 0), 1);
}
)";

const char discFragmentSource[] = R"(IN vec4 paint;
IN vec3 place;
void main() {
  OUT0 = vec4(paint.rgb, paint.a * clamp(place.z - length(place.xy), 0., 1.));
}
)";

const char maskVertexSource[] = R"(uniform vec4 box;
IN vec2 corner;
void main() {
  gl_Position = vec4(mix(box.xy, box.zw, vec2(corner.x, .5 + .5 * corner.y)), 0, 1);
}
)";

const char maskFragmentSource[] = R"(uniform sampler2D texels;
uniform vec4 frame, styleColor;
void main() {
  OUT0 = vec4(styleColor.rgb, TEXTURE(texels, (gl_FragCoord.xy - frame.xy) * frame.zw).a);
}
)";

// The place of a vertex, moved by so many pixels; with WHOLE_PIXELS from the nearest corner of
// pixels on.
const char imageVertexSource[] = R"(#ifdef WHOLE_PIXELS
#define PLACE LINEAR
#else
#define PLACE
#endif
uniform mat4 matrix;
uniform vec4 viewport;
IN vec3 position;
IN vec2 offset, part;
IN vec4 color;
FLAT OUT vec4 paint;
PLACE OUT vec2 place;
void main() {
  vec4 c = matrix * vec4(position, 1);
  vec2 scale = .5 * viewport.zw;
  paint = color;
  place = part;
#ifdef WHOLE_PIXELS
  vec2 pixel = floor((c.xy / c.w + 1.) * scale + .5) + offset;
  gl_Position = c.z < -c.w || c.w <= 0. ? vec4(2, 2, 2, 1) : vec4(pixel / scale - 1., c.z / c.w, 1);
#else
  gl_Position = c + vec4(offset / scale * c.w, 0, 0);
#endif
}
)";

const char imageFragmentSource[] = R"(#ifdef WHOLE_PIXELS
#define PLACE LINEAR
#else
#define PLACE
#endif
uniform sampler2D texels;
FLAT IN vec4 paint;
PLACE IN vec2 place;
void main() {
#ifdef COVERAGE
  OUT0 = vec4(paint.rgb, paint.a * TEXTURE(texels, place).r);
#else
  OUT0 = paint * TEXTURE(texels, place);
#endif
}
)";

} // namespace vellis::canvas
