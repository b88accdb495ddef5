/// Contexts through WGL, on a window that is never shown.

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <utility>

#include "platforms.hpp"

namespace offscreen {
namespace {

constexpr wchar_t windowClass[] = L"vellis offscreen";

/// A failed call, and why it failed; the middle of a sentence.
std::string failure(const char* call) {
    return std::string(call) + ": Windows error " + std::to_string(GetLastError());
}

/// Whether the class of the windows is there; it is made once.
bool registerWindowClass() {
    WNDCLASSW description = {};
    description.style = CS_OWNDC;
    description.lpfnWndProc = DefWindowProcW;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = windowClass;
    return RegisterClassW(&description) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

class WglWindowContext final : public Context {
public:
    WglWindowContext() = default;

    ~WglWindowContext() override {
        if (context_ != nullptr && wglGetCurrentContext() == context_)
            release();
        if (context_ != nullptr)
            wglDeleteContext(context_);
        if (deviceContext_ != nullptr)
            ReleaseDC(window_, deviceContext_);
        if (window_ != nullptr)
            DestroyWindow(window_);
    }

    bool makeCurrent() override { return wglMakeCurrent(deviceContext_, context_) != FALSE; }

    void release() override { wglMakeCurrent(nullptr, nullptr); }

    /// Makes the context and makes it current.
    /// \param sharing  Whose objects it shares, or null.
    /// \return empty, or why that failed.
    std::string create(const Settings& settings, const WglWindowContext* sharing) {
        if (!registerWindowClass())
            return failure("RegisterClass");
        // Without a frame, whose size would count, and without the screen's limits to a frame.
        window_ =
            CreateWindowExW(0, windowClass, L"", WS_POPUP, 0, 0, static_cast<int>(settings.width),
                            static_cast<int>(settings.height), nullptr, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
        if (window_ == nullptr)
            return failure("CreateWindowEx");
        deviceContext_ = GetDC(window_);
        if (deviceContext_ == nullptr)
            return failure("GetDC");
        const std::string reason = choosePixelFormat();
        if (!reason.empty())
            return reason;
        context_ = wglCreateContext(deviceContext_);
        if (context_ == nullptr)
            return failure("wglCreateContext");
        if (settings.coreVersion > 0)
            return replaceWithCore(settings, sharing != nullptr ? sharing->context_ : nullptr);
        // While the new one has no objects of its own yet.
        if (sharing != nullptr && wglShareLists(sharing->context_, context_) == FALSE)
            return failure("wglShareLists");
        return makeCurrent() ? "" : failure("wglMakeCurrent");
    }

private:
    /// Makes a core context, with a function that any context gives, in the place of the one there.
    /// \return empty, or why that failed.
    std::string replaceWithCore(const Settings& settings, HGLRC sharing) {
        // Of WGL_ARB_create_context and WGL_ARB_create_context_profile.
        constexpr int major = 0x2091, minor = 0x2092, flags = 0x2094, forwardCompatible = 0x2;
        constexpr int profile = 0x9126, core = 0x1;
        const int attributes[] = {
            // clang-format off
            major, settings.coreVersion / 10,
            minor, settings.coreVersion % 10,
            flags, settings.isForwardCompatible ? forwardCompatible : 0,
            profile, core,
            0,
            // clang-format on
        };
        if (!makeCurrent())
            return failure("wglMakeCurrent");
        using Create = HGLRC(WINAPI*)(HDC, HGLRC, const int*);
        using Function = void (*)();
        const auto create = reinterpret_cast<Create>(
            reinterpret_cast<Function>(wglGetProcAddress("wglCreateContextAttribsARB")));
        HGLRC made = create != nullptr ? create(deviceContext_, sharing, attributes) : nullptr;
        if (made == nullptr)
            return failure("wglCreateContextAttribs");
        release();
        wglDeleteContext(std::exchange(context_, made));
        return makeCurrent() ? "" : failure("wglMakeCurrent");
    }

    /// Gives the window a back buffer, which alone keeps what is drawn while nothing is shown.
    /// \return empty, or why that failed.
    std::string choosePixelFormat() const {
        PIXELFORMATDESCRIPTOR format = {};
        format.nSize = sizeof(format);
        format.nVersion = 1;
        format.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
        format.iPixelType = PFD_TYPE_RGBA;
        format.cColorBits = 32;
        format.cAlphaBits = 8;
        format.cDepthBits = 24;
        format.cStencilBits = 8;
        const int index = ChoosePixelFormat(deviceContext_, &format);
        if (index == 0 || DescribePixelFormat(deviceContext_, index, sizeof(format), &format) == 0)
            return failure("ChoosePixelFormat");
        // The nearest format is chosen, not one that suffices.
        if (format.cRedBits != 8 || format.cGreenBits != 8 || format.cBlueBits != 8 ||
            format.cAlphaBits != 8 || format.cDepthBits < 24 || format.cStencilBits < 8)
            return "its windows have no RGBA8 with depth 24, stencil 8";
        return SetPixelFormat(deviceContext_, index, &format) != FALSE ? ""
                                                                       : failure("SetPixelFormat");
    }

    HWND window_ = nullptr;
    HDC deviceContext_ = nullptr;
    HGLRC context_ = nullptr;
};

} // namespace

std::unique_ptr<Context> openWgl(const Settings& settings, std::string& error) {
    const WglWindowContext* sharing = nullptr;
    if (!readSharing(settings, sharing, error))
        return nullptr;
    auto context = std::make_unique<WglWindowContext>();
    const std::string reason = context->create(settings, sharing);
    if (!reason.empty()) {
        error = "Windows gives no GL context (" + reason +
                "): install the driver of the graphics card.";
        return nullptr;
    }
    return context;
}

} // namespace offscreen
