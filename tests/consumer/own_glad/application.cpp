// The application: calls GL through its own glad, and draws with vellis.
//
// Usage: application separate|one   (the loaders' pointers)

#include <glad/gl.h>

#include <cstdio>
#include <cstring>
#include <string>

#include <dlfcn.h>

#include <glm/mat4x4.hpp>
#include <offscreen/context.hpp>
#include <vellis/vellis.hpp> // brings no loader

#include "vellis_side.hpp"

namespace {

int failures = 0;
int clears = 0;
PFNGLCLEARPROC driverClear = nullptr;

void expect(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "not so: %s\n", what);
        ++failures;
    }
}

GLADapiproc lookup(const char* name) {
    using Lookup = GLADapiproc (*)(const char*);
    static void* const egl = dlopen("libEGL.so.1", RTLD_LAZY);
    static const auto getProcAddress = reinterpret_cast<Lookup>(dlsym(egl, "eglGetProcAddress"));
    return getProcAddress(name);
}

GLADapiproc findNothing(const char*) {
    return nullptr;
}

/// What an application puts before an entry point, to trace it.
void GLAD_API_PTR countClears(GLbitfield mask) {
    ++clears;
    driverClear(mask);
}

unsigned char redOfPixel() {
    unsigned char pixel[4] = {};
    glReadPixels(4, 4, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    return pixel[0];
}

void drawWithVellis() {
    vellis::Toolbox::drawTriangleFan(glm::vec4(1.f, 0.f, 0.f, 1.f),
                                     {{-1.f, -1.f}, {3.f, -1.f}, {-1.f, 3.f}}, glm::mat4(1.f));
}

/// vellis is loaded first: the application's glad is as it was.
void loadVellis(bool separate) {
    expect(glad_glClear == nullptr, "the application's glad starts empty");
    expect(vellis::engine::init(), "vellis loads");
    expect(vellisSide().function != nullptr, "vellis has its entry points");
    expect((glad_glClear == nullptr) == separate, "vellis loads into its own pointers");
    expect((vellisSide().pointer != &glad_glClear) == separate, "the pointers are as expected");
    expect((vellisSide().version2_1 != &GLAD_GL_VERSION_2_1) == separate,
           "the flags are as expected");
}

/// Then the application's glad: vellis is as it was.
void loadOwn() {
    const void* const before = vellisSide().function;
    const int version = gladLoadGL(lookup);
    expect(GLAD_VERSION_MAJOR(version) >= 3, "the application's loader is the one that is called");
    expect(glad_glClear != nullptr && GLAD_GL_VERSION_3_3 == 1, "it has its entry points");
    expect(vellisSide().function == before, "the entry points of vellis stay");
}

void drawBoth() {
    clearThroughVellis(0.f);
    expect(redOfPixel() == 0, "GL through vellis draws");
    drawWithVellis();
    expect(redOfPixel() == 255, "vellis draws");
    glClearColor(0.2f, 0.f, 0.f, 1.f);
    glClear(GL_COLOR_BUFFER_BIT);
    expect(redOfPixel() == 51, "GL through the application's glad draws");
}

/// The application changes its own pointers: vellis does not run into them, nor does it undo that.
void changeOwn() {
    driverClear = glad_glClear;
    glad_glClear = countClears;
    clearThroughVellis(1.f);
    expect(clears == 0 && redOfPixel() == 255, "vellis has pointers of its own");
    expect(vellis::engine::init(), "vellis loads again");
    glClear(GL_COLOR_BUFFER_BIT);
    expect(clears == 1, "the application's pointer stays as the application set it");
    expect(gladLoadGL(findNothing) == 0, "the application's loader fails");
    drawWithVellis();
    expect(vellis::internal::check_glerror() == nullptr, "vellis is not touched by that");
    clearThroughVellis(0.f);
    drawWithVellis();
    expect(gladLoadGL(lookup) != 0, "the application's loader loads again");
    expect(redOfPixel() == 255, "vellis has drawn meanwhile");
}

/// Where the two have one set of pointers, loading vellis anew puts the driver's functions back.
void changeShared() {
    driverClear = glad_glClear;
    glad_glClear = countClears;
    clearThroughVellis(1.f);
    expect(clears == 1, "vellis calls through the application's pointer");
    expect(vellis::engine::init(), "vellis loads again");
    expect(glad_glClear == driverClear, "the pointer is the driver's again");
    expect(GLAD_GL_VERSION_3_3 == 1, "what only the application's glad has, stays");
    drawWithVellis();
    expect(redOfPixel() == 255, "vellis draws");
}

} // namespace

int main(int count, char** arguments) {
    const bool separate = count == 2 && std::strcmp(arguments[1], "separate") == 0;
    std::string error;
    const auto context = offscreen::Context::open({16, 16}, error);
    if (context == nullptr) {
        std::fprintf(stderr, "no context: %s\n", error.c_str());
        return 1;
    }
    loadVellis(separate);
    loadOwn();
    drawBoth();
    if (separate)
        changeOwn();
    else
        changeShared();
    expect(glGetError() == GL_NO_ERROR, "GL has no error to report");
    vellis::engine::dispose();
    std::printf("%d failures\n", failures);
    return failures == 0 ? 0 : 1;
}
