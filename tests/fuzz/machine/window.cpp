#include "fuzz/machine/window.hpp"

#include <cstdint>
#include <cstdlib>
#include <vector>

#include <vellis/gl.hpp>

#ifdef VELLIS_FAKE_EGL
#include <dlfcn.h>
#endif

#include "fuzz/machine/faulty_gl.hpp"

namespace vellis::test {
namespace {

/// The extensions that a GL context lacks which lookUpFew() is asked for.
unsigned int missingNow = 0;

void* lookUpFew(const char* name) {
    const OptionalEntryPoint* const optional = findOptional(name);
    const bool isMissing = optional != nullptr && (missingNow >> optional->extension) % 2 != 0;
    return isMissing ? nullptr : FakeGl::lookUp(name);
}

/// Whether the call binds a framebuffer that the GL context has made and deleted.
bool bindsDeletedFramebuffer(const std::string& call, const HostContext& gl) {
    const std::size_t comma = call.find(", ");
    if (call.rfind("glBindFramebuffer(", 0) != 0 || comma == std::string::npos)
        return false;
    const unsigned long name = std::strtoul(call.c_str() + comma + 2, nullptr, 10);
    return gl.wasMade(ObjectKind::Framebuffer, static_cast<GLuint>(name));
}

} // namespace

void Sharing::lack(unsigned int extensions) {
    missing = extensions;
    lookup = lookUpFew;
}

void Window::makeContext(const Window* other) {
    missingNow = sharing->missing;
    context = other != nullptr ? Context::make(*other->context, sharing->lookup)
                               : Context::make(sharing->lookup);
}

bool Window::hasItsEntryPoints() const {
    missingNow = sharing->missing;
    return reinterpret_cast<void*>(glBindBuffer) == sharing->lookup("glBindBuffer") &&
           reinterpret_cast<void*>(glBindVertexArray) == sharing->lookup("glBindVertexArray");
}

std::string Window::lastViolation() {
    if (gl == nullptr)
        return "";
    const std::vector<std::string> all = gl->violations();
    std::string last;
    for (; numViolations < all.size(); ++numViolations) {
        if (!bindsDeletedFramebuffer(all[numViolations], *gl))
            last = all[numViolations];
    }
    return last;
}

FakePlatform::FakePlatform() {
#ifdef VELLIS_FAKE_EGL
    handle_ = dlopen(VELLIS_FAKE_EGL, RTLD_NOW | RTLD_LOCAL);
#endif
}

FakePlatform::~FakePlatform() {
#ifdef VELLIS_FAKE_EGL
    if (handle_ == nullptr)
        return;
    setCurrent(0);
    dlclose(handle_);
#endif
}

void FakePlatform::setCurrent([[maybe_unused]] unsigned int number) const {
#ifdef VELLIS_FAKE_EGL
    if (handle_ == nullptr)
        return;
    using Pretend = void (*)(void* context, void (*(*lookup)(const char* name))());
    reinterpret_cast<Pretend>(dlsym(handle_, "pretend"))(
        reinterpret_cast<void*>(static_cast<std::uintptr_t>(number)), nullptr);
#endif
}

} // namespace vellis::test
