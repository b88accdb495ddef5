#pragma once

#include <memory>

namespace vellis::detail {

/// `std::make_shared` for a class whose constructors are protected: object and reference count in
/// one allocation. Arguments go by value: they are numbers and pointers, which then stay in
/// registers. The benchmark buffer/make counts it.
template <class T, class... Arguments>
inline std::shared_ptr<T> makeShared(Arguments... arguments) {
    struct Constructible : T {
        explicit Constructible(Arguments... passed) : T(passed...) {}
    };
    return std::make_shared<Constructible>(arguments...);
}

} // namespace vellis::detail
