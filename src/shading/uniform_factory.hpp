#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include <vellis/shading/uniform.hpp>

namespace vellis {

/// Makes the handles that a program keeps of its active uniforms.
struct UniformFactory {
    /// A handle with a location, of a type that is known. The pointer counts references to the
    /// base, whose destructor is virtual: one kind of count serves all types.
    template <class T, class... Arguments>
    static std::shared_ptr<UniformVariable> make(int location, Arguments&&... arguments) {
        UniformVariable* const handle =
            new Uniform<T>(location, std::forward<Arguments>(arguments)...);
        return std::shared_ptr<UniformVariable>(handle);
    }

    /// The handle of a single uniform of that GL type, or null for a type that has none. A sampler
    /// takes the unit \p nextUnit, which then goes up.
    static std::shared_ptr<UniformVariable> makeSingle(unsigned int glType, int location,
                                                       unsigned int& nextUnit);

    /// The handle of an array of \p size elements of that GL type, all 0, or null for a type whose
    /// arrays have none.
    static std::shared_ptr<UniformVariable> makeArray(unsigned int glType, int location,
                                                      std::size_t size);
};

} // namespace vellis
