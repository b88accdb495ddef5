/// The loader functions that <vellis/gl.hpp> documents: which lookup finds the entry points.

#include "gl/loader.hpp"

#include <atomic>
#include <cstring>
#include <utility>

#include <vellis/detail/lasting.hpp>
#include <vellis/gl.hpp>

#include "gl/context_state.hpp"
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

using Lookup = void* (*)(const char* name);

/// The process's own, which the Contexts know nothing of.
struct Process {
    static inline std::atomic<const Table*> table = nullptr;
    static inline void* handle = nullptr; ///< the GL context that it was loaded for; or null

    static void set(OwnedTable loaded) {
        detail::AtExit<Process>::arm();
        const OwnedTable former(table.exchange(loaded.release()));
    }

    /// At the end of the process.
    static void release() { const OwnedTable former(table.exchange(nullptr)); }
};

#ifdef _WIN32

OwnedTable findPlatformTable() {
    const HMODULE library = LoadLibraryW(L"opengl32.dll");
    if (library == nullptr)
        return nullptr;
    const auto function = [library](const char* name) {
        return reinterpret_cast<EntryPoint>(GetProcAddress(library, name));
    };
    using WglGetProcAddress = PROC(WINAPI*)(LPCSTR);
    const auto wglGetProcAddress =
        reinterpret_cast<WglGetProcAddress>(function("wglGetProcAddress"));
    OwnedTable table;
    if (wglGetProcAddress != nullptr) {
        table = loadTable([&](const char* name) {
            const auto address = reinterpret_cast<EntryPoint>(wglGetProcAddress(name));
            return address != nullptr ? address : function(name);
        });
    }
    FreeLibrary(library);
    return table;
}

/// What wglGetCurrentContext gives; null where the process has not loaded its library, which stays
/// loaded from the first time on that it has.
void* currentHandle() {
    using Get = HGLRC(WINAPI*)();
    static std::atomic<Get> known = nullptr;
    if (known == nullptr) {
        HMODULE library = nullptr;
        if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"opengl32.dll", &library))
            return nullptr;
        known = reinterpret_cast<Get>(
            reinterpret_cast<EntryPoint>(GetProcAddress(library, "wglGetCurrentContext")));
    }
    const Get get = known;
    return get != nullptr ? get() : nullptr;
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

using GetCurrentContext = void*();
using GetProcAddress = EntryPoint(const char* name);

/// A way to create contexts: its library, how it tells that a context is current, its lookup.
struct Platform {
    const char* soname;
    const char* getCurrentContext;
    const char* getProcAddress;
};

constexpr Platform platforms[] = {
    {"libEGL.so.1", "eglGetCurrentContext", "eglGetProcAddress"},
    {"libGLX.so.0", "glXGetCurrentContext", "glXGetProcAddressARB"},
};

/// Loads through \p platform where the process has its library open and a context of it is current.
OwnedTable findTableOfCurrent(const Platform& platform) {
    const Library library(platform.soname, RTLD_LAZY | RTLD_NOLOAD);
    const auto getCurrentContext = library.find<GetCurrentContext>(platform.getCurrentContext);
    const auto getProcAddress = library.find<GetProcAddress>(platform.getProcAddress);
    if (getCurrentContext == nullptr || getProcAddress == nullptr || getCurrentContext() == nullptr)
        return nullptr;
    return loadTable(getProcAddress);
}

OwnedTable findPlatformTable() {
    for (const Platform& platform : platforms) {
        if (OwnedTable table = findTableOfCurrent(platform))
            return table;
    }
    // The system's GL library may know of a context: vendor-neutral systems have split libGLX off
    // it.
    const Library library("libGL.so.1", RTLD_LAZY);
    const auto getProcAddress = library.find<GetProcAddress>("glXGetProcAddressARB");
    return getProcAddress != nullptr ? loadTable(getProcAddress) : nullptr;
}

/// Asks each platform whose library the process has open what is current, with \p mode beside.
NativeContext findCurrentContext(int mode) {
    for (const Platform& platform : platforms) {
        const Library library(platform.soname, RTLD_LAZY | RTLD_NOLOAD | mode);
        const auto current = library.find<GetCurrentContext>(platform.getCurrentContext);
        void* const handle = current != nullptr ? current() : nullptr;
        if (handle != nullptr)
            return {current, handle, nullptr};
    }
    return {nullptr, nullptr, nullptr};
}

void* currentHandle() {
    return findCurrentContext(0).handle;
}

#endif

/// Makes a table that of what is in use, and says in GLVersion what was there.
bool install(OwnedTable table) {
    if (table == nullptr) {
        setVersion({0, 0});
        return false;
    }
    publishAnew(*table);
    if (gl::thread().state != nullptr) {
        gl::thread().state->entryPoints = std::move(table);
        return true;
    }
    Process::set(std::move(table));
    // Names of another GL context would be other objects' here.
    if (void* const handle = currentHandle(); handle != Process::handle) {
        gl::WaitingNames::ofProcess().forget();
        Process::handle = handle;
    }
    return true;
}

} // namespace

bool loadCurrentContext() {
    return install(findTable(nullptr));
}

bool loadThrough(Lookup lookup) {
    return install(lookup != nullptr ? findTable(lookup) : nullptr);
}

OwnedTable findTable(Lookup lookup) {
    if (lookup == nullptr)
        return findPlatformTable();
    return loadTable(
        [lookup](const char* name) { return reinterpret_cast<EntryPoint>(lookup(name)); });
}

const Table* processTable() {
    return Process::table;
}

Profile profile() {
    const gl::ContextState* const state = gl::thread().state;
    const Table* const table = state != nullptr ? state->entryPoints.get() : processTable();
    return table != nullptr ? profileOf(*table) : Profile::Compatibility;
}

void setVersion(Version version) noexcept {
    if (GLVersion.major != version.major || GLVersion.minor != version.minor)
        GLVersion = {version.major, version.minor};
}

NativeContext currentContext() {
#ifdef _WIN32
    void* const handle = currentHandle();
    return {handle != nullptr ? &currentHandle : nullptr, handle, nullptr};
#else
    NativeContext context = findCurrentContext(RTLD_NODELETE);
    // Mesa writes one for each context.
    const auto* const version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    if (context.current != nullptr && version != nullptr && std::strstr(version, "Mesa") != nullptr)
        context.version = version;
    return context;
#endif
}

bool NativeContext::isProbablyCurrent() const {
    return version != nullptr && glGetString(GL_VERSION) == version ? true : isCurrent();
}

bool isProcessContextCurrent() {
    return currentHandle() == Process::handle;
}

} // namespace vellis::loader

int gladLoadGL() {
    return vellis::loader::loadCurrentContext() ? 1 : 0;
}

int gladLoadGLLoader(GLADloadproc load) {
    return vellis::loader::loadThrough(load) ? 1 : 0;
}
