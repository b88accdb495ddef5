#pragma once

#include <memory>
#include <utility>

namespace vellis::detail {

/// `std::make_shared` for a class whose constructors are protected: object and reference count in
/// one allocation.
template <class T, class... Arguments>
std::shared_ptr<T> makeShared(Arguments&&... arguments) {
    struct Constructible : T {
        explicit Constructible(Arguments&&... passed) : T(std::forward<Arguments>(passed)...) {}
    };
    return std::make_shared<Constructible>(std::forward<Arguments>(arguments)...);
}

} // namespace vellis::detail
