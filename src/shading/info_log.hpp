#pragma once

#include <string>

namespace vellis {

/// The log of a shader's compilation, with the NUL that ends it and all room behind that which GL
/// asked for; empty where GL has none.
std::string shaderInfoLog(unsigned int shader);

/// The same of a program's linking.
std::string programInfoLog(unsigned int program);

/// A log without its NUL and what is behind that.
std::string upToNul(std::string log);

} // namespace vellis
