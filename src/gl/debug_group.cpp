#include "gl/debug_group.hpp"

#include <vellis/gl.hpp>

#include "gl/context_state.hpp"
#include "gl/labels.hpp"

namespace vellis::gl {

DebugGroup::DebugGroup(std::string_view name)
    : isPushed_(glPushDebugGroup != nullptr && glPopDebugGroup != nullptr &&
                (isWatched() || haveLabelsHere())) {
    if (!isPushed_)
        return;
    const std::string_view taken = cutText(name, surelyTaken);
    glPushDebugGroup(GL_DEBUG_SOURCE_APPLICATION, 0, static_cast<int>(taken.size()), taken.data());
}

DebugGroup::~DebugGroup() {
    if (isPushed_)
        glPopDebugGroup();
}

} // namespace vellis::gl
