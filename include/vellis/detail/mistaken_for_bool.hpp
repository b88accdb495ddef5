#pragma once

#include <type_traits>

namespace vellis::detail {

/// `int` for what the language turns into a bool although it stands for something else: numbers,
/// unscoped enumerators such as GL's own, and pointers. A deleted overload that asks for it keeps
/// them from the one that takes a bool.
template <class T>
using MistakenForBool =
    std::enable_if_t<!std::is_same<T, bool>::value && !std::is_class<T>::value &&
                         std::is_convertible<T, bool>::value,
                     int>;

} // namespace vellis::detail
