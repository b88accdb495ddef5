/// The library as a plug-in's alone: opened at run time, its symbols in no other's reach.

#include <cstring>

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

using Function = void (*)();

const unsigned char* getString(unsigned int name) {
    constexpr unsigned int extensions = 0x1F03; // GL_EXTENSIONS
    return reinterpret_cast<const unsigned char*>(name == extensions ? "" : "2.1");
}

void function() {}

int numAsked = 0; ///< pointers of the library, by whoever

void* lookUp(const char* name) {
    return reinterpret_cast<void*>(
        std::strcmp(name, "glGetString") == 0 ? reinterpret_cast<Function>(getString) : function);
}

/// What dlsym() is without a tool.
void* find(void* handle, const char* name) {
    using Find = void*(void* handle, const char* name);
    static Find* const own = [] {
        void* known = dlvsym(RTLD_NEXT, "dlsym", "GLIBC_2.34");
        if (known == nullptr)
            known = dlvsym(RTLD_NEXT, "dlsym", "GLIBC_2.2.5");
        return reinterpret_cast<Find*>(known);
    }();
    void* const result = (*own)(handle, name);
    return result; // a call at the end would be one in the name of who called this
}

/// Opens the library, loads a GL 2.1 and sees to all pointers.
void loadClosed() {
    void* const library = dlopen(VELLIS_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    ASSERT_EQ(find(RTLD_DEFAULT, "gladLoadGLLoader"), nullptr);
    using Load = int(void* (*lookup)(const char*));
    const auto load = reinterpret_cast<Load*>(find(library, "gladLoadGLLoader"));
    ASSERT_NE(load, nullptr);
    EXPECT_EQ((*load)(lookUp), 1);
    for (const char* name : {"glad_glAccum", "glad_glGenBuffers", "glad_glWindowPos3sv"}) {
        void* const pointer = find(library, name);
        ASSERT_NE(pointer, nullptr) << name;
        EXPECT_EQ(*static_cast<Function*>(pointer), function) << name;
    }
}

} // namespace

/// As tools define it that look at a program's GL calls: it asks in its own name.
extern "C" __attribute__((visibility("default"))) void* dlsym(void* handle,
                                                              const char* name) noexcept {
    void* const result = find(handle, name);
    numAsked += std::strncmp(name, "glad_gl", 7) == 0;
    return result;
}

TEST(ClosedLibrary, ToolBeforeDlsymIsNotInItsWay) {
    loadClosed();
    EXPECT_GT(numAsked, 0);
}
