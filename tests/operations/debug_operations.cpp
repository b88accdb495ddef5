/// The operations of debug output and of labels.

#include <string>
#include <utility>

#include <vellis/framebuffer.hpp>
#include <vellis/internal.hpp>
#include <vellis/shading.hpp>

#include "operations/operations.hpp"

namespace vellis::test {
namespace {

/// Takes an entry point away for the time of a scope.
template <class EntryPoint>
class Without {
public:
    explicit Without(EntryPoint& entryPoint)
        : entryPoint_(entryPoint),
          before_(std::exchange(entryPoint, nullptr)) {}
    ~Without() { entryPoint_ = before_; }
    Without(const Without&) = delete;
    Without& operator=(const Without&) = delete;

private:
    EntryPoint& entryPoint_;
    EntryPoint before_;
};

void useLabels(UseRecorder& use) {
    const auto program = Program::make();
    const auto framebuffer = Framebuffer::make();
    const std::string text(300, 'x');
    use("label", [&] { internal::label(program, text.c_str()); });
    use("label (of a framebuffer)", [&] { internal::label(framebuffer, "mirror"); });
    internal::label(program, nullptr);
    internal::label(framebuffer, nullptr);
}

void useOutput(UseRecorder& use) {
    internal::DebugOutputSettings settings;
    settings.least = internal::DebugSeverity::Low;
    use("start_debug_output", [&] { internal::start_debug_output(settings); });
    use("stop_debug_output", [] { internal::stop_debug_output(); });
    const Without callback(glad_glDebugMessageCallback);
    const Without control(glad_glDebugMessageControl);
    use("start_debug_output (ARB_debug_output)", [&] { internal::start_debug_output(settings); });
    use("stop_debug_output (ARB_debug_output)", [] { internal::stop_debug_output(); });
}

} // namespace

void useDebugOutput(UseRecorder& use) {
    use.begin("Debug output");
    use.of("internal");
    useLabels(use);
    useOutput(use);
}

} // namespace vellis::test
