#include "canvas/drawing.hpp"

#include <algorithm>

namespace vellis::canvas {

static_assert(sizeof(Corner<2>) == 12 && sizeof(Corner<3>) == 16);
static_assert(sizeof(StrokeRecord<2>) == 20 && sizeof(StrokeRecord<3>) == 24);
static_assert(sizeof(Disc<2>) == 16 && sizeof(Disc<3>) == 20);
static_assert(sizeof(ImageCorner<2>) == 28 && sizeof(ImageCorner<3>) == 32);
static_assert(recordSize(Kind::Images, 3) == 4 * sizeof(ImageCorner<3>));
static_assert(recordSize(Kind::Lines, 2) == sizeof(Corner<2>));
static_assert(recordSize(Kind::Strip, 3) == sizeof(StrokeRecord<3>));
static_assert(recordSize(Kind::Discs, 2) == sizeof(Disc<2>));
static_assert(arenaOf(Kind::Images, 3) + 1 == numArenas);

bool Style::operator==(const Style& other) const {
    const bool isSame = isGradient == other.isGradient && isDashed == other.isDashed &&
                        join == other.join && cap == other.cap && miterLimit == other.miterLimit;
    return isSame &&
           (!isDashed || (period == other.period && dashes == other.dashes &&
                          dashMatrix == other.dashMatrix && dashScale == other.dashScale));
}

float reachOf(const Style& style) {
    return style.join == Stroke::Join::Miter ? std::max(style.miterLimit, 1.5f) : 1.5f;
}

Drawing::Drawing() = default;
Drawing::~Drawing() = default;

void Drawing::clear() {
    for (Arena& arena : arenas)
        arena.used = arena.count = 0;
    commands.clear();
    looks.clear();
    buffers.clear();
    textures.clear();
}

} // namespace vellis::canvas
