#include "plug_in.hpp"

#include <cstdio>

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

void* openPlugIn(const char* path) {
    const HMODULE plugIn = LoadLibraryA(path);
    if (plugIn == nullptr)
        std::fprintf(stderr, "%s: Windows error %lu\n", path, GetLastError());
    return plugIn;
}

void* findInPlugIn(void* plugIn, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(plugIn), name));
}

#else
#include <dlfcn.h>

void* openPlugIn(const char* path) {
    void* const plugIn = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (plugIn == nullptr)
        std::fprintf(stderr, "%s\n", dlerror());
    return plugIn;
}

void* findInPlugIn(void* plugIn, const char* name) {
    return dlsym(plugIn, name);
}

#endif
