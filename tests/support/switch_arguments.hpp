#pragma once

#include <type_traits>
#include <utility>
#include <vector>

/// \file
/// What a function that switches something on and off may be called with.

namespace vellis::test {

/// An enumerator such as those of C interfaces, which are numbers.
enum UnscopedEnumeration : unsigned int {};

/// An argument that is true or false by conversion of its own.
struct ConvertsToBool {
    operator bool() const { return true; }
};

/// Whether a function object takes all, or any, of these arguments.
template <class Function, class... Arguments>
constexpr bool takesAll = (std::is_invocable<Function, Arguments>::value && ...);
template <class Function, class... Arguments>
constexpr bool takesAny = (std::is_invocable<Function, Arguments>::value || ...);

template <class Function>
constexpr bool takesSwitches(Function) {
    return takesAll<Function, bool, bool&, const bool&, std::true_type, ConvertsToBool,
                    std::vector<bool>::reference>;
}

template <class Function>
constexpr bool takesNumbers(Function) {
    return takesAny<Function, int, const int&, unsigned int, unsigned char, char, long long, float,
                    double, UnscopedEnumeration, void*, const char*, const char(&)[5],
                    std::nullptr_t, void (*)(), int ConvertsToBool::*>;
}

} // namespace vellis::test

/// Checks, while compiling, that \p function takes a bool and what converts to it by itself, but no
/// number, no unscoped enumerator and no pointer.
#define VELLIS_TAKES_SWITCHES_ALONE(function)                                                      \
    static_assert([](auto call) {                                                                  \
        return vellis::test::takesSwitches(call) && !vellis::test::takesNumbers(call);             \
    }([](auto&& on) -> decltype(function(std::forward<decltype(on)>(on))) {}))
