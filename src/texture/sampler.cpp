#include <vellis/texture/sampler.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

#include <vellis/gl.hpp>

#include "gl/log.hpp"

namespace vellis {
namespace {

// By Filter; the mipmap filters by that between the levels, then by that within them.
constexpr unsigned int filters[] = {GL_NEAREST, GL_LINEAR};
constexpr unsigned int mipmapFilters[][2] = {
    {GL_NEAREST_MIPMAP_NEAREST, GL_LINEAR_MIPMAP_NEAREST},
    {GL_NEAREST_MIPMAP_LINEAR, GL_LINEAR_MIPMAP_LINEAR},
};
// By Wrap.
constexpr unsigned int wraps[] = {GL_CLAMP_TO_EDGE, GL_REPEAT, GL_MIRRORED_REPEAT};

/// The words of print(): for a value, and from the first property on for a property.
constexpr std::string_view words[] = {
    "NEAREST", "LINEAR", "MIN_FILTER", "MAG_FILTER", "MIPMAP_MIN_FILTER", "WRAP_S", "WRAP_T",
};
constexpr std::size_t firstPropertyWord = 2;

/// Sends the GL value that \p glValues has for \p value, if any.
template <std::size_t N>
void send(unsigned int target, unsigned int pname, const unsigned int (&glValues)[N],
          unsigned int value) {
    if (value < N)
        glTexParameteri(target, pname, static_cast<int>(glValues[value]));
}

} // namespace

Sampler::Sampler() : Sampler(NEAREST, CLAMP) {}

Sampler::Sampler(Filter filter, Wrap wrap)
    : Sampler({{MIN_FILTER, filter}, {MAG_FILTER, filter}, {WRAP_S, wrap}, {WRAP_T, wrap}}) {}

Sampler::Sampler(std::initializer_list<Setting> settings) {
    reset();
    set(settings);
}

void Sampler::set(std::initializer_list<Setting> settings) {
    for (const auto& [property, value] : settings) {
        if (property < numProperties)
            values_[property] = value;
    }
}

unsigned int Sampler::get(Property property) const {
    return property < numProperties ? values_[property] : unset;
}

void Sampler::print() const {
    for (std::size_t i = 0; i < numProperties; ++i) {
        const unsigned int value = values_[i];
        if (value == unset)
            continue;
        const internal::Decimal number(value);
        const std::string_view word = value < std::size(words) ? words[value] : number;
        internal::writeToStream({words[firstPropertyWord + i], " = ", word});
    }
}

Sampler Sampler::nearest_clamp() {
    return {{MIN_FILTER, NEAREST}, {MAG_FILTER, NEAREST}, {WRAP_S, CLAMP}, {WRAP_T, CLAMP}};
}

Sampler Sampler::nearest_repeat() {
    return {{MIN_FILTER, NEAREST}, {MAG_FILTER, NEAREST}, {WRAP_S, REPEAT}, {WRAP_T, REPEAT}};
}

Sampler Sampler::linear_clamp() {
    return {{MIN_FILTER, LINEAR}, {MAG_FILTER, LINEAR}, {WRAP_S, CLAMP}, {WRAP_T, CLAMP}};
}

Sampler Sampler::linear_repeat() {
    return {{MIN_FILTER, LINEAR}, {MAG_FILTER, LINEAR}, {WRAP_S, REPEAT}, {WRAP_T, REPEAT}};
}

Sampler Sampler::trilinear_clamp() {
    return {{MIN_FILTER, LINEAR},
            {MAG_FILTER, LINEAR},
            {MIPMAP_MIN_FILTER, LINEAR},
            {WRAP_S, CLAMP},
            {WRAP_T, CLAMP}};
}

Sampler Sampler::trilinear_repeat() {
    return {{MIN_FILTER, LINEAR},
            {MAG_FILTER, LINEAR},
            {MIPMAP_MIN_FILTER, LINEAR},
            {WRAP_S, REPEAT},
            {WRAP_T, REPEAT}};
}

void Sampler::reset() {
    std::fill(std::begin(values_), std::end(values_), unset);
}

void Sampler::apply(unsigned int target) const {
    const unsigned int mipmap = values_[MIPMAP_MIN_FILTER];
    const auto& minFilters = mipmap < std::size(mipmapFilters) ? mipmapFilters[mipmap] : filters;
    send(target, GL_TEXTURE_MIN_FILTER, minFilters, values_[MIN_FILTER]);
    send(target, GL_TEXTURE_MAG_FILTER, filters, values_[MAG_FILTER]);
    send(target, GL_TEXTURE_WRAP_S, wraps, values_[WRAP_S]);
    send(target, GL_TEXTURE_WRAP_T, wraps, values_[WRAP_T]);
}

} // namespace vellis
