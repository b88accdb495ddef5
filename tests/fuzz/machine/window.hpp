#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include <vellis/context.hpp>

#include "fuzz/machine/meddlers.hpp"
#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"

namespace vellis::test {

/// A fake GL context that says which names it has made.
class HostContext : public FakeContext {
public:
    using FakeContext::FakeContext;
    using GlScript::wasMade;
};

/// A time in which objects that end make no others: there is no GL context for these.
class EndWithoutGl {
public:
    explicit EndWithoutGl(bool isWithout) : before_(std::exchange(mayMeddlersMake, !isWithout)) {}
    ~EndWithoutGl() { mayMeddlersMake = before_; }
    EndWithoutGl(const EndWithoutGl&) = delete;
    EndWithoutGl& operator=(const EndWithoutGl&) = delete;

private:
    bool before_;
};

/// What GL contexts that share their objects have in common.
struct Sharing {
    Context::Lookup lookup = FakeGl::lookUp; ///< of their entry points
    unsigned int missing = 0;                ///< the extensions that they lack
    bool hasLeftovers = false;               ///< whether objects may have outlived their group

    /// Lets the GL contexts lack extensions.
    void lack(unsigned int extensions);
};

/// A GL context of the host's, and the Context for it.
struct Window {
    std::unique_ptr<HostContext> gl;  ///< null once closed
    std::shared_ptr<Context> context; ///< null until made, and where it was let go of
    std::shared_ptr<Sharing> sharing;
    unsigned int number = 0;        ///< of the GL context
    unsigned int place = 0;         ///< for Surroundings::place(): another after unseen operations
    unsigned int contextNumber = 0; ///< of the Context; 0 for the process's own
    bool hasLeftovers = false;      ///< whether objects of its own may have outlived its Context
    std::size_t numViolations = 0;  ///< of the GL context, so far

    /// Makes its Context, beside another of the group where there is one. Its GL context is
    /// current.
    void makeContext(const Window* other);

    /// Whether the entry points that are loaded are its own.
    bool hasItsEntryPoints() const;

    /// A call since the last look that used a name which the GL context does not have, or nothing.
    /// Framebuffer::unbind() may bind again what has been deleted since.
    std::string lastViolation();
    bool isAlive() const { return context != nullptr && context->isAlive(); }
    bool isUsable() const { return isAlive() && gl != nullptr; }
    bool hasContext() const { return context != nullptr; }
    bool lacksContext() const { return gl != nullptr && !isAlive(); }
    bool isEmpty() const { return gl == nullptr && context == nullptr; }
};

/// The platform's answer to which GL context is current, where a library can pretend to be one.
class FakePlatform {
public:
    FakePlatform();
    ~FakePlatform();
    FakePlatform(const FakePlatform&) = delete;
    FakePlatform& operator=(const FakePlatform&) = delete;

    /// Whether the library hears of it.
    bool isThere() const { return handle_ != nullptr; }

    /// From now on that GL context is current; none, where it is 0.
    void setCurrent(unsigned int number) const;

private:
    void* handle_ = nullptr;
};

} // namespace vellis::test
