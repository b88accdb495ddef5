#pragma once

#include <vellis/engine.hpp>

namespace common {

/// The library, ready to work in the current context while the object lives: until then the context
/// must stay current.
class InitialisedLibrary {
public:
    /// \param isLoaded  Whether the GL entry points are loaded, which is what the library is
    ///                  initialised with.
    /// \throws std::runtime_error with one sentence where the context is not good enough.
    explicit InitialisedLibrary(bool isLoaded = vellis::engine::init());
    ~InitialisedLibrary();
    InitialisedLibrary(const InitialisedLibrary&) = delete;
    InitialisedLibrary& operator=(const InitialisedLibrary&) = delete;
};

} // namespace common
