#include <vellis/shading/attrib.hpp>

namespace vellis {

Attrib::~Attrib() = default;

} // namespace vellis
