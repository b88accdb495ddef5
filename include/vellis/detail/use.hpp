#pragma once

namespace vellis::detail {

/// Binds an object and, at the end of the scope, unbinds it, also when an exception leaves it.
template <class T>
class Use {
public:
    /// `object.bind(arguments...)`.
    template <class... Arguments>
    explicit Use(const T& object, const Arguments&... arguments) : object_(object) {
        object.bind(arguments...);
    }

    /// `object.unbind()`.
    ~Use() { object_.unbind(); }

    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

private:
    const T& object_;
};

} // namespace vellis::detail
