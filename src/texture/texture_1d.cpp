#include <vellis/texture/texture_1d.hpp>

namespace vellis {

template class Texture1D<unsigned char>;
template class Texture1D<texel::u8vec4>;
template class Texture1D<float>;
template class Texture1D<texel::vec2>;
template class Texture1D<texel::vec3>;
template class Texture1D<texel::vec4>;

} // namespace vellis
