#pragma once

#include <memory>

#include <glm/vec2.hpp>
#include <glm/vec4.hpp>

#include <vellis/context.hpp>

namespace hosts {

/// What vellis draws in one window of whatever toolkit: a windmill in a texture, the texture on the
/// left, and a canvas over it. It is a guest there: each function finds the GL context of its
/// window current, made so by the toolkit, and leaves GL's state as it was.
class Scene {
public:
    /// Makes a Context, and with it all that is drawn. Says on standard error why it cannot; see
    /// isReady().
    /// \param ground  The colour behind all.
    explicit Scene(const glm::vec4& ground);

    /// Lets go of all, for the last time that the GL context is current. Where it is gone already,
    /// makes no GL call.
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// Whether there is something to draw.
    bool isReady() const { return parts_ != nullptr; }

    /// Draws into the framebuffer that the toolkit has bound; nothing where the Scene is not ready.
    /// \param size  Of the framebuffer, in pixels.
    /// \param turn  How far the mill has turned, in radians.
    void draw(const glm::uvec2& size, float turn) const;

    /// What the library keeps for the GL context; null where that is not good enough.
    vellis::Context* context() const { return context_.get(); }

private:
    struct Parts;

    std::shared_ptr<vellis::Context> context_;
    std::unique_ptr<Parts> parts_;
    glm::vec4 ground_;
};

} // namespace hosts
