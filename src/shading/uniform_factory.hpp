#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include <vellis/shading/uniform.hpp>

namespace vellis {

/// Makes the handles that a program keeps of its active uniforms.
struct UniformFactory {
    /// A handle with a location, of a type that is known.
    template <class T, class... Arguments>
    static std::unique_ptr<UniformVariable> make(int location, Arguments&&... arguments) {
        return std::unique_ptr<UniformVariable>(
            new Uniform<T>(location, std::forward<Arguments>(arguments)...));
    }

    /// The handle of a single uniform of that GL type, or null for a type that has none. A sampler
    /// takes the unit \p nextUnit, which then goes up.
    static std::unique_ptr<UniformVariable> makeSingle(unsigned int glType, int location,
                                                       unsigned int& nextUnit);

    /// The handle of an array of \p size elements of that GL type, all 0, or null for a type whose
    /// arrays have none.
    static std::unique_ptr<UniformVariable> makeArray(unsigned int glType, int location,
                                                      std::size_t size);
};

} // namespace vellis
