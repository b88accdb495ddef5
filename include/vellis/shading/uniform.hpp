#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

#include <glm/fwd.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <vellis/detail/hot.hpp>
#include <vellis/export.hpp>

namespace vellis {

class Texture;

/// What the handles of all uniforms have in common.
class VELLIS_EXPORT UniformVariable {
public:
    /// Copies the location and the pointer to the name.
    UniformVariable(const UniformVariable&) = default;
    virtual ~UniformVariable() = default;

    /// The GL location; -1 where it is not known.
    int loc;

private:
    friend class Program;

    // UniformType of the class that this is. Between two members that leave a gap it takes no room.
    const unsigned int type_;

public:
    /// The name under which a handle without a location is looked up in the program that it is set
    /// for; null for the handles of a program. Not owned.
    const char* name;

protected:
    /// A handle of a program, without a name.
    UniformVariable(int location, unsigned int type) : loc(location), type_(type), name(nullptr) {}

    /// A handle that is looked up by name.
    UniformVariable(const char* uniformName, unsigned int type)
        : loc(-1),
          type_(type),
          name(uniformName) {}

    /// Takes the location and the pointer to the name. A handle is assigned as a whole, where both
    /// are of one type: see Uniform.
    UniformVariable& operator=(const UniformVariable& other) noexcept {
        loc = other.loc;
        name = other.name;
        return *this;
    }

    /// Whether the location is known.
    bool isLocValid() const { return loc >= 0; }
};

namespace detail {

/// A number for each type of handle: GL's enumerator of the value, with a bit of our own for an
/// array; 1 for a texture, whose sampler may have several types; 0 for what is no type of handle.
template <class T>
struct UniformType : std::integral_constant<unsigned int, 0> {};

constexpr unsigned int uniformArray = 0x80000000; ///< the bit of UniformType for an array

template <>
struct UniformType<int> : std::integral_constant<unsigned int, 0x1404> {};
template <>
struct UniformType<unsigned int> : std::integral_constant<unsigned int, 0x1405> {};
template <>
struct UniformType<float> : std::integral_constant<unsigned int, 0x1406> {};
template <glm::length_t N>
struct UniformType<glm::vec<N, float, glm::defaultp>>
    : std::integral_constant<unsigned int, static_cast<unsigned int>(0x8B50 - 2 + N)> {};
template <glm::length_t N>
struct UniformType<glm::vec<N, int, glm::defaultp>>
    : std::integral_constant<unsigned int, static_cast<unsigned int>(0x8B53 - 2 + N)> {};
template <glm::length_t N>
struct UniformType<glm::vec<N, unsigned int, glm::defaultp>>
    : std::integral_constant<unsigned int, static_cast<unsigned int>(0x8DC6 - 2 + N)> {};
template <>
struct UniformType<glm::mat3> : std::integral_constant<unsigned int, 0x8B5B> {};
template <>
struct UniformType<glm::mat4> : std::integral_constant<unsigned int, 0x8B5C> {};
template <class T>
struct UniformType<std::vector<T>>
    : std::integral_constant<unsigned int, UniformType<T>::value | uniformArray> {};
template <>
struct UniformType<Texture> : std::integral_constant<unsigned int, 1> {};

} // namespace detail

/// True for the types that a uniform array can have as elements: `int`, `unsigned int`, `float`,
/// and the glm vectors of 2 to 4 of them.
template <class T>
struct IsUniformElement : std::false_type {};

/// True for the 26 types that a uniform's value can have: an element, `glm::mat3`, `glm::mat4`, or
/// a `std::vector` of elements for an array. Neither `bool` nor `double` is among them. Unsigned
/// ones need OpenGL 3.0 or `GL_EXT_gpu_shader4`: a context that has neither is sent none. The
/// matrices are only declared here: whoever makes one includes <glm/mat3x3.hpp> or
/// <glm/mat4x4.hpp>.
template <class T>
struct IsUniformValue : IsUniformElement<T> {};

template <>
struct IsUniformElement<int> : std::true_type {};
template <>
struct IsUniformElement<unsigned int> : std::true_type {};
template <>
struct IsUniformElement<float> : std::true_type {};
template <glm::length_t N, class T>
struct IsUniformElement<glm::vec<N, T, glm::defaultp>>
    : std::integral_constant<bool, (N >= 2) && IsUniformElement<T>::value> {};
template <>
struct IsUniformValue<glm::mat3> : std::true_type {};
template <>
struct IsUniformValue<glm::mat4> : std::true_type {};
template <class T>
struct IsUniformValue<std::vector<T>> : IsUniformElement<T> {};

namespace detail {

/// True for the types of which neither a uniform nor an array with them as elements has a handle,
/// and for `glm::mat3` and `glm::mat4`, of which no array has one.
template <class T>
struct IsUnkeptElement : std::false_type {};

template <>
struct IsUnkeptElement<bool> : std::true_type {};
template <glm::length_t N>
struct IsUnkeptElement<glm::vec<N, bool, glm::defaultp>> : std::integral_constant<bool, (N >= 2)> {
};
template <glm::length_t C, glm::length_t R>
struct IsUnkeptElement<glm::mat<C, R, float, glm::defaultp>> : std::true_type {};

} // namespace detail

/// True for the types of value that Program::setUniform takes by name: those of IsUniformValue,
/// whose uniforms have handles, and beside them `bool`, `glm::bvec2` to `glm::bvec4`, `glm::mat2`,
/// the six matrices that are not square, and a `std::vector` of any of these, of `glm::mat3` or of
/// `glm::mat4`. That is every type of value that GLSL 1.20 has. The matrices are only declared
/// here: whoever makes one includes its header.
template <class T>
struct IsSettableUniformValue
    : std::integral_constant<bool, IsUniformValue<T>::value || detail::IsUnkeptElement<T>::value> {
};

template <class T>
struct IsSettableUniformValue<std::vector<T>>
    : std::integral_constant<bool,
                             IsUniformElement<T>::value || detail::IsUnkeptElement<T>::value> {};

namespace detail {

/// The value that a uniform starts with: zeros, or the identity.
template <class T>
T initialUniformValue() {
    if constexpr (std::is_same<T, glm::mat3>::value || std::is_same<T, glm::mat4>::value)
        return T(1.f);
    else
        return T();
}

/// Sends a value to a location of the program in use with the one GL call of its type:
/// `glUniform1i`, `glUniform4fv`, `glUniformMatrix4fv` … The library has an instance for each of
/// the 26 types of value.
template <class T>
VELLIS_DIRECT VELLIS_EXPORT void sendUniform(int location, const T& value);

// What nearly every draw sends.
template <>
VELLIS_HOT VELLIS_EXPORT void sendUniform(int location, const glm::vec4& value);
template <>
VELLIS_HOT VELLIS_EXPORT void sendUniform(int location, const glm::mat4& value);

/// Sends \p count matrices whose \p numbers stand by column with the one GL call of their size.
VELLIS_EXPORT void sendMatrices(int columns, int rows, int location, int count,
                                const float* numbers);

// The same for the types that have no handles: GL takes integers for booleans.

inline void sendUnkept(int location, bool value) {
    sendUniform(location, static_cast<int>(value));
}

template <glm::length_t N>
void sendUnkept(int location, const glm::vec<N, bool, glm::defaultp>& value) {
    sendUniform(location, glm::vec<N, int, glm::defaultp>(value));
}

template <glm::length_t C, glm::length_t R>
void sendUnkept(int location, const glm::mat<C, R, float, glm::defaultp>& value) {
    sendMatrices(C, R, location, 1, &value[0][0]);
}

inline void sendUnkept(int location, const std::vector<bool>& values) {
    sendUniform(location, std::vector<int>(values.begin(), values.end()));
}

template <glm::length_t N>
void sendUnkept(int location, const std::vector<glm::vec<N, bool, glm::defaultp>>& values) {
    using Integers = glm::vec<N, int, glm::defaultp>;
    sendUniform(location, std::vector<Integers>(values.begin(), values.end()));
}

template <glm::length_t C, glm::length_t R>
void sendUnkept(int location, const std::vector<glm::mat<C, R, float, glm::defaultp>>& values) {
    sendMatrices(C, R, location, static_cast<int>(values.size()),
                 values.empty() ? nullptr : &values[0][0][0]);
}

} // namespace detail

/// A handle of a uniform: its location, and the value last set through the program's own handle.
///
/// A program makes its own handles when it links, and Program::getUniform finds them. A caller may
/// make a handle from a name, to be set for whichever program has a uniform of that name and type:
///
/// \code
/// const vellis::Uniform radius("radius", 3.f); // a Uniform<float>
/// program->draw(triangle, radius);
/// \endcode
///
/// Copies copy the value as well. A handle can be assigned one of the same type: it is the same
/// uniform's then.
///
/// \tparam T  One of the 26 types of IsUniformValue, or `Texture`.
template <class T>
class VELLIS_EXPORT Uniform : public UniformVariable {
    static_assert(IsUniformValue<T>::value, "GL 2.1 has no uniforms of this type");

public:
    /// A handle that is looked up by \p uniformName, which must outlive it.
    /// @{
    explicit Uniform(const char* uniformName, const T& initial = detail::initialUniformValue<T>())
        : UniformVariable(uniformName, detail::UniformType<T>::value),
          value(initial) {}
    Uniform(const char* uniformName, T&& initial)
        : UniformVariable(uniformName, detail::UniformType<T>::value),
          value(std::move(initial)) {}
    /// @}

    /// The value, which reaches GL only when the uniform is set.
    T value;

private:
    friend class Program;
    friend struct UniformFactory;

    explicit Uniform(int location, T initial = detail::initialUniformValue<T>())
        : UniformVariable(location, detail::UniformType<T>::value),
          value(std::move(initial)) {}
};

/// A handle of a sampler: the texture unit that the program gave it, and the texture last set.
template <>
class VELLIS_EXPORT Uniform<Texture> : public UniformVariable {
public:
    /// A handle that is looked up by \p uniformName, which must outlive it.
    explicit Uniform(const char* uniformName, const Texture* initial = nullptr)
        : UniformVariable(uniformName, detail::UniformType<Texture>::value),
          texture(initial) {}

    /// The same of a texture of any class, which is not owned, either.
    Uniform(const char* uniformName, const Texture& initial) : Uniform(uniformName, &initial) {}

    /// The texture, or null. Not owned: it must be alive when the handle is set.
    const Texture* texture;

    /// The texture unit.
    unsigned int unit = 0;

private:
    friend class Program;
    friend struct UniformFactory;

    explicit Uniform(int location, unsigned int textureUnit = 0)
        : UniformVariable(location, detail::UniformType<Texture>::value),
          texture(nullptr),
          unit(textureUnit) {}
};

/// A texture of whatever class makes the handle of a sampler.
template <class T, class = std::enable_if_t<std::is_base_of<Texture, T>::value>>
Uniform(const char*, const T&) -> Uniform<Texture>;

} // namespace vellis
