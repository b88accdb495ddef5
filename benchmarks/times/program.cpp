#include "times/program.hpp"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <benchmark/benchmark.h>
#include <offscreen/requirement.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>

#include "null_driver/null_driver.hpp"
#include "times/times.hpp"

namespace vellis::bench {
namespace {

[[noreturn]] void fail(const std::string& why) {
    std::fprintf(stderr, "%s\n", why.c_str());
    std::exit(EXIT_FAILURE);
}

} // namespace

std::unique_ptr<offscreen::Context> openContext(unsigned int size) {
    offscreen::Settings settings;
    settings.width = settings.height = size;
    std::string error;
    if (!offscreen::settingsFromEnvironment(settings, error))
        fail(error);
    std::unique_ptr<offscreen::Context> context = offscreen::Context::open(settings, error);
    if (context == nullptr)
        fail(error);
    if (!engine::init())
        fail("the GL entry points cannot be loaded.");
    const std::string missing = offscreen::missingRequirement();
    if (!missing.empty())
        fail(missing);
    return context;
}

namespace {

/// Small, so that what is measured is calls and not pixels.
constexpr unsigned int contextSize = 16;

std::string text(GLenum name) {
    const GLubyte* const value = glGetString(name);
    return value != nullptr ? reinterpret_cast<const char*>(value) : "";
}

bool takeOptions(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    return !benchmark::ReportUnrecognizedArguments(argc, argv);
}

void run(const std::vector<Workload>& workloads, Where where) {
    registerTimes(workloads, where);
    benchmark::RunSpecifiedBenchmarks();
    engine::dispose();
}

void runOnDriver(const std::vector<Workload>& workloads) {
    benchmark::AddCustomContext("GL_RENDERER", text(GL_RENDERER));
    benchmark::AddCustomContext("GL_VERSION", text(GL_VERSION));
    run(workloads, Where::Driver);
}

} // namespace

int runTimes(int argc, char** argv, std::vector<Workload> (*workloads)()) {
    const std::string program = argv[0];
    const std::string where = argc > 1 ? argv[1] : "";
    if (where != "null" && where != "driver")
        fail("usage: " + program + " null|driver [options of Google Benchmark]");
    argv[1] = argv[0];
    if (!takeOptions(argc - 1, argv + 1))
        return EXIT_FAILURE;
    if (where == "null") {
        NullDriver::install();
        run(workloads(), Where::NullDriver);
    } else {
        const std::unique_ptr<offscreen::Context> context = openContext(contextSize);
        runOnDriver(workloads());
    }
    return EXIT_SUCCESS;
}

int runTimesHere(int argc, char** argv, const std::vector<Workload>& workloads) {
    if (!takeOptions(argc, argv))
        return EXIT_FAILURE;
    runOnDriver(workloads);
    return EXIT_SUCCESS;
}

} // namespace vellis::bench
