#include <vellis/shading/uniform.hpp>

#include <glm/mat3x3.hpp>
#include <glm/mat4x4.hpp>

#include <vellis/gl.hpp>

#include "gl/entry_point.hpp"

namespace vellis {
namespace {

/// The entry point of GL 3.0, or that of EXT_gpu_shader4 where only that is there, or null.
template <class EntryPoint>
EntryPoint unsignedCall(EntryPoint core, EntryPoint extension) {
    return core != nullptr ? core : extension;
}

/// Sends numbers with an entry point that every context has.
template <class Call, class Number>
void send(Call call, int location, int count, const Number* numbers) {
    call(location, count, numbers);
}

/// Sends unsigned numbers, for which a context may have none.
template <class Call>
void send(Call call, int location, int count, const unsigned int* numbers) {
    callIfLoaded(call, location, count, numbers);
}

// Single numbers go by value; `Call` is the call for arrays, which vectors use for one element.

template <class Call>
void sendOne(Call, int location, int value) {
    glUniform1i(location, value);
}

template <class Call>
void sendOne(Call, int location, unsigned int value) {
    callIfLoaded(unsignedCall(glUniform1ui, glUniform1uiEXT), location, value);
}

template <class Call>
void sendOne(Call, int location, float value) {
    glUniform1f(location, value);
}

template <class Call, glm::length_t N, class T>
void sendOne(Call call, int location, const glm::vec<N, T>& value) {
    send(call, location, 1, &value[0]);
}

template <class T>
const T* firstNumber(const T* elements) {
    return elements;
}

template <glm::length_t N, class T>
const T* firstNumber(const glm::vec<N, T>* elements) {
    return elements != nullptr ? &(*elements)[0] : nullptr;
}

template <class Call, class T>
void sendAll(Call call, int location, const std::vector<T>& values) {
    send(call, location, static_cast<int>(values.size()), firstNumber(values.data()));
}

// The call for arrays of each type of element.
#define VELLIS_UNIFORM_ELEMENT(glType, T, call)                                                    \
    auto callFor(const T*) {                                                                       \
        return call;                                                                               \
    }
#include "shading/uniform_elements.inc"
#undef VELLIS_UNIFORM_ELEMENT

template <class T>
void sendValue(int location, const T& value) {
    sendOne(callFor(&value), location, value);
}

template <class T>
void sendValue(int location, const std::vector<T>& values) {
    sendAll(callFor(values.data()), location, values);
}

// glm stores its matrices by column, as GL does.

void sendValue(int location, const glm::mat3& value) {
    glUniformMatrix3fv(location, 1, GL_FALSE, &value[0][0]);
}

void sendValue(int location, const glm::mat4& value) {
    glUniformMatrix4fv(location, 1, GL_FALSE, &value[0][0]);
}

} // namespace

namespace detail {

template <class T>
void sendUniform(int location, const T& value) {
    sendValue(location, value);
}

template <>
void sendUniform(int location, const glm::vec4& value) {
    sendValue(location, value);
}

template <>
void sendUniform(int location, const glm::mat4& value) {
    sendValue(location, value);
}

#if defined(__clang__) // a vec4 has its function above: the row of the table then adds none
#pragma clang diagnostic ignored "-Winstantiation-after-specialization"
#endif
#define VELLIS_UNIFORM_ELEMENT(glType, T, call)                                                    \
    template VELLIS_EXPORT void sendUniform(int location, const T& value);                         \
    template VELLIS_EXPORT void sendUniform(int location, const std::vector<T>& value);
#include "shading/uniform_elements.inc"
#undef VELLIS_UNIFORM_ELEMENT
template VELLIS_EXPORT void sendUniform(int location, const glm::mat3& value);

} // namespace detail

} // namespace vellis
