/// vellis in windows of SDL 2, and windows of Dear ImGui above.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include <SDL.h>
#include <backends/imgui_impl_opengl2.h>
#include <backends/imgui_impl_opengl3.h>
#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

#include "run.hpp"

namespace {

using hosts::Run;

/// A window with a GL context, an ImGui context and a scene of its own.
class Window {
public:
    /// \throws std::runtime_error where there can be none.
    Window(Run& run, std::size_t number)
        : run_(run),
          number_(number),
          window_(SDL_CreateWindow("vellis in SDL 2", hosts::windowLeft(number), 0,
                                   hosts::windowWidth, hosts::windowHeight,
                                   SDL_WINDOW_OPENGL | SDL_WINDOW_ALLOW_HIGHDPI)),
          gl_(window_ != nullptr ? SDL_GL_CreateContext(window_) : nullptr) {
        if (gl_ == nullptr)
            throw std::runtime_error("No window with a GL context can be opened: " +
                                     std::string(SDL_GetError()));
        SDL_GL_SetSwapInterval(1);
        startImGui();
        scene_ = std::make_unique<hosts::Scene>(hosts::ground(number));
    }

    /// SDL does not tell before a GL context goes: whoever deletes it lets go first.
    ~Window() {
        makeCurrent();
        scene_.reset();
        stopImGui();
        SDL_GL_DeleteContext(gl_);
        SDL_DestroyWindow(window_);
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    bool has(Uint32 id) const { return SDL_GetWindowID(window_) == id; }

    void handle(const SDL_Event& event) {
        ImGui::SetCurrentContext(imGui_);
        ImGui_ImplSDL2_ProcessEvent(&event);
    }

    void draw() {
        makeCurrent();
        int width = 0;
        int height = 0;
        SDL_GL_GetDrawableSize(window_, &width, &height);
        run_.draw(*scene_, number_, {width, height});
        drawPanel();
        run_.finish(*scene_);
        SDL_GL_SwapWindow(window_);
    }

private:
    /// The GL context is SDL's to make current, and the one of ImGui's the program's.
    void makeCurrent() {
        SDL_GL_MakeCurrent(window_, gl_);
        ImGui::SetCurrentContext(imGui_);
    }

    void startImGui() {
        imGui_ = ImGui::CreateContext();
        ImGui::SetCurrentContext(imGui_);
        ImGui::GetIO().IniFilename = nullptr; // nothing is kept
        ImGui_ImplSDL2_InitForOpenGL(window_, gl_);
        if (run_.isCore())
            ImGui_ImplOpenGL3_Init("#version 330");
        else
            ImGui_ImplOpenGL2_Init();
    }

    void stopImGui() {
        if (run_.isCore())
            ImGui_ImplOpenGL3_Shutdown();
        else
            ImGui_ImplOpenGL2_Shutdown();
        ImGui_ImplSDL2_Shutdown();
        ImGui::DestroyContext(imGui_);
    }

    /// A window of ImGui's.
    void drawPanel() {
        namespace panel = hosts::panel;
        if (run_.isCore())
            ImGui_ImplOpenGL3_NewFrame();
        else
            ImGui_ImplOpenGL2_NewFrame();
        ImGui_ImplSDL2_NewFrame();
        ImGui::NewFrame();
        ImGui::SetNextWindowPos({panel::left, panel::top});
        ImGui::SetNextWindowSize({panel::width, panel::height});
        ImGui::PushStyleColor(ImGuiCol_WindowBg,
                              IM_COL32(panel::red, panel::green, panel::blue, 255));
        ImGui::Begin("Dear ImGui", nullptr,
                     ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoCollapse);
        ImGui::Text("frame %d", ImGui::GetFrameCount());
        ImGui::End();
        ImGui::PopStyleColor();
        ImGui::Render();
        if (run_.isCore())
            ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
        else
            ImGui_ImplOpenGL2_RenderDrawData(ImGui::GetDrawData());
    }

    Run& run_;
    std::size_t number_;
    SDL_Window* window_;
    SDL_GLContext gl_;
    ImGuiContext* imGui_ = nullptr;
    std::unique_ptr<hosts::Scene> scene_;
};

using Windows = std::array<std::unique_ptr<Window>, hosts::numWindows>;

void handle(const SDL_Event& event, Windows& windows) {
    if (event.type == SDL_QUIT)
        windows = {};
    for (auto& window : windows) {
        if (window == nullptr || !window->has(event.window.windowID))
            continue;
        if (event.type == SDL_WINDOWEVENT && event.window.event == SDL_WINDOWEVENT_CLOSE)
            window.reset();
        else
            window->handle(event);
    }
}

/// Does what is to be done next, until there is no window.
void show(Run& run, Windows& windows) {
    while (windows[0] != nullptr || windows[1] != nullptr) {
        const Run::Step step = run.next();
        if (step == Run::Step::CloseSecond)
            windows[1].reset();
        if (step == Run::Step::OpenSecond)
            windows[1] = std::make_unique<Window>(run, 1);
        for (auto& window : windows) {
            if (window != nullptr)
                window->draw();
        }
        SDL_Event event;
        if (step == Run::Step::Rest && SDL_WaitEvent(&event) != 0)
            handle(event, windows);
        while (SDL_PollEvent(&event) != 0)
            handle(event, windows);
    }
}

/// What the GL contexts of the windows are to be.
void choose(bool isCore) {
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, isCore ? 3 : 2);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, isCore ? 3 : 1);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, isCore ? SDL_GL_CONTEXT_PROFILE_CORE
                                                            : SDL_GL_CONTEXT_PROFILE_COMPATIBILITY);
}

} // namespace

int main(int argc, char** argv) {
    Run run(argc, argv, true);
    if (SDL_Init(SDL_INIT_VIDEO) != 0) {
        std::fprintf(stderr, "There is no display: %s\n", SDL_GetError());
        return EXIT_FAILURE;
    }
    choose(run.isCore());
    int status = EXIT_FAILURE;
    try {
        Windows windows = {std::make_unique<Window>(run, 0), std::make_unique<Window>(run, 1)};
        show(run, windows);
        status = run.status();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    SDL_Quit();
    return status;
}
