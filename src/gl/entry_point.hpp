#pragma once

#include <type_traits>

#include <vellis/gl.hpp>

namespace vellis {

/// Calls a GL entry point that a context may lack, one of the extensions' or of a version
/// after 2.1. Does nothing where it is not there; the result is then 0 or null.
template <class Result, class... Parameters>
inline Result callIfLoaded(Result(GLAD_API_PTR* entryPoint)(Parameters...),
                           std::common_type_t<Parameters>... arguments) {
    if (entryPoint == nullptr)
        return Result();
    return entryPoint(arguments...);
}

} // namespace vellis
