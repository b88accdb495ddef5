#include <offscreen/entry_points.hpp>

#include <vellis/engine.hpp>
#include <vellis/gl.hpp>

namespace offscreen {

bool loadEntryPoints(const Context& context) {
    const Context::Lookup lookup = context.ownLookup();
    return lookup != nullptr ? gladLoadGLLoader(lookup) == 1 : vellis::engine::init();
}

} // namespace offscreen
