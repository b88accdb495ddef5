#include <offscreen/context.hpp>

#include <cstdlib>

#include "platforms.hpp"

namespace offscreen {
namespace {

struct PlatformRow {
    Platform platform;
    const char* name;
    std::unique_ptr<Context> (*open)(const Settings& settings, std::string& error);
};

constexpr PlatformRow platforms[] = {
#ifdef _WIN32
    {Platform::Wgl, "wgl", openWgl},
#else
    {Platform::Egl, "egl", openEgl},
    {Platform::EglSurfaceless, "egl-surfaceless", openEgl},
    {Platform::EglDevice, "egl-device", openEgl},
    {Platform::Glx, "glx", openGlx},
    {Platform::OsMesa, "osmesa", openOsMesa},
#endif
};

std::string platformNames() {
    std::string names;
    for (const PlatformRow& row : platforms)
        names += (names.empty() ? "" : ", ") + std::string(row.name);
    return names;
}

} // namespace

bool platformFromEnvironment(Platform& platform, std::string& error) {
    const char* variable = std::getenv("OFFSCREEN_PLATFORM");
    const std::string wanted = variable != nullptr ? variable : "";
    if (wanted.empty())
        return true;
    for (const PlatformRow& row : platforms) {
        if (wanted == row.name) {
            platform = row.platform;
            return true;
        }
    }
    error = "The environment variable OFFSCREEN_PLATFORM is \"" + wanted +
            "\": unset it or set it to one of " + platformNames() + ".";
    return false;
}

std::unique_ptr<Context> Context::open(const Settings& settings, std::string& error) {
    const bool isEgl = settings.platform == Platform::Egl ||
                       settings.platform == Platform::EglSurfaceless ||
                       settings.platform == Platform::EglDevice;
    if (settings.coreVersion > 0 && !isEgl) {
        error = "A core profile is made through EGL alone.";
        return nullptr;
    }
    for (const PlatformRow& row : platforms) {
        if (row.platform == settings.platform)
            return row.open(settings, error);
    }
    error = "The platform is none of " + platformNames() + ".";
    return nullptr;
}

} // namespace offscreen
