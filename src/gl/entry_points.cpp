#include "gl/entry_points.hpp"

#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include "gl/exported_pointers.hpp"

namespace vellis::loader {

std::atomic<const Table*> published = nullptr;

namespace {

/// A version of GL or an extension: the flag of that number, from 1 on.
enum class Feature : unsigned char {
    None,
#define VELLIS_ENTRY_POINT(name, member)
#define VELLIS_LOADER_FLAG(name, member) member,
#include "entry_points.inc"
#undef VELLIS_LOADER_FLAG
#undef VELLIS_ENTRY_POINT
};

/// Which ones an entry point comes with.
struct Features {
    Feature version;
    Feature extension;
};
constexpr Features features[] = {
#define VELLIS_ENTRY_POINT_OF(version, extension) {Feature::version, Feature::extension},
#include "entry_point_features.inc"
#undef VELLIS_ENTRY_POINT_OF
};
static_assert(std::size(features) == numEntryPoints);
static_assert(isReadable(entryPointNames, 0));

bool has(const GladGLContext& context, Feature feature) {
    if (feature == Feature::None)
        return false;
    int flag = 0;
    const std::size_t index = static_cast<std::size_t>(feature) - 1;
    std::memcpy(&flag, flagsOf(context) + index * sizeof flag, sizeof flag);
    return flag != 0;
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

/// What the generated loader calls for its entry points: those of the context's versions, then
/// those of its extensions.
extern "C" void vellis_loadEntryPoints(GladGLContext* context, GLADuserptrloadfunc load,
                                       void* userptr, int areOfExtensions) {
    NameReader names(entryPointNames, "");
    unsigned char* place = reinterpret_cast<unsigned char*>(context) + table::entryPoints[0];
    for (const Features& row : features) {
        const char* const name = names.next();
        if (has(*context, areOfExtensions != 0 ? row.extension : row.version)) {
            const GLADapiproc entryPoint = load(userptr, name);
            std::memcpy(place, &entryPoint, sizeof entryPoint);
        }
        place += sizeof(GLADapiproc);
    }
}

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
    assignExported(table.context);
    setVersion(versionOf(table));
    published.store(&table, std::memory_order_release);
}

} // namespace vellis::loader
