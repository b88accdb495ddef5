#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/fake_gl.hpp"

/// \file
/// Every public operation of the library that calls GL, and what it calls: the source of the tables
/// in the documentation's pages.

namespace vellis::test {

/// A public operation and the GL calls of one use of it.
struct Use {
    std::string family;    ///< the heading that it stands under
    std::string scope;     ///< the class or namespace
    std::string operation; ///< its name there; overloads share one
    std::vector<std::string> calls;

    std::string name() const { return scope + "::" + operation; }
};

/// A piece of state that operations may put back, and the value that it has before each of them:
/// one that no operation sets by itself.
struct KnownState {
    const char* state;
    const char* value;
};
const std::vector<KnownState>& knownStates();

/// Takes operations one after the other and does something with each.
class UseRecorder {
public:
    explicit UseRecorder(FakeGl& fakeGl) : gl(fakeGl) {}
    virtual ~UseRecorder() = default;
    UseRecorder(const UseRecorder&) = delete;
    UseRecorder& operator=(const UseRecorder&) = delete;

    /// Puts the known states in place, and begins a heading.
    void begin(std::string family);

    /// The operations that follow are of this class or namespace.
    void of(std::string scope) { scope_ = std::move(scope); }

    /// An operation. What \p use returns is destroyed when the operation has been dealt with.
    template <class Function>
    void operator()(const char* operation, Function use) {
        run({family_, scope_, operation, {}}, [&use](const Then& then) {
            if constexpr (std::is_void_v<decltype(use())>) {
                use();
                then();
            } else {
                const auto result = use();
                then();
            }
        });
    }

    FakeGl& gl;

protected:
    /// What is to be done after the operation, while its result lives.
    using Then = std::function<void()>;

    /// Does the operation once. An exception leaves it.
    using Once = std::function<void(const Then&)>;

    /// Deals with one operation; nobody has yet written down what it calls.
    virtual void run(Use use, const Once& once) = 0;

private:
    std::string family_;
    std::string scope_;
};

/// The extensions of the context that operations work in: those that bring what they call.
inline constexpr const char* loadedExtensions[] = {"GL_EXT_gpu_shader4",
                                                   "GL_ARB_instanced_arrays",
                                                   "GL_ARB_draw_instanced",
                                                   "GL_ARB_sampler_objects",
                                                   "GL_ARB_separate_shader_objects",
                                                   "GL_ARB_clip_control",
                                                   "GL_ARB_debug_output",
                                                   "GL_KHR_debug"};

void useEngine(UseRecorder& use);
void useBuffers(UseRecorder& use);
void useShading(UseRecorder& use);
void useDrawing(UseRecorder& use);
void useToolbox(UseRecorder& use);
void useCanvas(UseRecorder& use);
void useTextures(UseRecorder& use);
void useFramebuffers(UseRecorder& use);
void useState(UseRecorder& use);
void useSnapshots(UseRecorder& use);
void useDiagnostics(UseRecorder& use);
void useDebugOutput(UseRecorder& use);

/// Comes last: the Toolbox and the built-in programs are over then.
void useShutDown(UseRecorder& use);

/// Takes all operations, in the order of the pages, but for the shut-down.
void useEverything(UseRecorder& use);

/// All uses of all operations with what they call, the shut-down included.
std::vector<Use> recordEverything(FakeGl& gl);

} // namespace vellis::test
