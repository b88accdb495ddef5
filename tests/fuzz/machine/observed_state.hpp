#pragma once

#include <array>
#include <string>
#include <vector>

#include <vellis/gl.hpp>

namespace vellis::test {

/// A piece of GL state that is compared before and after an operation.
struct ObservedState {
    const char* name;
    GLenum pname;
};

/// The tracked states, the bindings and the switches that are none of them.
const std::vector<ObservedState>& observedStates();

/// The values of an observed state, the rest of them 0.
using ObservedValues = std::array<double, 4>;

/// Asks GL for all observed states, in their order.
std::vector<ObservedValues> observe();

/// The value of one state with one value, such as a binding.
GLuint observedName(GLenum pname);

/// What an operation may change.
struct Promise {
    std::vector<GLenum> zeroes; ///< is 0 afterwards, or as it was
    std::vector<GLenum> sets;   ///< is whatever the operation was asked for
};

/// The first state that changed against a promise, in words; empty where there is none.
std::string brokenPromise(const Promise& promise, const std::vector<ObservedValues>& before,
                          const std::vector<ObservedValues>& after);

} // namespace vellis::test
