#pragma once

#include <array>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>

#include <vellis/vellis.hpp>

#include "fuzz/machine/bytes.hpp"
#include "fuzz/machine/meddlers.hpp"

namespace vellis::test {

using Texel = glm::vec<4, unsigned char>;
using Positions = VertexAttributeBuffer<glm::vec2>;
using Triangles = drawable::Triangles<VertexAttribute<glm::vec2>>;

/// An object that says of itself whether it is bound, and whether it should say so.
template <class T>
struct Bindable {
    std::shared_ptr<T> object;
    bool isBound = false;
};

struct World;

/// A framebuffer, whether it is the default one, and the binding that its isBound() asks for.
struct Target {
    std::shared_ptr<Framebuffer> object;
    bool isDefault = false;
    unsigned int context = 0;      // where it exists, or where the default one was bound last
    unsigned int binding = 0x8CA6; // GL_DRAW_FRAMEBUFFER_BINDING

    bool exists(const World& world) const;
};

/// A drawable and the buffer that it draws, which must outlive it.
struct Shape {
    std::shared_ptr<Positions> positions;
    std::shared_ptr<Triangles> drawable;
    unsigned int context = 0; // where it exists
};

/// What makes GL contexts and Contexts, where there are several.
class Host;

/// The objects that operations work on. An empty place is one that was never filled, or emptied.
struct World {
    std::array<Bindable<Positions>, 2> vertices;
    std::array<Bindable<IndexBuffer<unsigned short>>, 2> indices;
    std::array<Bindable<PixelBuffer>, 2> pixels;
    std::array<std::shared_ptr<VertexShader>, 2> vertexShaders;
    std::array<std::shared_ptr<FragmentShader>, 2> fragmentShaders;
    std::array<Bindable<Program>, 2> programs;
    std::array<std::shared_ptr<VertexAttributesBinding>, 1> bindings;
    std::array<Shape, 2> shapes;
    std::array<std::shared_ptr<Texture1D<Texel>>, 1> lines;
    std::array<std::shared_ptr<Texture2D<Texel>>, 2> pictures;
    std::array<std::shared_ptr<Texture3D<Texel>>, 1> volumes;
    std::array<std::shared_ptr<Texture2D<depth24_stencil8>>, 1> depthTextures;
    std::array<std::shared_ptr<Renderbuffer<Texel>>, 1> renderbuffers;
    std::array<std::shared_ptr<Renderbuffer<depth24_stencil8>>, 1> depthbuffers;
    std::array<std::shared_ptr<MultiSampleRenderbuffer<Texel>>, 1> samples;
    std::array<std::shared_ptr<MultiSampleRenderbuffer<depth24_stencil8>>, 1> depthSamples;
    std::array<Target, 2> framebuffers;
    std::array<std::shared_ptr<Picture>, 2> keptPictures;
    std::array<std::shared_ptr<Canvas>, 2> canvases;
    std::array<state::Snapshot, 2> snapshots;
    Meddlers<Buffers> meddlingBuffers;
    Meddlers<Programs> meddlingPrograms;

    Host* host = nullptr; ///< null where there is one context
    /// The number of the Context in use, 0 for the process's own: what GL never shares exists in
    /// the one where it was made.
    unsigned int context = 0;

    /// Whether the Context in use may have no such object.
    template <class Object>
    bool mayNotExist(const Object& object) const {
        return host != nullptr && object.id() == 0;
    }

    /// The names that copies have deleted before their owners do: `buffer 7`.
    std::set<std::string> copiedNames;

    /// Whether objects that own a name may be copied. On a driver the second deletion of a name
    /// would hit whoever has it by then.
    bool canCopyOwners = false;

    /// Whether GL is a driver.
    bool isOnDriver = false;

    /// What was found wrong first; empty where nothing was.
    std::string problem;

    /// Notes a problem unless \p isTrue.
    void require(bool isTrue, const char* what) {
        if (!isTrue && problem.empty())
            problem = what;
    }

    /// Memory that transfers read from and write to: more than any of them takes.
    std::vector<unsigned char> memory = std::vector<unsigned char>(1 << 16, 1);
    template <class T>
    T* memoryOf() {
        return reinterpret_cast<T*>(memory.data());
    }
};

inline bool Target::exists(const World& world) const {
    return isDefault || context == world.context;
}

/// One of the places for objects of a kind.
template <class Place, std::size_t N>
Place& pick(std::array<Place, N>& places, Bytes& bytes) {
    return places[bytes.below(N)];
}

} // namespace vellis::test
