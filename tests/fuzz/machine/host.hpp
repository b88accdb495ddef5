#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <vellis/context.hpp>

#include "fuzz/machine/bytes.hpp"
#include "fuzz/machine/keepsakes.hpp"
#include "fuzz/machine/kept_objects.hpp"
#include "fuzz/machine/window.hpp"
#include "fuzz/machine/world.hpp"

namespace vellis::test {

/// What owns the windows of a run, makes their GL contexts current and uses their Contexts, rightly
/// or not; and knows what must come of it.
class Host {
public:
    Host();

    /// \name Operations
    /// @{
    void open(World& world, Bytes& bytes);
    void close(World& world, Bytes& bytes);
    void make(World& world, Bytes& bytes);
    void makeInVain(World& world, Bytes& bytes);
    void use(World& world, Bytes& bytes);
    void useProcess(World& world, Bytes& bytes);
    void beginScope(World& world, Bytes& bytes);
    void endScope(World& world, Bytes& bytes);
    void dispose(World& world, Bytes& bytes);
    void abandon(World& world, Bytes& bytes);
    void letGo(World& world, Bytes& bytes);
    void makeKeepsakes(World& world, Bytes& bytes);
    void endKeepsakes(World& world, Bytes& bytes);
    void handToThread(World& world, Bytes& bytes);
    /// @}

    /// Looks for what is wrong, and makes current what belongs to the Context in use, or uses the
    /// process's own where there is none.
    void settle(World& world);

    /// The window that operations run in.
    const Window& here() const { return *inUse_; }
    Window& ofProcess() { return process_; }

    /// Ends a run: releases what it has made, disposes of each Context, closes all windows.
    /// \param kept  What the process's registries are to have.
    /// \param areNamesLost  Whether memory has failed, and with it names that were to wait.
    /// \return what is wrong; empty where all is well.
    std::string end(const KeptObjects& kept, bool areNamesLost);

    template <class Function>
    void forEachGl(Function function) {
        function(*process_.gl);
        for (Window& window : windows_) {
            if (window.gl != nullptr)
                function(*window.gl);
        }
    }

private:
    /// A Scope, and what was in use before.
    struct OpenScope {
        std::unique_ptr<Context::Scope> scope;
        Window* before;
        unsigned int contextNumber;
    };

    static constexpr std::size_t mostScopes = 4;

    Window& pickWindow(Bytes& bytes, bool (Window::*isFit)() const);
    void makeCurrent(Window* window);
    void makeAnyCurrent(Bytes& bytes);
    void noteEndOfUse(const Window& window);
    void noteLeftovers(Window& window);
    void endLastScope();
    void emptyRegistries(const KeptObjects& kept);
    void fillRegistries();
    void lookForViolations();
    std::string whatIsLeft(const Window& window, bool areNamesLost) const;
    const Window* otherOfGroup(const Window& window) const;

    FakePlatform platform_;
    Window process_;
    std::array<Window, 4> windows_;
    Window* inUse_ = &process_;   ///< whose Context must be in use
    Window* current_ = &process_; ///< whose GL context is current; null where none is
    bool mustUse_ = false;        ///< whether settle() uses it again in any case
    std::vector<OpenScope> scopes_;
    std::array<Keepsakes, 2> keepsakes_;
    unsigned int numWindows_ = 0;
    unsigned int numContexts_ = 0;
    unsigned int numPlaces_ = 0;
    std::string violation_; ///< the first one
};

} // namespace vellis::test
