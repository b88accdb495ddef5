#include "support/surface.hpp"

#include <offscreen/requirement.hpp>

#include "support/extension.hpp"
#include "support/render_test.hpp"
#include "support/scene.hpp"

namespace vellis::test {

std::unique_ptr<Surface> Surface::open(const Surface* sharing, std::string& error) {
    offscreen::Settings settings = renderSettings(sceneSize, sceneSize);
    settings.sharing = sharing != nullptr ? sharing->gl.get() : nullptr;
    std::unique_ptr<Surface> surface(new Surface);
    surface->gl = offscreen::Context::open(settings, error);
    if (surface->gl == nullptr)
        return nullptr;
    const Context::Lookup lookup = surface->gl->ownLookup();
    surface->context =
        sharing != nullptr ? Context::make(*sharing->context, lookup) : Context::make(lookup);
    if (surface->context == nullptr)
        error = "there is no Context for a GL context";
    else
        error = offscreen::missingRequirement();
    return error.empty() ? std::move(surface) : nullptr;
}

Surface::~Surface() {
    if (context == nullptr || gl == nullptr)
        return;
    if (gl->makeCurrent())
        context->dispose();
    gl->release();
}

void Surface::leave() {
    gl->release();
    Context::useProcess();
}

std::shared_ptr<Context> Surface::makeAnother() const {
    return gl->makeCurrent() ? Context::make(gl->ownLookup()) : nullptr;
}

bool tellsWhatIsCurrent() {
    return renderSettings(1, 1).platform != offscreen::Platform::OsMesa;
}

void SurfaceTest::SetUp() {
    if (const auto hidden = extensionToHide())
        skip("each Context loads " + name(*hidden) + " anew");
}

void SurfaceTest::TearDown() {
    Context::useProcess();
}

std::unique_ptr<Surface> SurfaceTest::open(const Surface* sharing) {
    std::string error;
    auto surface = Surface::open(sharing, error);
    if (surface == nullptr)
        skip(error);
    return surface;
}

} // namespace vellis::test
