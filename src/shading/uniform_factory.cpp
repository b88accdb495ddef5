#include "shading/uniform_factory.hpp"

#include <glm/mat3x3.hpp>
#include <glm/mat4x4.hpp>

#include <vellis/gl.hpp>

namespace vellis {
namespace {

template <class T>
std::unique_ptr<UniformVariable> makeElement(int location) {
    return UniformFactory::make<T>(location);
}

template <class T>
std::unique_ptr<UniformVariable> makeArray(int location, std::size_t size) {
    return UniformFactory::make<std::vector<T>>(location, std::vector<T>(size, T()));
}

/// How the handles of a GL type are made; arrays have none where \p makeArray is null.
struct HandleType {
    unsigned int glType;
    std::unique_ptr<UniformVariable> (*make)(int location);
    std::unique_ptr<UniformVariable> (*makeArray)(int location, std::size_t size);
};

constexpr HandleType handleTypes[] = {
#define VELLIS_UNIFORM_ELEMENT(glType, T, call) {glType, makeElement<T>, makeArray<T>},
#include "shading/uniform_elements.inc"
#undef VELLIS_UNIFORM_ELEMENT
    {GL_FLOAT_MAT3, makeElement<glm::mat3>, nullptr},
    {GL_FLOAT_MAT4, makeElement<glm::mat4>, nullptr},
};

constexpr unsigned int samplerTypes[] = {
    GL_SAMPLER_1D,
    GL_SAMPLER_2D,
    GL_SAMPLER_3D,
    GL_INT_SAMPLER_1D,
    GL_INT_SAMPLER_2D,
    GL_INT_SAMPLER_3D,
    GL_UNSIGNED_INT_SAMPLER_1D,
    GL_UNSIGNED_INT_SAMPLER_2D,
    GL_UNSIGNED_INT_SAMPLER_3D,
};

} // namespace

std::unique_ptr<UniformVariable> UniformFactory::makeSingle(unsigned int glType, int location,
                                                            unsigned int& nextUnit) {
    for (const unsigned int sampler : samplerTypes) {
        if (sampler == glType)
            return make<Texture>(location, nextUnit++);
    }
    for (const HandleType& type : handleTypes) {
        if (type.glType == glType)
            return type.make(location);
    }
    return nullptr;
}

std::unique_ptr<UniformVariable> UniformFactory::makeArray(unsigned int glType, int location,
                                                           std::size_t size) {
    for (const HandleType& type : handleTypes) {
        if (type.glType == glType && type.makeArray != nullptr)
            return type.makeArray(location, size);
    }
    return nullptr;
}

} // namespace vellis
