#pragma once

#include <initializer_list>
#include <utility>

#include <vellis/export.hpp>

namespace vellis {

/// How a texture is sampled: its filters and its wrap modes along s and t. A plain value; a Texture
/// keeps a copy and sends it to GL when it is made and in Texture::setSampler.
///
/// \code
/// vellis::Sampler sampler = vellis::Sampler::trilinear_repeat();
/// sampler.set({{vellis::Sampler::WRAP_T, vellis::Sampler::CLAMP}});
/// auto texture = vellis::Texture2D<glm::u8vec4>::make(64, 64, texels, sampler);
/// texture->generateMipmap(); // what a mipmap filter samples
/// \endcode
///
/// Each parameter may be unset, and is then not sent: the texture keeps what it has. A new GL
/// texture has `GL_NEAREST_MIPMAP_LINEAR` as its minification filter, which shows nothing without
/// mipmaps, and `GL_REPEAT` along each coordinate. There is no wrap mode along r.
class VELLIS_EXPORT Sampler {
public:
    /// The parameters.
    enum Property : unsigned int {
        MIN_FILTER = 0,        ///< minification, a Filter
        MAG_FILTER = 1,        ///< magnification, a Filter
        MIPMAP_MIN_FILTER = 2, ///< between mipmap levels, a Filter; needs `MIN_FILTER`
        WRAP_S = 3,            ///< along s, a Wrap
        WRAP_T = 4,            ///< along t, a Wrap
    };

    /// The value of a filter parameter.
    enum Filter : unsigned int {
        NEAREST = 0, ///< `GL_NEAREST`
        LINEAR = 1,  ///< `GL_LINEAR`
    };

    /// The value of a wrap parameter.
    enum Wrap : unsigned int {
        CLAMP = 0,           ///< `GL_CLAMP_TO_EDGE`
        REPEAT = 1,          ///< `GL_REPEAT`
        MIRRORED_REPEAT = 2, ///< `GL_MIRRORED_REPEAT`
    };

    /// A parameter and its value.
    using Setting = std::pair<Property, unsigned int>;

    /// The value of a parameter that is not set.
    static constexpr unsigned int unset = 0xFFFFFFFF;

    /// nearest_clamp().
    Sampler();

    /// \p filter for minification and magnification, \p wrap along s and t, no mipmap filter.
    Sampler(Filter filter, Wrap wrap);

    /// Only these parameters; the last setting of a parameter wins. A property that is not an
    /// enumerator is ignored. A value that is not one of the parameter's is kept, but never sent.
    Sampler(std::initializer_list<Setting> settings);

    /// Changes these parameters, in the way of the constructor, and keeps the others.
    void set(std::initializer_list<Setting> settings);

    /// The value of a parameter, or `unset`.
    unsigned int get(Property property) const;

    /// Writes one line for each parameter that is set to standard error: `MIN_FILTER = LINEAR`. It
    /// goes to the buffer of `std::cerr`, whose format and state neither matter nor change.
    ///
    /// The words for the values are those of the filters and, from 2 on, the names of the
    /// properties: a wrap mode prints as `NEAREST` for `CLAMP`, `LINEAR` for `REPEAT` and
    /// `MIN_FILTER` for `MIRRORED_REPEAT`. A value above 6, which has no word, prints as a number.
    void print() const;

    /// \name Presets
    /// The filter for minification and magnification (trilinear: also between mipmap levels), and
    /// the wrap mode along s and t.
    /// @{
    static Sampler nearest_clamp();    ///< the nearest texel, clamped to the edge
    static Sampler nearest_repeat();   ///< the nearest texel, repeated
    static Sampler linear_clamp();     ///< between texels, clamped to the edge
    static Sampler linear_repeat();    ///< between texels, repeated
    static Sampler trilinear_clamp();  ///< between texels and levels, clamped to the edge
    static Sampler trilinear_repeat(); ///< between texels and levels, repeated
    /// @}

protected:
    /// Unsets all parameters.
    void reset();

    /// Sends what is set to the texture that is bound to the GL target \p target, with at most one
    /// `glTexParameteri` each for minification, magnification, s and t, in this order. Minification
    /// is sent where `MIN_FILTER` is set; a mipmap filter makes it one of the `…_MIPMAP_…` filters.
    void apply(unsigned int target) const;

private:
    friend class Texture;

    static constexpr unsigned int numProperties = 5;

    unsigned int values_[numProperties]; ///< by Property
};

/// True where all five parameters are alike.
inline bool operator==(const Sampler& a, const Sampler& b) {
    return a.get(Sampler::MIN_FILTER) == b.get(Sampler::MIN_FILTER) &&
           a.get(Sampler::MAG_FILTER) == b.get(Sampler::MAG_FILTER) &&
           a.get(Sampler::MIPMAP_MIN_FILTER) == b.get(Sampler::MIPMAP_MIN_FILTER) &&
           a.get(Sampler::WRAP_S) == b.get(Sampler::WRAP_S) &&
           a.get(Sampler::WRAP_T) == b.get(Sampler::WRAP_T);
}

/// True where a parameter differs.
inline bool operator!=(const Sampler& a, const Sampler& b) {
    return !(a == b);
}

} // namespace vellis
