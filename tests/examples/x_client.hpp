#pragma once

#include <memory>
#include <string>
#include <vector>

#include <offscreen/image.hpp>

/// A client of an X server that does to a window what a person and a desktop do. Where the server
/// refuses something, as it does when a window goes away, nothing happens.
class XClient {
public:
    /// A window's name on the server.
    using Window = unsigned long;

    /// \param display  As in `$DISPLAY`.
    /// \throws std::runtime_error where there is no such display.
    explicit XClient(const std::string& display);
    ~XClient();
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    /// Sets the resources that programs which start from now on read, such as `Xft.dpi: 96`.
    void setResources(const std::string& resources);

    /// The windows that are shown and can be asked to close, the lowest one first.
    std::vector<Window> findWindows();

    /// The uppermost of them; 0 where there is none.
    Window findWindow();

    std::string title(Window window);

    /// What is to be seen of a window; empty where nothing is.
    offscreen::Image capture(Window window);

    void resize(Window window, unsigned int width, unsigned int height);

    /// Presses a key and lets it go.
    /// \param keySymbol  Such as `XK_Left`.
    void press(Window window, unsigned long keySymbol);

    /// A place in a window in pixels, from its upper left corner.
    struct Place {
        int x;
        int y;
    };

    /// Moves the pointer.
    void point(Window window, Place at);

    /// Moves the pointer to a place, presses its left button there, moves on and lets it go.
    void drag(Window window, Place from, Place to);

    /// Moves the pointer to a place and turns its wheel there.
    /// \param steps  Positive away from the user.
    void turnWheel(Window window, Place at, int steps);

    /// Asks for what the close button of a desktop asks for.
    void requestClose(Window window);

private:
    struct Connection;

    std::unique_ptr<Connection> connection_;
};
