#include "examples/x_client.hpp"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

/// What is known of the server.
struct XClient::Connection {
    Display* display;
    ::Window root = 0;
    Atom protocols = 0;
    Atom deleteWindow = 0;

    explicit Connection(const char* name) : display(XOpenDisplay(name)) {
        if (display == nullptr)
            throw std::runtime_error("There is no display " + std::string(name) + ".");
        root = DefaultRootWindow(display);
        protocols = XInternAtom(display, "WM_PROTOCOLS", False);
        deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", False);
    }
    ~Connection() { XCloseDisplay(display); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool isShown(::Window window) const {
        XWindowAttributes attributes;
        return XGetWindowAttributes(display, window, &attributes) != 0 &&
               attributes.map_state == IsViewable;
    }

    bool canBeAskedToClose(::Window window) const {
        Atom* atoms = nullptr;
        int count = 0;
        bool found = false;
        if (XGetWMProtocols(display, window, &atoms, &count) == 0)
            return false;
        for (int i = 0; i < count; ++i)
            found = found || atoms[i] == deleteWindow;
        XFree(atoms);
        return found;
    }

    /// Presses a button of the pointer, or lets it go.
    void sendButton(::Window window, int type, unsigned int button, XClient::Place at) const {
        XEvent event;
        std::memset(&event, 0, sizeof(event));
        event.xbutton.type = type;
        event.xbutton.display = display;
        event.xbutton.window = window;
        event.xbutton.root = root;
        event.xbutton.same_screen = True;
        event.xbutton.button = button;
        event.xbutton.x = at.x;
        event.xbutton.y = at.y;
        send(window, type == ButtonPress ? ButtonPressMask : ButtonReleaseMask, event);
    }

    void send(::Window window, long mask, XEvent& event) const {
        XSendEvent(display, window, False, mask, &event);
        XSync(display, False);
    }
};

XClient::XClient(const std::string& display)
    : connection_(std::make_unique<Connection>(display.c_str())) {
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
}

XClient::~XClient() = default;

void XClient::setResources(const std::string& resources) {
    XChangeProperty(connection_->display, connection_->root, XA_RESOURCE_MANAGER, XA_STRING, 8,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(resources.data()),
                    static_cast<int>(resources.size()));
    XSync(connection_->display, False);
}

std::vector<XClient::Window> XClient::findWindows() {
    ::Window root = 0;
    ::Window parent = 0;
    ::Window* windows = nullptr;
    unsigned int count = 0;
    std::vector<Window> found;
    XQueryTree(connection_->display, connection_->root, &root, &parent, &windows, &count);
    for (unsigned int i = 0; i < count; ++i) {
        if (connection_->isShown(windows[i]) && connection_->canBeAskedToClose(windows[i]))
            found.push_back(windows[i]);
    }
    if (windows != nullptr)
        XFree(windows);
    return found;
}

XClient::Window XClient::findWindow() {
    const std::vector<Window> windows = findWindows();
    return windows.empty() ? 0 : windows.back();
}

std::string XClient::title(Window window) {
    char* name = nullptr;
    if (XFetchName(connection_->display, window, &name) == 0 || name == nullptr)
        return {};
    std::string title = name;
    XFree(name);
    return title;
}

offscreen::Image XClient::capture(Window window) {
    XWindowAttributes attributes;
    if (XGetWindowAttributes(connection_->display, window, &attributes) == 0)
        return {};
    const auto width = static_cast<unsigned int>(attributes.width);
    const auto height = static_cast<unsigned int>(attributes.height);
    XImage* const seen =
        XGetImage(connection_->display, window, 0, 0, width, height, AllPlanes, ZPixmap);
    if (seen == nullptr)
        return {};
    offscreen::Image image(width, height);
    for (unsigned int y = 0; y < height; ++y) {
        for (unsigned int x = 0; x < width; ++x) {
            // The visual of the server's screen: eight bits each, red first.
            const unsigned long pixel = XGetPixel(seen, static_cast<int>(x), static_cast<int>(y));
            for (int channel = 0; channel < 3; ++channel)
                image.at(x, y)[channel] = static_cast<unsigned char>(pixel >> (16 - 8 * channel));
            image.at(x, y)[3] = 255;
        }
    }
    XDestroyImage(seen);
    return image;
}

void XClient::resize(Window window, unsigned int width, unsigned int height) {
    XResizeWindow(connection_->display, window, width, height);
    XSync(connection_->display, False);
}

void XClient::press(Window window, unsigned long keySymbol) {
    XEvent event;
    std::memset(&event, 0, sizeof(event));
    event.xkey.display = connection_->display;
    event.xkey.window = window;
    event.xkey.root = connection_->root;
    event.xkey.same_screen = True;
    event.xkey.keycode = XKeysymToKeycode(connection_->display, keySymbol);
    event.type = KeyPress;
    connection_->send(window, KeyPressMask, event);
    event.type = KeyRelease;
    connection_->send(window, KeyReleaseMask, event);
}

void XClient::point(Window window, Place at) {
    XEvent event;
    std::memset(&event, 0, sizeof(event));
    event.xmotion.type = MotionNotify;
    event.xmotion.display = connection_->display;
    event.xmotion.window = window;
    event.xmotion.root = connection_->root;
    event.xmotion.same_screen = True;
    event.xmotion.x = at.x;
    event.xmotion.y = at.y;
    connection_->send(window, PointerMotionMask, event);
}

void XClient::drag(Window window, Place from, Place to) {
    point(window, from);
    connection_->sendButton(window, ButtonPress, Button1, from);
    point(window, {(from.x + to.x) / 2, (from.y + to.y) / 2});
    point(window, to);
    connection_->sendButton(window, ButtonRelease, Button1, to);
}

void XClient::turnWheel(Window window, Place at, int steps) {
    point(window, at);
    const unsigned int button = steps > 0 ? Button4 : Button5;
    for (int i = 0; i < std::abs(steps); ++i) {
        connection_->sendButton(window, ButtonPress, button, at);
        connection_->sendButton(window, ButtonRelease, button, at);
    }
}

void XClient::requestClose(Window window) {
    XEvent event;
    std::memset(&event, 0, sizeof(event));
    event.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = connection_->protocols;
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(connection_->deleteWindow);
    event.xclient.data.l[1] = CurrentTime;
    connection_->send(window, NoEventMask, event);
}
