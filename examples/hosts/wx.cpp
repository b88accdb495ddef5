/// vellis in a wxGLCanvas of wxWidgets, and a panel of wxWidgets' own above.

#include <array>
#include <memory>

#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/frame.h>
#include <wx/glcanvas.h>
#include <wx/panel.h>
#include <wx/timer.h>

#include "run.hpp"

namespace {

using hosts::Run;

/// What wxWidgets draws, in a window of its own within the canvas.
class Panel : public wxPanel {
public:
    explicit Panel(wxWindow* parent)
        : wxPanel(parent, wxID_ANY, {hosts::panel::left, hosts::panel::top},
                  {hosts::panel::width, hosts::panel::height}) {
        SetBackgroundStyle(wxBG_STYLE_PAINT);
        Bind(wxEVT_PAINT, [this](wxPaintEvent&) { draw(); });
    }

private:
    void draw() {
        namespace panel = hosts::panel;
        wxPaintDC dc(this);
        dc.SetBackground(wxColour(panel::red, panel::green, panel::blue));
        dc.Clear();
        dc.SetTextForeground(*wxWHITE);
        dc.DrawText("wxPaintDC", 8, 8);
        dc.SetPen(wxPen(*wxWHITE, 2));
        dc.SetBrush(*wxTRANSPARENT_BRUSH);
        dc.DrawCircle(panel::width - 24, panel::height - 24, 16);
    }
};

/// A canvas with a GL context and a scene of its own.
class Canvas : public wxGLCanvas {
public:
    Canvas(Run& run, std::size_t number, wxWindow* parent, const wxGLAttributes& attributes)
        : wxGLCanvas(parent, attributes),
          run_(run),
          number_(number),
          gl_(this, nullptr, contextAttributes(run.isCore())) {
        Bind(wxEVT_PAINT, [this](wxPaintEvent&) { draw(); });
    }

    /// The GL context goes with the canvas: the last moment at which it can be made current.
    ~Canvas() override {
        if (SetCurrent(gl_))
            scene_.reset();
    }

private:
    /// Null for what is usual.
    static const wxGLContextAttrs* contextAttributes(bool isCore) {
        static wxGLContextAttrs core;
        core.Reset();
        core.PlatformDefaults().CoreProfile().OGLVersion(3, 3).EndList();
        return isCore ? &core : nullptr;
    }

    /// A GL context can be made current once its canvas is shown.
    void draw() {
        const wxPaintDC dc(this); // which every paint event wants
        if (!IsShownOnScreen() || !SetCurrent(gl_))
            return;
        if (scene_ == nullptr)
            scene_ = std::make_unique<hosts::Scene>(hosts::ground(number_));
        const wxSize size = GetClientSize() * GetContentScaleFactor();
        run_.draw(*scene_, number_, {size.x, size.y});
        run_.finish(*scene_);
        SwapBuffers();
    }

    Run& run_;
    std::size_t number_;
    wxGLContext gl_;
    std::unique_ptr<hosts::Scene> scene_;
};

class Window : public wxFrame {
public:
    Window(Run& run, std::size_t number)
        : wxFrame(nullptr, wxID_ANY, "vellis in wxWidgets", {hosts::windowLeft(number), 0}) {
        wxGLAttributes attributes;
        attributes.PlatformDefaults().RGBA().DoubleBuffer().EndList();
        canvas_ = new Canvas(run, number, this, attributes); // its parent deletes it
        new Panel(canvas_);
        SetClientSize(hosts::windowWidth, hosts::windowHeight);
        Show();
    }

    void draw() { canvas_->Refresh(false); }

private:
    Canvas* canvas_;
};

class App : public wxApp {
public:
    explicit App(Run& run) : run_(run) {}

    bool OnInit() override {
        for (std::size_t i = 0; i < hosts::numWindows; ++i)
            open(i);
        timer_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { proceed(); });
        timer_.Start(10);
        return true;
    }

private:
    void open(std::size_t number) {
        auto* const window = new Window(run_, number); // wxWidgets deletes it when it is closed
        windows_[number] = window;
        window->Bind(wxEVT_DESTROY, [this, number, window](wxWindowDestroyEvent& event) {
            if (event.GetEventObject() == window)
                windows_[number] = nullptr;
            event.Skip();
        });
    }

    void proceed() {
        const Run::Step step = run_.next();
        if (step == Run::Step::CloseSecond && windows_[1] != nullptr)
            windows_[1]->Destroy();
        if (step == Run::Step::OpenSecond)
            open(1);
        for (Window* window : windows_) {
            if (window != nullptr && step != Run::Step::Rest)
                window->draw();
        }
    }

    Run& run_;
    wxTimer timer_;
    std::array<Window*, hosts::numWindows> windows_{};
};

} // namespace

int main(int argc, char** argv) {
    Run run(argc, argv, true);
    wxApp::SetInstance(new App(run)); // wxWidgets deletes it
    int numArguments = 1;             // the others are ours
    const int status = wxEntry(numArguments, argv);
    return status != 0 ? status : run.status();
}
