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

/// What to install where no driver can be used; the end of a sentence.
inline constexpr char installDriver[] =
    "install a GL driver, for instance with `apt-get install libegl1 libgl1 libgl1-mesa-dri`.";

} // namespace offscreen
