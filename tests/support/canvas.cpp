#include "support/canvas.hpp"

#include <offscreen/requirement.hpp>

#include "support/extension.hpp"
#include "support/render_test.hpp"
#include "support/scene.hpp"

namespace vellis::test {

std::unique_ptr<Canvas> Canvas::open(const Canvas* sharing, std::string& error) {
    offscreen::Settings settings = renderSettings(sceneSize, sceneSize);
    settings.sharing = sharing != nullptr ? sharing->gl.get() : nullptr;
    std::unique_ptr<Canvas> canvas(new Canvas);
    canvas->gl = offscreen::Context::open(settings, error);
    if (canvas->gl == nullptr)
        return nullptr;
    const Context::Lookup lookup = canvas->gl->ownLookup();
    canvas->context =
        sharing != nullptr ? Context::make(*sharing->context, lookup) : Context::make(lookup);
    if (canvas->context == nullptr)
        error = "there is no Context for a GL context";
    else
        error = offscreen::missingRequirement();
    return error.empty() ? std::move(canvas) : nullptr;
}

Canvas::~Canvas() {
    if (context == nullptr || gl == nullptr)
        return;
    if (gl->makeCurrent())
        context->dispose();
    gl->release();
}

void Canvas::leave() {
    gl->release();
    Context::useProcess();
}

std::shared_ptr<Context> Canvas::makeAnother() const {
    return gl->makeCurrent() ? Context::make(gl->ownLookup()) : nullptr;
}

bool tellsWhatIsCurrent() {
    return renderSettings(1, 1).platform != offscreen::Platform::OsMesa;
}

void CanvasTest::SetUp() {
    if (const auto hidden = extensionToHide())
        skip("each Context loads " + name(*hidden) + " anew");
}

void CanvasTest::TearDown() {
    Context::useProcess();
}

std::unique_ptr<Canvas> CanvasTest::open(const Canvas* sharing) {
    std::string error;
    auto canvas = Canvas::open(sharing, error);
    if (canvas == nullptr)
        skip(error);
    return canvas;
}

} // namespace vellis::test
