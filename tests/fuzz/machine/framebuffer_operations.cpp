/// The operations of framebuffers: attachments, copies, and the state of the fragment pipeline.

#include <vellis/gl.hpp>

#include "fuzz/machine/operations.hpp"

namespace vellis::test {
namespace {

template <class Function>
void onOne(World& world, Bytes& bytes, Function function) {
    Target& target = pick(world.framebuffers, bytes);
    if (target.object != nullptr)
        function(target);
}

void make(World& world, Bytes& bytes) {
    Target& target = pick(world.framebuffers, bytes);
    const bool isDefault = bytes.below(4) == 3;
    target = {isDefault ? Framebuffer::makeNull() : Framebuffer::make(), isDefault, world.context};
}

void release(World& world, Bytes& bytes) {
    pick(world.framebuffers, bytes) = {};
}

void copy(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Target& target) {
        if (!world.canCopyOwners)
            return;
        world.copiedNames.insert("framebuffer " + std::to_string(target.object->id()));
        const Framebuffer copied(*target.object);
        world.require(copied.id() == target.object->id(), "a copy has another name");
        world.require(copied.isBound() == target.object->isBound(),
                      "a copy is bound elsewhere than its original");
    });
}

/// A framebuffer that exists was bound: its isBound() asks for that binding from then on.
void noteBinding(const World& world, Target& target, unsigned int binding) {
    if (target.exists(world))
        target.binding = binding;
}

/// The same of bind(), which keeps the bindings of before.
void noteBindingOfBoth(const World& world, Target& target) {
    if (glBindFramebuffer == nullptr || !target.exists(world))
        return;
    target.binding = GL_DRAW_FRAMEBUFFER_BINDING;
    target.context = world.context;
}

void bind(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Target& target) {
        target.object->bind();
        noteBindingOfBoth(world, target);
    });
}

void bindToDraw(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Target& target) {
        target.object->bindToDraw();
        noteBinding(world, target, GL_DRAW_FRAMEBUFFER_BINDING);
    });
}

void bindToRead(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Target& target) {
        target.object->bindToRead();
        noteBinding(world, target, GL_READ_FRAMEBUFFER_BINDING);
    });
}

void unbind(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Target& target) {
        if (!bytes.flag()) {
            target.object->unbindToDraw();
            noteBinding(world, target, GL_DRAW_FRAMEBUFFER_BINDING);
            return;
        }
        target.object->unbind();
        if (target.context == world.context) // where it has bindings to restore
            target.binding = GL_DRAW_FRAMEBUFFER_BINDING;
    });
}

/// Binds and unbinds: the bindings of before must be there again.
void bindForAWhile(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Target& target) {
        target.object->bind();
        noteBindingOfBoth(world, target);
        target.object->unbind();
        if (target.context == world.context)
            target.binding = GL_DRAW_FRAMEBUFFER_BINDING;
    });
}

void bindByName(World& world, Bytes& bytes) {
    const Target& target = pick(world.framebuffers, bytes);
    const unsigned int id = target.object != nullptr ? target.object->id() : 0;
    switch (bytes.below(3)) {
    case 0:
        return Framebuffer::bind(id);
    case 1:
        return Framebuffer::bindToDraw(id);
    default:
        return Framebuffer::bindToRead(id);
    }
}

template <class Image>
void attachColor(Framebuffer& framebuffer, const Image& image, Bytes& bytes) {
    switch (bytes.below(4)) {
    case 0:
        return framebuffer.attachFragmentOut(image, bytes.below(3));
    case 1:
        return framebuffer.attachFragmentOut(bytes.below(70), image);
    case 2:
        return framebuffer.attachFragmentOuts(image, image);
    default:
        return framebuffer.attachFragmentOuts(std::vector<unsigned int>{2, 9, 0}, image, image);
    }
}

void attach(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Target& target) {
        const auto& picture = pick(world.pictures, bytes);
        if (picture != nullptr)
            attachColor(*target.object, *picture, bytes);
        const auto& samples = pick(world.samples, bytes);
        if (samples != nullptr && bytes.flag())
            attachColor(*target.object, *samples, bytes);
        const auto& renderbuffer = pick(world.renderbuffers, bytes);
        if (renderbuffer != nullptr && bytes.flag())
            attachColor(*target.object, *renderbuffer, bytes);
    });
}

void attachDepthStencil(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Target& target) {
        const auto& texture = pick(world.depthTextures, bytes);
        const auto& renderbuffer = pick(world.depthbuffers, bytes);
        const auto& samples = pick(world.depthSamples, bytes);
        if (texture != nullptr && bytes.flag())
            target.object->attachDepthStencilbuffer(*texture, bytes.below(3));
        if (renderbuffer != nullptr && bytes.flag())
            target.object->attachDepthStencilbuffer(*renderbuffer);
        if (samples != nullptr && bytes.flag())
            target.object->attachDepthStencilbuffer(*samples);
    });
}

void detach(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Target& target) {
        switch (bytes.below(5)) {
        case 0:
            return target.object->detachAll();
        case 1:
            return target.object->detachDepthbuffer();
        case 2:
            return target.object->detachStencilbuffer();
        case 3:
            return target.object->detachDepthStencilbuffer();
        default:
            return target.object->detachFragmentOut(bytes.anyNumber());
        }
    });
}

void blit(World& world, Bytes& bytes) {
    const auto& destination = pick(world.pictures, bytes);
    const unsigned int width = bytes.side();
    const unsigned int height = bytes.side();
    if (destination == nullptr)
        return;
    const auto& source = pick(world.pictures, bytes);
    if (source != nullptr)
        Framebuffer::blit(*source, *destination, width, height);
    const auto& renderbuffer = pick(world.renderbuffers, bytes);
    if (renderbuffer != nullptr)
        Framebuffer::blit(*renderbuffer, *destination, width, height);
    const auto& samples = pick(world.samples, bytes);
    if (samples != nullptr)
        Framebuffer::blit(*samples, *destination, width, height);
    const auto& depthSamples = pick(world.depthSamples, bytes);
    const auto& depth = pick(world.depthTextures, bytes);
    if (samples != nullptr && depthSamples != nullptr && depth != nullptr)
        Framebuffer::blit(*samples, *depthSamples, *destination, *depth, width, height);
}

void download(World& world, Bytes& bytes) {
    const unsigned int x = bytes.anyNumber();
    const unsigned int y = bytes.anyNumber();
    // What GL refuses, and what no vector holds.
    const bool isTooLarge = bytes.below(8) == 7;
    const unsigned int width = isTooLarge ? 0x80000000 : bytes.number();
    const unsigned int height = isTooLarge ? 0xFFFFFFFF : bytes.number();
    if (bytes.flag())
        return Framebuffer::download(world.memoryOf<Texel>(), x, y, width, height);
    const auto pixels = Framebuffer::download<depth24_stencil8>(x, y, width, height);
    world.require(pixels.size() == (isTooLarge ? 0 : width * height),
                  "a download has another size than was asked for");
}

void clear(World&, Bytes& bytes) {
    const glm::vec4 color(bytes.fraction());
    const float depth = bytes.fraction();
    const unsigned int stencil = bytes.next();
    switch (bytes.below(3)) {
    case 0:
        return Framebuffer::clear(color, depth, stencil);
    case 1:
        return Framebuffer::clearColor(color);
    default:
        return Framebuffer::clearDepthStencil(depth, stencil);
    }
}

void blend(World&, Bytes& bytes) {
    using Factor = Framebuffer::BlendingFactor;
    using Equation = Framebuffer::BlendEquation;
    static constexpr Factor factors[] = {Factor::ONE, Factor::SRC_ALPHA, Factor::DST_COLOR,
                                         Factor(0x7FFF)};
    static constexpr Equation equations[] = {Equation::FUNC_ADD, Equation::MIN, Equation(7)};
    switch (bytes.below(4)) {
    case 0:
        return Framebuffer::enableBlending(bytes.flag());
    case 1:
        return Framebuffer::enableBlending(bytes.oneOf(factors), 0.5f * bytes.fraction());
    case 2:
        return Framebuffer::enableBlending(glm::vec3(0.5f), bytes.oneOf(factors),
                                           bytes.oneOf(factors), 0.5f);
    default:
        return Framebuffer::setBlendEquation(bytes.oneOf(equations), bytes.oneOf(equations));
    }
}

void test(World&, Bytes& bytes) {
    using Comparator = Framebuffer::FragmentComparator;
    using Action = Framebuffer::StencilAction;
    static constexpr Comparator comparators[] = {Comparator::LESS, Comparator::ALWAYS,
                                                 Comparator(7)};
    static constexpr Action actions[] = {Action::KEEP, Action::INCR_WRAP, Action(7)};
    switch (bytes.below(5)) {
    case 0:
        return Framebuffer::enableDepthTest(bytes.oneOf(comparators));
    case 1:
        // GL tells a reference within the bits that the framebuffer has: 0 is the same in all.
        return Framebuffer::enableStencilTest(bytes.oneOf(comparators), 0, bytes.next(),
                                              bytes.oneOf(actions), bytes.oneOf(actions));
    case 2:
        return Framebuffer::disableStencilTest();
    case 3:
        return Framebuffer::enableScissorTest(bytes.flag());
    default:
        return Framebuffer::enableScissorTest(0, 0, bytes.anyNumber(), bytes.anyNumber());
    }
}

void mask(World&, Bytes& bytes) {
    using Buffer = Framebuffer::BufferID;
    static constexpr Buffer buffers[] = {Buffer::BACK, Buffer::COLOR_ATTACHMENT0, Buffer::NONE,
                                         Buffer::COLOR_ATTACHMENT7};
    switch (bytes.below(7)) {
    case 0:
        return Framebuffer::setColorMask(bytes.flag(), true, bytes.flag(), true);
    case 1:
        return Framebuffer::setDepthMask(bytes.flag());
    case 2:
        return Framebuffer::setStencilMask(bytes.next());
    case 3:
        return Framebuffer::setDrawBuffer(bytes.oneOf(buffers));
    case 4:
        return Framebuffer::setReadBuffer(bytes.oneOf(buffers));
    case 5:
        return Framebuffer::enableMultiSampling(bytes.flag());
    default:
        return Framebuffer::setViewport(0, 0, bytes.anyNumber(), bytes.anyNumber());
    }
}

void logicOp(World&, Bytes& bytes) {
    if (bytes.flag())
        Framebuffer::enableLogicOp(Framebuffer::LogicOperator(0x1500 + bytes.below(17)));
    else
        Framebuffer::disableLogicOp();
}

} // namespace

std::vector<Operation> framebufferOperations() {
    const std::vector<GLenum> both = {GL_DRAW_FRAMEBUFFER_BINDING, GL_READ_FRAMEBUFFER_BINDING};
    const GLenum drawing = GL_DRAW_FRAMEBUFFER_BINDING;
    const GLenum reading = GL_READ_FRAMEBUFFER_BINDING;
    return {
        {"Framebuffer: make", make, {both, {}}},
        {"Framebuffer: release", release, {both, {}}},
        {"Framebuffer: copy", copy, {both, {}}},
        {"Framebuffer: bind", bind, {{}, both}},
        {"Framebuffer: bindToDraw", bindToDraw, {{}, {drawing}}},
        {"Framebuffer: bindToRead", bindToRead, {{}, {reading}}},
        {"Framebuffer: unbind", unbind, {{}, both}},
        {"Framebuffer: bind and unbind", bindForAWhile, {}},
        {"Framebuffer: bind a name", bindByName, {{}, both}},
        {"Framebuffer: attach colours", attach, {{}, {GL_DRAW_BUFFER, GL_READ_BUFFER}}},
        {"Framebuffer: attach depth and stencil", attachDepthStencil, {}},
        {"Framebuffer: detach", detach, {}},
        {"Framebuffer: blit", blit, {}},
        {"Framebuffer: download", download, {}},
        {"Framebuffer: clear",
         clear,
         {{}, {GL_COLOR_CLEAR_VALUE, GL_DEPTH_CLEAR_VALUE, GL_STENCIL_CLEAR_VALUE}}},
        {"Framebuffer: blending",
         blend,
         {{},
          {GL_BLEND, GL_BLEND_COLOR, GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA,
           GL_BLEND_DST_ALPHA, GL_BLEND_EQUATION_RGB, GL_BLEND_EQUATION_ALPHA}}},
        {"Framebuffer: tests",
         test,
         {{},
          {GL_DEPTH_TEST, GL_DEPTH_FUNC, GL_STENCIL_TEST, GL_STENCIL_FUNC, GL_STENCIL_REF,
           GL_STENCIL_VALUE_MASK, GL_STENCIL_FAIL, GL_STENCIL_PASS_DEPTH_FAIL,
           GL_STENCIL_PASS_DEPTH_PASS, GL_STENCIL_BACK_FUNC, GL_STENCIL_BACK_REF,
           GL_STENCIL_BACK_VALUE_MASK, GL_STENCIL_BACK_FAIL, GL_STENCIL_BACK_PASS_DEPTH_FAIL,
           GL_STENCIL_BACK_PASS_DEPTH_PASS, GL_SCISSOR_TEST, GL_SCISSOR_BOX}}},
        {"Framebuffer: masks and buffers",
         mask,
         {{},
          {GL_COLOR_WRITEMASK, GL_DEPTH_WRITEMASK, GL_STENCIL_WRITEMASK, GL_STENCIL_BACK_WRITEMASK,
           GL_DRAW_BUFFER, GL_READ_BUFFER, GL_MULTISAMPLE, GL_VIEWPORT}}},
        {"Framebuffer: logical operation", logicOp, {{}, {GL_COLOR_LOGIC_OP, GL_LOGIC_OP_MODE}}},
    };
}

} // namespace vellis::test
