#include "gl/exported_pointers.hpp"

#include <cstring>

#include <vellis/export.hpp>

#ifdef VELLIS_STATIC_DEFINE
#include <vellis/glad/static_names.h>
#elif defined(__GLIBC__)
#include <dlfcn.h>
#define VELLIS_ASKS_FOR_PLACES
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

#define VELLIS_ENTRY_POINT(name, member)
#define VELLIS_LOADER_FLAG(name, member) &name,
int* const flags[] = {
#include "entry_points.inc"
};
#undef VELLIS_LOADER_FLAG

#ifdef VELLIS_ASKS_FOR_PLACES

// The pointers may lie in the program that uses the library, or in another library that has some of
// the same names. To have the dynamic linker write down where takes 32 bytes for each: it is asked
// instead, at the same time. What it says is the same.
void* pointers[numEntryPoints];

constexpr char prefix[] = "glad_";
static_assert(isReadable(entryPointNames, sizeof prefix));

/// This library as the dynamic linker knows it; closed in the end.
class ThisLibrary {
public:
    ThisLibrary() {
        Dl_info info;
        if (dladdr(pointers, &info) != 0)
            handle_ = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    }
    ~ThisLibrary() {
        if (handle_ != nullptr)
            dlclose(handle_);
    }
    ThisLibrary(const ThisLibrary&) = delete;
    ThisLibrary& operator=(const ThisLibrary&) = delete;

    void* find(const char* name) const {
        return handle_ != nullptr ? dlsym(handle_, name) : nullptr;
    }

private:
    void* handle_ = nullptr;
};

__attribute__((constructor)) void findPointers() {
    NameReader names(entryPointNames, prefix);
    for (void*& place : pointers)
        place = dlsym(RTLD_DEFAULT, names.next());
    if (pointers[0] != nullptr)
        return;
    // A tool that stands before dlsym() asks in its own name, to which a library that was opened
    // for one plug-in alone is unknown.
    const ThisLibrary library;
    NameReader again(entryPointNames, prefix);
    for (void*& place : pointers) {
        const char* const name = again.next();
        if (place == nullptr)
            place = library.find(name);
    }
}

#else

#define VELLIS_LOADER_FLAG(name, member)
#undef VELLIS_ENTRY_POINT
#define VELLIS_ENTRY_POINT(name, member) &glad_##name,
void* const pointers[] = {
#include "entry_points.inc"
};
#undef VELLIS_LOADER_FLAG

#endif
#undef VELLIS_ENTRY_POINT

/// Gives each of \p places the value that stands for it in the row that begins at \p value.
template <class Value, class Place, std::size_t N>
void assign(Place* const (&places)[N], const unsigned char* value) {
    for (Place* const place : places) {
        if (std::memcmp(place, value, sizeof(Value)) != 0)
            std::memcpy(place, value, sizeof(Value));
        value += sizeof(Value);
    }
}

} // namespace

void assignExported(const GladGLContext& context) noexcept {
    assign<GLADapiproc>(pointers, entryPointsOf(context));
    assign<int>(flags, flagsOf(context));
}

} // namespace vellis::loader
