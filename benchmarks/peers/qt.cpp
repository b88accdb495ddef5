#include <stdexcept>
#include <string>

#include <QtGui/QGuiApplication>
#include <QtGui/QMatrix4x4>
#include <QtGui/QOpenGLContext>
#include <QtGui/QOpenGLFunctions>
#include <QtGui/QSurface>
#include <QtGui/QVector4D>
#include <QtGui/qpa/qplatformoffscreensurface.h>
#include <QtOpenGL/QOpenGLBuffer>
#include <QtOpenGL/QOpenGLShaderProgram>
#include <QtOpenGL/QOpenGLVertexArrayObject>

#include "peers/peers.hpp"
#include "peers/qt_platform.hpp"

namespace vellis::bench {
namespace {

/// A surface that stands for whatever the current context draws to.
class HostedSurface : public QSurface {
public:
    HostedSurface() : QSurface(Offscreen) {}
    QSurfaceFormat format() const override { return {}; }
    QPlatformSurface* surfaceHandle() const override { return &handle_; }
    SurfaceType surfaceType() const override { return OpenGLSurface; }
    QSize size() const override { return {1, 1}; }

private:
    mutable QPlatformOffscreenSurface handle_{nullptr};
};

const QMatrix4x4 mvp = QMatrix4x4() * 0.5f;
const QVector4D color(0.2f, 0.4f, 0.6f, 1.f);
constexpr float corners[] = {-0.5f, -0.5f, 0.5f, -0.5f, 0.f, 0.5f};

/// 1 KiB.
constexpr int numBytes = 1024;
const std::vector<float> contents(numBytes / sizeof(float), 0.5f);

/// A program with positions for it.
struct Parts {
    Parts() {
        program.addShaderFromSourceCode(QOpenGLShader::Vertex, flatVertexSource);
        program.addShaderFromSourceCode(QOpenGLShader::Fragment, flatFragmentSource);
        program.link();
        positions.create();
        positions.bind();
        positions.allocate(corners, sizeof(corners));
        positions.release();
        location = program.attributeLocation("position");
    }

    void record(QOpenGLVertexArrayObject& vertexArray) {
        vertexArray.bind();
        positions.bind();
        program.setAttributeBuffer(location, GL_FLOAT, 0, 2);
        program.enableAttributeArray(location);
        positions.release();
        vertexArray.release();
    }

    QOpenGLShaderProgram program;
    QOpenGLBuffer positions{QOpenGLBuffer::VertexBuffer};
    int location = -1;
};

struct Scene : Parts {
    Scene() {
        vertexArray.create();
        record(vertexArray);
    }

    void begin() {
        program.bind();
        vertexArray.bind();
    }

    void drawAndEnd() {
        functions->glDrawArrays(GL_TRIANGLES, 0, 3);
        vertexArray.release();
        program.release();
    }

    QOpenGLVertexArrayObject vertexArray;
    QOpenGLFunctions* functions = QOpenGLContext::currentContext()->functions();
};

class DrawWithLocations {
public:
    void operator()() {
        scene_.begin();
        scene_.program.setUniformValue(mvp_, mvp);
        scene_.program.setUniformValue(color_, color);
        scene_.drawAndEnd();
    }

private:
    Scene scene_;
    int mvp_ = scene_.program.uniformLocation("mvp");
    int color_ = scene_.program.uniformLocation("color");
};

class DrawByName {
public:
    void operator()() {
        scene_.begin();
        scene_.program.setUniformValue("mvp", mvp);
        scene_.program.setUniformValue("color", color);
        scene_.drawAndEnd();
    }

private:
    Scene scene_;
};

struct MakeDrawable {
    void operator()() {
        QOpenGLVertexArrayObject vertexArray;
        vertexArray.create();
        parts.program.bind();
        parts.record(vertexArray);
        parts.program.release();
    }
    Parts parts;
};

/// A bound buffer is what most calls need: they act on the binding.
struct Buffer {
    Buffer() {
        buffer.create();
        buffer.setUsagePattern(QOpenGLBuffer::StaticDraw);
        buffer.bind();
        buffer.allocate(contents.data(), numBytes);
        buffer.release();
    }
    QOpenGLBuffer buffer{QOpenGLBuffer::VertexBuffer};
};

struct MakeBuffer {
    void operator()() const { Buffer(); }
};

struct LoadPart : Buffer {
    void operator()() {
        buffer.bind();
        buffer.write(numBytes / 4, contents.data(), numBytes / 2);
        buffer.release();
    }
};

struct Map : Buffer {
    void operator()() {
        buffer.bind();
        void* const store = buffer.mapRange(0, numBytes, QOpenGLBuffer::RangeWrite);
        if (store != nullptr) {
            *static_cast<float*>(store) = 1.f;
            buffer.unmap();
        }
        buffer.release();
    }
};

/// What Qt needs to be in use.
class Qt {
public:
    Qt() {
        if (!context_.create() || !context_.makeCurrent(&surface_))
            throw std::runtime_error("Qt does not take the current context.");
    }

private:
    /// The arguments that a QGuiApplication refers to.
    struct Arguments {
        std::string program = "vellis_peers";
        std::string option = "-platform";
        std::string platform = qtPlatformName;
        char* values[4] = {program.data(), option.data(), platform.data(), nullptr};
        int count = 3;
    };
    Arguments arguments_;
    QGuiApplication application_{arguments_.count, arguments_.values};
    HostedSurface surface_;
    QOpenGLContext context_;
};

} // namespace

std::vector<PeerRow> qtRows();
std::vector<PeerRow> qtRows() {
    [[maybe_unused]] static const Qt* const qt = new Qt;
    return {
        {"draw/handles", makeSide<DrawWithLocations>},
        {"draw/names", makeSide<DrawByName>},
        {"draw/names_asked", makeSide<DrawByName>},
        {"draw/alternating", makeSide<Alternating<DrawWithLocations>>},
        {"drawable/make", makeSide<MakeDrawable>},
        {"buffer/make", makeSide<MakeBuffer>},
        {"buffer/load_part", makeSide<LoadPart>},
        {"buffer/map", makeSide<Map>},
    };
}

} // namespace vellis::bench
