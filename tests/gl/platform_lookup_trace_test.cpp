// needs: a program of its own

/// Which platform's lookup serves gladLoadGL, with libraries that pretend to be the platforms'.

#include <cstring>
#include <stdexcept>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>

namespace {

using Function = void (*)();
using Lookup = Function (*)(const char* name);

/// The number of the platform whose lookup was asked last.
int asked = -1;
bool knowsFunctions = true;

const GLubyte* GLAD_API_PTR getString(GLenum name) {
    return reinterpret_cast<const GLubyte*>(name == GL_EXTENSIONS ? "" : "2.1");
}

template <int number>
Function lookUp(const char* name) {
    asked = number;
    return knowsFunctions && std::strcmp(name, "glGetString") == 0
               ? reinterpret_cast<Function>(getString)
               : nullptr;
}

struct Row {
    const char* name;
    const char* file;
    Lookup lookup;
};

/// First, in the order in which the loader asks them.
constexpr Row platforms[] = {
    {"EGL", VELLIS_FAKE_EGL, lookUp<0>},
    {"GLX", VELLIS_FAKE_GLX, lookUp<1>},
    {"GL", VELLIS_FAKE_GL, lookUp<2>},
    // Libraries that have one of their two functions.
    {"EglWithoutACurrentContext", VELLIS_FAKE_EGL_WITHOUT_CONTEXT, lookUp<3>},
    {"EglWithoutALookup", VELLIS_FAKE_EGL_WITHOUT_LOOKUP, lookUp<4>},
    {"GlWithoutALookup", VELLIS_FAKE_GL_WITHOUT_LOOKUP, lookUp<5>},
};
constexpr int none = -1, egl = 0, glx = 1, gl = 2, eglWithoutContext = 3, eglWithoutLookup = 4,
              glWithoutLookup = 5;

/// The library of a platform, which the process has open while this lives.
class Platform {
public:
    Platform(int number, bool hasContext)
        : handle_(dlopen(platforms[number].file, RTLD_NOW | RTLD_LOCAL)) {
        if (handle_ == nullptr)
            throw std::runtime_error(dlerror());
        using Pretend = void (*)(void* context, Lookup lookup);
        const auto pretend = reinterpret_cast<Pretend>(dlsym(handle_, "pretend"));
        pretend(hasContext ? this : nullptr, platforms[number].lookup);
    }
    ~Platform() { dlclose(handle_); }
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

private:
    void* handle_;
};

class PlatformLookup : public testing::TestWithParam<int> {
protected:
    PlatformLookup() {
        asked = none;
        knowsFunctions = true;
    }

    /// The number of the platform whose lookup was used, or none where the load fails.
    static int loadedThrough() {
        const int loaded = gladLoadGL();
        EXPECT_EQ(GLVersion.major, loaded == 1 ? 2 : 0);
        return loaded == 1 ? asked : none;
    }
};

TEST_P(PlatformLookup, ServesWhereItsContextIsCurrent) {
    const Platform platform(GetParam(), true);
    EXPECT_EQ(loadedThrough(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Platforms, PlatformLookup, testing::Values(egl, glx, gl),
                         [](const auto& test) { return platforms[test.param].name; });

TEST_F(PlatformLookup, PlatformWithoutACurrentContextIsPassedOver) {
    const Platform first(egl, false);
    const Platform second(glx, true);
    const Platform third(gl, false);
    EXPECT_EQ(loadedThrough(), glx);
}

TEST_F(PlatformLookup, PlatformThatLacksAFunctionIsPassedOver) {
    const Platform second(glx, true);
    {
        const Platform first(eglWithoutContext, true);
        EXPECT_EQ(loadedThrough(), glx);
    }
    const Platform first(eglWithoutLookup, true);
    EXPECT_EQ(loadedThrough(), glx);
}

TEST_F(PlatformLookup, FirstOfSeveralWithACurrentContextServes) {
    const Platform first(egl, true);
    const Platform second(glx, true);
    const Platform third(gl, true);
    EXPECT_EQ(loadedThrough(), egl);
}

TEST_F(PlatformLookup, GlLibraryServesWhereNoPlatformIsKnownToHaveAContext) {
    const Platform first(egl, false);
    const Platform second(glx, false);
    const Platform third(gl, false);
    EXPECT_EQ(loadedThrough(), gl);
}

TEST_F(PlatformLookup, LoadFailsWhereThereIsNoLookupAtAll) {
    {
        const Platform platform(egl, true);
        ASSERT_EQ(loadedThrough(), egl);
    }
    const Platform library(glWithoutLookup, true);
    EXPECT_EQ(loadedThrough(), none);
}

TEST_F(PlatformLookup, LoadFailsWhereTheLookupKnowsNothing) {
    const Platform first(egl, true);
    const Platform third(gl, false);
    knowsFunctions = false;
    EXPECT_EQ(loadedThrough(), none);
    EXPECT_EQ(asked, gl); // which is asked after the platforms
}

} // namespace
