#include "fuzz/machine/kept_objects.hpp"

#include <algorithm>

#include "fuzz/machine/meddlers.hpp"

namespace vellis::test {
namespace {

ProgramManager& makeAllPrograms() {
    for (unsigned int i = 0; i < 6; ++i)
        ProgramManager::instance().get(static_cast<ProgramManager::BuiltIn>(i));
    Program::current();
    Program::null();
    return ProgramManager::instance();
}

BufferObjectManager& makeAllBuffers() {
    Toolbox::getVertexBuffer();
    return BufferObjectManager::instance();
}

} // namespace

KeptObjects::KeptObjects() : programs_(makeAllPrograms()), buffers_(makeAllBuffers()) {}

void KeptObjects::restore() const {
    for (int i = 0; i < mostGenerations; ++i) {
        ProgramManager::instance() = programs_;
        BufferObjectManager::instance() = buffers_;
    }
}

std::string strayNames(const char* what, std::vector<std::string> found,
                       const std::vector<std::string>& allowed) {
    const auto isAllowed = [&](const std::string& name) {
        return std::find(allowed.begin(), allowed.end(), name) != allowed.end();
    };
    found.erase(std::remove_if(found.begin(), found.end(), isAllowed), found.end());
    return found.empty() ? "" : what + found.front();
}

} // namespace vellis::test
