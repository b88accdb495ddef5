/// What text costs on a driver: times of words that were shaped before, beside the same quads
/// through others, and of what is new.
///
/// Usage: vellis_text_benchmarks [WORKLOAD...]    by default all
///
/// Prints a line for each turn and side: workload, size, side, nanoseconds.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <vellis/engine.hpp>

#include "canvas/scenes.hpp"
#include "null_driver/null_driver.hpp"
#include "text/once.hpp"
#include "text/workloads.hpp"
#include "times/program.hpp"
#include "times/turns.hpp"

int main(int argc, char** argv) {
    using namespace vellis::bench;
    const std::vector<std::string> names(argv + 1, argv + argc);
    const auto isNamed = [&](const std::string& name) {
        return names.empty() || std::find(names.begin(), names.end(), name) != names.end();
    };
    const auto context = openContext(pictureSize);
    if (!haveSamePixels()) {
        std::fprintf(stderr, "text and the quads by hand have different pixels.\n");
        return EXIT_FAILURE;
    }
    const auto printWords = [&](Where where) {
        for (const Workload& workload : textWorkloads()) {
            if (workload.where == where && isNamed(workload.name))
                printTurns(workload, workload.sizes.front());
        }
    };
    printWords(Where::Driver);
    if (isNamed("words/new"))
        printShaping();
    if (isNamed("glyphs/new"))
        printNewGlyphs();
    NullDriver::install();
    printWords(Where::NullDriver);
    vellis::engine::dispose();
}
