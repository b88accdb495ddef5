#include "peers/qt_platform.hpp"

#include <QtCore/QtPlugin>
#include <QtGui/QSurfaceFormat>
#include <QtGui/private/qgenericunixeventdispatcher_p.h>
#include <QtGui/qpa/qplatformintegration.h>
#include <QtGui/qpa/qplatformintegrationplugin.h>
#include <QtGui/qpa/qplatformopenglcontext.h>

#include "peers/peers.hpp"

namespace vellis::bench {
namespace {

class HostedContext : public QPlatformOpenGLContext {
public:
    /// What vellis's loader covers, so that both choose among the same entry points.
    QSurfaceFormat format() const override {
        QSurfaceFormat format;
        format.setRenderableType(QSurfaceFormat::OpenGL);
        format.setProfile(QSurfaceFormat::CompatibilityProfile);
        format.setVersion(3, 2);
        return format;
    }
    void swapBuffers(QPlatformSurface*) override {}
    bool makeCurrent(QPlatformSurface*) override { return true; }
    void doneCurrent() override {}
    QFunctionPointer getProcAddress(const char* name) override {
        return reinterpret_cast<QFunctionPointer>(peerLookUp(name));
    }
};

class HostedPlatform : public QPlatformIntegration {
public:
    bool hasCapability(Capability capability) const override { return capability == OpenGL; }
    QPlatformWindow* createPlatformWindow(QWindow*) const override { return nullptr; }
    QPlatformBackingStore* createPlatformBackingStore(QWindow*) const override { return nullptr; }
    QPlatformOpenGLContext* createPlatformOpenGLContext(QOpenGLContext*) const override {
        return new HostedContext;
    }
    QAbstractEventDispatcher* createEventDispatcher() const override {
        return createUnixEventDispatcher();
    }
};

} // namespace

const char* const qtPlatformName = "hosted";

class HostedPlatformPlugin : public QPlatformIntegrationPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QPlatformIntegrationFactoryInterface_iid FILE "qt_platform.json")

public:
    QPlatformIntegration* create(const QString&, const QStringList&) override {
        return new HostedPlatform;
    }
};

} // namespace vellis::bench

using vellis::bench::HostedPlatformPlugin;
Q_IMPORT_PLUGIN(HostedPlatformPlugin)

#include "qt_platform.moc"
