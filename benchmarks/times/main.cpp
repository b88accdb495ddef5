/// The times of all workloads.
///
/// Usage: vellis_benchmarks null|driver [options of Google Benchmark]

#include <cstdio>
#include <cstdlib>
#include <string>

#include <benchmark/benchmark.h>
#include <offscreen/context.hpp>
#include <offscreen/requirement.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>

#include "null_driver/null_driver.hpp"
#include "times/times.hpp"

namespace {

using vellis::bench::Where;

[[noreturn]] void fail(const std::string& why) {
    std::fprintf(stderr, "vellis_benchmarks: %s\n", why.c_str());
    std::exit(EXIT_FAILURE);
}

std::unique_ptr<offscreen::Context> openContext() {
    offscreen::Settings settings;
    // Small, so that what is measured is calls and not pixels.
    settings.width = settings.height = 16;
    std::string error;
    if (!offscreen::platformFromEnvironment(settings.platform, error))
        fail(error);
    std::unique_ptr<offscreen::Context> context = offscreen::Context::open(settings, error);
    if (context == nullptr)
        fail(error);
    if (!vellis::engine::init())
        fail("the GL entry points cannot be loaded.");
    const std::string missing = offscreen::missingRequirement();
    if (!missing.empty())
        fail(missing);
    return context;
}

std::string text(GLenum name) {
    const GLubyte* const value = glGetString(name);
    return value != nullptr ? reinterpret_cast<const char*>(value) : "";
}

void run(Where where) {
    vellis::bench::registerTimes(vellis::bench::workloads(), where);
    benchmark::RunSpecifiedBenchmarks();
    vellis::engine::dispose();
}

} // namespace

int main(int argc, char** argv) {
    const std::string where = argc > 1 ? argv[1] : "";
    if (where != "null" && where != "driver")
        fail("usage: vellis_benchmarks null|driver [options of Google Benchmark]");
    argv[1] = argv[0];
    int numOptions = argc - 1;
    benchmark::Initialize(&numOptions, argv + 1);
    if (benchmark::ReportUnrecognizedArguments(numOptions, argv + 1))
        return EXIT_FAILURE;
    if (where == "null") {
        vellis::bench::NullDriver::install();
        run(Where::NullDriver);
    } else {
        const std::unique_ptr<offscreen::Context> context = openContext();
        benchmark::AddCustomContext("GL_RENDERER", text(GL_RENDERER));
        benchmark::AddCustomContext("GL_VERSION", text(GL_VERSION));
        run(Where::Driver);
    }
}
