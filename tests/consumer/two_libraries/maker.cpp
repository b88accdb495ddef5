// The library that the program is linked with: makes what is drawn.

#include "view.hpp"

PLUG_IN_EXPORT void makerView(View& view) {
    view = viewFromHere();
}

PLUG_IN_EXPORT void make(Scene& scene) {
    scene.program = vellis::Program::make("#version 120 \n"
                                          "attribute vec2 position; \n"
                                          "void main() { gl_Position = vec4(position, 0.0, 1.0); }",
                                          "#version 120 \n"
                                          "void main() { gl_FragColor = vec4(1.0); }");
    const auto corners = vellis::VertexAttributeBuffer<glm::vec2>::make(
        {{-1.f, -1.f}, {1.f, -1.f}, {1.f, 1.f}, {-1.f, 1.f}}, vellis::BufferUsage::Static,
        vellis::BufferAccess::Draw);
    scene.shape = Shape::make(scene.program, {"position", corners});
    scene.corners = vellis::BufferObjectManager::instance().add(corners);
}
