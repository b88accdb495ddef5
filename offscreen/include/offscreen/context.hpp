#pragma once

/// \file
/// GL contexts without a window.

#include <memory>
#include <string>

namespace offscreen {

/// A way to make a context: WGL on Windows, the others elsewhere.
enum class Platform {
    Egl, ///< EGL, on the first display that works: surfaceless, a device, the default one.
    EglSurfaceless, ///< EGL on Mesa's surfaceless platform.
    EglDevice,      ///< EGL on the first graphics device that works.
    Glx,            ///< GLX on the X server that `$DISPLAY` names.
    OsMesa,         ///< OSMesa, which draws into the memory of the process; see entry_points.hpp.
    Wgl,            ///< WGL on a window that is not shown.
};

/// The platform where nobody asks for another.
#ifdef _WIN32
inline constexpr Platform defaultPlatform = Platform::Wgl;
#else
inline constexpr Platform defaultPlatform = Platform::Egl;
#endif

class Context;

/// What a context is to be.
struct Settings {
    unsigned int width = 256;  ///< Width of the default framebuffer in pixels.
    unsigned int height = 256; ///< Height of the default framebuffer in pixels.
    Platform platform = defaultPlatform;
    /// Whose objects the new context shares: one of the same platform, on the same display, which
    /// is current on no other thread; or null.
    const Context* sharing = nullptr;
    /// 32 for a context of OpenGL 3.2 of the core profile, and so on up to 46: one of that version
    /// or of a later one, as the driver likes. 0 for one of the compatibility kind.
    int coreVersion = 0;
    /// Whether one of the core profile is forward-compatible: without what OpenGL has deprecated.
    /// OSMesa has none that are.
    bool isForwardCompatible = true;
};

/// Reads a platform from the environment variable `OFFSCREEN_PLATFORM` (`egl`, `egl-surfaceless`,
/// `egl-device`, `glx`, `osmesa`, `wgl`), so that a program can be tried on another one without a
/// change. Leaves \p platform as it is where the variable is unset or empty. \param error  One
/// sentence, where the result is false: the variable has another value.
bool platformFromEnvironment(Platform& platform, std::string& error);

/// The same for the profile, from `OFFSCREEN_PROFILE`: `compatibility`, or `core-3.2` to
/// `core-4.6`, with `-forward` behind it for a forward-compatible one. Sets `coreVersion` and
/// `isForwardCompatible`.
bool profileFromEnvironment(Settings& settings, std::string& error);

/// platformFromEnvironment() and profileFromEnvironment().
bool settingsFromEnvironment(Settings& settings, std::string& error);

/// A GL context with a default framebuffer that nobody sees: 8 bits each of red, green, blue and
/// alpha, at least 24 of depth and 8 of stencil, one sample a pixel.
///
/// \code
/// std::string error;
/// const auto context = offscreen::Context::open({640, 480}, error);
/// if (context == nullptr || !vellis::engine::init())
///     return EXIT_FAILURE;
/// // ... draw ...
/// const offscreen::Image image = offscreen::readPixels(640, 480);
/// \endcode
///
/// Whatever version the driver gives for a context of the compatibility kind is taken; see
/// missingRequirement().
///
/// A context may be made current on any thread, on one at a time: release() it on the one before.
/// It is destroyed on the thread that opened it, since the windows of WGL belong to theirs.
class Context {
public:
    /// Makes a context and makes it current on this thread.
    /// \param error  Where the result is null: one sentence that says what is missing, why, and
    /// what
    ///               to do about it.
    static std::unique_ptr<Context> open(const Settings& settings, std::string& error);

    /// Destroys the context; where it is current, none is current afterwards.
    virtual ~Context() = default;

    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    /// Makes the context current on this thread.
    /// \return false where the platform refuses, for instance because it is current on another
    ///         thread.
    virtual bool makeCurrent() = 0;

    /// Leaves this thread without a current context.
    virtual void release() = 0;

    /// Gives the entry point of a name.
    using Lookup = void* (*)(const char* name);

    /// The lookup of a platform that vellis::engine::init does not know, which is OSMesa; null on
    /// the others.
    virtual Lookup ownLookup() const { return nullptr; }

protected:
    Context() = default;
};

} // namespace offscreen
