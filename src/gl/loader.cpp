/// The loader functions that <vellis/gl.hpp> documents: which lookup finds the entry points.

#include "gl/loader.hpp"

#include <vellis/gl.hpp>

#include "gl/entry_points.hpp"

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>
#endif

extern "C" {
struct VellisGLVersion GLVersion = {0, 0};
}

namespace vellis::loader {
namespace {

/// Loads, and says in GLVersion what was there.
template <class Lookup>
bool load(const Lookup& lookup) {
    const Version version = loadEntryPoints(lookup);
    GLVersion = {version.major, version.minor};
    return version.major != 0 || version.minor != 0;
}

#ifdef _WIN32

bool loadFromPlatform() {
    const HMODULE library = LoadLibraryW(L"opengl32.dll");
    if (library == nullptr)
        return false;
    const auto function = [library](const char* name) {
        return reinterpret_cast<EntryPoint>(GetProcAddress(library, name));
    };
    using WglGetProcAddress = PROC(WINAPI*)(LPCSTR);
    const auto wglGetProcAddress =
        reinterpret_cast<WglGetProcAddress>(function("wglGetProcAddress"));
    bool loaded = false;
    if (wglGetProcAddress != nullptr) {
        loaded = load([&](const char* name) {
            const auto address = reinterpret_cast<EntryPoint>(wglGetProcAddress(name));
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
using GetProcAddress = EntryPoint(const char* name);

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
    return load([lookup](const char* name) { return reinterpret_cast<EntryPoint>(lookup(name)); });
}

} // namespace vellis::loader

int gladLoadGL() {
    return vellis::loader::loadCurrentContext() ? 1 : 0;
}

int gladLoadGLLoader(GLADloadproc load) {
    return vellis::loader::loadThrough(load) ? 1 : 0;
}
