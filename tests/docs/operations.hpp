#pragma once

#include <string>
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

/// Writes down what operations call.
class UseRecorder {
public:
    UseRecorder(FakeGl& fakeGl, std::vector<Use>& allUses) : gl(fakeGl), uses_(allUses) {}

    /// Puts the known states in place, and begins a heading.
    void begin(std::string family);

    /// The operations that follow are of this class or namespace.
    void of(std::string scope) { scope_ = std::move(scope); }

    /// Uses an operation once. What \p use returns is destroyed after the calls were written down.
    template <class Function>
    void operator()(const char* operation, Function use) {
        gl.forget();
        if constexpr (std::is_void_v<decltype(use())>) {
            use();
            add(operation);
        } else {
            const auto result = use();
            add(operation);
        }
        gl.forget();
    }

    FakeGl& gl;

private:
    void add(const char* operation);

    std::vector<Use>& uses_;
    std::string family_;
    std::string scope_;
};

void useEngine(UseRecorder& use);
void useBuffers(UseRecorder& use);
void useShading(UseRecorder& use);
void useDrawing(UseRecorder& use);
void useToolbox(UseRecorder& use);
void useTextures(UseRecorder& use);
void useFramebuffers(UseRecorder& use);
void useState(UseRecorder& use);
void useDiagnostics(UseRecorder& use);

/// Comes last: the Toolbox and the built-in programs are over then.
void useShutDown(UseRecorder& use);

/// All uses of all operations, in the order of the pages.
std::vector<Use> useEverything(FakeGl& gl);

} // namespace vellis::test
