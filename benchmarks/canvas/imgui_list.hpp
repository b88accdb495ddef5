#pragma once

#include <memory>

#include <glm/mat4x4.hpp>
#include <imgui.h>
#include <vellis/shading.hpp>

namespace vellis::bench {

/// What Dear ImGui needs once: a context that has begun a frame, and its texture, which antialiased
/// lines and letters are read from.
class ImguiLibrary {
public:
    /// \param path        Of its only font; null for its own one.
    /// \param lineHeight  Of that font in pixels, as it counts them.
    explicit ImguiLibrary(const char* path = nullptr, float lineHeight = 0.f);

    unsigned int atlas() const { return atlas_; }

private:
    unsigned int atlas_ = 0;
};

/// A list of its vertices and indices, drawn as its own renderer for GL 2 and 3 does: the buffers
/// are filled anew each time.
class ImguiList {
public:
    /// \param matrix  From its coordinates to clip coordinates.
    ImguiList(const ImguiLibrary& library, const glm::mat4& matrix);
    ~ImguiList();
    ImguiList(const ImguiList&) = delete;
    ImguiList& operator=(const ImguiList&) = delete;

    template <class Add>
    void draw(Add add) {
        begin();
        add(list_);
        end();
    }

private:
    void begin();
    void end() const;
    void pointTo(std::size_t firstVertex) const;
    void attribute(const char* name, int size, unsigned int type, std::size_t offset) const;

    unsigned int atlas_;
    ImDrawList list_;
    std::shared_ptr<Program> program_;
    unsigned int vertexArray_ = 0;
    unsigned int buffers_[2] = {};
};

} // namespace vellis::bench
