#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <vellis/detail/mistaken_for_bool.hpp>
#include <vellis/detail/vector_of.hpp>
#include <vellis/export.hpp>
#include <vellis/framebuffer/fragment_state.hpp>
#include <vellis/state/state.hpp>
#include <vellis/texture/multi_sample_renderbuffer.hpp>
#include <vellis/texture/renderbuffer.hpp>
#include <vellis/texture/texture_2d.hpp>

namespace vellis {

/// True for what can take the colours of a Framebuffer: Texture2D, Renderbuffer and
/// MultiSampleRenderbuffer of a colour format.
template <class Image>
struct IsColorImage : std::false_type {};
template <class F>
struct IsColorImage<Texture2D<F>> : IsColorFormat<F> {};
template <class F>
struct IsColorImage<Renderbuffer<F>> : IsColorFormat<F> {};
template <class F>
struct IsColorImage<MultiSampleRenderbuffer<F>> : IsColorFormat<F> {};

/// A GL framebuffer object, or the default framebuffer: where drawing goes to and pixels are read
/// from. Its static functions set the state of the fragment pipeline, copy pictures and read pixels
/// back.
///
/// \code
/// auto color = vellis::Texture2D<glm::u8vec4>::make(640, 480);
/// auto depth = vellis::Renderbuffer<vellis::depth24_stencil8>::make(640, 480);
/// auto framebuffer = vellis::Framebuffer::make();
/// framebuffer->bind();
/// framebuffer->attachFragmentOut(*color);
/// framebuffer->attachDepthStencilbuffer(*depth);
/// if (const char* problem = vellis::internal::check_framebuffer_complete())
///     vellis::internal::log("scene", "%s", problem);
/// vellis::Framebuffer::setViewport(0, 0, 640, 480);
/// vellis::Framebuffer::clear(glm::vec4(0.f), 1.f, 0);
/// // ... draw ...
/// framebuffer->unbind(); // the bindings of before
/// \endcode
///
/// **Bind, then edit.** A framebuffer remembers the binding point that it was last bound to, and
/// each attach and detach works on the framebuffer that is bound there. Attaching to one that is
/// not bound edits another.
///
/// **Bindings.** unbind() restores what bind() found. unbindToDraw() and unbindToRead() bind 0.
///
/// Nothing is checked: ask internal::check_framebuffer_complete and internal::check_glerror. Where
/// the context has no framebuffer objects, the name is 0, and what needs them does nothing.
///
/// With another Context in use than it was made with, a framebuffer does not exist: what needs it
/// does nothing. The default framebuffer exists in all; unbind() does nothing in another than
/// bind() was called in.
///
/// Images are a Texture2D, Renderbuffer or MultiSampleRenderbuffer of a colour format; the
/// framebuffer does not own them. GL detaches one that is destroyed from the framebuffer that is
/// bound then, not from any other.
///
/// Copies copy the GL name, what bind() saved and the mappings of fragment outputs, and each
/// destructor deletes that name. Hold a framebuffer through the shared pointer that made it, and
/// copy the pointer.
class VELLIS_EXPORT Framebuffer {
public:
    /// \name Enumerations
    /// See <vellis/framebuffer/fragment_state.hpp>.
    /// @{
    using FragmentComparator = vellis::FragmentComparator; ///< when a fragment passes a test
    using StencilAction = vellis::StencilAction;           ///< what happens to the stencil value
    using LogicOperator = vellis::LogicOperator;           ///< how colours are combined bit by bit
    using BufferID = vellis::BufferID;                     ///< a colour buffer
    using BlendingFactor = vellis::BlendingFactor;         ///< what a colour is multiplied by
    using BlendEquation = vellis::BlendEquation;           ///< how the products are combined
    /// @}

    // --- The object ---

    /// \name Making
    /// @{

    /// A new framebuffer object without attachments.
    static std::shared_ptr<Framebuffer> make();

    /// The default framebuffer. Makes no GL call.
    static std::shared_ptr<Framebuffer> makeNull();

    /// What make() makes, as a plain object.
    Framebuffer();

    /// Copies the GL name, not the attachments: no GL call is made.
    /// @{
    Framebuffer(const Framebuffer&) = default;
    Framebuffer& operator=(const Framebuffer&) = default;
    /// @}

    /// Deletes the framebuffer object with `glDeleteFramebuffers`, but for the default one.
    /// Bindings are not restored: GL binds 0 where it was bound.
    ~Framebuffer();
    /// @}

    /// The GL name; 0 for the default framebuffer, and where it does not exist: see Context.
    unsigned int id() const;

    /// \name Binding
    /// @{

    /// Saves what is bound for drawing and for reading, and binds this to both.
    void bind() const;

    /// Binds for drawing; saves nothing.
    void bindToDraw() const;

    /// Binds for reading; saves nothing.
    void bindToRead() const;

    /// Binds what the last bind() of this object saved: the default framebuffer where there was
    /// none.
    void unbind() const;

    /// Binds 0 to the point that this was last bound to.
    void unbindToDraw() const;

    /// The same as unbindToDraw().
    void unbindToRead() const { unbindToDraw(); }

    /// Asks GL whether this is bound to the point that it was last bound to; after bind(), whether
    /// it is bound for drawing. Where the context has no framebuffer objects, only the default
    /// framebuffer is bound, and always.
    bool isBound() const;

    /// Binds a framebuffer by its name for drawing and reading.
    static void bind(unsigned int id);

    /// Binds a framebuffer by its name for drawing.
    static void bindToDraw(unsigned int id);

    /// Binds a framebuffer by its name for reading.
    static void bindToRead(unsigned int id);
    /// @}

    // --- Attachments ---

    /// \name Fragment outputs
    /// @{

    /// How many fragment outputs can be mapped to colour attachments.
    static constexpr unsigned int MAX_NUM_DRAW_MAPPINGS = 4;

    /// Attaches \p image as colour attachment 0 and makes it the draw buffer, the read buffer, or
    /// both, according to the binding point. \p level is the mipmap level of a texture; a
    /// renderbuffer has but one.
    template <class Image, class = std::enable_if_t<IsColorImage<Image>::value>>
    void attachFragmentOut(const Image& image, unsigned int level = 0) {
        attachColor(image, level);
    }

    /// Attaches \p image as colour attachment \p index. Draw and read buffers stay as they are. GL
    /// refuses an index of `GL_MAX_COLOR_ATTACHMENTS` and more; of 32 and more, for which it has no
    /// attachment points, nothing happens.
    template <class Image, class = std::enable_if_t<IsColorImage<Image>::value>>
    void attachFragmentOut(unsigned int index, const Image& image, unsigned int level = 0) {
        if (index < numColorPoints)
            attachColor(index, image, level);
    }

    /// Attaches the images in their order as colour attachments 0, 1 …, and makes fragment output i
    /// write to the i-th: `glDrawBuffers` with one entry for each of MAX_NUM_DRAW_MAPPINGS outputs.
    /// Images beyond that number are left out; outputs without an image are written nowhere. What
    /// else was attached stays so. The framebuffer must be bound for drawing, by bind() or
    /// bindToDraw(): `glDrawBuffers` works on the one that is.
    template <class... Images, class = std::enable_if_t<(IsColorImage<Images>::value && ...)>>
    void attachFragmentOuts(const Images&... images) {
        resetDrawMappings();
        unsigned int output = 0;
        (attachMapped(output++, images), ...);
        applyDrawMappings();
    }

    /// The same with the outputs of a program (Program::getOutputs): the i-th image is attached for
    /// the output with the i-th index, as far as both lists reach. Indices of MAX_NUM_DRAW_MAPPINGS
    /// and more are left out.
    template <class... Images, class = std::enable_if_t<(IsColorImage<Images>::value && ...)>>
    void attachFragmentOuts(const std::vector<unsigned int>& outputs, const Images&... images) {
        resetDrawMappings();
        std::size_t i = 0;
        ((i < outputs.size() ? attachMapped(outputs[i], images) : void(), ++i), ...);
        applyDrawMappings();
    }

    /// Removes colour attachment \p i.
    void detachFragmentOut(unsigned int i);

    /// Removes colour attachment \p i: one, in spite of the name.
    void detachFragmentOuts(unsigned int i) { detachFragmentOut(i); }
    /// @}

    /// \name Depth and stencil
    /// Without a colour attachment a framebuffer may be complete only after
    /// `setDrawBuffer(BufferID::NONE)` and `setReadBuffer(BufferID::NONE)`. Whether depth and
    /// stencil can be separate images, or stencil be there alone, is the driver's to say.
    /// @{

    /// Attaches a depth image.
    /// @{
    void attachDepthbuffer(const Renderbuffer<depth16>& renderbuffer) {
        attachDepthbuffer(renderbuffer.idToUse());
    }
    void attachDepthbuffer(const Renderbuffer<depth32>& renderbuffer) {
        attachDepthbuffer(renderbuffer.idToUse());
    }
    void attachDepthbuffer(const MultiSampleRenderbuffer<depth16>& renderbuffer) {
        attachDepthbuffer(renderbuffer.idToUse());
    }
    void attachDepthbuffer(const MultiSampleRenderbuffer<depth32>& renderbuffer) {
        attachDepthbuffer(renderbuffer.idToUse());
    }
    void attachDepthbuffer(const Texture2D<depth16>& texture, unsigned int level = 0) {
        attachDepthTexture(texture.idToUse(), level);
    }
    void attachDepthbuffer(const Texture2D<depth32>& texture, unsigned int level = 0) {
        attachDepthTexture(texture.idToUse(), level);
    }
    /// @}

    /// Attaches a stencil image.
    /// @{
    void attachStencilbuffer(const Renderbuffer<stencil8>& renderbuffer) {
        attachStencilbuffer(renderbuffer.idToUse());
    }
    void attachStencilbuffer(const Renderbuffer<stencil16>& renderbuffer) {
        attachStencilbuffer(renderbuffer.idToUse());
    }
    void attachStencilbuffer(const MultiSampleRenderbuffer<stencil8>& renderbuffer) {
        attachStencilbuffer(renderbuffer.idToUse());
    }
    void attachStencilbuffer(const MultiSampleRenderbuffer<stencil16>& renderbuffer) {
        attachStencilbuffer(renderbuffer.idToUse());
    }
    /// @}

    /// Attaches one image for both.
    /// @{
    void attachDepthStencilbuffer(const Renderbuffer<depth24_stencil8>& renderbuffer) {
        attachDepthStencilbuffer(renderbuffer.idToUse());
    }
    void attachDepthStencilbuffer(const MultiSampleRenderbuffer<depth24_stencil8>& renderbuffer) {
        attachDepthStencilbuffer(renderbuffer.idToUse());
    }
    void attachDepthStencilbuffer(const Texture2D<depth24_stencil8>& texture,
                                  unsigned int level = 0) {
        attachDepthStencilTexture(texture.idToUse(), level);
    }
    /// @}

    /// Removes the depth image.
    void detachDepthbuffer();

    /// Removes the stencil image.
    void detachStencilbuffer();

    /// Removes the image that serves both.
    void detachDepthStencilbuffer();
    /// @}

    /// Removes colour attachments 0 to 7, depth, stencil, and both together.
    void detachAll();

    /// detachAll().
    void reset() { detachAll(); }

    // --- Copies and read-back ---

    /// \name Copies
    /// Copies the lower left \p width by \p height pixels of one image into the same place of a
    /// texture of the same format, level 0. From several samples a pixel to one they are averaged.
    /// All bindings, draw and read buffers end as they were. The scissor test confines the copy.
    /// Nothing is written outside the destination, and what lies outside the source is undefined.
    /// GL refuses images without storage, of formats that it cannot draw to, and of sample counts
    /// that differ, with `GL_INVALID_FRAMEBUFFER_OPERATION`. Each call makes and deletes two
    /// framebuffer objects.
    /// @{
    template <class F, class = std::enable_if_t<IsColorFormat<F>::value>>
    static void blit(const MultiSampleRenderbuffer<F>& source, const Texture2D<F>& destination,
                     unsigned int width, unsigned int height) {
        blitMultiSampleRenderbufferToTexture2D(source.idToUse(), destination.idToUse(), width,
                                               height);
    }
    template <class F, class = std::enable_if_t<IsColorFormat<F>::value>>
    static void blit(const Renderbuffer<F>& source, const Texture2D<F>& destination,
                     unsigned int width, unsigned int height) {
        blitRenderbufferToTexture2D(source.idToUse(), destination.idToUse(), width, height);
    }
    template <class F, class = std::enable_if_t<IsColorFormat<F>::value>>
    static void blit(const Texture2D<F>& source, const Texture2D<F>& destination,
                     unsigned int width, unsigned int height) {
        blitTexture2DToTexture2D(source.idToUse(), destination.idToUse(), width, height);
    }

    /// Colour, depth and stencil in one.
    template <class F, class = std::enable_if_t<IsColorFormat<F>::value>>
    static void blit(const MultiSampleRenderbuffer<F>& sourceColor,
                     const MultiSampleRenderbuffer<depth24_stencil8>& sourceDepthStencil,
                     const Texture2D<F>& destinationColor,
                     const Texture2D<depth24_stencil8>& destinationDepthStencil, unsigned int width,
                     unsigned int height) {
        blitMultiSampleRenderbuffersToTexture2Ds(
            sourceColor.idToUse(), sourceDepthStencil.idToUse(), destinationColor.idToUse(),
            destinationDepthStencil.idToUse(), width, height);
    }
    /// @}

    /// \name Reading back
    /// Reads a rectangle of pixels, the lower row first and without gaps, from the read buffer of
    /// the framebuffer that is bound for reading. `GL_PACK_ALIGNMENT` is put back. Pixels outside
    /// the framebuffer are undefined, and GL refuses a width or height of 2^30 and more.
    /// GL refuses to read several samples a pixel (blit() them into a texture first), and depth or
    /// stencil that is not there.
    ///
    /// \tparam F  The type of the pixels: any that is stored, see TexelFormat. GL converts colours.
    /// @{

    /// Into \p data, which must have room for \p width times \p height pixels, and for what the
    /// other settings of `glPixelStorei`, such as row lengths, add: they hold. While a PixelBuffer
    /// is bound for download, it is a byte offset into that. Does nothing where it is null and none
    /// is bound.
    template <class F, class = std::enable_if_t<IsStorageFormat<F>::value>>
    static void download(F* data, unsigned int x, unsigned int y, unsigned int width,
                         unsigned int height) {
        readPixels(data, x, y, width, height, pixelLayout<F>);
    }

    /// Into a vector: an empty one where it would be larger than vectors can be. What
    /// `glPixelStorei` was told of packing, and a PixelBuffer that is bound for download, do not
    /// matter: they are put aside for the transfer and put back.
    template <class F, class = std::enable_if_t<IsStorageFormat<F>::value>>
    static std::vector<F> download(unsigned int x, unsigned int y, unsigned int width,
                                   unsigned int height) {
        std::vector<F> pixels = detail::vectorOf<F>(detail::product(width, height));
        if (!pixels.empty())
            readPixelsToMemory(pixels.data(), x, y, width, height, pixelLayout<F>);
        return pixels;
    }
    /// @}

    // --- The state of the fragment pipeline ---

    /// \name Clearing
    /// Sets the clear values, which stay set, and clears the buffers of the framebuffer that is
    /// bound for drawing, within the scissor rectangle and the write masks.
    /// @{

    /// Clears colour, depth and stencil.
    static void clear(const glm::vec4& color, float depth, unsigned int stencil);

    /// Clears colour.
    static void clearColor(const glm::vec4& color);

    /// Clears depth.
    static void clearDepth(float depth);

    /// Clears stencil.
    static void clearStencil(unsigned int stencil);

    /// Clears depth and stencil.
    static void clearDepthStencil(float depth, unsigned int stencil);
    /// @}

    /// \name Blending
    /// @{

    /// Switches blending with the factors last set.
    static void enableBlending(bool on);

    /// enableBlending(false).
    static void disableBlending() { enableBlending(false); }

    /// Enables blending with a factor for the fragment and one for the framebuffer, each for colour
    /// and alpha alike: a BlendingFactor, a constant colour (`glm::vec3`) or a constant alpha
    /// (`float`). GL has one constant: its colour is the sum of the colours given, its alpha the
    /// sum of the alphas, or 1 where none is given. `glEnable`, `glBlendColor`,
    /// `glBlendFuncSeparate`.
    template <
        class Source, class Destination,
        class = std::enable_if_t<detail::isColorFactor<Source> || detail::isAlphaFactor<Source>>,
        class = std::enable_if_t<detail::isColorFactor<Destination> ||
                                 detail::isAlphaFactor<Destination>>>
    static void enableBlending(const Source& source, const Destination& destination) {
        constexpr bool hasAlpha =
            detail::isConstantAlpha<Source> || detail::isConstantAlpha<Destination>;
        const auto sourceFactor = static_cast<unsigned int>(factor(source));
        const auto destinationFactor = static_cast<unsigned int>(factor(destination));
        blend(sourceFactor, destinationFactor, sourceFactor, destinationFactor,
              colorPart(source) + colorPart(destination),
              hasAlpha ? alphaPart(source) + alphaPart(destination) : 1.f);
    }

    /// The same with separate factors: for the colours a BlendingFactor or a constant colour, for
    /// the alphas a BlendingFactor or a constant alpha. The constant's parts are the sums of what
    /// is given, 0 where nothing is.
    template <class SourceRgb, class DestinationRgb, class SourceAlpha, class DestinationAlpha,
              class = std::enable_if_t<detail::isColorFactor<SourceRgb> &&
                                       detail::isColorFactor<DestinationRgb>>,
              class = std::enable_if_t<detail::isAlphaFactor<SourceAlpha> &&
                                       detail::isAlphaFactor<DestinationAlpha>>>
    static void enableBlending(const SourceRgb& sourceRgb, const DestinationRgb& destinationRgb,
                               const SourceAlpha& sourceAlpha,
                               const DestinationAlpha& destinationAlpha) {
        blend(static_cast<unsigned int>(factor(sourceRgb)),
              static_cast<unsigned int>(factor(destinationRgb)),
              static_cast<unsigned int>(factor(sourceAlpha)),
              static_cast<unsigned int>(factor(destinationAlpha)),
              const_rgb(sourceRgb) + const_rgb(destinationRgb),
              const_a(sourceAlpha) + const_a(destinationAlpha));
    }

    /// How the products are combined, for colour and for alpha.
    static void setBlendEquation(BlendEquation rgb, BlendEquation alpha);
    /// @}

    /// \name Depth test
    /// @{

    /// Enables the test with this comparison.
    static void enableDepthTest(FragmentComparator function);

    /// Switches the test with the comparison last set.
    static void enableDepthTest(bool on);

    /// enableDepthTest(false).
    static void disableDepthTest() { enableDepthTest(false); }
    /// @}

    /// \name Stencil test
    /// For both faces of polygons.
    /// @{

    /// Enables the test.
    /// \param function     Compares the reference with the stored value.
    /// \param reference    What is compared,
    /// \param mask         in these bits.
    /// \param stencilFail  What happens to the stored value where the stencil test fails,
    /// \param depthFail    where it passes and the depth test fails,
    /// \param depthPass    and where both pass.
    static void enableStencilTest(FragmentComparator function, unsigned int reference,
                                  unsigned int mask, StencilAction stencilFail,
                                  StencilAction depthFail, StencilAction depthPass);

    /// The same with one action where the stencil test passes, whatever the depth test says.
    static void enableStencilTest(FragmentComparator function, unsigned int reference,
                                  unsigned int mask, StencilAction stencilFail,
                                  StencilAction stencilPass);

    /// Switches the test with the settings of before.
    static void enableStencilTest(bool on);

    /// enableStencilTest(false).
    static void disableStencilTest() { enableStencilTest(false); }
    /// @}

    /// \name Scissor test
    /// @{

    /// Confines drawing and clearing to a rectangle, in pixels from the lower left.
    static void enableScissorTest(int x, int y, unsigned int width, unsigned int height);

    /// Switches the test with the rectangle last set.
    static void enableScissorTest(bool on);

    /// enableScissorTest(false).
    static void disableScissorTest() { enableScissorTest(false); }
    /// @}

    /// \name Logical operation
    /// It takes the place of blending while it is on.
    /// @{

    /// Enables it with this operator.
    static void enableLogicOp(LogicOperator op);

    /// Switches it with the operator last set.
    static void enableLogicOp(bool on);

    /// enableLogicOp(false).
    static void disableLogicOp() { enableLogicOp(false); }
    /// @}

    /// Switches the use of several samples a pixel, where the framebuffer has them.
    static void enableMultiSampling(bool on);

    /// enableMultiSampling(false).
    static void disableMultiSampling() { enableMultiSampling(false); }

    /// \name No switches
    /// Numbers, pointers and GL's own enumerators do not switch anything:
    /// `enableDepthTest(GL_LESS)` does not compile.
    /// @{
    template <class T, detail::MistakenForBool<T> = 0>
    static void enableBlending(T) = delete;
    template <class T, detail::MistakenForBool<T> = 0>
    static void enableDepthTest(T) = delete;
    template <class T, detail::MistakenForBool<T> = 0>
    static void enableStencilTest(T) = delete;
    template <class T, detail::MistakenForBool<T> = 0>
    static void enableScissorTest(T) = delete;
    template <class T, detail::MistakenForBool<T> = 0>
    static void enableLogicOp(T) = delete;
    template <class T, detail::MistakenForBool<T> = 0>
    static void enableMultiSampling(T) = delete;
    /// @}

    /// \name Viewport, masks and buffers
    /// One GL call each.
    /// @{

    /// Where clip coordinates land, in pixels from the lower left.
    static void setViewport(int x, int y, unsigned int width, unsigned int height);

    /// Which components of colours are written.
    static void setColorMask(bool red, bool green, bool blue, bool alpha);

    /// Whether depth is written.
    static void setDepthMask(bool on);

    /// Which bits of stencil values are written.
    static void setStencilMask(unsigned int mask);

    /// The colour buffer that is drawn to.
    static void setDrawBuffer(BufferID buffer);

    /// The colour buffer that is read from.
    static void setReadBuffer(BufferID buffer);
    /// @}

private:
    /// The default framebuffer, or one that somebody else owns.
    explicit Framebuffer(unsigned int id);

    void attachTexture2D(unsigned int texture, unsigned int level);
    void attachTexture2D(unsigned int index, unsigned int texture, unsigned int level);
    void attachRenderbuffer(unsigned int renderbuffer);
    void attachRenderbuffer(unsigned int index, unsigned int renderbuffer);
    void attachDepthTexture(unsigned int texture, unsigned int level);
    void attachStencilbuffer(unsigned int renderbuffer);
    void attachDepthbuffer(unsigned int renderbuffer);
    void attachDepthStencilTexture(unsigned int texture, unsigned int level);
    void attachDepthStencilbuffer(unsigned int renderbuffer);
    VELLIS_NO_EXPORT void selectColorAttachment0();
    VELLIS_NO_EXPORT void attachTextureAt(unsigned int point, unsigned int texture,
                                          unsigned int level);
    VELLIS_NO_EXPORT void attachRenderbufferAt(unsigned int point, unsigned int renderbuffer);

    template <class F>
    void attachColor(const Texture2D<F>& texture, unsigned int level) {
        attachTexture2D(texture.idToUse(), level);
    }
    template <class F>
    void attachColor(unsigned int index, const Texture2D<F>& texture, unsigned int level) {
        attachTexture2D(index, texture.idToUse(), level);
    }
    void attachColor(const RBO& renderbuffer, unsigned int) {
        attachRenderbuffer(renderbuffer.idToUse());
    }
    void attachColor(unsigned int index, const RBO& renderbuffer, unsigned int) {
        attachRenderbuffer(index, renderbuffer.idToUse());
    }
    template <class Image>
    void attachMapped(unsigned int output, const Image& image) {
        if (output >= MAX_NUM_DRAW_MAPPINGS)
            return;
        attachColor(output, image, 0);
        addDrawMapping(output);
    }

    void resetDrawMappings();
    void addDrawMapping(unsigned int i);
    unsigned int getDrawMapping(unsigned int i) const;
    void applyDrawMappings() const;

    static BlendingFactor factor(BlendingFactor factor) { return factor; }
    static unsigned int factor(const glm::vec3&) { return constantColor; }
    static unsigned int factor(float) { return constantAlpha; }
    static glm::vec3 const_rgb(BlendingFactor) { return glm::vec3(0.f); }
    static glm::vec3 const_rgb(const glm::vec3& color) { return color; }
    static float const_a(BlendingFactor) { return 0.f; }
    static float const_a(float alpha) { return alpha; }

    /// What an argument of any kind contributes to the constant colour, and to its alpha.
    template <class T>
    static glm::vec3 colorPart(const T& argument) {
        if constexpr (detail::isColorFactor<T>)
            return const_rgb(argument);
        else
            return glm::vec3(0.f);
    }
    template <class T>
    static float alphaPart(const T& argument) {
        if constexpr (detail::isAlphaFactor<T>)
            return const_a(argument);
        else
            return 0.f;
    }

    static void blend(unsigned int sourceRgb, unsigned int destinationRgb, unsigned int sourceAlpha,
                      unsigned int destinationAlpha, const glm::vec3& rgb, float alpha);

    static void blitMultiSampleRenderbufferToTexture2D(unsigned int source,
                                                       unsigned int destination, unsigned int width,
                                                       unsigned int height);
    static void blitRenderbufferToTexture2D(unsigned int source, unsigned int destination,
                                            unsigned int width, unsigned int height);
    static void blitTexture2DToTexture2D(unsigned int source, unsigned int destination,
                                         unsigned int width, unsigned int height);
    static void blitMultiSampleRenderbuffersToTexture2Ds(unsigned int sourceColor,
                                                         unsigned int sourceDepthStencil,
                                                         unsigned int destinationColor,
                                                         unsigned int destinationDepthStencil,
                                                         unsigned int width, unsigned int height);
    template <class AttachSource, class AttachDestination>
    static void blit(AttachSource attachSource, AttachDestination attachDestination,
                     unsigned int width, unsigned int height, unsigned int mask);

    static void readPixels(void* data, unsigned int x, unsigned int y, unsigned int width,
                           unsigned int height, const PixelLayout& layout);
    static void readPixelsToMemory(void* data, unsigned int x, unsigned int y, unsigned int width,
                                   unsigned int height, const PixelLayout& layout);
    static void downloadPixels(void* data, unsigned int x, unsigned int y, unsigned int width,
                               unsigned int height, unsigned int format, unsigned int type,
                               unsigned int alignment);

    /// Behind the points for colours follow those for depth and stencil.
    static constexpr unsigned int numColorPoints = 32;

    static constexpr unsigned int drawFramebufferBinding = 0x8CA6; // GL_DRAW_FRAMEBUFFER_BINDING
    static constexpr unsigned int constantColor = 0x8001;          // GL_CONSTANT_COLOR
    static constexpr unsigned int constantAlpha = 0x8003;          // GL_CONSTANT_ALPHA

    /// Whether it exists in the Context in use.
    VELLIS_NO_EXPORT bool exists() const;

    unsigned int id_ = 0;
    mutable unsigned int context_; ///< where it exists, or was bound last: see gl/names.hpp
    bool external_;
    mutable unsigned int target_;
    mutable state::State<int, 2, drawFramebufferBinding> savedBindings_{};
    bool restoreOnDestruction_ = false;
    unsigned int drawMappings_[MAX_NUM_DRAW_MAPPINGS] = {};
};

} // namespace vellis
