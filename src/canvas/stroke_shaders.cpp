#include "canvas/stroke_shaders.hpp"

namespace vellis::canvas {

// Lengths are in pixels. An end of a segment is, for both stages, a vec2: at a joint, the cosine
// and the sine of half the turn, negative to the right; without one, -1 less what its cap adds to
// the length, or -2 for a round cap. What the near plane has cut is -1: a butt end.
//
//   inFront  a, or the point on the way to b where it comes before the near plane
//   turn     the end between two directions
//   reach    how far the stroke goes on past an end, along its segment
//   inset    where the quad begins behind the end, on one side. At a joint its edge is the line
//            that halves the angle, where that cuts off nothing but what the neighbour covers.
//   edge     the insets at both ends; outset is how far the quad goes on past them, on one side or
//            the other
//
// For one vertex that lies outside, drivers may clip thousands, one by one. So a quad that reaches
// beyond the viewport is drawn as a box, the part of it that lies within, and one that shows
// nothing as a point. The fragment stage leaves out what of a box does not belong to the segment.
//
// ALONE is a segment without neighbours, whose ends are straight: its coverage is that across times
// that along, and the shaders are those that are left where nothing is joined.
//
// 0.71 is half a pixel's diagonal, and a little.
const char strokeVertexSource[] = R"(
uniform mat4 matrix;
uniform vec4 viewport;
uniform float miterLimit;
IN vec2 corner;
IN vec3 p0, p1, p2, p3;
#ifdef UNIFORM_STYLE
uniform float halfWidth;
uniform vec4 styleColor;
#else
IN vec2 phaseAndHalf;
IN vec4 color;
#endif
#ifdef GRADIENT
IN vec4 nextColor;
FLAT OUT vec4 nextPaint;
#endif
#ifdef DASHED
uniform mat4 dashMatrix;
uniform vec2 dashScale;
FLAT OUT vec2 dash;
#endif
#ifdef ALONE
FLAT OUT vec2 frame;
#else
FLAT OUT vec4 ends, frame;
#endif
FLAT OUT vec4 paint;
LINEAR OUT vec4 place;

vec4 inFront(vec4 a, vec4 b) {
  float s = a.z + a.w;
  return s < 0. ? mix(a, b, s / (s - b.z - b.w)) : a;
}

vec2 turn(vec2 a, vec2 b, bool cut, bool last, float h) {
  float l = length(a) * length(b);
  if (cut) return vec2(-1, 0);
  if (last || l == 0.) return vec2(cap == 1. ? -1. - h : -1. - .5 * cap, 0);
  float c = dot(a, b) / l, s = (a.x * b.y - a.y * b.x) / l;
  return normalize(c > 0. ? vec2(1. + c, s) : vec2(abs(s), s < 0. ? c - 1. : 1. - c));
}

float reach(vec2 end, float h) {
  if (end.x < 0.) return end.x == -1. ? 0. : h;
  float s = abs(end.y) * h;
  return join == 1. ? s : join == 0. && end.x * miterLimit > .998 ? s / end.x : s * end.x;
}

float inset(vec2 end, float h, float side, float room) {
  float past = reach(end, h);
#ifdef DASHED
  if (end.x > 0. && cap > 0.) past = max(past, h);
#else
  h += .71;
  float s = abs(end.y), lean = h * s / end.x;
  if (4. * end.x > s && max(lean, 2. * h * s * end.x) <= room) return end.y < 0. ? -side * lean : side * lean;
#endif
  return -past - .71;
}

void main() {
#ifdef UNIFORM_STYLE
  float h = halfWidth;
  paint = styleColor;
#else
  float h = phaseAndHalf.y;
  paint = color;
#endif
#ifdef GRADIENT
  nextPaint = nextColor;
#endif
  vec4 a = matrix * vec4(p1, 1), b = matrix * vec4(p2, 1), s = inFront(a, b), e = inFront(b, a);
  vec2 scale = .5 * viewport.zw, start = s.xy / s.w * scale, way = e.xy / e.w * scale - start;
  float len = length(way);
  bool cut1 = a.z + a.w < 0., cut2 = b.z + b.w < 0.;
  gl_Position = vec4(0, 0, 0, 1);
  if (h == 0. || p1 == p2 || len == 0. || cut1 && cut2) return;
#ifdef ALONE
  vec2 past = cap == 1. ? h * vec2(!cut1, !cut2) : vec2(0);
  frame = way / len;
  vec2 edge = -.71 - past, outset = -edge;
#else
  vec2 past = vec2(0);
  vec4 o = inFront(matrix * vec4(p0, 1), a), i = inFront(matrix * vec4(p3, 1), b);
  vec2 before = start - o.xy / o.w * scale, after = i.xy / i.w * scale - start - way;
  ends = vec4(turn(before, way, cut1, p0 == p1, h), turn(way, after, cut2, p2 == p3, h));
  frame = vec4(way / len, length(before), length(after));
  vec2 edge = vec2(inset(ends.xy, h, corner.y, min(len, frame.z)),
                   inset(ends.zw, h, corner.y, min(len, frame.w))), outset = abs(edge);
  if (edge.x + edge.y > len) {
    edge.x *= len / (edge.x + edge.y);
    edge.y = len - edge.x;
  }
#endif
  vec2 d = frame.xy, n = vec2(-d.y, d.x);
  vec2 at = vec2(corner.x < .5 ? edge.x - .05 : len - edge.y + .05, corner.y * (h + .71));
  vec2 spot = start + d * at.x + n * at.y, middle = start + .5 * (len + outset.y - outset.x) * d;
  vec2 box = (.5 * (len + outset.x + outset.y) + .05) * abs(d) + (h + .71) * abs(n);
  if (any(greaterThan(abs(middle) + box, scale))) {
    spot = clamp(middle + vec2(2. * corner.x - 1., corner.y) * box, -scale, scale);
    at = vec2(dot(spot - start, d), dot(spot - start, n));
  }
  place = vec4(at.x + past.x, len - at.x + past.y, at.y, h);
  vec2 z = vec2(s.z / s.w, e.z / e.w);
  gl_Position = vec4(spot / scale, max(mix(z.x, z.y, clamp(at.x / len, -1., 2.)), -1.), 1);
#ifdef DASHED
  a = dashMatrix * vec4(p1, 1);
  b = dashMatrix * vec4(p2, 1);
  s = inFront(a, b);
  e = inFront(b, a);
  dash.y = max(length((e.xy / e.w - s.xy / s.w) * dashScale) / len, 1e-6);
  dash.x = phaseAndHalf.x / dash.y;
#endif
}
)";

// A segment's pixels are told from those of its neighbours by the line that halves the angle
// between them; those that lie on it belong to the segment before, which is why it is moved by
// 0.0014. On either side of it both segments compute the same: the outer edge is cut by another one
// (the neighbour's, that of the bevel or of the cap) or is a circle; the inner edge is that of the
// union.
//
//   ramp, cover  how much of a pixel lies inside of an edge with a normal, from the distance of
//                the pixel's centre, negative outside; both may be the same multiple of what they
//                are
//   d, n         the directions along the segment and across it
//   X, y         where the pixel is as seen from both ends, positive beyond the segment; and across
//   U, V, Y      how far it is beyond the lines that halve the angles; where it is as seen from the
//                ends, along and across the neighbours
//   over         how far it is beyond a round end, along d
//   q, m         the distance from the middle of the stroke and its direction, whose length is k;
//                where the middle is a point, a twelfth makes it that of the mean over the pixel
//   x, end, s    X, cosine and sine of the end whose line is near; that end's y is positive on the
//                inner side of the turn, s is not negative
//   o, e         the normal of the other edge, along d and n, and the distance from it
//   A, B, E      the coverage by the near edge, that by the far one less 1, that by the other edge.
//                Of round joins the other edge is that of a cap, with the ramp of the near one, or
//                one that shows in a corner only, where that ramp does as well
//   I            that by A and E both: what two edges share follows from the angle between them
//
// Of each kind of dash the one that is nearest: D is half its length, L and R are where it begins
// and ends, W is the distance from it. Near has the least W, with its L and R. A joint is solid
// where a dash goes through it; elsewhere there is no join.
const char strokeFragmentSource[] = R"(
uniform float miterLimit;
#ifdef DASHED
uniform vec4 dashes[2];
uniform float dashPeriod;
FLAT IN vec2 dash;
#endif
#ifdef GRADIENT
FLAT IN vec4 nextPaint;
#endif
#ifdef ALONE
FLAT IN vec2 frame;
#else
FLAT IN vec4 ends, frame;
#endif
FLAT IN vec4 paint;
LINEAR IN vec4 place;

vec3 ramp(vec2 n) {
  n = abs(n);
  float a = max(n.x, n.y), b = max(min(n.x, n.y), .001);
  return vec3(.5 * (a + b), b, 1. / (a * b));
}

float cover(float e, vec3 r) {
  float t = max(r.x - abs(e), 0.), v = min(t, r.y);
  v *= (t - .5 * v) * r.z;
  return e > 0. ? 1. - v : v;
}

void main() {
#ifdef ALONE
  vec3 r = ramp(frame);
  OUT0 = paint;
  OUT0.a *= (cover(place.w - place.z, r) + cover(place.w + place.z, r) - 1.) * cover(min(place.x, place.y), r);
#else
  vec2 X = -place.xy, C = ends.xz, S = ends.yw, room = frame.zw, d = frame.xy, n = vec2(-d.y, d.x);
  float y = place.z, h = place.w;
  vec2 U = X * C + y * S, V = 2. * C * U - X;
  bvec2 joined = greaterThan(C, vec2(-.5));
#ifdef DASHED
  float len = place.x + place.y, inside = clamp(place.x, 0., len), period = dashPeriod / dash.y;
  vec4 D = dashes[1] / dash.y, L = dash.x + inside - dashes[0] / dash.y + .5 * period;
  L = inside + .5 * period - L + period * floor(L / period) - D;
  vec4 R = L + D + D, none = 1e9 * (step(.01, max(L, 0.) - min(R, len)) + step(len - .01, L) * step(len + .01, R) + step(L, vec4(-.01)) * step(R, vec4(.01)));
  if (!joined.x) L = max(L, 0.);
  if (!joined.y) R = min(R, len);
  vec4 W = max(L - mix(vec4(joined.x ? inside : place.x), vec4(place.x), step(-.01, L)),
               mix(vec4(joined.y ? inside : place.x), vec4(place.x), step(R, vec4(len + .01))) - R) + none;
  vec3 near = vec3(W.x, L.x, R.x);
  if (W.y < near.x) near = vec3(W.y, L.y, R.y);
  if (W.z < near.x) near = vec3(W.z, L.z, R.z);
  if (W.w < near.x) near = vec3(W.w, L.w, R.w);
  vec3 r;
  float G;
  if (cap == 2.) {
    vec2 m = vec2(max(near.x, 0.), y);
    float q = near.x > 0. ? sqrt(dot(m, m) + .0833) : abs(y);
    if (place.x + place.x < near.y + near.z) m.x = -m.x;
    G = cover(h - q, ramp((m.x * d + m.y * n) / max(q, 1e-9)));
  } else {
    r = ramp(d);
    float q = cap * h - near.x;
    G = cover(q, r) + cover(2. * cap * h + near.z - near.y - q, r) - 1.;
  }
  vec2 past = vec2(-near.y, near.z - len);
  bvec2 solid = bvec2(joined.x && past.x > .01 && near.z > .01, joined.y && past.y > .01 && near.y < len - .01);
  room = min(room, past - .7);
#else
  bvec2 solid = joined;
#endif
  if (abs(y) > h + .71 || solid.x && U.x > -.0014 && (X.x > 0. || V.x < room.x) ||
      solid.y && U.y > .0014 && (X.y > 0. || V.y < room.y)) discard;

  vec2 Y = 2. * S * U - y, Z = X, m = n;
  if (solid.x ? join != 1. : cap < 2. || C.x > -1.5) Z.x = 0.;
  if (solid.y ? join != 1. : cap < 2. || C.y > -1.5) Z.y = 0.;
  float over = max(Z.y, 0.) - max(Z.x, 0.), q = abs(y), k = 1.;
  if (over != 0.) {
    k = q = sqrt(over * over + y * y + .0833);
    m = over * d + y * n;
  }
  vec3 f = ramp(m);
  float A = cover(k * (h - q), f), B = cover(k * (h + q), f) - 1.;

  U = max(X + 1.5, min(U, 0.) - 1e9 * vec2(not(joined)));
  bool last = U.y > U.x, joint = last ? joined.y : joined.x, plain = joint && !(last ? solid.y : solid.x);
  vec2 end = last ? ends.zw : vec2(ends.x, -ends.y), o = vec2(2. * end.x * end.y, end.y * end.y - end.x * end.x);
  float x = last ? X.y : X.x, s = last ? S.y : S.x, e = last ? Y.y : Y.x;
  if (s < 0.) {
    s = -s;
    e = -e;
    y = -y;
  }
  bool inner = joint && (y > 0. || x < -1.);
  if (plain) {
    e = 1e9;
    inner = false;
  } else if (inner) {
    e = min(h + e, last ? room.y - V.y : room.x - V.x);
    if (y < 0.) {
      float a = A;
      A = B + 1.;
      B = a - 1.;
    }
  } else {
    e = h - e;
    if (!joint) {
      o = vec2(1, 0);
      e = -1. - end.x - x;
    } else if (join == 2. || end.x * miterLimit < .999) {
      o = vec2(end.y, -end.x);
      e = h * end.x - s * x + end.x * y;
    }
    if (joint ? join == 1. : cap == 2. && end.x < -1.5) e = 1e9;
  }
  float E = cover(e, join == 1. ? f : ramp(o.x * d + o.y * n));
#ifdef DASHED
  if (!joint && cap < 2.) E = min(E, G);
#endif
  float I = mix(A * E, o.y < 0. ? min(A, E) : max(A + E - 1., 0.), abs(o.y));
  A = inner ? A + E - I + B : join == 1. ? (A + B) * E : I + B * mix(E, 1., max(-o.y, 0.));
#ifdef DASHED
  A = cap == 2. ? min(A, G) : joint ? A * G : A;
#endif
  OUT0 = paint;
#ifdef GRADIENT
  OUT0 = mix(paint, nextPaint, clamp(place.x / (place.x + place.y), 0., 1.));
#endif
  OUT0.a *= A;
#endif
}
)";

} // namespace vellis::canvas
