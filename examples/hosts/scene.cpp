#include "scene.hpp"

#include <cmath>
#include <cstdio>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_precision.hpp>

#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

namespace hosts {
namespace {

using vellis::Framebuffer;
using Texture = vellis::Texture2D<glm::u8vec4>;
template <class T>
using Buffer = vellis::VertexAttributeBuffer<T>;

const glm::vec3 sand(0.91f, 0.77f, 0.42f);
const glm::vec3 coral(0.91f, 0.44f, 0.32f);
const glm::vec4 ink(0.97f, 0.96f, 0.94f, 1.f);

/// The height of the layout, and the width and height of the texture.
constexpr unsigned int side = 320;

constexpr char millVertexSource[] = R"(uniform vec2 turn;
IN vec3 position;
IN vec3 color;
OUT vec3 paint;
void main() {
    paint = color;
    gl_Position = vec4(mat2(turn, -turn.y, turn.x) * position.xy, position.z, 1.0);
}
)";

constexpr char millFragmentSource[] = R"(IN vec3 paint;
DECL_OUT0;
void main() {
    OUT0 = vec4(paint, 1.0);
}
)";

constexpr char sheetVertexSource[] = R"(uniform mat4 mvp;
IN vec2 corner;
OUT vec2 place;
void main() {
    place = corner;
    gl_Position = mvp * vec4(corner, 0.0, 1.0);
}
)";

constexpr char sheetFragmentSource[] = R"(#if __VERSION__ >= 130
#define texture2D texture
#endif
uniform sampler2D picture;
uniform sampler2D paper;
IN vec2 place;
DECL_OUT0;
void main() {
    vec4 over = texture2D(picture, place);
    OUT0 = vec4(mix(texture2D(paper, 5.0 * place).rgb, over.rgb, over.a), 1.0);
}
)";

/// A program of two sources that are written for the library's preamble. Core profiles want the
/// newer GLSL.
std::shared_ptr<vellis::Program> makeProgram(const char* vertexSource, const char* fragmentSource) {
    using Version = vellis::Shader::Version;
    const bool isNew = GLVersion.major > 3 || (GLVersion.major == 3 && GLVersion.minor >= 3);
    const Version version = isNew ? Version::V330 : Version::V210;
    return vellis::Program::make(vellis::VertexShader::make(vertexSource, version),
                                 vellis::FragmentShader::make(fragmentSource, version));
}

template <class T>
std::shared_ptr<Buffer<T>> makeBuffer(const std::vector<T>& elements) {
    return Buffer<T>::make(elements.data(), static_cast<unsigned int>(elements.size()),
                           vellis::BufferUsage::Static, vellis::BufferAccess::Draw);
}

glm::vec2 onCircle(float radius, float angle) {
    return radius * glm::vec2(std::cos(angle), std::sin(angle));
}

/// The corners of the mill's triangles: a hub, and blades behind it.
std::vector<glm::vec3> millPositions(unsigned int numHub, unsigned int numBlades) {
    std::vector<glm::vec3> positions;
    const auto add = [&](const glm::vec2& a, const glm::vec2& b, float depth) {
        for (const glm::vec2& corner : {glm::vec2(0.f), a, b})
            positions.emplace_back(corner, depth);
    };
    const auto angle = [](unsigned int i, unsigned int count) {
        return glm::radians(360.f) * static_cast<float>(i) / static_cast<float>(count);
    };
    for (unsigned int i = 0; i < numHub; ++i)
        add(onCircle(0.2f, angle(i, numHub)), onCircle(0.2f, angle(i + 1, numHub)), -0.5f);
    for (unsigned int i = 0; i < numBlades; ++i)
        add(onCircle(0.85f, angle(i, numBlades)), onCircle(0.7f, angle(i, numBlades) + 0.5f), 0.f);
    return positions;
}

std::vector<glm::vec3> millColors(unsigned int numHub, unsigned int numBlades) {
    std::vector<glm::vec3> colors(std::size_t{3} * numHub, sand);
    colors.resize(std::size_t{3} * (numHub + numBlades), coral);
    return colors;
}

/// A Context for the GL context that is current; the one that was in use is in use again.
std::shared_ptr<vellis::Context> makeContext() {
    vellis::Context* const before = vellis::Context::current();
    std::shared_ptr<vellis::Context> context = vellis::Context::make();
    const bool isGoodEnough = context != nullptr && GLAD_GL_VERSION_2_1;
    if (before != nullptr)
        before->use();
    else
        vellis::Context::useProcess();
    return isGoodEnough ? context : nullptr;
}

} // namespace

/// All that lives in the GL context.
struct Scene::Parts {
    static constexpr unsigned int numHub = 24;
    static constexpr unsigned int numBlades = 5;

    using Mill = vellis::drawable::Triangles<vellis::VertexAttribute<glm::vec3>,
                                             vellis::VertexAttribute<glm::vec3>>;
    using Sheet = vellis::drawable::TriangleStrip<vellis::VertexAttribute<glm::vec2>>;

    std::shared_ptr<vellis::Program> millProgram =
        makeProgram(millVertexSource, millFragmentSource);
    std::shared_ptr<vellis::Program> sheetProgram =
        makeProgram(sheetVertexSource, sheetFragmentSource);
    std::shared_ptr<Buffer<glm::vec3>> positions = makeBuffer(millPositions(numHub, numBlades));
    std::shared_ptr<Buffer<glm::vec3>> colors = makeBuffer(millColors(numHub, numBlades));
    std::shared_ptr<Buffer<glm::vec2>> corners =
        makeBuffer<glm::vec2>({{0.f, 0.f}, {1.f, 0.f}, {0.f, 1.f}, {1.f, 1.f}});
    std::shared_ptr<Mill> mill =
        Mill::make(millProgram, {"position", positions}, {"color", colors});
    std::shared_ptr<Sheet> sheet = Sheet::make(sheetProgram, {"corner", corners});
    std::shared_ptr<Texture> paper = makePaper();
    std::shared_ptr<Texture> picture = Texture::make(side, side);
    std::shared_ptr<vellis::Renderbuffer<vellis::depth24_stencil8>> depth =
        vellis::Renderbuffer<vellis::depth24_stencil8>::make(side, side);
    std::shared_ptr<Framebuffer> framebuffer = Framebuffer::make();
    std::shared_ptr<vellis::Canvas> canvas = vellis::Canvas::make();

    Parts() {
        framebuffer->bind();
        framebuffer->attachFragmentOut(*picture);
        framebuffer->attachDepthStencilbuffer(*depth);
        framebuffer->unbind();
    }

    static std::shared_ptr<Texture> makePaper() {
        const glm::u8vec4 light(236, 231, 219, 255);
        const glm::u8vec4 dark(222, 214, 196, 255);
        const glm::u8vec4 texels[] = {light, dark, dark, light};
        return Texture::make(2, 2, texels, vellis::Sampler::nearest_repeat());
    }

    /// The mill, into the texture.
    void drawPicture(float turn) const {
        framebuffer->bind();
        Framebuffer::setViewport(0, 0, side, side);
        Framebuffer::clear(glm::vec4(0.f), 1.f, 0);
        Framebuffer::enableDepthTest(Framebuffer::FragmentComparator::LESS);
        millProgram->draw(*mill, vellis::Uniform("turn", onCircle(1.f, turn)));
        Framebuffer::disableDepthTest();
        framebuffer->unbind(); // the toolkit's, which need not be the default one
    }

    /// The texture, over paper. Of the two samplers' units the second is left active.
    void drawSheet(const glm::mat4& mvp) const {
        sheetProgram->draw(*sheet, vellis::Uniform("mvp", mvp),
                           vellis::Uniform("picture", *picture), vellis::Uniform("paper", *paper));
    }

    /// Lines along the lower and the right edge, one of which goes on beneath what the toolkit
    /// draws.
    void drawCanvas(const glm::mat4& mvp, float pixelRatio) const {
        canvas->begin(mvp);
        canvas->setPixelRatio(pixelRatio);
        vellis::Stroke line(ink, 8.f);
        line.cap = vellis::Stroke::Cap::Round;
        line.join = vellis::Stroke::Join::Round;
        canvas->drawLineStrip(line, {{20.f, 30.f}, {400.f, 30.f}, {400.f, 300.f}});
        std::vector<glm::vec2> wave;
        for (float x = 20.f; x <= 300.f; x += 4.f)
            wave.emplace_back(x, 64.f + 18.f * std::sin(0.08f * x));
        canvas->drawLineStrip(vellis::Stroke(glm::vec4(0.15f, 0.27f, 0.33f, 0.7f), 4.f), wave);
        canvas->drawBullseyes(glm::vec4(coral, 1.f), ink, 18.f,
                              {{20.f, 30.f}, {400.f, 30.f}, {400.f, 180.f}});
        canvas->end();
    }
};

Scene::Scene(const glm::vec4& ground) : context_(makeContext()), ground_(ground) {
    if (context_ == nullptr) {
        std::fputs("The window has no context of OpenGL 2.1 or newer.\n", stderr);
        return;
    }
    const vellis::Context::Scope scope(*context_);
    const vellis::state::Kept kept; // making objects leaves some bound
    vellis::state::reset();
    auto parts = std::make_unique<Parts>();
    for (const auto& program : {parts->millProgram, parts->sheetProgram}) {
        if (program->hasLinkError()) {
            vellis::diagnostics::print_program_link_info(program->id());
            return;
        }
    }
    parts_ = std::move(parts);
}

// What the window's GL context shares with others outlives it: so the objects go first.
Scene::~Scene() {
    if (context_ == nullptr)
        return;
    if (context_->use())
        parts_.reset();
    context_->dispose();
}

void Scene::draw(const glm::uvec2& size, float turn) const {
    if (parts_ == nullptr)
        return;
    const vellis::Context::Scope scope(*context_);
    if (!scope)
        return;
    const vellis::state::Kept kept; // until the end of the function
    vellis::state::reset();         // whatever the toolkit has left

    parts_->drawPicture(turn);
    const float pixelRatio = static_cast<float>(size.y) / static_cast<float>(side);
    const float width = static_cast<float>(size.x) / pixelRatio;
    const glm::mat4 mvp = glm::ortho(0.f, width, 0.f, static_cast<float>(side));
    Framebuffer::setViewport(0, 0, size.x, size.y);
    Framebuffer::clearColor(ground_);
    parts_->drawSheet(glm::scale(mvp, glm::vec3(static_cast<float>(side))));
    parts_->drawCanvas(mvp, pixelRatio);
}

} // namespace hosts
