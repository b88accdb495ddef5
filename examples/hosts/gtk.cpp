/// vellis in a GtkGLArea of GTK 3, and cairo above in a widget that lies over it.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <gtk/gtk.h>

#include "run.hpp"

namespace {

using hosts::Run;

/// A window with a GtkGLArea, whose GL context and scene are its own.
class Window {
public:
    Window(Run& run, std::size_t number)
        : run_(run),
          number_(number),
          window_(gtk_window_new(GTK_WINDOW_TOPLEVEL)),
          area_(gtk_gl_area_new()) {
        GtkWidget* const overlay = gtk_overlay_new();
        gtk_container_add(GTK_CONTAINER(overlay), area_);
        gtk_overlay_add_overlay(GTK_OVERLAY(overlay), newPanel());
        gtk_container_add(GTK_CONTAINER(window_), overlay);
        listen();
        gtk_window_set_title(GTK_WINDOW(window_), "vellis in GTK 3");
        gtk_window_set_default_size(GTK_WINDOW(window_), hosts::windowWidth, hosts::windowHeight);
        gtk_window_move(GTK_WINDOW(window_), hosts::windowLeft(number), 0);
        gtk_widget_show_all(window_);
    }
    ~Window() {
        if (window_ != nullptr)
            gtk_widget_destroy(window_);
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    bool isOpen() const { return window_ != nullptr; }

    void draw() { gtk_gl_area_queue_render(GTK_GL_AREA(area_)); }

private:
    static Window& self(gpointer window) { return *static_cast<Window*>(window); }

    void listen() {
        g_signal_connect(area_, "realize",
                         G_CALLBACK(+[](GtkGLArea*, gpointer window) { self(window).begin(); }),
                         this);
        g_signal_connect(area_, "render",
                         G_CALLBACK(+[](GtkGLArea*, GdkGLContext*, gpointer window) -> gboolean {
                             self(window).render();
                             return TRUE;
                         }),
                         this);
        g_signal_connect(area_, "unrealize",
                         G_CALLBACK(+[](GtkGLArea*, gpointer window) { self(window).letGo(); }),
                         this);
        g_signal_connect(
            window_, "destroy",
            G_CALLBACK(+[](GtkWidget*, gpointer window) { self(window).window_ = nullptr; }), this);
    }

    /// The area has a GL context now.
    void begin() {
        gtk_gl_area_make_current(GTK_GL_AREA(area_));
        if (const GError* error = gtk_gl_area_get_error(GTK_GL_AREA(area_)))
            std::fprintf(stderr, "There is no GL context: %s\n", error->message);
        else
            scene_ = std::make_unique<hosts::Scene>(hosts::ground(number_));
    }

    /// The GL context is current, and the framebuffer object that GTK shows the area from is bound.
    void render() {
        const int scale = gtk_widget_get_scale_factor(area_);
        run_.draw(*scene_, number_,
                  {gtk_widget_get_allocated_width(area_) * scale,
                   gtk_widget_get_allocated_height(area_) * scale});
        run_.finish(*scene_);
    }

    /// The GL context goes when the area is no longer shown in its window.
    void letGo() {
        gtk_gl_area_make_current(GTK_GL_AREA(area_));
        scene_.reset();
    }

    /// What cairo draws, in a widget of its own.
    static GtkWidget* newPanel() {
        namespace panel = hosts::panel;
        GtkWidget* const result = gtk_drawing_area_new();
        gtk_widget_set_size_request(result, panel::width, panel::height);
        gtk_widget_set_halign(result, GTK_ALIGN_START);
        gtk_widget_set_valign(result, GTK_ALIGN_START);
        gtk_widget_set_margin_start(result, panel::left);
        gtk_widget_set_margin_top(result, panel::top);
        g_signal_connect(result, "draw",
                         G_CALLBACK(+[](GtkWidget*, cairo_t* cairo, gpointer) -> gboolean {
                             drawPanel(cairo);
                             return TRUE;
                         }),
                         nullptr);
        return result;
    }

    static void drawPanel(cairo_t* cairo) {
        namespace panel = hosts::panel;
        cairo_set_source_rgb(cairo, panel::red / 255., panel::green / 255., panel::blue / 255.);
        cairo_paint(cairo);
        cairo_set_source_rgb(cairo, 1., 1., 1.);
        cairo_set_font_size(cairo, 14.);
        cairo_move_to(cairo, 8., 20.);
        cairo_show_text(cairo, "cairo");
        cairo_new_path(cairo);
        cairo_arc(cairo, panel::width - 24., panel::height - 24., 16., 0., 2. * G_PI);
        cairo_stroke(cairo);
    }

    Run& run_;
    std::size_t number_;
    GtkWidget* window_; ///< null once it is closed
    GtkWidget* area_;
    std::unique_ptr<hosts::Scene> scene_;
};

/// What the main loop does again and again.
struct Program {
    Run run;
    std::array<std::unique_ptr<Window>, hosts::numWindows> windows;

    void proceed() {
        const Run::Step step = run.next();
        if (step == Run::Step::CloseSecond)
            windows[1].reset();
        if (step == Run::Step::OpenSecond)
            windows[1] = std::make_unique<Window>(run, 1);
        bool isAny = false;
        for (const auto& window : windows) {
            const bool isOpen = window != nullptr && window->isOpen();
            isAny = isAny || isOpen;
            if (isOpen && step != Run::Step::Rest)
                window->draw();
        }
        if (!isAny)
            gtk_main_quit();
    }
};

} // namespace

int main(int argc, char** argv) {
    Program program = {Run(argc, argv, false), {}};
    if (gtk_init_check(nullptr, nullptr) == FALSE) {
        std::fputs("There is no display.\n", stderr);
        return EXIT_FAILURE;
    }
    for (std::size_t i = 0; i < hosts::numWindows; ++i)
        program.windows[i] = std::make_unique<Window>(program.run, i);
    g_timeout_add(
        10,
        [](gpointer of) -> gboolean {
            static_cast<Program*>(of)->proceed();
            return G_SOURCE_CONTINUE;
        },
        &program);
    gtk_main();
    return program.run.status();
}
