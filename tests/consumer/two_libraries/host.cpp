// The program: owns the context, initialises vellis once, and compares what its modules see.
//
// Usage: host <path of the painter>

#include <cstdio>
#include <string>

#include <offscreen/context.hpp>
#include <vellis/engine.hpp>

#include "plug_in.hpp"
#include "view.hpp"

extern "C" void makerView(View& view);
extern "C" void make(Scene& scene);

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "not so: %s\n", what);
        ++failures;
    }
}

} // namespace

int main(int count, char** arguments) {
    void* const painter = count == 2 ? openPlugIn(arguments[1]) : nullptr;
    if (painter == nullptr)
        return 1;
    const auto painterView =
        reinterpret_cast<void (*)(View&)>(findInPlugIn(painter, "painterView"));
    const auto paint = reinterpret_cast<bool (*)(const Scene&)>(findInPlugIn(painter, "paint"));
    const auto release = reinterpret_cast<void (*)(const Scene&)>(findInPlugIn(painter, "release"));

    std::string error;
    const auto context = offscreen::Context::open({16, 16}, error);
    if (context == nullptr || !vellis::engine::init()) {
        std::fprintf(stderr, "no context: %s\n", error.c_str());
        return 1;
    }

    View maker;
    View painted;
    makerView(maker);
    painterView(painted);
    const View own = viewFromHere();
    expect(own.function != nullptr, "the program has the entry points");
    expect(maker == own, "the linked library has the program's loader and registries");
    expect(painted == own, "the opened library has the program's loader and registries");

    Scene scene;
    make(scene);
    glClearColor(0.f, 0.f, 0.f, 1.f);
    glClear(GL_COLOR_BUFFER_BIT);
    expect(paint(scene), "a drawable has the same type in both libraries");
    unsigned char pixel[4] = {};
    glReadPixels(8, 8, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    expect(pixel[0] == 255, "one library draws what the other made");

    const GLuint name = scene.corners->id();
    expect(glIsBuffer(name) == GL_TRUE, "the registry keeps the buffer of one library");
    release(scene);
    expect(glIsBuffer(name) == GL_FALSE, "the other library releases it");
    expect(glGetError() == GL_NO_ERROR, "GL has no error to report");
    scene = Scene();
    vellis::engine::dispose();
    std::printf("%d failures\n", failures);
    return failures == 0 ? 0 : 1;
}
