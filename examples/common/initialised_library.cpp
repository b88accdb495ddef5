#include <common/initialised_library.hpp>

#include <stdexcept>
#include <string>

#include <offscreen/requirement.hpp>

namespace common {

InitialisedLibrary::InitialisedLibrary(bool isLoaded) {
    if (!isLoaded)
        throw std::runtime_error("The GL entry points cannot be loaded: install a GL driver, "
                                 "for instance with `apt-get install libgl1-mesa-dri`.");
    const std::string missing = offscreen::missingRequirement();
    if (!missing.empty())
        throw std::runtime_error(missing);
}

InitialisedLibrary::~InitialisedLibrary() {
    vellis::engine::dispose();
}

} // namespace common
