#include "fuzz/machine/host.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <new>
#include <thread>
#include <utility>

#include <vellis/gl.hpp>

#include "fuzz/machine/faulty_gl.hpp"
#include "fuzz/machine/kept_objects.hpp"
#include "fuzz/machine/operations.hpp"
#include "fuzz/machine/state_machine.hpp"
#include "support/fake_gl.hpp"

namespace vellis::test {
namespace {

void* lookUpNothing(const char*) {
    return nullptr;
}

/// One of the operations that need no host.
void runAny(World& world, Bytes& bytes) {
    const Operation& operation = operations()[bytes.below(operations().size())];
    try {
        operation.run(world, bytes);
    } catch (const std::bad_alloc&) {
    }
}

} // namespace

Host::Host() {
    scopes_.reserve(mostScopes);
    process_.gl = std::make_unique<HostContext>();
    process_.sharing = std::make_shared<Sharing>();
    process_.number = ++numWindows_;
    makeCurrent(&process_);
    gladLoadGLLoader(FakeGl::lookUp);
}

void Host::makeCurrent(Window* window) {
    if (window != nullptr)
        window->gl->makeCurrent();
    else
        FakeContext::releaseCurrent();
    current_ = window;
    platform_.setCurrent(window != nullptr ? window->number : 0);
}

/// One of which that is true, or any where there is none.
Window& Host::pickWindow(Bytes& bytes, bool (Window::*isFit)() const) {
    const std::size_t first = bytes.below(windows_.size());
    for (std::size_t i = 0; i < windows_.size(); ++i) {
        Window& window = windows_[(first + i) % windows_.size()];
        if ((window.*isFit)())
            return window;
    }
    return windows_[first];
}

/// Any GL context, or none.
void Host::makeAnyCurrent(Bytes& bytes) {
    const std::size_t choice = bytes.below(windows_.size() + 2);
    Window* const window = choice < windows_.size() ? &windows_[choice] : &process_;
    makeCurrent(choice > windows_.size() || window->gl == nullptr ? nullptr : window);
}

/// Its Context has ended.
void Host::noteEndOfUse(const Window& window) {
    if (inUse_ == &window)
        inUse_ = &process_;
}

/// Its Context ends while there may be objects of it: their names are lost.
void Host::noteLeftovers(Window& window) {
    window.hasLeftovers = true;
    if (otherOfGroup(window) == nullptr)
        window.sharing->hasLeftovers = true;
}

/// Another window whose Context is alive and in the same group.
const Window* Host::otherOfGroup(const Window& window) const {
    const auto found = std::find_if(windows_.begin(), windows_.end(), [&](const Window& other) {
        return &other != &window && other.sharing == window.sharing && other.isAlive();
    });
    return found != windows_.end() ? &*found : nullptr;
}

void Host::open(World&, Bytes& bytes) {
    Window& window = pickWindow(bytes, &Window::isEmpty);
    const Window& other = pick(windows_, bytes);
    const bool isSharing = bytes.flag() && other.gl != nullptr;
    const unsigned int lookup = bytes.below(4);
    const unsigned int missing = bytes.next();
    if (!window.isEmpty())
        return;
    Window opened;
    opened.sharing = isSharing ? other.sharing : std::make_shared<Sharing>();
    if (!isSharing && lookup == 2)
        opened.sharing->lookup = FakeContext::lookUpOther;
    if (!isSharing && lookup == 3)
        opened.sharing->lack(missing);
    opened.gl = std::make_unique<HostContext>(isSharing ? other.gl.get() : nullptr);
    opened.number = ++numWindows_;
    opened.place = ++numPlaces_;
    modelState(*opened.gl);
    chooseContents(*opened.gl, bytes);
    window = std::move(opened);
    makeCurrent(&window);
    resetState();
}

void Host::close(World&, Bytes& bytes) {
    Window& window = pick(windows_, bytes);
    if (window.gl == nullptr || (window.context != nullptr && !platform_.isThere()))
        return;
    lookForViolations();
    if (current_ == &window)
        makeCurrent(nullptr);
    window.gl.reset();
    if (!window.isAlive())
        window = {};
}

void Host::make(World& world, Bytes& bytes) {
    Window& window = pickWindow(bytes, &Window::lacksContext);
    if (!window.lacksContext())
        return;
    window.context = nullptr;
    makeCurrent(&window);
    window.makeContext(otherOfGroup(window));
    world.require(window.isAlive(), "there is no Context for a GL context");
    if (window.context == nullptr)
        return;
    window.contextNumber = ++numContexts_;
    inUse_ = &window;
}

void Host::makeInVain(World& world, Bytes& bytes) {
    makeAnyCurrent(bytes);
    world.require(Context::make(lookUpNothing) == nullptr,
                  "there is a Context without entry points");
}

void Host::use(World& world, Bytes& bytes) {
    Window& window = pickWindow(bytes, &Window::hasContext);
    const bool isRight = !platform_.isThere() || bytes.below(4) != 3;
    if (window.context == nullptr || (window.gl == nullptr && !platform_.isThere()))
        return;
    if (isRight && window.gl != nullptr)
        makeCurrent(&window);
    else
        makeAnyCurrent(bytes);
    const bool isUsed = window.context->use();
    world.require(isUsed == (window.isAlive() && current_ == &window),
                  "use() is not as the GL context that is current says");
    inUse_ = isUsed ? &window : &process_;
}

void Host::useProcess(World&, Bytes& bytes) {
    if (platform_.isThere() && bytes.flag())
        makeAnyCurrent(bytes);
    else
        makeCurrent(&process_);
    Context::useProcess();
    inUse_ = &process_;
}

void Host::beginScope(World& world, Bytes& bytes) {
    Window& window = pickWindow(bytes, &Window::isUsable);
    if (!window.isUsable() || scopes_.size() == mostScopes)
        return;
    if (platform_.isThere() && bytes.below(4) == 3)
        makeAnyCurrent(bytes);
    else
        makeCurrent(&window);
    OpenScope scope{nullptr, inUse_, inUse_->contextNumber};
    scope.scope = std::make_unique<Context::Scope>(*window.context);
    const bool isUsed = static_cast<bool>(*scope.scope);
    world.require(isUsed == (current_ == &window), "a Scope is not as use()");
    inUse_ = isUsed ? &window : &process_;
    scopes_.push_back(std::move(scope));
}

void Host::endScope(World&, Bytes&) {
    if (!scopes_.empty())
        endLastScope();
}

void Host::endLastScope() {
    OpenScope& last = scopes_.back();
    Window& before = *last.before;
    const bool isThere =
        &before == &process_ || (before.isAlive() && before.contextNumber == last.contextNumber);
    makeCurrent(isThere && before.gl != nullptr ? &before : &process_);
    last.scope.reset();
    inUse_ = isThere ? &before : &process_;
    scopes_.pop_back();
}

void Host::dispose(World& world, Bytes& bytes) {
    Window& window = pickWindow(bytes, &Window::hasContext);
    const bool isRight = !platform_.isThere() || bytes.below(4) != 3;
    if (window.context == nullptr || (window.gl == nullptr && !platform_.isThere()))
        return;
    if (isRight && window.gl != nullptr)
        makeCurrent(&window);
    else
        makeAnyCurrent(bytes);
    if (window.isAlive()) {
        noteLeftovers(window);
        inUse_ = &process_;
    }
    const EndWithoutGl ends(current_ != &window);
    window.context->dispose();
    world.require(!window.context->isAlive(), "a Context is alive that was disposed of");
    if (bytes.flag())
        window.context->dispose();
}

void Host::abandon(World& world, Bytes& bytes) {
    Window& window = pickWindow(bytes, &Window::hasContext);
    if (window.context == nullptr)
        return;
    if (bytes.flag())
        makeAnyCurrent(bytes);
    if (window.isAlive())
        noteLeftovers(window);
    noteEndOfUse(window);
    const EndWithoutGl ends(true);
    window.context->abandon();
    world.require(!window.context->isAlive(), "a Context is alive that was abandoned");
}

void Host::letGo(World&, Bytes& bytes) {
    Window& window = pickWindow(bytes, &Window::hasContext);
    if (window.context == nullptr)
        return;
    if (bytes.flag())
        makeAnyCurrent(bytes);
    if (window.isAlive())
        noteLeftovers(window);
    noteEndOfUse(window);
    const EndWithoutGl ends(true);
    window.context = nullptr;
    if (window.gl == nullptr)
        window = {};
}

void Host::makeKeepsakes(World&, Bytes& bytes) {
    pick(keepsakes_, bytes) = Keepsakes::make(inUse_->contextNumber);
}

/// Here, with no GL context current, or on a thread that has none.
void Host::endKeepsakes(World& world, Bytes& bytes) {
    Keepsakes& keepsakes = pick(keepsakes_, bytes);
    const unsigned int place = keepsakes.contextNumber != 0 ? bytes.below(3) : 0;
    Window& window = pickWindow(bytes, &Window::hasContext);
    if (place == 1 && window.context != nullptr && platform_.isThere()) {
        makeCurrent(nullptr);
        world.require(!window.context->use(), "a Context is used without a GL context");
        inUse_ = &process_;
        keepsakes = {};
    } else if (place == 2) {
        std::thread([&] { keepsakes = {}; }).join();
    } else {
        keepsakes = {};
    }
}

void Host::handToThread(World& world, Bytes& bytes) {
    Window& window = pickWindow(bytes, &Window::isUsable);
    if (!window.isUsable())
        return;
    makeCurrent(nullptr);
    mustUse_ = true; // the thread may have other entry points
    const unsigned int numOperations = bytes.below(6);
    bool isUsed = false;
    std::thread thread([&] {
        makeCurrent(&window);
        isUsed = window.context->use();
        world.context = window.contextNumber;
        for (unsigned int i = 0; i < numOperations; ++i)
            runAny(world, bytes);
        lookWhatIsBound(world);
        makeCurrent(nullptr);
    });
    thread.join();
    if (inUse_ == &window && bytes.flag())
        pick(keepsakes_, bytes) = {}; // where nothing is in use that exists, so that names wait
    noteEndOfUse(window);
    window.place = ++numPlaces_;
    world.require(isUsed, "a Context is not used on another thread");
}

void Host::settle(World& world) {
    world.require(Context::current() == inUse_->context.get(), "another Context is in use");
    world.require(mustUse_ || inUse_->hasItsEntryPoints(),
                  "the entry points are of another Context");
    if (inUse_ != &process_ && !inUse_->isUsable()) {
        inUse_ = &process_;
        mustUse_ = true;
    }
    if (current_ != inUse_ || mustUse_) {
        makeCurrent(inUse_);
        if (inUse_ == &process_)
            Context::useProcess();
        else
            world.require(inUse_->context->use(), "a Context is not used where it was before");
    }
    mustUse_ = false;
    world.context = inUse_->contextNumber;
    world.require(takeCallsWithoutContext() == 0, "a call was made without a GL context");
    lookForViolations();
    if (!violation_.empty() && world.problem.empty())
        world.problem = violation_;
}

} // namespace vellis::test
