#include "strokes/cairo.hpp"

#include <algorithm>
#include <memory>

#include <cairo.h>

#include "support/stroke_scenes.hpp"

namespace vellis::bench {
namespace {

constexpr int size = test::strokeSceneSize;

// In the order of test::StrokeJoin and test::StrokeCap.
constexpr cairo_line_join_t joins[] = {CAIRO_LINE_JOIN_MITER, CAIRO_LINE_JOIN_ROUND,
                                       CAIRO_LINE_JOIN_BEVEL};
constexpr cairo_line_cap_t caps[] = {CAIRO_LINE_CAP_BUTT, CAIRO_LINE_CAP_SQUARE,
                                     CAIRO_LINE_CAP_ROUND};

void draw(cairo_t& cairo, const test::Stroke& stroke) {
    cairo_set_source_rgba(&cairo, 1, 1, 1, stroke.opacity);
    cairo_set_line_width(&cairo, stroke.width);
    cairo_set_line_join(&cairo, joins[static_cast<int>(stroke.join)]);
    cairo_set_line_cap(&cairo, caps[static_cast<int>(stroke.cap)]);
    cairo_set_miter_limit(&cairo, stroke.miterLimit);
    cairo_set_dash(&cairo, stroke.dashes.data(), static_cast<int>(stroke.dashes.size()),
                   stroke.dashOffset);
    for (const glm::dvec2& point : stroke.points)
        cairo_line_to(&cairo, point.x, size - point.y);
    if (stroke.closed)
        cairo_close_path(&cairo);
    cairo_stroke(&cairo);
}

} // namespace

offscreen::Image drawByCairo(const std::vector<test::Stroke>& strokes) {
    const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, size, size), cairo_surface_destroy);
    const std::unique_ptr<cairo_t, void (*)(cairo_t*)> cairo(cairo_create(surface.get()),
                                                             cairo_destroy);
    cairo_set_antialias(cairo.get(), CAIRO_ANTIALIAS_BEST);
    for (const test::Stroke& stroke : strokes)
        draw(*cairo, stroke);
    cairo_surface_flush(surface.get());
    offscreen::Image image(size, size);
    const unsigned char* const pixels = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (unsigned int y = 0; y != size; ++y)
        std::copy_n(pixels + static_cast<std::ptrdiff_t>(y) * stride, 4 * size, image.at(0, y));
    return image;
}

} // namespace vellis::bench
