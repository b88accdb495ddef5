#include <vellis/texture/texture_2d.hpp>

namespace vellis {

template class Texture2D<unsigned char>;
template class Texture2D<detail::Packed<4, unsigned char>>;
template class Texture2D<float>;
template class Texture2D<detail::Packed<2, float>>;
template class Texture2D<detail::Packed<3, float>>;
template class Texture2D<detail::Packed<4, float>>;
template class Texture2D<depth16>;
template class Texture2D<depth32>;
template class Texture2D<depth24_stencil8>;

} // namespace vellis
