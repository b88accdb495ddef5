#pragma once

namespace common {

/// The library, ready to work in the current context while the object lives: until then the context
/// must stay current.
class InitialisedLibrary {
public:
    /// \throws std::runtime_error with one sentence where the context is not good enough.
    InitialisedLibrary();
    ~InitialisedLibrary();
    InitialisedLibrary(const InitialisedLibrary&) = delete;
    InitialisedLibrary& operator=(const InitialisedLibrary&) = delete;
};

} // namespace common
