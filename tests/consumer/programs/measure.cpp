// Measures a word, and calls nothing but vellis::text.
//
// Usage: measure font

#include <cmath>
#include <cstdio>

#include <vellis/text.hpp>

int main(int count, char** arguments) {
    const auto font = vellis::text::Font::load(count == 2 ? arguments[1] : nullptr, 20.f);
    if (font == nullptr)
        return 1;
    // In DejaVu Sans, whose em has 2048 units: H 1540, e 1260, l 569, o 1253. A position is exact
    // to 1/64 pixel.
    const double expected = (1540 + 1260 + 569 + 569 + 1253) * 20. / 2048.;
    const vellis::text::Extents extents = font->measure("Hello");
    const double advance = vellis::text::pixelsOf(extents.advance);
    std::printf("%f pixels, %f expected\n", advance, expected);
    return std::abs(advance - expected) < 5. / 64. && extents.numLines == 1 ? 0 : 1;
}
