/// A library that pretends to make contexts: built once for each platform, under the name that the
/// loader knows and with that platform's two functions, whose names are macros here.

namespace {

using Function = void (*)();

void* currentContext = nullptr;
Function (*lookUp)(const char* name) = nullptr;

} // namespace

extern "C" {

__attribute__((visibility("default"))) void* VELLIS_GET_CURRENT_CONTEXT() {
    return currentContext;
}

__attribute__((visibility("default"))) Function VELLIS_GET_PROC_ADDRESS(const char* name) {
    return lookUp != nullptr ? lookUp(name) : nullptr;
}

/// What a test makes of it: the context that is current, or null, and its functions.
__attribute__((visibility("default"))) void pretend(void* context,
                                                    Function (*lookup)(const char*)) {
    currentContext = context;
    lookUp = lookup;
}
}
