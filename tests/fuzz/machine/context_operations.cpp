/// What a host does with its GL contexts and with Contexts.

#include "fuzz/machine/context_operations.hpp"

#include <vellis/gl.hpp>

#include "fuzz/machine/host.hpp"

namespace vellis::test {
namespace {

/// How often each of them is in the table.
constexpr int share = 4;

template <void (Host::*operation)(World&, Bytes&)>
void onHost(World& world, Bytes& bytes) {
    (world.host->*operation)(world, bytes);
}

std::vector<Operation> contextOperations() {
    // Names are deleted that had to wait, of what may be bound.
    const std::vector<GLenum> bindings = {
        GL_ARRAY_BUFFER_BINDING,      GL_ELEMENT_ARRAY_BUFFER_BINDING,
        GL_PIXEL_PACK_BUFFER_BINDING, GL_PIXEL_UNPACK_BUFFER_BINDING,
        GL_TEXTURE_BINDING_1D,        GL_TEXTURE_BINDING_2D,
        GL_TEXTURE_BINDING_3D,        GL_CURRENT_PROGRAM,
        GL_VERTEX_ARRAY_BINDING,      GL_RENDERBUFFER_BINDING,
        GL_DRAW_FRAMEBUFFER_BINDING,  GL_READ_FRAMEBUFFER_BINDING,
    };
    const Promise promise = {bindings, {}};
    return {
        {"GL context: open", onHost<&Host::open>, promise},
        {"GL context: close", onHost<&Host::close>, promise},
        {"Context: make", onHost<&Host::make>, promise},
        {"Context: make one in vain", onHost<&Host::makeInVain>, promise},
        {"Context: use", onHost<&Host::use>, promise},
        {"Context: use the process's own", onHost<&Host::useProcess>, promise},
        {"Context::Scope: begin", onHost<&Host::beginScope>, promise},
        {"Context::Scope: end", onHost<&Host::endScope>, promise},
        {"Context: dispose", onHost<&Host::dispose>, promise},
        {"Context: abandon", onHost<&Host::abandon>, promise},
        {"Context: let go", onHost<&Host::letGo>, promise},
        {"objects of all kinds: make", onHost<&Host::makeKeepsakes>, promise},
        {"objects of all kinds: end", onHost<&Host::endKeepsakes>, promise},
        {"Context: use on another thread", onHost<&Host::handToThread>, promise},
    };
}

} // namespace

const std::vector<Operation>& operationsOfSeveralContexts() {
    static const std::vector<Operation> all = [] {
        std::vector<Operation> table = operations();
        for (int i = 0; i < share; ++i) {
            const std::vector<Operation> rows = contextOperations();
            table.insert(table.end(), rows.begin(), rows.end());
        }
        return table;
    }();
    return all;
}

} // namespace vellis::test
