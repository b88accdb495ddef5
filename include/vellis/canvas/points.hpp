#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace vellis {

namespace detail {

/// The type of the elements of a container that has them side by side.
template <class Container, class = decltype(std::declval<const Container&>().size())>
using ElementOf =
    std::remove_cv_t<std::remove_pointer_t<decltype(std::declval<const Container&>().data())>>;

/// A type with a number, for tables of types.
template <class T, T number>
using Numbered = std::integral_constant<T, number>;

enum class PointType : unsigned char { Vec2, Vec3, DVec2, DVec3 };
template <class V>
struct PointTypeOf {};
template <>
struct PointTypeOf<glm::vec2> : Numbered<PointType, PointType::Vec2> {};
template <>
struct PointTypeOf<glm::vec3> : Numbered<PointType, PointType::Vec3> {};
template <>
struct PointTypeOf<glm::dvec2> : Numbered<PointType, PointType::DVec2> {};
template <>
struct PointTypeOf<glm::dvec3> : Numbered<PointType, PointType::DVec3> {};

constexpr std::size_t sizeOf(PointType type) {
    return type == PointType::Vec2    ? sizeof(glm::vec2)
           : type == PointType::Vec3  ? sizeof(glm::vec3)
           : type == PointType::DVec2 ? sizeof(glm::dvec2)
                                      : sizeof(glm::dvec3);
}

enum class ColorType : unsigned char { One, Vec4, U8Vec4 };
constexpr std::size_t sizeOf(ColorType type) {
    return type == ColorType::Vec4 ? sizeof(glm::vec4) : sizeof(glm::vec<4, unsigned char>);
}

template <class C>
struct ColorTypeOf {};
template <>
struct ColorTypeOf<glm::vec4> : Numbered<ColorType, ColorType::Vec4> {};
template <>
struct ColorTypeOf<glm::vec<4, unsigned char>> : Numbered<ColorType, ColorType::U8Vec4> {};

} // namespace detail

/// The points of a call of Canvas: those of a `std::vector`, a `std::array` or anything else with
/// `data()` and `size()`, or a number of them at an address. `glm::vec2` and `glm::dvec2` lie in
/// the plane z = 0, `glm::vec3` and `glm::dvec3` in space. Nothing is copied: the points are read
/// during the call.
struct Points {
    /// \p numPoints points; none where \p points is null.
    template <class V, detail::PointType pointType = detail::PointTypeOf<V>::value>
    Points(const V* points, std::size_t numPoints)
        : data(points),
          count(points != nullptr ? numPoints : 0),
          type(pointType) {}

    /// All points of a container.
    template <class Container, class V = detail::ElementOf<Container>,
              detail::PointType pointType = detail::PointTypeOf<V>::value>
    Points(const Container& container) // NOLINT: a container is points
        : Points(container.data(), container.size()) {}

    /// \p numPoints of them from \p first on, all of which there are.
    Points part(std::size_t first, std::size_t numPoints) const {
        Points result = *this;
        result.data = static_cast<const char*>(data) + first * detail::sizeOf(type);
        result.count = numPoints;
        return result;
    }

    const void* data;       ///< the first
    std::size_t count;      ///< how many
    detail::PointType type; ///< what they are
};

/// The colours of a call of Canvas: one for all points, or one for each: those of a container of
/// `glm::vec4` (red, green, blue and alpha from 0 to 1) or of `glm::u8vec4` (from 0 to 255). Where
/// there are fewer than points, the last one stands for those that are missing; an empty container
/// draws nothing.
struct Colors {
    /// One colour for all.
    Colors(const glm::vec4& color) // NOLINT: a colour is colours
        : data(nullptr),
          count(1),
          one(color),
          type(detail::ColorType::One) {}

    /// Those at an address.
    template <class C, detail::ColorType colorType = detail::ColorTypeOf<C>::value>
    Colors(const C* colors, std::size_t numColors)
        : data(colors),
          count(colors != nullptr ? numColors : 0),
          one(0.f),
          type(colorType) {}

    /// All colours of a container.
    template <class Container, class C = detail::ElementOf<Container>,
              detail::ColorType colorType = detail::ColorTypeOf<C>::value>
    Colors(const Container& container) // NOLINT: a container is colours
        : Colors(container.data(), container.size()) {}

    /// Those from \p first on; of fewer the last one, and one for all as it is.
    Colors part(std::size_t first) const {
        Colors result = *this;
        if (type == detail::ColorType::One || count == 0)
            return result;
        const std::size_t skipped = first < count ? first : count - 1;
        result.data = static_cast<const char*>(data) + skipped * detail::sizeOf(type);
        result.count = count - skipped;
        return result;
    }

    const void* data;       ///< the first; null for one colour
    std::size_t count;      ///< how many
    glm::vec4 one;          ///< the one for all
    detail::ColorType type; ///< what they are
};

/// The sizes of points of a call of Canvas: one for all, or one for each, in a container of
/// `float`. Where there are fewer than points, the last one stands for those that are missing; an
/// empty container draws nothing.
struct Sizes {
    /// One size for all.
    Sizes(float size) // NOLINT: a size is sizes
        : data(nullptr),
          count(1),
          one(size) {}

    /// All sizes of a container.
    template <class Container,
              class = std::enable_if_t<std::is_same_v<detail::ElementOf<Container>, float>>>
    Sizes(const Container& container) // NOLINT: a container is sizes
        : data(container.data()),
          count(container.size()),
          one(0.f) {}

    const float* data; ///< the first; null for one size
    std::size_t count; ///< how many
    float one;         ///< the one for all
};

} // namespace vellis
