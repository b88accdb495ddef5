#include <vellis/framebuffer.hpp>
#include <vellis/gl.hpp>
#include <vellis/texture.hpp>

#include <glm/gtc/type_precision.hpp>

#include "workloads/groups.hpp"

namespace vellis::bench {
namespace {

using Texel = glm::u8vec4;

constexpr unsigned int extent = 256;
const std::vector<Texel> texels(extent* extent, Texel(64, 128, 192, 255));

// What a part upload replaces: a square in the middle.
constexpr unsigned int partExtent = 64;
constexpr unsigned int partOffset = (extent - partExtent) / 2;

/// Sets the row alignment that fits the texels around an upload, and puts back what was.
template <class Upload>
void withAlignment(Upload upload) {
    int alignment = 0;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    upload();
    glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);
}

struct RawMake {
    void operator()() const {
        unsigned int name = 0;
        glGenTextures(1, &name);
        glBindTexture(GL_TEXTURE_2D, name);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        glBindTexture(GL_TEXTURE_2D, 0);
        glBindTexture(GL_TEXTURE_2D, name);
        withAlignment([] {
            glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, extent, extent, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                         texels.data());
        });
        glBindTexture(GL_TEXTURE_2D, 0);
        glDeleteTextures(1, &name);
    }
};

struct Make {
    void operator()() const { Texture2D<Texel>::make(extent, extent, texels.data()); }
};

/// A texture that is there before.
struct Target {
    std::shared_ptr<Texture2D<Texel>> texture =
        Texture2D<Texel>::make(extent, extent, texels.data());
};

struct RawUploadPart : Target {
    void operator()() const {
        glBindTexture(GL_TEXTURE_2D, name);
        withAlignment([] {
            glTexSubImage2D(GL_TEXTURE_2D, 0, partOffset, partOffset, partExtent, partExtent,
                            GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        });
        glBindTexture(GL_TEXTURE_2D, 0);
    }
    unsigned int name = texture->id();
};

struct UploadPart : Target {
    void operator()() const {
        texture->upload(texels.data(), partOffset, partOffset, partExtent, partExtent);
    }
};

/// A picture of several samples a pixel, and a texture for it.
struct Samples : Target {
    std::shared_ptr<MultiSampleRenderbuffer<Texel>> samples =
        MultiSampleRenderbuffer<Texel>::make(extent, extent, 4);
};

/// What is bound for drawing and reading, and two framebuffers for the time of a copy.
class RawFramebuffers {
public:
    RawFramebuffers() {
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawBinding_);
        glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &readBinding_);
        glGenFramebuffers(1, &source_);
        glGenFramebuffers(1, &destination_);
    }
    ~RawFramebuffers() {
        if (drawBinding_ == readBinding_) {
            glBindFramebuffer(GL_FRAMEBUFFER, static_cast<unsigned int>(drawBinding_));
        } else {
            glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<unsigned int>(drawBinding_));
            glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<unsigned int>(readBinding_));
        }
        glDeleteFramebuffers(1, &destination_);
        glDeleteFramebuffers(1, &source_);
    }
    RawFramebuffers(const RawFramebuffers&) = delete;
    RawFramebuffers& operator=(const RawFramebuffers&) = delete;

    unsigned int source() const { return source_; }
    unsigned int destination() const { return destination_; }

private:
    int drawBinding_ = 0;
    int readBinding_ = 0;
    unsigned int source_ = 0;
    unsigned int destination_ = 0;
};

void detachRaw(unsigned int target) {
    for (unsigned int i = 0; i < 8; ++i)
        glFramebufferRenderbuffer(target, GL_COLOR_ATTACHMENT0 + i, GL_RENDERBUFFER, 0);
    const unsigned int points[] = {GL_DEPTH_ATTACHMENT, GL_STENCIL_ATTACHMENT,
                                   GL_DEPTH_STENCIL_ATTACHMENT};
    for (const unsigned int point : points)
        glFramebufferRenderbuffer(target, point, GL_RENDERBUFFER, 0);
}

/// Detaches every attachment point before the framebuffers go, as the library does.
struct RawResolve : Samples {
    void operator()() const {
        const RawFramebuffers framebuffers;
        glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffers.source());
        glFramebufferRenderbuffer(GL_READ_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                  source);
        glReadBuffer(GL_COLOR_ATTACHMENT0);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffers.destination());
        glFramebufferTexture2D(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D,
                               destination, 0);
        glDrawBuffer(GL_COLOR_ATTACHMENT0);
        glBlitFramebuffer(0, 0, extent, extent, 0, 0, extent, extent, GL_COLOR_BUFFER_BIT,
                          GL_NEAREST);
        detachRaw(GL_DRAW_FRAMEBUFFER);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
        detachRaw(GL_READ_FRAMEBUFFER);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    }
    unsigned int source = samples->id();
    unsigned int destination = texture->id();
};

/// Makes the calls alone that the copy needs.
struct RawResolveSparing : Samples {
    void operator()() const {
        const RawFramebuffers framebuffers;
        glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffers.source());
        glFramebufferRenderbuffer(GL_READ_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                  source);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffers.destination());
        glFramebufferTexture2D(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D,
                               destination, 0);
        glBlitFramebuffer(0, 0, extent, extent, 0, 0, extent, extent, GL_COLOR_BUFFER_BIT,
                          GL_NEAREST);
    }
    unsigned int source = samples->id();
    unsigned int destination = texture->id();
};

struct Resolve : Samples {
    void operator()() const { Framebuffer::blit(*samples, *texture, extent, extent); }
};

} // namespace

std::vector<Workload> textureWorkloads() {
    return {
        {"texture/make",
         "make a texture, upload 256 x 256 RGBA texels, destroy it",
         {{"raw", makeSide<RawMake>}, {"vellis", makeSide<Make>}}},
        {"texture/upload_part",
         "replace 64 x 64 texels",
         {{"raw", makeSide<RawUploadPart>}, {"vellis", makeSide<UploadPart>}}},
        {"texture/resolve",
         "blit 256 x 256 pixels of four samples into a texture",
         {{"raw", makeSide<RawResolve>}, {"vellis", makeSide<Resolve>}}},
        {"texture/resolve_sparing",
         "the same; raw GL makes the calls alone that the copy needs",
         {{"raw", makeSide<RawResolveSparing>}, {"vellis", makeSide<Resolve>}},
         Where::Both,
         Calls::Different},
    };
}

} // namespace vellis::bench
