#pragma once

// The form of the generated loader that fills a structure. It declares the types that
// <vellis/gl.hpp> does, but none of its pointers: no source includes both.
#include <glad/gl.h>

#include <cstddef>
#include <iterator>

#include "gl/joined_names.hpp"

/// \file
/// The structure that the generated loader fills, as rows: first the flags of versions and
/// extensions, then the entry points, both without gaps and in the order of entry_points.inc.

namespace vellis::loader {

namespace table {

#define VELLIS_LOADER_FLAG(name, member)
#define VELLIS_ENTRY_POINT(name, member) offsetof(GladGLContext, member),
inline constexpr std::size_t entryPoints[] = {
#include "entry_points.inc"
};
#undef VELLIS_ENTRY_POINT
#define VELLIS_ENTRY_POINT(name, member) #name,
inline constexpr const char* names[] = {
#include "entry_points.inc"
};
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
#define VELLIS_ENTRY_POINT(name, member)
#define VELLIS_LOADER_FLAG(name, member) offsetof(GladGLContext, member),
inline constexpr std::size_t flags[] = {
#include "entry_points.inc"
};
#undef VELLIS_LOADER_FLAG
#undef VELLIS_ENTRY_POINT

/// Whether the members at these offsets follow each other without a gap.
template <std::size_t N>
constexpr bool consecutive(const std::size_t (&offsets)[N], std::size_t size) {
    for (std::size_t i = 1; i < N; ++i) {
        if (offsets[i] != offsets[i - 1] + size)
            return false;
    }
    return true;
}

static_assert(consecutive(entryPoints, sizeof(GLADapiproc)));
static_assert(consecutive(flags, sizeof(int)));

} // namespace table

inline constexpr std::size_t numEntryPoints = std::size(table::entryPoints);
inline constexpr std::size_t numFlags = std::size(table::flags);

/// The names of the entry points.
inline constexpr auto entryPointNames =
    joinNames<joinNames<16384>(table::names).size>(table::names);

/// The first of the entry points of a structure, as bytes.
inline const unsigned char* entryPointsOf(const GladGLContext& context) {
    return reinterpret_cast<const unsigned char*>(&context) + table::entryPoints[0];
}

/// The first of the flags of a structure, as bytes.
inline const unsigned char* flagsOf(const GladGLContext& context) {
    return reinterpret_cast<const unsigned char*>(&context) + table::flags[0];
}

} // namespace vellis::loader
