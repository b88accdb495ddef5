#pragma once

#include <vellis/state/state.hpp>

namespace vellis::state {

/// Saves pieces of GL state and puts them back at the end of the scope, also when an exception
/// leaves it.
///
/// \code
/// const StateGuard<State<int, 1, GL_UNPACK_ALIGNMENT>> alignment;
/// glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
/// \endcode
///
/// Reads and writes the records in the order in which they are listed, through get and set. Makes
/// no allocation.
template <class... Records>
class StateGuard : private Records... {
public:
    /// Reads every record; a value that GL does not tell is 0.
    StateGuard() : active_(true) { (get(static_cast<Records&>(*this)), ...); }

    /// Writes every record back, in the same order, unless dismissed.
    ~StateGuard() {
        if (active_)
            (set(static_cast<const Records&>(*this)), ...);
    }

    StateGuard(const StateGuard&) = delete;
    StateGuard& operator=(const StateGuard&) = delete;

    /// Leaves the state as it is at the end of the scope.
    void dismiss() { active_ = false; }

    /// The saved record of that type.
    template <class Record>
    const Record& saved() const {
        return *this;
    }

private:
    bool active_;
};

} // namespace vellis::state
