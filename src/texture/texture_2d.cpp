#include <vellis/texture/texture_2d.hpp>

namespace vellis {

template class Texture2D<unsigned char>;
template class Texture2D<texel::u8vec4>;
template class Texture2D<float>;
template class Texture2D<texel::vec2>;
template class Texture2D<texel::vec3>;
template class Texture2D<texel::vec4>;
template class Texture2D<depth16>;
template class Texture2D<depth32>;
template class Texture2D<depth24_stencil8>;

} // namespace vellis
