#include <glbinding/Binding.h>
#include <glbinding/gl/gl.h>
#include <globjects/Buffer.h>
#include <globjects/Program.h>
#include <globjects/Shader.h>
#include <globjects/State.h>
#include <globjects/Uniform.h>
#include <globjects/VertexArray.h>
#include <globjects/VertexAttributeBinding.h>
#include <globjects/base/ref_ptr.h>
#include <globjects/globjects.h>

#include <glm/mat4x4.hpp>

#include "peers/peers.hpp"

// glbinding asks GLX for its entry points, whatever made the context. These two take GLX's place in
// this program.
extern "C" {
using EntryPoint = void (*)();
[[gnu::visibility("default")]] EntryPoint glXGetProcAddress(const unsigned char* name);
[[gnu::visibility("default")]] void* glXGetCurrentContext();

EntryPoint glXGetProcAddress(const unsigned char* name) {
    return reinterpret_cast<EntryPoint>(
        vellis::bench::peerLookUp(reinterpret_cast<const char*>(name)));
}

void* glXGetCurrentContext() {
    static int context;
    return &context;
}
}

namespace vellis::bench {
namespace {

using globjects::ref_ptr;

const glm::mat4 mvp(0.5f);
const glm::vec4 color(0.2f, 0.4f, 0.6f, 1.f);
const std::vector<glm::vec2> corners = {{-0.5f, -0.5f}, {0.5f, -0.5f}, {0.f, 0.5f}};

/// 1 KiB.
constexpr gl::GLsizeiptr numBytes = 1024;
const std::vector<float> contents(numBytes / sizeof(float), 0.5f);

/// A program with positions for it.
struct Parts {
    Parts() {
        program->attach(globjects::Shader::fromString(gl::GL_VERTEX_SHADER, flatVertexSource));
        program->attach(globjects::Shader::fromString(gl::GL_FRAGMENT_SHADER, flatFragmentSource));
        program->link();
        positions->setData(corners, gl::GL_STATIC_DRAW);
        location = program->getAttributeLocation("position");
    }

    void record(globjects::VertexArray& vertexArray) const {
        globjects::VertexAttributeBinding* const binding = vertexArray.binding(0);
        binding->setAttribute(location);
        binding->setBuffer(positions, 0, sizeof(glm::vec2));
        binding->setFormat(2, gl::GL_FLOAT);
        vertexArray.enable(location);
    }

    ref_ptr<globjects::Program> program = new globjects::Program;
    ref_ptr<globjects::Buffer> positions = new globjects::Buffer;
    gl::GLint location = -1;
};

struct Scene : Parts {
    Scene() { record(*vertexArray); }

    /// VertexArray::drawArrays binds.
    void drawAndEnd() const {
        vertexArray->drawArrays(gl::GL_TRIANGLES, 0, 3);
        globjects::VertexArray::unbind();
        globjects::Program::release();
    }

    ref_ptr<globjects::VertexArray> vertexArray = new globjects::VertexArray;
};

class DrawWithHandles {
public:
    void operator()() {
        scene_.program->use();
        mvp_->set(mvp);
        color_->set(color);
        scene_.drawAndEnd();
    }

private:
    Scene scene_;
    globjects::Uniform<glm::mat4>* mvp_ = scene_.program->getUniform<glm::mat4>("mvp");
    globjects::Uniform<glm::vec4>* color_ = scene_.program->getUniform<glm::vec4>("color");
};

class DrawByName {
public:
    void operator()() {
        scene_.program->use();
        scene_.program->setUniform("mvp", mvp);
        scene_.program->setUniform("color", color);
        scene_.drawAndEnd();
    }

private:
    Scene scene_;
};

struct MakeDrawable {
    void operator()() const {
        const ref_ptr<globjects::VertexArray> vertexArray = new globjects::VertexArray;
        parts.record(*vertexArray);
        globjects::VertexArray::unbind();
    }
    Parts parts;
};

struct Buffer {
    Buffer() { buffer->setData(numBytes, contents.data(), gl::GL_STATIC_DRAW); }
    ref_ptr<globjects::Buffer> buffer = new globjects::Buffer;
};

struct MakeBuffer {
    void operator()() const { Buffer(); }
};

struct LoadPart : Buffer {
    void operator()() { buffer->setSubData(numBytes / 4, numBytes / 2, contents.data()); }
};

struct Map : Buffer {
    void operator()() {
        void* const store =
            buffer->mapRange(0, numBytes, gl::GL_MAP_WRITE_BIT | gl::GL_MAP_FLUSH_EXPLICIT_BIT);
        if (store == nullptr)
            return;
        *static_cast<float*>(store) = 1.f;
        buffer->flushMappedRange(0, numBytes);
        buffer->unmap();
    }
};

/// A State of two of the records. It has no setting for the equations, and the constructor for
/// settings of one's own does not compile as C++17: those two are put back by hand.
struct Scope {
    void operator()() const {
        using globjects::getEnum;
        const ref_ptr<globjects::State> saved =
            new globjects::State(globjects::State::DeferredMode);
        saved->setEnabled(gl::GL_BLEND, globjects::isEnabled(gl::GL_BLEND));
        saved->blendFuncSeparate(getEnum(gl::GL_BLEND_SRC_RGB), getEnum(gl::GL_BLEND_DST_RGB),
                                 getEnum(gl::GL_BLEND_SRC_ALPHA), getEnum(gl::GL_BLEND_DST_ALPHA));
        const gl::GLenum equationRgb = getEnum(gl::GL_BLEND_EQUATION_RGB);
        const gl::GLenum equationAlpha = getEnum(gl::GL_BLEND_EQUATION_ALPHA);
        gl::glEnable(gl::GL_BLEND);
        gl::glBlendEquation(gl::GL_FUNC_ADD);
        gl::glBlendFuncSeparate(gl::GL_SRC_ALPHA, gl::GL_ONE_MINUS_SRC_ALPHA, gl::GL_ONE,
                                gl::GL_ONE_MINUS_SRC_ALPHA);
        saved->apply();
        gl::glBlendEquationSeparate(equationRgb, equationAlpha);
    }
};

} // namespace

std::vector<PeerRow> globjectsRows();
std::vector<PeerRow> globjectsRows() {
    globjects::init();
    return {
        {"draw/handles", makeSide<DrawWithHandles>},
        {"draw/names", makeSide<DrawByName>},
        {"draw/names_asked", makeSide<DrawByName>},
        {"draw/alternating", makeSide<Alternating<DrawWithHandles>>},
        {"drawable/make", makeSide<MakeDrawable>},
        {"buffer/make", makeSide<MakeBuffer>},
        {"buffer/load_part", makeSide<LoadPart>},
        {"buffer/map", makeSide<Map>},
        {"state/blending", makeSide<Scope>},
    };
}

} // namespace vellis::bench
