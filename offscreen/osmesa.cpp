/// Contexts through OSMesa, which draws into the memory of the process. The few declarations that
/// are needed stand here, so that building needs no header of it.

#include <vector>

#include <vellis/gl.hpp>

#include "platforms.hpp"
#include "shared_library.hpp"

namespace offscreen {
namespace {

struct OsMesaRecord;
using OsMesaHandle = OsMesaRecord*;

// Values of <GL/osmesa.h>.
enum OsMesaAttribute : int {
    End = 0,
    Format = 0x22,
    Rgba = GL_RGBA,
    DepthBits = 0x30,
    StencilBits = 0x31,
    Profile = 0x33,
    CoreProfile = 0x34,
    CompatibilityProfile = 0x35,
    MajorVersion = 0x36,
    MinorVersion = 0x37,
};

/// The functions of OSMesa.
class OsMesa {
public:
    OsMesaHandle (*createContext)(const int*, OsMesaHandle) = nullptr;
    void (*destroyContext)(OsMesaHandle) = nullptr;
    unsigned char (*makeCurrent)(OsMesaHandle, void*, GLenum, GLsizei, GLsizei) = nullptr;
    OsMesaHandle (*getCurrentContext)() = nullptr;
    void* (*getProcAddress)(const char*) = nullptr;

    OsMesa() : library_("libOSMesa.so.8") {
        library_.find("OSMesaCreateContextAttribs", createContext);
        library_.find("OSMesaDestroyContext", destroyContext);
        library_.find("OSMesaMakeCurrent", makeCurrent);
        library_.find("OSMesaGetCurrentContext", getCurrentContext);
        library_.find("OSMesaGetProcAddress", getProcAddress);
    }

    /// Why the functions cannot be used; empty where they can.
    const std::string& error() const { return library_.error(); }

private:
    SharedLibrary library_;
};

const OsMesa& osMesa() {
    static const OsMesa functions;
    return functions;
}

class OsMesaContext final : public Context {
public:
    /// \param sharing  Whose objects the context shares, or null.
    OsMesaContext(const Settings& settings, const OsMesaContext* sharing)
        : width_(static_cast<GLsizei>(settings.width)),
          height_(static_cast<GLsizei>(settings.height)),
          pixels_(std::size_t{4} * settings.width * settings.height) {
        const bool isCore = settings.coreVersion > 0;
        const int attributes[] = {
            // clang-format off
            Format, Rgba,
            DepthBits, 24,
            StencilBits, 8,
            Profile, isCore ? CoreProfile : CompatibilityProfile,
            isCore ? MajorVersion : End, settings.coreVersion / 10,
            MinorVersion, settings.coreVersion % 10,
            End,
            // clang-format on
        };
        context_ =
            osMesa().createContext(attributes, sharing != nullptr ? sharing->context_ : nullptr);
    }

    ~OsMesaContext() override {
        if (context_ == nullptr)
            return;
        if (osMesa().getCurrentContext() == context_)
            release();
        osMesa().destroyContext(context_);
    }

    bool makeCurrent() override {
        return context_ != nullptr && osMesa().makeCurrent(context_, pixels_.data(),
                                                           GL_UNSIGNED_BYTE, width_, height_) != 0;
    }

    void release() override { osMesa().makeCurrent(nullptr, nullptr, GL_UNSIGNED_BYTE, 0, 0); }

    /// OSMesa's entry points are its own: no lookup of the system's finds them.
    Lookup ownLookup() const override { return osMesa().getProcAddress; }

private:
    GLsizei width_;
    GLsizei height_;
    std::vector<unsigned char> pixels_; ///< the default framebuffer
    OsMesaHandle context_ = nullptr;
};

} // namespace

std::unique_ptr<Context> openOsMesa(const Settings& settings, std::string& error) {
    if (!osMesa().error().empty()) {
        error = "OSMesa cannot be used (" + osMesa().error() +
                "): install it, for instance with `apt-get install libosmesa6`.";
        return nullptr;
    }
    if (settings.coreVersion > 0 && settings.isForwardCompatible) {
        error = "OSMesa has no forward-compatible contexts: choose the platform egl.";
        return nullptr;
    }
    const OsMesaContext* sharing = nullptr;
    if (!readSharing(settings, sharing, error))
        return nullptr;
    auto context = std::make_unique<OsMesaContext>(settings, sharing);
    if (!context->makeCurrent()) {
        error = "OSMesa gives no GL context with RGBA8, depth 24, stencil 8: " +
                std::string(installDriver);
        return nullptr;
    }
    return context;
}

} // namespace offscreen
