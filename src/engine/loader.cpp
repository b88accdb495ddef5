/// The loader functions that <vellis/gl.hpp> documents, over the generated loader.

#include "engine/loader.hpp"

#include <cstring>
#include <utility>

#include <vellis/gl.hpp>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>
#endif

// The generated loader, under the name that the build gives it. It is not exported, so that no
// other loader in the process can take its place.
extern "C" int vellis_gladLoadGLUserPtr(GLADuserptrloadfunc load, void* userptr);

extern "C" {
struct VellisGLVersion GLVersion = {0, 0};
}

namespace vellis::loader {
namespace {

/// Everything that a load writes.
struct EntryPoints {
#define VELLIS_ENTRY_POINT(name) decltype(glad_##name) name##_;
#define VELLIS_LOADER_FLAG(name) int name##_;
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
};

/// Puts \p table in the place of what is there, and that into \p table.
void exchange(EntryPoints& table) {
#define VELLIS_ENTRY_POINT(name) std::swap(glad_##name, table.name##_);
#define VELLIS_LOADER_FLAG(name) std::swap(name, table.name##_);
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
}

PFNGLGETSTRINGIPROC getStringi = nullptr;

/// glGetStringi for the time of a load: the generated loader measures what it gives, null or not.
const GLubyte* GLAD_API_PTR stringOrEmpty(GLenum name, GLuint index) {
    const GLubyte* const text = getStringi(name, index);
    return text != nullptr ? text : reinterpret_cast<const GLubyte*>("");
}

/// The entry point that the generated loader is to use.
GLADapiproc forLoading(const char* name, GLADapiproc entryPoint) {
    if (entryPoint == nullptr || std::strcmp(name, "glGetStringi") != 0)
        return entryPoint;
    getStringi = reinterpret_cast<PFNGLGETSTRINGIPROC>(entryPoint);
    return reinterpret_cast<GLADapiproc>(stringOrEmpty);
}

/// The version, and the pointers of entry points that only a former context had, must not outlive
/// that context: they are cleared first and come back only where the load fails as a whole.
template <class Lookup>
bool load(Lookup lookup) {
    const auto call = [](void* userptr, const char* name) -> GLADapiproc {
        return forLoading(name, (*static_cast<Lookup*>(userptr))(name));
    };
    EntryPoints before = {};
    exchange(before);
    const int version = vellis_gladLoadGLUserPtr(call, &lookup);
    GLVersion = {GLAD_VERSION_MAJOR(version), GLAD_VERSION_MINOR(version)};
    if (glad_glGetStringi == stringOrEmpty)
        glad_glGetStringi = getStringi;
    if (version == 0)
        exchange(before);
    return version != 0;
}

#ifdef _WIN32

bool loadFromPlatform() {
    const HMODULE library = LoadLibraryW(L"opengl32.dll");
    if (library == nullptr)
        return false;
    const auto function = [library](const char* name) {
        return reinterpret_cast<GLADapiproc>(GetProcAddress(library, name));
    };
    using Lookup = PROC(WINAPI*)(LPCSTR);
    const auto wglGetProcAddress = reinterpret_cast<Lookup>(function("wglGetProcAddress"));
    bool loaded = false;
    if (wglGetProcAddress != nullptr) {
        loaded = load([&](const char* name) {
            const auto address = reinterpret_cast<GLADapiproc>(wglGetProcAddress(name));
            return address != nullptr ? address : function(name);
        });
    }
    FreeLibrary(library);
    return loaded;
}

#else

/// A shared library of the system, kept open for the time of one load.
class Library {
public:
    Library(const char* name, int mode) : handle_(dlopen(name, mode)) {}
    ~Library() {
        if (handle_ != nullptr)
            dlclose(handle_);
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    /// The function of that name, or null, also where the library is not open.
    template <class Function>
    Function* find(const char* name) const {
        return handle_ != nullptr ? reinterpret_cast<Function*>(dlsym(handle_, name)) : nullptr;
    }

private:
    void* handle_;
};

/// A way to create contexts: its library, how it tells that a context is current, its lookup.
struct Platform {
    const char* soname;
    const char* getCurrentContext;
    const char* getProcAddress;
};

using GetCurrentContext = void*();
using GetProcAddress = GLADapiproc(const char*);

/// Loads through \p platform where the process has its library open and a context of it is current.
bool loadFromCurrent(const Platform& platform) {
    const Library library(platform.soname, RTLD_LAZY | RTLD_NOLOAD);
    const auto getCurrentContext = library.find<GetCurrentContext>(platform.getCurrentContext);
    const auto getProcAddress = library.find<GetProcAddress>(platform.getProcAddress);
    if (getCurrentContext == nullptr || getProcAddress == nullptr || getCurrentContext() == nullptr)
        return false;
    return load(getProcAddress);
}

bool loadFromPlatform() {
    constexpr Platform platforms[] = {
        {"libEGL.so.1", "eglGetCurrentContext", "eglGetProcAddress"},
        {"libGLX.so.0", "glXGetCurrentContext", "glXGetProcAddressARB"},
    };
    for (const Platform& platform : platforms) {
        if (loadFromCurrent(platform))
            return true;
    }
    // The system's GL library may know of a context: vendor-neutral systems have split libGLX off
    // it.
    const Library library("libGL.so.1", RTLD_LAZY);
    const auto getProcAddress = library.find<GetProcAddress>("glXGetProcAddressARB");
    return getProcAddress != nullptr && load(getProcAddress);
}

#endif

} // namespace

bool loadCurrentContext() {
    const bool loaded = loadFromPlatform();
    if (!loaded)
        GLVersion = {0, 0};
    return loaded;
}

bool loadThrough(void* (*lookup)(const char* name)) {
    if (lookup == nullptr) {
        GLVersion = {0, 0};
        return false;
    }
    return load([lookup](const char* name) { return reinterpret_cast<GLADapiproc>(lookup(name)); });
}

} // namespace vellis::loader

int gladLoadGL() {
    return vellis::loader::loadCurrentContext() ? 1 : 0;
}

int gladLoadGLLoader(GLADloadproc load) {
    return vellis::loader::loadThrough(load) ? 1 : 0;
}
