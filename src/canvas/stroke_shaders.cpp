#include "canvas/stroke_shaders.hpp"

namespace vellis::canvas {

const char strokeVertexSource[] = R"(
uniform mat4 matrix;
uniform vec4 viewport;
#ifndef JOIN
uniform float join, cap;
#define JOIN join
#define CAP cap
#endif
uniform float miterLimit;
IN vec2 corner;
IN vec3 p0, p1, p2, p3;
#ifdef UNIFORM_STYLE
uniform float halfWidth;
uniform vec4 styleColor;
#define color styleColor
#define nextColor styleColor
#else
IN vec2 phaseAndHalf;
IN vec4 color;
#ifdef GRADIENT
IN vec4 nextColor;
#endif
#endif
#ifdef DASHED
uniform mat4 dashMatrix;
uniform vec2 dashScale;
OUT vec2 dash;
#endif
#ifdef GRADIENT
OUT vec4 nextPaint;
#endif
OUT vec4 place, joints, frame;
OUT vec4 paint;

vec4 front(vec4 a, vec4 b) {
  float s = a.z + a.w;
  return s < 0. ? mix(a, b, s / (s - b.z - b.w)) : a;
}

vec2 turn(vec2 a, vec2 b, bool cut, bool end, float h) {
  float l = sqrt(dot(a, a) * dot(b, b));
  if (cut || end || l == 0.) return vec2(cut ? -1. : -1. - (CAP == 1. ? h : float(CAP) * .5), 0);
  float c = dot(a, b) / l, s = (a.x * b.y - a.y * b.x) / l;
  return normalize(c > 0. ? vec2(1. + c, s) : vec2(abs(s), s < 0. ? c - 1. : 1. - c));
}

float reach(vec2 j, bool cut, float h) {
  if (j.x < 0.) return cut || CAP == 0. ? 0. : h;
  float y = abs(j.y) * h;
  return JOIN == 1. ? y : JOIN == 0. && j.x * miterLimit > 1. ? y / j.x : y * j.x;
}

float inset(vec2 j, float tip, float h, float side, float room) {
  float across = h + .71, y = abs(j.y), t = across * y / j.x;
#ifdef DASHED
  if (j.x > 0. && CAP != 0.) tip = max(tip, h);
#else
  if (j.x * 4. > y && max(t, 2. * across * y * j.x) <= room) return side * (j.y < 0. ? -t : t);
#endif
  return -.71 - tip;
}

void main() {
#ifdef UNIFORM_STYLE
  float h = halfWidth;
#else
  float h = phaseAndHalf.y;
#endif
  vec4 a = matrix * vec4(p1, 1), b = matrix * vec4(p2, 1), s = front(a, b), e = front(b, a);
  vec2 scale = .5 * viewport.zw, start = s.xy / s.w * scale, way = e.xy / e.w * scale - start;
  float len = length(way);
  bool cut1 = a.z + a.w < 0., cut2 = b.z + b.w < 0.;
  gl_Position = vec4(2, 2, 2, 1);
  if (h == 0. || p1 == p2 || len == 0. || cut1 && cut2) return;
  vec4 o = front(matrix * vec4(p0, 1), a), i = front(matrix * vec4(p3, 1), b);
  vec2 before = start - o.xy / o.w * scale, after = i.xy / i.w * scale - start - way;
  vec2 j1 = turn(before, way, cut1, p0 == p1, h), j2 = turn(way, after, cut2, p2 == p3, h);
  float len0 = length(before), len3 = length(after);
  float tip1 = reach(j1, cut1, h), tip2 = reach(j2, cut2, h);
  float in1 = inset(j1, tip1, h, corner.y, min(len, len0));
  float in2 = inset(j2, tip2, h, corner.y, min(len, len3));
  if (in1 + in2 > len) {
    in1 *= len / (in1 + in2);
    in2 = len - in1;
  }
  vec2 d = way / len, at = vec2(corner.x < .5 ? in1 : len - in2, corner.y * (h + .71));
  at.x += corner.x * .1 - .05;
  place = vec4(at.x, len - at.x, at.y, h);
  joints = vec4(j1, j2);
  frame = vec4(d, j1.x < 0. ? -1e9 : len0, j2.x < 0. ? -1e9 : len3);
  paint = color;
#ifdef GRADIENT
  nextPaint = nextColor;
#endif
#ifdef DASHED
  a = dashMatrix * vec4(p1, 1);
  b = dashMatrix * vec4(p2, 1);
  s = front(a, b);
  e = front(b, a);
  float ratio = length((e.xy / e.w - s.xy / s.w) * dashScale) / len;
  dash = vec2(phaseAndHalf.x / ratio + at.x, ratio);
#endif
  float t = at.x / len, z1 = s.z / s.w, z2 = e.z / e.w;
  gl_Position = vec4((start + d * at.x + vec2(-d.y, d.x) * at.y) / scale,
                     max(mix(z1, z2, clamp(t, -1., 2.)), -1.), 1);
}
)";

const char strokeFragmentSource[] = R"(
#ifndef JOIN
uniform float join, cap;
#define JOIN join
#define CAP cap
#endif
uniform float miterLimit;
#ifdef DASHED
uniform vec4 dashes[2];
uniform float dashPeriod;
IN vec2 dash;
#endif
#ifdef GRADIENT
IN vec4 nextPaint;
#endif
IN vec4 place, joints, frame;
IN vec4 paint;

vec3 ramp(vec2 n) {
  n = abs(n);
  float a = max(n.x, n.y), b = max(min(n.x, n.y), .001);
  return vec3(.5 * (a + b), b, 1. / (a * b));
}

float cover(float e, vec3 f) {
  float t = max(f.x - abs(e), 0.), v = min(t, f.y);
  v *= (t - .5 * v) * f.z;
  return e > 0. ? 1. - v : v;
}

void main() {
  OUT0 = paint;
  vec2 X = -place.xy, C = joints.xz, S = joints.yw, U = X * C + place.z * S;
  vec2 V = X * (C * C - S * S) + 2. * place.z * S * C;
#ifdef DASHED
  float along = place.x, len = along + place.y, inside = clamp(along, 0., len);
  bool cap1 = joints.x < 0., cap2 = joints.z < 0.;
  vec4 D = dashes[1] / dash.y;
  vec4 Q = inside - mod((dash.x - along + inside) * dash.y - dashes[0] + .5 * dashPeriod, dashPeriod) / dash.y
    + .5 * dashPeriod / dash.y, Q1 = Q - D, Q2 = Q + D, none = 1e9 * step(.01, max(Q1, 0.) - min(Q2, len));
  if (cap1) Q1 = max(Q1, 0.);
  if (cap2) Q2 = min(Q2, len);
  vec4 R = max(Q1 - mix(vec4(cap1 ? along : inside), vec4(along), step(0., Q1)),
               mix(vec4(cap2 ? along : inside), vec4(along), step(Q2, vec4(len))) - Q2) + none;
  vec3 w = vec3(R.x, Q1.x, Q2.x);
  if (R.y < w.x) w = vec3(R.y, Q1.y, Q2.y);
  if (R.z < w.x) w = vec3(R.z, Q1.z, Q2.z);
  if (R.w < w.x) w = vec3(R.w, Q1.w, Q2.w);
  bvec2 through = bvec2(!cap1 && w.y < -.01 && w.z > .01, !cap2 && w.y < len - .01 && w.z > len + .01);
  vec2 room = min(frame.zw, vec2(-w.y, w.z - len) - .7);
#else
  bvec2 through = bvec2(true);
  vec2 room = frame.zw;
#endif
  if (through.x && U.x > -.0014 && (X.x > 0. || V.x < room.x) || through.y && U.y > .0014 && (X.y > 0. || V.y < room.y)) discard;
  vec2 near = max(X + 1.5, min(U, 0.) - 1e9 * step(C, vec2(-.5)));
  bool last = near.y > near.x;
  vec2 j = last ? joints.zw : joints.xy, d = frame.xy;
  float x = last ? X.y : X.x, y = place.z, h = place.w;
  bool isCap = j.x < 0.;
  vec2 n = vec2(-d.y, d.x);
  if (!last) n = -n;
  if (j.y < 0.) { n = -n; y = -y; j.y = -j.y; }
  vec2 o = vec2(2. * j.x * j.y, j.y * j.y - j.x * j.x), m = vec2(0, 1);
  float k = o.x * x + o.y * y, q = abs(y), e = h - k;
  bool inner = !isCap && (y > 0. || x < -1.), joined = isCap || (last ? through.y : through.x);
  bool isRound = isCap ? CAP == 2. && j.x < -1. : JOIN == 1.;
  if (inner) q = y, e = min(h + k, last ? room.y - V.y : room.x - V.x);
  else {
    if (JOIN == 2. || j.x * miterLimit < 1.) {
      o = vec2(j.y, -j.x);
      e = h * j.x - dot(o, vec2(x, y));
    }
    if (isCap) {
      o = vec2(1, 0);
      e = -1. - j.x - x;
    }
    if (isRound) {
      e = 9.;
      if (x > 0.) {
        m = vec2(x, y);
        q = sqrt(x * x + y * y + .0833);
        m /= q;
      }
    }
  }
#ifdef DASHED
  if (!joined) { inner = false; e = 9.; q = abs(y); m = vec2(0, 1); }
#endif
  vec3 f = ramp(m.x * d + m.y * n);
  float A = cover(h - q, f), B = cover(h + q, f) - 1., E = cover(e, ramp(o.x * d + o.y * n));
#ifdef DASHED
  float G;
  if (CAP == 2.) {
    vec2 r = vec2(max(w.x, 0.), place.z);
    float l = w.x > 0. ? sqrt(dot(r, r) + .0833) : abs(r.y);
    if (along + along < w.y + w.z) r.x = -r.x;
    r /= max(l, 1e-9);
    G = cover(h - l, ramp(r.x * d + r.y * vec2(-d.y, d.x)));
  } else {
    vec3 g = ramp(d);
    float l = CAP == 1. ? h : 0.;
    G = cover(l - w.x, g) + cover(l + w.x + w.z - w.y, g) - 1.;
    if (isCap) E = min(E, G);
  }
#endif
  float I = mix(A * E, o.y < 0. ? min(A, E) : max(A + E - 1., 0.), abs(o.y));
  A = inner ? A + E - I + B : I + B * mix(E, 1., max(-o.y, 0.));
#ifdef DASHED
  A = CAP == 2. ? min(A, G) : isCap ? A : A * G;
#endif
  OUT0.a *= A;
}
)";

} // namespace vellis::canvas
