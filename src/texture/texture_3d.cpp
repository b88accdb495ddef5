#include <vellis/texture/texture_3d.hpp>

namespace vellis {

template class Texture3D<unsigned char>;
template class Texture3D<detail::Packed<4, unsigned char>>;
template class Texture3D<float>;
template class Texture3D<detail::Packed<2, float>>;
template class Texture3D<detail::Packed<3, float>>;
template class Texture3D<detail::Packed<4, float>>;

} // namespace vellis
