#pragma once

#include "workloads/shaders.hpp"

namespace vellis::bench {

/// A GL that does nothing, in a handful of instructions a call: what is measured on it is the code
/// that calls GL.
///
/// Names count up, queries give 0, shaders compile, programs link, every uniform and attribute has
/// location 0, buffers map to one piece of memory of 64 KiB. It takes the place of all the loader's
/// entry points, with all flags set; engine::init() brings a driver back.
class NullDriver {
public:
    /// Puts it in place.
    static void install();

    /// The active uniforms and attributes that all programs report from now on.
    static void setVariables(Variables uniforms, Variables attributes);

    /// The entry point of that name, or null: a lookup for gladLoadGLLoader() and for the loaders
    /// of other libraries. Needs install().
    static void* lookUp(const char* name);

private:
    NullDriver() = default;
};

} // namespace vellis::bench
