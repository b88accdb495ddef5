/// What a host does with its GL contexts and with Contexts.

#include "fuzz/machine/context_operations.hpp"

#include <vellis/gl.hpp>

#include "fuzz/machine/host.hpp"

namespace vellis::test {
namespace {

/// An operation of the host's, and how often it is in the table: so often that most runs have
/// several Contexts for a while.
struct Row {
    int share;
    Operation operation;
};

template <void (Host::*operation)(World&, Bytes&)>
void onHost(World& world, Bytes& bytes) {
    (world.host->*operation)(world, bytes);
}

std::vector<Row> contextOperations() {
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
        {6, {"GL context: open", onHost<&Host::open>, promise}},
        {2, {"GL context: close", onHost<&Host::close>, promise}},
        {6, {"Context: make", onHost<&Host::make>, promise}},
        {1, {"Context: make one in vain", onHost<&Host::makeInVain>, promise}},
        {8, {"Context: use", onHost<&Host::use>, promise}},
        {3, {"Context: use the process's own", onHost<&Host::useProcess>, promise}},
        {8, {"Context::Scope: begin", onHost<&Host::beginScope>, promise}},
        {6, {"Context::Scope: end", onHost<&Host::endScope>, promise}},
        {2, {"Context: dispose", onHost<&Host::dispose>, promise}},
        {1, {"Context: abandon", onHost<&Host::abandon>, promise}},
        {1, {"Context: let go", onHost<&Host::letGo>, promise}},
        {5, {"objects of all kinds: make", onHost<&Host::makeKeepsakes>, promise}},
        {6, {"objects of all kinds: end", onHost<&Host::endKeepsakes>, promise}},
        {3, {"Context: use on another thread", onHost<&Host::handToThread>, promise}},
    };
}

} // namespace

const std::vector<Operation>& operationsOfSeveralContexts() {
    static const std::vector<Operation> all = [] {
        std::vector<Operation> table = operations();
        for (const auto& [share, operation] : contextOperations()) {
            for (int i = 0; i < share; ++i)
                table.push_back(operation);
        }
        return table;
    }();
    return all;
}

} // namespace vellis::test
