#include <vellis/texture/texture_1d.hpp>

namespace vellis {

template class Texture1D<unsigned char>;
template class Texture1D<detail::Packed<4, unsigned char>>;
template class Texture1D<float>;
template class Texture1D<detail::Packed<2, float>>;
template class Texture1D<detail::Packed<3, float>>;
template class Texture1D<detail::Packed<4, float>>;

} // namespace vellis
