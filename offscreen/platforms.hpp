#pragma once

#include <memory>
#include <string>

#include <offscreen/context.hpp>

/// The functions behind the rows of the table of platforms. Each makes a context and makes it
/// current; where it cannot, the result is null and \p error one sentence.
namespace offscreen {

std::unique_ptr<Context> openEgl(const Settings& settings, std::string& error);
std::unique_ptr<Context> openGlx(const Settings& settings, std::string& error);
std::unique_ptr<Context> openOsMesa(const Settings& settings, std::string& error);
std::unique_ptr<Context> openWgl(const Settings& settings, std::string& error);

/// What a context cannot be opened with: the objects of a context of another platform.
inline constexpr char sharesWithAnotherPlatform[] =
    "The context whose objects are to be shared is of another platform: open both on the same one.";

/// Reads the context to share with as one of a platform's own class.
/// \return false where it is of another platform; \p error says so, then.
template <class PlatformContext>
bool readSharing(const Settings& settings, const PlatformContext*& sharing, std::string& error) {
    sharing = dynamic_cast<const PlatformContext*>(settings.sharing);
    if (sharing != nullptr || settings.sharing == nullptr)
        return true;
    error = sharesWithAnotherPlatform;
    return false;
}

/// What to install where no driver can be used; the end of a sentence.
inline constexpr char installDriver[] =
    "install a GL driver, for instance with `apt-get install libegl1 libgl1 libgl1-mesa-dri`.";

} // namespace offscreen
