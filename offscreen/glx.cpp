/// Contexts through GLX, on an X server. The few declarations of Xlib and GLX that are needed stand
/// here, so that building needs no headers of X.

#include <atomic>
#include <cstdlib>
#include <mutex>

#include "platforms.hpp"
#include "shared_library.hpp"

namespace offscreen {
namespace {

struct Display;
using Xid = unsigned long;
using FbConfig = void*;
using GlxContext = void*;

struct XErrorEvent {
    int type;
    Display* display;
    Xid resourceId;
    unsigned long serial;
    unsigned char errorCode;
    unsigned char requestCode;
    unsigned char minorCode;
};

using XErrorHandler = int (*)(Display*, XErrorEvent*);

// Values of <GL/glx.h>.
enum GlxAttribute : int {
    None = 0,
    DoubleBuffer = 5,
    RedSize = 8,
    GreenSize = 9,
    BlueSize = 10,
    AlphaSize = 11,
    DepthSize = 12,
    StencilSize = 13,
    DrawableType = 0x8010,
    PbufferBit = 0x4,
    RenderType = 0x8011,
    RgbaBit = 0x1,
    RgbaType = 0x8014,
    PbufferHeight = 0x8040,
    PbufferWidth = 0x8041,
    SampleBuffers = 100000,
    MajorVersion = 0x2091,
    MinorVersion = 0x2092,
    ContextFlags = 0x2094,
    ForwardCompatibleBit = 0x2,
    ProfileMask = 0x9126,
    CoreProfileBit = 0x1,
};

/// The functions of Xlib and GLX.
class Glx {
public:
    int (*initThreads)() = nullptr;
    Display* (*openDisplay)(const char*) = nullptr;
    int (*closeDisplay)(Display*) = nullptr;
    int (*defaultScreen)(Display*) = nullptr;
    int (*synchronise)(Display*, int) = nullptr;
    int (*freeData)(void*) = nullptr;
    XErrorHandler (*setErrorHandler)(XErrorHandler) = nullptr;
    FbConfig* (*chooseFbConfig)(Display*, int, const int*, int*) = nullptr;
    Xid (*createPbuffer)(Display*, FbConfig, const int*) = nullptr;
    void (*destroyPbuffer)(Display*, Xid) = nullptr;
    GlxContext (*createContext)(Display*, FbConfig, int, GlxContext, int) = nullptr;
    /// That of GLX_ARB_create_context; null where nobody knows it.
    GlxContext (*createContextAttribs)(Display*, FbConfig, GlxContext, int, const int*) = nullptr;
    void (*destroyContext)(Display*, GlxContext) = nullptr;
    int (*makeContextCurrent)(Display*, Xid, Xid, GlxContext) = nullptr;
    GlxContext (*getCurrentContext)() = nullptr;

    Glx() : x11_("libX11.so.6"), gl_("libGL.so.1") {
        x11_.find("XInitThreads", initThreads);
        x11_.find("XOpenDisplay", openDisplay);
        x11_.find("XCloseDisplay", closeDisplay);
        x11_.find("XDefaultScreen", defaultScreen);
        x11_.find("XSync", synchronise);
        x11_.find("XFree", freeData);
        x11_.find("XSetErrorHandler", setErrorHandler);
        gl_.find("glXChooseFBConfig", chooseFbConfig);
        gl_.find("glXCreatePbuffer", createPbuffer);
        gl_.find("glXDestroyPbuffer", destroyPbuffer);
        gl_.find("glXCreateNewContext", createContext);
        gl_.find("glXDestroyContext", destroyContext);
        gl_.find("glXMakeContextCurrent", makeContextCurrent);
        gl_.find("glXGetCurrentContext", getCurrentContext);
        void (*(*getProcAddress)(const unsigned char*))() = nullptr;
        gl_.find("glXGetProcAddressARB", getProcAddress);
        if (getProcAddress != nullptr) {
            createContextAttribs = reinterpret_cast<decltype(createContextAttribs)>(getProcAddress(
                reinterpret_cast<const unsigned char*>("glXCreateContextAttribsARB")));
        }
        // Before any other call of Xlib: contexts that share objects have one connection, whatever
        // their threads.
        if (initThreads != nullptr)
            initThreads();
    }

    /// Why the functions cannot be used; empty where they can.
    const std::string& error() const { return x11_.error().empty() ? gl_.error() : x11_.error(); }

private:
    SharedLibrary x11_;
    SharedLibrary gl_;
};

/// Keeps errors of the X server from ending the process, as they do by default, and remembers the
/// latest. The handler is the process's: one thread at a time has a trap.
class XErrorTrap {
public:
    explicit XErrorTrap(const Glx& glx)
        : lock_(mutex_),
          glx_(glx),
          before_(glx.setErrorHandler(note)) {
        latest_ = 0;
    }
    ~XErrorTrap() { glx_.setErrorHandler(before_); }
    XErrorTrap(const XErrorTrap&) = delete;
    XErrorTrap& operator=(const XErrorTrap&) = delete;

    /// Whether the server has refused anything so far.
    bool caught(Display* display) const {
        glx_.synchronise(display, 0);
        return latest_ != 0;
    }

    /// What the server answered; the end of a reason.
    std::string message() const {
        return latest_ != 0 ? "X error " + std::to_string(latest_) : "no error is reported";
    }

private:
    static int note(Display*, XErrorEvent* event) {
        latest_ = event->errorCode;
        return 0;
    }

    inline static std::recursive_mutex mutex_; ///< traps nest
    inline static std::atomic<int> latest_ = 0;
    std::lock_guard<std::recursive_mutex> lock_;
    const Glx& glx_;
    XErrorHandler before_;
};

/// A connection to the X server; contexts that share objects have one.
class Connection {
public:
    Connection(const Glx& glx, Display* opened) : display(opened), glx_(glx) {}
    ~Connection() { glx_.closeDisplay(display); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    Display* const display;

private:
    const Glx& glx_;
};

class GlxPbufferContext final : public Context {
public:
    GlxPbufferContext(const Glx& glx, std::shared_ptr<const Connection> connection)
        : glx_(glx),
          connection_(std::move(connection)),
          display_(connection_->display) {}

    ~GlxPbufferContext() override {
        if (context_ != nullptr && glx_.getCurrentContext() == context_)
            release();
        if (context_ != nullptr)
            glx_.destroyContext(display_, context_);
        if (pbuffer_ != 0)
            glx_.destroyPbuffer(display_, pbuffer_);
    }

    bool makeCurrent() override {
        const XErrorTrap trap(glx_);
        return glx_.makeContextCurrent(display_, pbuffer_, pbuffer_, context_) != 0 &&
               !trap.caught(display_);
    }

    void release() override { glx_.makeContextCurrent(display_, 0, 0, nullptr); }

    const std::shared_ptr<const Connection>& connection() const { return connection_; }

    /// Makes the context and makes it current.
    /// \param sharing  Whose objects it shares, on the same connection; or null.
    /// \return empty, or why that failed.
    std::string create(const Settings& settings, const GlxPbufferContext* sharing) {
        const XErrorTrap trap(glx_);
        const FbConfig config = chooseConfig();
        if (config == nullptr)
            return "it has no pbuffers with RGBA8, depth 24, stencil 8";
        const int size[] = {PbufferWidth, static_cast<int>(settings.width), PbufferHeight,
                            static_cast<int>(settings.height), None};
        pbuffer_ = glx_.createPbuffer(display_, config, size);
        if (pbuffer_ == 0 || trap.caught(display_))
            return "glXCreatePbuffer: " + trap.message();
        if (settings.coreVersion > 0 && glx_.createContextAttribs == nullptr)
            return "it has no core profiles";
        makeContext(settings, config, sharing != nullptr ? sharing->context_ : nullptr);
        if (context_ == nullptr || trap.caught(display_)) {
            return (settings.coreVersion > 0 ? "glXCreateContextAttribs: "
                                             : "glXCreateNewContext: ") +
                   trap.message();
        }
        return makeCurrent() ? "" : "glXMakeContextCurrent: " + trap.message();
    }

private:
    void makeContext(const Settings& settings, FbConfig config, GlxContext sharing) {
        constexpr int direct = 1;
        if (settings.coreVersion == 0) {
            context_ = glx_.createContext(display_, config, RgbaType, sharing, direct);
            return;
        }
        const int attributes[] = {
            // clang-format off
            MajorVersion, settings.coreVersion / 10,
            MinorVersion, settings.coreVersion % 10,
            ContextFlags, settings.isForwardCompatible ? ForwardCompatibleBit : 0,
            ProfileMask, CoreProfileBit,
            None,
            // clang-format on
        };
        context_ = glx_.createContextAttribs(display_, config, sharing, direct, attributes);
    }

    /// The config, or null. Drawing goes to a back buffer: Mesa's software drivers would pass a
    /// front one on to the X server, which refuses it for a pbuffer.
    FbConfig chooseConfig() const {
        constexpr int attributes[] = {
            // clang-format off
            DrawableType, PbufferBit,
            RenderType, RgbaBit,
            DoubleBuffer, 1,
            RedSize, 8,
            GreenSize, 8,
            BlueSize, 8,
            AlphaSize, 8,
            DepthSize, 24,
            StencilSize, 8,
            SampleBuffers, 0,
            None,
            // clang-format on
        };
        int count = 0;
        FbConfig* configs =
            glx_.chooseFbConfig(display_, glx_.defaultScreen(display_), attributes, &count);
        const FbConfig config = configs != nullptr && count > 0 ? configs[0] : nullptr;
        if (configs != nullptr)
            glx_.freeData(configs);
        return config;
    }

    const Glx& glx_;
    std::shared_ptr<const Connection> connection_;
    Display* display_;
    Xid pbuffer_ = 0;
    GlxContext context_ = nullptr;
};

/// `$DISPLAY` as a part of a sentence.
std::string displayName() {
    const char* name = std::getenv("DISPLAY");
    return name != nullptr ? "DISPLAY is \"" + std::string(name) + "\"" : "DISPLAY is not set";
}

/// A connection to the server that `$DISPLAY` names, or null.
std::shared_ptr<const Connection> connect(const Glx& glx) {
    Display* display = glx.openDisplay(nullptr);
    return display != nullptr ? std::make_shared<const Connection>(glx, display) : nullptr;
}

} // namespace

std::unique_ptr<Context> openGlx(const Settings& settings, std::string& error) {
    static const Glx glx;
    if (!glx.error().empty()) {
        error = "GLX cannot be used (" + glx.error() +
                "): install it, for instance with `apt-get install libgl1 libx11-6`.";
        return nullptr;
    }
    const GlxPbufferContext* sharing = nullptr;
    if (!readSharing(settings, sharing, error))
        return nullptr;
    const auto connection = sharing != nullptr ? sharing->connection() : connect(glx);
    if (connection == nullptr) {
        error = "No X server can be reached (" + displayName() +
                "): start one, for instance with `xvfb-run -a`, or choose the platform egl.";
        return nullptr;
    }
    auto context = std::make_unique<GlxPbufferContext>(glx, connection);
    const std::string reason = context->create(settings, sharing);
    if (!reason.empty()) {
        error = "The X server gives no GL context (" + reason + "): " + installDriver;
        return nullptr;
    }
    return context;
}

} // namespace offscreen
