#include "run.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include <vellis/diagnostics.hpp>
#include <vellis/state.hpp>

namespace hosts {
namespace {

/// 0 where the text is no number.
std::size_t toNumber(const char* text) {
    char* end = nullptr;
    const unsigned long number = std::strtoul(text, &end, 10);
    return *end == '\0' ? number : 0;
}

} // namespace

Run::Run(int argc, char** argv, bool canAskForCore) {
    bool isUnderstood = true;
    for (int i = 1; i < argc; ++i) {
        if (canAskForCore && std::strcmp(argv[i], "--core") == 0)
            isCore_ = true;
        else if (std::strcmp(argv[i], "--frames") == 0 && i + 1 < argc &&
                 toNumber(argv[i + 1]) != 0)
            numFrames_ = toNumber(argv[++i]);
        else
            isUnderstood = false;
    }
    if (isUnderstood)
        return;
    std::fprintf(stderr, "Usage: %s%s [--frames N]\n", argv[0], canAskForCore ? " [--core]" : "");
    std::exit(EXIT_FAILURE);
}

Run::Step Run::next() {
    const auto have = [&](std::size_t first, std::size_t second) {
        return drawn_[0] >= first && drawn_[1] >= second;
    };
    if (numFrames_ == 0)
        return Step::Draw;
    if (phase_ == Phase::Both && have(numFrames_ / 2, numFrames_ / 2)) {
        phase_ = Phase::FirstAlone;
        return Step::CloseSecond;
    }
    if (phase_ == Phase::FirstAlone && have(numFrames_ - numFrames_ / 4, 0)) {
        phase_ = Phase::BothAgain;
        drawn_[1] = 0;
        return Step::OpenSecond;
    }
    if (phase_ == Phase::BothAgain && have(numFrames_, numFrames_ / 4)) {
        phase_ = Phase::Over;
        std::printf("%zu frames\n", numFrames_);
        std::fflush(stdout);
    }
    return phase_ == Phase::Over ? Step::Rest : Step::Draw;
}

void Run::draw(const Scene& scene, std::size_t window, const glm::uvec2& size) {
    const auto turn = 0.05f * static_cast<float>(drawn_[window]++);
    if (!scene.isReady()) {
        isFaultless_ = false;
        return;
    }
    const vellis::Context::Scope scope(*scene.context());
    if (!scope)
        complain("The GL context of the window is not current.");
    reportErrors("before vellis draws");
    const auto before = vellis::state::Snapshot::take();
    scene.draw(size, turn);
    reportErrors("while vellis draws");
    for (const auto& difference :
         vellis::state::differences(before, vellis::state::Snapshot::take())) {
        std::ostringstream line;
        line << difference;
        complain(line.str());
    }
}

void Run::finish(const Scene& scene) {
    if (!scene.isReady())
        return;
    const vellis::Context::Scope scope(*scene.context());
    reportErrors("while the toolkit draws");
}

void Run::complain(const std::string& what) {
    std::fprintf(stderr, "%s\n", what.c_str());
    isFaultless_ = false;
}

void Run::reportErrors(const char* when) {
    while (const char* error = vellis::diagnostics::check_glerror())
        complain(std::string(error) + " " + when);
}

} // namespace hosts
