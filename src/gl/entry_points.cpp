#include "gl/entry_points.hpp"

#include <cstddef>
#include <cstring>

// The form of the generated loader that fills a structure. It declares the types that
// <vellis/gl.hpp> does, but none of its pointers.
#include <glad/gl.h>

#include <vellis/export.hpp>

#ifdef VELLIS_STATIC_DEFINE
#include <vellis/glad/static_names.h>
#endif

extern "C" {
#define VELLIS_ENTRY_POINT(name, member)                                                           \
    VELLIS_EXPORT decltype(GladGLContext::member) glad_##name = nullptr;
#define VELLIS_LOADER_FLAG(name, member) VELLIS_EXPORT int name = 0;
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
}

namespace vellis::loader {
namespace {

// The addresses in the order of the structure: what is held by the offsets, which then need no room
// in the library.

#define VELLIS_LOADER_FLAG(name, member)
#define VELLIS_ENTRY_POINT(name, member) &glad_##name,
void* const entryPoints[] = {
#include "entry_points.inc"
};
#undef VELLIS_ENTRY_POINT
#define VELLIS_ENTRY_POINT(name, member) offsetof(GladGLContext, member),
constexpr std::size_t entryPointOffsets[] = {
#include "entry_points.inc"
};
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG

#define VELLIS_ENTRY_POINT(name, member)
#define VELLIS_LOADER_FLAG(name, member) &name,
int* const flags[] = {
#include "entry_points.inc"
};
#undef VELLIS_LOADER_FLAG
#define VELLIS_LOADER_FLAG(name, member) offsetof(GladGLContext, member),
constexpr std::size_t flagOffsets[] = {
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

static_assert(consecutive(entryPointOffsets, sizeof(EntryPoint)));
static_assert(consecutive(flagOffsets, sizeof(int)));

/// Gives every pointer and flag the value that it has in \p context.
void publish(const GladGLContext& context) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&context);
    const unsigned char* value = bytes + entryPointOffsets[0];
    for (void* const entryPoint : entryPoints) {
        std::memcpy(entryPoint, value, sizeof(EntryPoint));
        value += sizeof(EntryPoint);
    }
    value = bytes + flagOffsets[0];
    for (int* const flag : flags) {
        std::memcpy(flag, value, sizeof(int));
        value += sizeof(int);
    }
}

PFNGLGETSTRINGIPROC getStringi = nullptr;

/// glGetStringi for the time of a load: the generated loader measures what it gives, null or not.
const GLubyte* GLAD_API_PTR stringOrEmpty(GLenum name, GLuint index) {
    const GLubyte* const text = getStringi(name, index);
    return text != nullptr ? text : reinterpret_cast<const GLubyte*>("");
}

/// What loadEntryPoints is called with.
struct Finder {
    EntryPoint (*find)(const void* lookup, const char* name);
    const void* lookup;
};

/// What the generated loader asks for each entry point; \p user is a Finder.
GLADapiproc findForLoader(void* user, const char* name) {
    const auto& finder = *static_cast<const Finder*>(user);
    const EntryPoint entryPoint = finder.find(finder.lookup, name);
    if (entryPoint == nullptr || std::strcmp(name, "glGetStringi") != 0)
        return entryPoint;
    getStringi = reinterpret_cast<PFNGLGETSTRINGIPROC>(entryPoint);
    return reinterpret_cast<GLADapiproc>(stringOrEmpty);
}

} // namespace

Version loadEntryPoints(EntryPoint (*find)(const void* lookup, const char* name),
                        const void* lookup) {
    Finder finder = {find, lookup};
    GladGLContext context = {};
    const int version = gladLoadGLContextUserPtr(&context, findForLoader, &finder);
    if (context.GetStringi == stringOrEmpty)
        context.GetStringi = getStringi;
    if (version != 0)
        publish(context);
    return {GLAD_VERSION_MAJOR(version), GLAD_VERSION_MINOR(version)};
}

} // namespace vellis::loader
