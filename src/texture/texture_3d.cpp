#include <vellis/texture/texture_3d.hpp>

namespace vellis {

template class Texture3D<unsigned char>;
template class Texture3D<texel::u8vec4>;
template class Texture3D<float>;
template class Texture3D<texel::vec2>;
template class Texture3D<texel::vec3>;
template class Texture3D<texel::vec4>;

} // namespace vellis
