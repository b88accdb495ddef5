#pragma once

#include <string>

#include <dlfcn.h>

namespace offscreen {

/// A shared library of the system. It is never closed: GL drivers keep data per thread and handlers
/// for the end of the process, and do not survive it.
class SharedLibrary {
public:
    explicit SharedLibrary(const char* name) : handle_(dlopen(name, RTLD_LAZY | RTLD_LOCAL)) {
        noteError();
    }

    /// Writes the function of that name to \p function; null where it is missing.
    template <class Function>
    void find(const char* name, Function*& function) {
        if (handle_ == nullptr)
            return;
        function = reinterpret_cast<Function*>(dlsym(handle_, name));
        if (function == nullptr)
            noteError();
    }

    /// What went wrong first; empty where nothing has.
    const std::string& error() const { return error_; }

private:
    void noteError() {
        const char* message = dlerror();
        if (message != nullptr && error_.empty())
            error_ = message;
    }

    void* handle_;
    std::string error_;
};

} // namespace offscreen
