#include "peers/peers.hpp"

#include <string>
#include <utility>

#include <EGL/egl.h>

#include "null_driver/null_driver.hpp"

namespace vellis::bench {

// VELLIS_PEER(library): one for each library that was found.
#define VELLIS_PEER(library) std::vector<PeerRow> library##Rows();
#include "peers.inc"
#undef VELLIS_PEER

namespace {

void addSides(std::vector<Workload>& workloads, const char* library,
              const std::vector<PeerRow>& rows) {
    for (const PeerRow& row : rows) {
        for (Workload& workload : workloads) {
            if (std::string(row.workload) == workload.name)
                workload.implementations.push_back({library, row.make});
        }
    }
}

} // namespace

std::vector<Workload> peerWorkloads() {
    constexpr std::size_t numOwnSides = 2;
    std::vector<Workload> all = workloads();
#define VELLIS_PEER(library) addSides(all, #library, library##Rows());
#include "peers.inc"
#undef VELLIS_PEER
    std::vector<Workload> compared;
    for (Workload& workload : all) {
        if (workload.implementations.size() > numOwnSides)
            compared.push_back(std::move(workload));
    }
    return compared;
}

void* peerLookUp(const char* name) {
    if (void* const entryPoint = NullDriver::lookUp(name))
        return entryPoint;
    if (eglGetCurrentContext() == EGL_NO_CONTEXT)
        return nullptr;
    return reinterpret_cast<void*>(eglGetProcAddress(name));
}

} // namespace vellis::bench
