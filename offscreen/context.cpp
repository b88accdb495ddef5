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

/// The value of an environment variable; empty where it is unset.
std::string valueOf(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr ? value : "";
}

bool refuse(const char* variable, const std::string& wanted, const std::string& values,
            std::string& error) {
    error = "The environment variable " + std::string(variable) + " is \"" + wanted +
            "\": unset it or set it to one of " + values + ".";
    return false;
}

/// The versions of OpenGL that have a core profile, times 10.
constexpr int coreVersions[] = {32, 33, 40, 41, 42, 43, 44, 45, 46};

std::string profileName(int coreVersion) {
    return "core-" + std::to_string(coreVersion / 10) + "." + std::to_string(coreVersion % 10);
}

} // namespace

bool platformFromEnvironment(Platform& platform, std::string& error) {
    constexpr char variable[] = "OFFSCREEN_PLATFORM";
    const std::string wanted = valueOf(variable);
    if (wanted.empty())
        return true;
    for (const PlatformRow& row : platforms) {
        if (wanted == row.name) {
            platform = row.platform;
            return true;
        }
    }
    return refuse(variable, wanted, platformNames(), error);
}

bool profileFromEnvironment(Settings& settings, std::string& error) {
    constexpr char variable[] = "OFFSCREEN_PROFILE";
    const std::string wanted = valueOf(variable);
    if (wanted.empty())
        return true;
    if (wanted == "compatibility") {
        settings.coreVersion = 0;
        return true;
    }
    for (const int version : coreVersions) {
        const std::string name = profileName(version);
        if (wanted == name || wanted == name + "-forward") {
            settings.coreVersion = version;
            settings.isForwardCompatible = wanted != name;
            return true;
        }
    }
    return refuse(variable, wanted,
                  "compatibility, core-3.2 to core-4.6, and core-3.2-forward to core-4.6-forward",
                  error);
}

bool settingsFromEnvironment(Settings& settings, std::string& error) {
    return platformFromEnvironment(settings.platform, error) &&
           profileFromEnvironment(settings, error);
}

std::unique_ptr<Context> Context::open(const Settings& settings, std::string& error) {
    for (const PlatformRow& row : platforms) {
        if (row.platform == settings.platform)
            return row.open(settings, error);
    }
    error = "The platform is none of " + platformNames() + ".";
    return nullptr;
}

} // namespace offscreen
