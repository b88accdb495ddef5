#include "gl/entry_points.hpp"

#include <cstddef>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

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

std::atomic<const Table*> published = nullptr;

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

/// Gives each of \p places the value that stands for it in the row that begins at \p value. What
/// has it already is not written.
template <class Value, class Place, std::size_t N>
void assign(Place* const (&places)[N], const unsigned char* value) {
    for (Place* const place : places) {
        if (std::memcmp(place, value, sizeof(Value)) != 0)
            std::memcpy(place, value, sizeof(Value));
        value += sizeof(Value);
    }
}

/// What guards the exported pointers and the list of tables.
std::mutex mutex; // which needs neither construction nor destruction

using Lock = std::lock_guard<std::mutex>;

thread_local PFNGLGETSTRINGIPROC getStringi = nullptr;
thread_local bool listsCompatibility = false; ///< whether that has given GL_ARB_compatibility

/// glGetStringi for the time of a load: the generated loader measures what it gives, null or not.
const GLubyte* GLAD_API_PTR stringOrEmpty(GLenum name, GLuint index) {
    const GLubyte* const text = getStringi(name, index);
    if (text == nullptr)
        return reinterpret_cast<const GLubyte*>("");
    if (std::strcmp(reinterpret_cast<const char*>(text), "GL_ARB_compatibility") == 0)
        listsCompatibility = true;
    return text;
}

/// The profile of the context that is loaded. Those of the compatibility kind list an extension
/// that says so, and are asked nothing.
Profile findProfile(const GladGLContext& gl) {
    if (gl.VERSION_3_2 == 0 || listsCompatibility || gl.GetIntegerv == nullptr ||
        !saysCoreProfile(gl.GetIntegerv))
        return Profile::Compatibility;
    GLint contextFlags = 0;
    gl.GetIntegerv(GL_CONTEXT_FLAGS, &contextFlags);
    return (contextFlags & GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT) != 0 ? Profile::ForwardCompatible
                                                                        : Profile::Core;
}

/// What loadTable is called with.
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

struct Table {
    GladGLContext context;
    int version;
    Profile profile;
    mutable unsigned int numOwners;
    mutable const Table* next; ///< of the list of all tables
};

namespace {

const Table* tables = nullptr;

/// The table of the list that is equal to \p table, which joins it if there is none.
OwnedTable unique(std::unique_ptr<Table> table) {
    const Lock lock(mutex);
    const Table* found = tables;
    while (found != nullptr &&
           (found->version != table->version || found->profile != table->profile ||
            std::memcmp(&found->context, &table->context, sizeof(GladGLContext)) != 0))
        found = found->next;
    if (found == nullptr) {
        table->next = tables;
        found = tables = table.release();
    }
    ++found->numOwners;
    return OwnedTable(found);
}

} // namespace

void ReleaseTable::operator()(const Table* table) const noexcept {
    const Lock lock(mutex);
    if (--table->numOwners != 0)
        return;
    const Table** place = &tables;
    while (*place != table)
        place = &(*place)->next;
    *place = table->next;
    if (published == table)
        published = nullptr;
    delete table;
}

OwnedTable loadTable(EntryPoint (*find)(const void* lookup, const char* name), const void* lookup) {
    std::unique_ptr<Table> table(new (std::nothrow) Table());
    if (table == nullptr)
        return nullptr;
    Finder finder = {find, lookup};
    GladGLContext& context = table->context;
    listsCompatibility = false;
    table->version = gladLoadGLContextUserPtr(&context, findForLoader, &finder);
    if (context.GetStringi == stringOrEmpty)
        context.GetStringi = getStringi;
    if (table->version == 0)
        return nullptr;
    table->profile = findProfile(context);
    return unique(std::move(table));
}

Profile profileOf(const Table& table) {
    return table.profile;
}

Version versionOf(const Table& table) {
    return {GLAD_VERSION_MAJOR(table.version), GLAD_VERSION_MINOR(table.version)};
}

void publishAnew(const Table& table) noexcept {
    const Lock lock(mutex);
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&table.context);
    assign<EntryPoint>(entryPoints, bytes + entryPointOffsets[0]);
    assign<int>(flags, bytes + flagOffsets[0]);
    setVersion(versionOf(table));
    published.store(&table, std::memory_order_release);
}

} // namespace vellis::loader
