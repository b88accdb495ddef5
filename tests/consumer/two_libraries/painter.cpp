// The library that the program opens at run time: draws what another module made, and lets it go.

#include "view.hpp"

PLUG_IN_EXPORT void painterView(View& view) {
    view = viewFromHere();
}

/// \return whether the drawable is of the type that this module knows.
PLUG_IN_EXPORT bool paint(const Scene& scene) {
    scene.program->draw(*scene.shape);
    return dynamic_cast<Shape*>(scene.shape.get()) != nullptr;
}

PLUG_IN_EXPORT void release(const Scene& scene) {
    vellis::BufferObjectManager::instance().remove(scene.corners);
}
