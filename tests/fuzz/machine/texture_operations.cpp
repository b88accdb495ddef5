/// The operations of textures and renderbuffers.

#include <vellis/gl.hpp>

#include "fuzz/machine/operations.hpp"

namespace vellis::test {
namespace {

Sampler anySampler(Bytes& bytes) {
    switch (bytes.below(4)) {
    case 0:
        return Sampler::trilinear_repeat();
    case 1:
        return Sampler::linear_clamp();
    case 2:
        return {{static_cast<Sampler::Property>(bytes.below(7)), bytes.below(5)}};
    default:
        return {};
    }
}

/// The operations that textures have in common; \p places are where they are.
template <auto places>
struct Of {
    template <class Function>
    static void onOne(World& world, Bytes& bytes, Function function) {
        const auto& texture = pick(world.*places, bytes);
        if (texture != nullptr)
            function(*texture);
    }

    static void bind(World& world, Bytes& bytes) {
        onOne(world, bytes, [](auto& texture) { texture.bind(); });
    }
    static void unbind(World& world, Bytes& bytes) {
        onOne(world, bytes, [](auto& texture) { texture.unbind(); });
    }
    static void resize(World& world, Bytes& bytes) {
        const glm::uvec3 size(bytes.side(), bytes.side(), bytes.side());
        onOne(world, bytes, [&](auto& texture) {
            texture.resize(size);
            world.require(texture.id() == 0 || texture.width() == size.x,
                          "a texture does not tell the size that was asked for");
        });
    }
    static void download(World& world, Bytes& bytes) {
        const bool isToMemory = bytes.flag();
        onOne(world, bytes, [&](auto& texture) {
            if (isToMemory)
                texture.download(memoryFor(world, texture));
            else
                texture.download();
        });
    }
    static void generateMipmap(World& world, Bytes& bytes) {
        onOne(world, bytes, [](auto& texture) { texture.generateMipmap(); });
    }
    static void setSampler(World& world, Bytes& bytes) {
        const Sampler sampler = anySampler(bytes);
        onOne(world, bytes, [&](auto& texture) {
            texture.setSampler(sampler);
            world.require(texture.getSampler() == sampler || world.mayNotExist(texture),
                          "a texture has another sampler");
        });
    }
    static void dispose(World& world, Bytes& bytes) {
        onOne(world, bytes, [&](auto& texture) {
            texture.dispose();
            world.require(texture.id() == 0 && texture.extent() == glm::uvec3(0),
                          "a disposed texture has a name or a size");
        });
    }
    static void release(World& world, Bytes& bytes) { pick(world.*places, bytes) = nullptr; }

    /// The memory as texels of the texture.
    template <class AnyTexture>
    static auto memoryFor(World& world, const AnyTexture& texture) {
        using Stored = typename decltype(texture.download())::value_type;
        return world.memoryOf<Stored>();
    }
};

void makeLine(World& world, Bytes& bytes) {
    auto& place = pick(world.lines, bytes);
    place = Texture1D<Texel>::make(bytes.side(), world.memoryOf<Texel>(), anySampler(bytes));
}

void makePicture(World& world, Bytes& bytes) {
    auto& place = pick(world.pictures, bytes);
    const unsigned int width = bytes.side();
    place = Texture2D<Texel>::make(width, bytes.side(), world.memoryOf<Texel>());
}

void makeVolume(World& world, Bytes& bytes) {
    const glm::uvec3 size(bytes.side(), bytes.side(), bytes.side());
    pick(world.volumes, bytes) =
        Texture3D<Texel>::make(size.x, size.y, size.z, world.memoryOf<Texel>());
}

void makeDepth(World& world, Bytes& bytes) {
    const unsigned int width = bytes.side();
    pick(world.depthTextures, bytes) = Texture2D<depth24_stencil8>::make(width, bytes.side());
}

void uploadParts(World& world, Bytes& bytes) {
    const glm::uvec3 offset(bytes.anyNumber(), bytes.anyNumber(), bytes.anyNumber());
    const glm::uvec3 size(bytes.side(), bytes.side(), bytes.side());
    const Texel* const texels = bytes.below(4) != 3 ? world.memoryOf<Texel>() : nullptr;
    const auto& line = pick(world.lines, bytes);
    if (line != nullptr)
        line->upload(texels, offset.x, size.x);
    const auto& picture = pick(world.pictures, bytes);
    if (picture != nullptr)
        picture->upload(texels, offset.x, offset.y, size.x, size.y);
    const auto& volume = pick(world.volumes, bytes);
    if (volume != nullptr)
        volume->upload(texels, offset.x, offset.y, offset.z, size.x, size.y, size.z);
}

void unbindTargets(World&, Bytes&) {
    Texture::unbind1D();
    Texture::unbind2D();
    Texture::unbind3D();
}

template <auto places>
void addTexture(std::vector<Operation>& table, void (*make)(World&, Bytes&), GLenum binding) {
    using Textures = Of<places>;
    const std::vector<Operation> rows = {
        {"texture: make", make, {{binding}, {}}},
        {"texture: bind", Textures::bind, {{}, {binding}}},
        {"texture: unbind", Textures::unbind, {{binding}, {}}},
        {"texture: resize", Textures::resize, {{binding}, {}}},
        {"texture: download", Textures::download, {{binding}, {}}},
        {"texture: generateMipmap", Textures::generateMipmap, {{binding}, {}}},
        {"texture: setSampler", Textures::setSampler, {{binding}, {}}},
        {"texture: dispose", Textures::dispose, {{binding}, {}}},
        {"texture: release", Textures::release, {{binding}, {}}},
    };
    table.insert(table.end(), rows.begin(), rows.end());
}

void makeRenderbuffers(World& world, Bytes& bytes) {
    const unsigned int width = bytes.side();
    const unsigned int height = bytes.side();
    const unsigned int numSamples = bytes.anyNumber();
    switch (bytes.below(4)) {
    case 0:
        pick(world.renderbuffers, bytes) = Renderbuffer<Texel>::make(width, height);
        break;
    case 1:
        pick(world.depthbuffers, bytes) = Renderbuffer<depth24_stencil8>::make(width, height);
        break;
    case 2:
        pick(world.samples, bytes) =
            MultiSampleRenderbuffer<Texel>::make(width, height, numSamples);
        break;
    default:
        pick(world.depthSamples, bytes) =
            MultiSampleRenderbuffer<depth24_stencil8>::make(width, height, numSamples);
    }
}

void bindRenderbuffer(World& world, Bytes& bytes) {
    const auto& renderbuffer = pick(world.renderbuffers, bytes);
    if (renderbuffer == nullptr)
        return;
    renderbuffer->bind();
    if (bytes.flag())
        renderbuffer->unbind();
}

void releaseRenderbuffers(World& world, Bytes& bytes) {
    pick(world.renderbuffers, bytes) = nullptr;
    if (bytes.flag())
        pick(world.samples, bytes) = nullptr;
}

void copyRenderbuffer(World& world, Bytes& bytes) {
    const auto& renderbuffer = pick(world.renderbuffers, bytes);
    if (renderbuffer == nullptr || !world.canCopyOwners)
        return;
    world.copiedNames.insert("renderbuffer " + std::to_string(renderbuffer->id()));
    const Renderbuffer<Texel> copied(*renderbuffer);
    world.require(copied.width() == renderbuffer->width(), "a copy has another size");
}

} // namespace

std::vector<Operation> textureOperations() {
    std::vector<Operation> table;
    addTexture<&World::lines>(table, makeLine, GL_TEXTURE_BINDING_1D);
    addTexture<&World::pictures>(table, makePicture, GL_TEXTURE_BINDING_2D);
    addTexture<&World::volumes>(table, makeVolume, GL_TEXTURE_BINDING_3D);
    addTexture<&World::depthTextures>(table, makeDepth, GL_TEXTURE_BINDING_2D);
    const std::vector<GLenum> bindings = {GL_TEXTURE_BINDING_1D, GL_TEXTURE_BINDING_2D,
                                          GL_TEXTURE_BINDING_3D};
    const GLenum renderbuffer = GL_RENDERBUFFER_BINDING;
    const std::vector<Operation> others = {
        {"texture: upload a part", uploadParts, {bindings, {}}},
        {"Texture: unbind1D, unbind2D, unbind3D", unbindTargets, {bindings, {}}},
        {"renderbuffer: make", makeRenderbuffers, {{renderbuffer}, {}}},
        {"renderbuffer: bind", bindRenderbuffer, {{}, {renderbuffer}}},
        {"renderbuffer: release", releaseRenderbuffers, {{renderbuffer}, {}}},
        {"renderbuffer: copy", copyRenderbuffer, {{renderbuffer}, {}}},
    };
    table.insert(table.end(), others.begin(), others.end());
    return table;
}

} // namespace vellis::test
