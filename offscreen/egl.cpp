/// Contexts through EGL, on displays that need no window system.

#include <vector>

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include "platforms.hpp"
#include "shared_library.hpp"

namespace offscreen {
namespace {

#define OFFSCREEN_EGL_FUNCTIONS(ROW)                                                               \
    ROW(eglBindAPI)                                                                                \
    ROW(eglChooseConfig)                                                                           \
    ROW(eglCreateContext)                                                                          \
    ROW(eglCreatePbufferSurface)                                                                   \
    ROW(eglDestroyContext)                                                                         \
    ROW(eglDestroySurface)                                                                         \
    ROW(eglGetCurrentContext)                                                                      \
    ROW(eglGetDisplay)                                                                             \
    ROW(eglGetError)                                                                               \
    ROW(eglGetProcAddress)                                                                         \
    ROW(eglInitialize)                                                                             \
    ROW(eglMakeCurrent)

/// Pointers to the functions of libEGL, under their names.
struct EglFunctions {
#define OFFSCREEN_EGL_MEMBER(name) decltype(&::name) name = nullptr;
    OFFSCREEN_EGL_FUNCTIONS(OFFSCREEN_EGL_MEMBER)
#undef OFFSCREEN_EGL_MEMBER
};

/// The functions of libEGL, loaded.
class Egl : public EglFunctions {
public:
    Egl() : library_("libEGL.so.1") {
#define OFFSCREEN_EGL_FIND(name) library_.find(#name, name);
        OFFSCREEN_EGL_FUNCTIONS(OFFSCREEN_EGL_FIND)
#undef OFFSCREEN_EGL_FIND
    }

    /// Why the functions cannot be used; empty where they can.
    const std::string& error() const {
        return library_.error();
    }

    /// An extension's function, or null.
    template <class Function>
    Function extension(const char* name) const {
        return reinterpret_cast<Function>(eglGetProcAddress(name));
    }

    /// The name of the error of the latest call.
    std::string latestError() const;

private:
    SharedLibrary library_;
};

std::string Egl::latestError() const {
    struct Row {
        EGLint code;
        const char* name;
    };
    constexpr Row rows[] = {
        {EGL_SUCCESS, "no error is reported"},
        {EGL_NOT_INITIALIZED, "EGL_NOT_INITIALIZED"},
        {EGL_BAD_ACCESS, "EGL_BAD_ACCESS"},
        {EGL_BAD_ALLOC, "EGL_BAD_ALLOC"},
        {EGL_BAD_ATTRIBUTE, "EGL_BAD_ATTRIBUTE"},
        {EGL_BAD_CONFIG, "EGL_BAD_CONFIG"},
        {EGL_BAD_CONTEXT, "EGL_BAD_CONTEXT"},
        {EGL_BAD_CURRENT_SURFACE, "EGL_BAD_CURRENT_SURFACE"},
        {EGL_BAD_DISPLAY, "EGL_BAD_DISPLAY"},
        {EGL_BAD_MATCH, "EGL_BAD_MATCH"},
        {EGL_BAD_PARAMETER, "EGL_BAD_PARAMETER"},
        {EGL_BAD_SURFACE, "EGL_BAD_SURFACE"},
        {EGL_CONTEXT_LOST, "EGL_CONTEXT_LOST"},
    };
    const EGLint code = eglGetError();
    for (const Row& row : rows) {
        if (row.code == code)
            return row.name;
    }
    return "EGL error " + std::to_string(code);
}

/// A display that may be worth a try.
struct Candidate {
    std::string name;
    EGLDisplay display;
};

void addSurfaceless(const Egl& egl, std::vector<Candidate>& candidates) {
    const auto getDisplay =
        egl.extension<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
    const EGLDisplay display = getDisplay != nullptr ? getDisplay(EGL_PLATFORM_SURFACELESS_MESA,
                                                                  EGL_DEFAULT_DISPLAY, nullptr)
                                                     : EGL_NO_DISPLAY;
    candidates.push_back({"surfaceless", display});
}

void addDevices(const Egl& egl, std::vector<Candidate>& candidates) {
    constexpr EGLint maximum = 32;
    EGLDeviceEXT devices[maximum];
    EGLint count = 0;
    const auto queryDevices = egl.extension<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
    const auto getDisplay =
        egl.extension<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
    if (queryDevices == nullptr || getDisplay == nullptr ||
        queryDevices(maximum, devices, &count) != EGL_TRUE || count == 0) {
        candidates.push_back({"device", EGL_NO_DISPLAY});
        return;
    }
    for (EGLint i = 0; i < count; ++i) {
        candidates.push_back({"device " + std::to_string(i),
                              getDisplay(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr)});
    }
}

std::vector<Candidate> candidatesFor(Platform platform, const Egl& egl) {
    std::vector<Candidate> candidates;
    if (platform != Platform::EglDevice)
        addSurfaceless(egl, candidates);
    if (platform != Platform::EglSurfaceless)
        addDevices(egl, candidates);
    if (platform == Platform::Egl)
        candidates.push_back({"default", egl.eglGetDisplay(EGL_DEFAULT_DISPLAY)});
    return candidates;
}

class EglContext final : public Context {
public:
    EglContext(const Egl& egl, EGLDisplay display) : egl_(egl), display_(display) {}

    /// The display stays initialised: other contexts share it.
    ~EglContext() override {
        if (context_ != EGL_NO_CONTEXT && egl_.eglGetCurrentContext() == context_)
            release();
        if (surface_ != EGL_NO_SURFACE)
            egl_.eglDestroySurface(display_, surface_);
        if (context_ != EGL_NO_CONTEXT)
            egl_.eglDestroyContext(display_, context_);
    }

    /// The client API is a setting of each thread, and OpenGL ES where nobody has set it.
    bool makeCurrent() override {
        return egl_.eglBindAPI(EGL_OPENGL_API) == EGL_TRUE &&
               egl_.eglMakeCurrent(display_, surface_, surface_, context_) == EGL_TRUE;
    }

    void release() override {
        egl_.eglBindAPI(EGL_OPENGL_API);
        egl_.eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }

    EGLDisplay display() const { return display_; }

    /// Makes the context and makes it current.
    /// \param sharing  Whose objects it shares, on the same display; or null.
    /// \return empty, or why that failed.
    std::string create(const Settings& settings, const EglContext* sharing) {
        const EGLConfig config = chooseConfig();
        if (config == nullptr)
            return "it has no pbuffers for OpenGL with RGBA8, depth 24, stencil 8";
        const EGLint size[] = {EGL_WIDTH, static_cast<EGLint>(settings.width), EGL_HEIGHT,
                               static_cast<EGLint>(settings.height), EGL_NONE};
        surface_ = egl_.eglCreatePbufferSurface(display_, config, size);
        if (surface_ == EGL_NO_SURFACE)
            return "eglCreatePbufferSurface: " + egl_.latestError();
        const EGLint core[] = {
            // clang-format off
            EGL_CONTEXT_MAJOR_VERSION, settings.coreVersion / 10,
            EGL_CONTEXT_MINOR_VERSION, settings.coreVersion % 10,
            EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
            // EGL 1.5 has a name of its own for it, which EGL 1.4 with the extension lacks.
            settings.isForwardCompatible ? EGL_CONTEXT_FLAGS_KHR : EGL_NONE,
            EGL_CONTEXT_OPENGL_FORWARD_COMPATIBLE_BIT_KHR,
            EGL_NONE,
            // clang-format on
        };
        context_ = egl_.eglCreateContext(display_, config,
                                         sharing != nullptr ? sharing->context_ : EGL_NO_CONTEXT,
                                         settings.coreVersion > 0 ? core : nullptr);
        if (context_ == EGL_NO_CONTEXT)
            return "eglCreateContext: " + egl_.latestError();
        return makeCurrent() ? "" : "eglMakeCurrent: " + egl_.latestError();
    }

private:
    /// The config, or null.
    EGLConfig chooseConfig() const {
        constexpr EGLint attributes[] = {
            // clang-format off
            EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,
            EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
            EGL_RED_SIZE, 8,
            EGL_GREEN_SIZE, 8,
            EGL_BLUE_SIZE, 8,
            EGL_ALPHA_SIZE, 8,
            EGL_DEPTH_SIZE, 24,
            EGL_STENCIL_SIZE, 8,
            EGL_SAMPLE_BUFFERS, 0,
            EGL_NONE,
            // clang-format on
        };
        EGLConfig config = nullptr;
        EGLint count = 0;
        egl_.eglChooseConfig(display_, attributes, &config, 1, &count);
        return count > 0 ? config : nullptr;
    }

    const Egl& egl_;
    EGLDisplay display_;
    EGLSurface surface_ = EGL_NO_SURFACE;
    EGLContext context_ = EGL_NO_CONTEXT;
};

/// A current context on one display; where it is null, \p reason says why.
std::unique_ptr<Context> openOn(const Candidate& candidate, const Egl& egl,
                                const Settings& settings, const EglContext* sharing,
                                std::string& reason) {
    if (candidate.display == EGL_NO_DISPLAY) {
        reason = "there is none";
        return nullptr;
    }
    if (sharing != nullptr && sharing->display() != candidate.display) {
        reason = "the context whose objects are to be shared is on another";
        return nullptr;
    }
    if (egl.eglInitialize(candidate.display, nullptr, nullptr) != EGL_TRUE) {
        reason = "eglInitialize: " + egl.latestError();
        return nullptr;
    }
    if (egl.eglBindAPI(EGL_OPENGL_API) != EGL_TRUE) {
        reason = "eglBindAPI: " + egl.latestError();
        return nullptr;
    }
    auto context = std::make_unique<EglContext>(egl, candidate.display);
    reason = context->create(settings, sharing);
    if (!reason.empty())
        return nullptr;
    return context;
}

} // namespace

std::unique_ptr<Context> openEgl(const Settings& settings, std::string& error) {
    static const Egl egl;
    if (!egl.error().empty()) {
        error = "EGL cannot be used (" + egl.error() + "): " + installDriver;
        return nullptr;
    }
    const EglContext* sharing = nullptr;
    if (!readSharing(settings, sharing, error))
        return nullptr;
    std::string reasons;
    for (const Candidate& candidate : candidatesFor(settings.platform, egl)) {
        std::string reason;
        if (auto context = openOn(candidate, egl, settings, sharing, reason))
            return context;
        reasons += (reasons.empty() ? "" : "; ") + candidate.name + " display: " + reason;
    }
    error = "No EGL display gives a GL context (" + reasons + "): " + installDriver;
    return nullptr;
}

} // namespace offscreen
