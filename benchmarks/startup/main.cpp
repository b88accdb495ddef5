/// Loads the GL entry points of a fresh process, once or twice, and prints how many microseconds
/// each load took: through engine::init, or by the generated loader alone with EGL's own lookup.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <dlfcn.h>

#include <offscreen/context.hpp>
#include <vellis/engine.hpp>

using Lookup = void*(const char* name);

/// The generated loader under a name of this program's, with pointers of its own.
extern "C" int vellis_bareLoad(void* (*load)(void* userptr, const char* name), void* userptr);

namespace {

[[noreturn]] void fail(const std::string& why) {
    std::fprintf(stderr, "%s\n", why.c_str());
    std::exit(EXIT_FAILURE);
}

Lookup* lookupOfEgl() {
    void* const library = dlopen("libEGL.so.1", RTLD_LAZY | RTLD_NOLOAD);
    void* const address = library != nullptr ? dlsym(library, "eglGetProcAddress") : nullptr;
    if (address == nullptr)
        fail("the context does not come from EGL.");
    return reinterpret_cast<Lookup*>(address);
}

bool loadBare(Lookup* lookup) {
    const auto call = [](void* userptr, const char* name) {
        return (*static_cast<Lookup**>(userptr))(name);
    };
    return vellis_bareLoad(call, &lookup) != 0;
}

template <class Load>
void printTime(Load load) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    const bool loaded = load();
    const std::chrono::duration<double, std::micro> time = Clock::now() - start;
    if (!loaded)
        fail("the GL entry points cannot be loaded.");
    std::printf("%.1f\n", time.count());
}

} // namespace

int main(int argc, char** argv) {
    const std::string what = argc == 2 ? argv[1] : "";
    if (what != "engine" && what != "bare")
        fail("usage: vellis_startup engine|bare");
    std::string error;
    offscreen::Settings settings;
    settings.platform = offscreen::Platform::EglSurfaceless;
    const std::unique_ptr<offscreen::Context> context = offscreen::Context::open(settings, error);
    if (context == nullptr)
        fail(error);
    Lookup* const lookup = lookupOfEgl();
    for (int i = 0; i < 2; ++i) {
        if (what == "engine")
            printTime(vellis::engine::init);
        else
            printTime([lookup] { return loadBare(lookup); });
    }
}
