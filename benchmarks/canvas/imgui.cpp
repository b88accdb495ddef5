#include "canvas/imgui.hpp"

#include <string>

#include <imgui.h>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>

#include "canvas/scenes.hpp"

namespace vellis::bench {
namespace {

constexpr const char* vertexSource = "#version 120\n"
                                     "uniform mat4 matrix;\n"
                                     "attribute vec2 position, place;\n"
                                     "attribute vec4 color;\n"
                                     "varying vec2 texel;\n"
                                     "varying vec4 paint;\n"
                                     "void main() {\n"
                                     "  texel = place;\n"
                                     "  paint = color;\n"
                                     "  gl_Position = matrix * vec4(position, 0.0, 1.0);\n"
                                     "}\n";
constexpr const char* fragmentSource =
    "#version 120\n"
    "uniform sampler2D atlas;\n"
    "varying vec2 texel;\n"
    "varying vec4 paint;\n"
    "void main() { gl_FragColor = paint * texture2D(atlas, texel); }\n";

/// What Dear ImGui needs once: a context that has begun a frame, and its texture, which antialiased
/// lines are read from.
class Library {
public:
    static Library& instance() {
        static Library library;
        return library;
    }
    unsigned int atlas() const { return atlas_; }

private:
    Library() {
        ImGui::CreateContext();
        ImGuiIO& io = ImGui::GetIO();
        io.DisplaySize = ImVec2(pictureSize, pictureSize);
        io.IniFilename = nullptr;
        unsigned char* texels = nullptr;
        int width = 0;
        int height = 0;
        io.Fonts->GetTexDataAsRGBA32(&texels, &width, &height);
        glGenTextures(1, &atlas_);
        glBindTexture(GL_TEXTURE_2D, atlas_);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     texels);
        glBindTexture(GL_TEXTURE_2D, 0);
        ImGui::NewFrame();
    }

    unsigned int atlas_ = 0;
};

/// A list of its vertices and indices, drawn in one call, as its own renderer for GL 2 and 3 does:
/// the buffers are filled anew each time.
class DrawList {
public:
    DrawList() : list_(ImGui::GetDrawListSharedData()) {
        glGenVertexArrays(1, &vertexArray_);
        glGenBuffers(2, buffers_);
        glBindVertexArray(vertexArray_);
        glBindBuffer(GL_ARRAY_BUFFER, buffers_[0]);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers_[1]);
        attribute("position", 2, GL_FLOAT, IM_OFFSETOF(ImDrawVert, pos));
        attribute("place", 2, GL_FLOAT, IM_OFFSETOF(ImDrawVert, uv));
        attribute("color", 4, GL_UNSIGNED_BYTE, IM_OFFSETOF(ImDrawVert, col));
        glBindVertexArray(0);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        const glm::mat4 matrix = pixelsToClip();
        glUseProgram(program_->id());
        glUniformMatrix4fv(glGetUniformLocation(program_->id(), "matrix"), 1, GL_FALSE,
                           &matrix[0][0]);
        glUseProgram(0);
    }
    ~DrawList() {
        glDeleteBuffers(2, buffers_);
        glDeleteVertexArrays(1, &vertexArray_);
    }
    DrawList(const DrawList&) = delete;
    DrawList& operator=(const DrawList&) = delete;

    template <class Add>
    void draw(Add add) {
        list_._ResetForNewFrame();
        list_.PushClipRectFullScreen();
        list_.PushTextureID(nullptr);
        list_.Flags = ImDrawListFlags_AntiAliasedLines | ImDrawListFlags_AntiAliasedLinesUseTex;
        add(list_);
        glUseProgram(program_->id());
        glBindTexture(GL_TEXTURE_2D, Library::instance().atlas());
        glEnable(GL_BLEND);
        glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
        glBindVertexArray(vertexArray_);
        glBindBuffer(GL_ARRAY_BUFFER, buffers_[0]);
        fill(GL_ARRAY_BUFFER, list_.VtxBuffer);
        fill(GL_ELEMENT_ARRAY_BUFFER, list_.IdxBuffer);
        glDrawElements(GL_TRIANGLES, list_.IdxBuffer.Size, GL_UNSIGNED_SHORT, nullptr);
        glBindVertexArray(0);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        glDisable(GL_BLEND);
        glBindTexture(GL_TEXTURE_2D, 0);
        glUseProgram(0);
    }

private:
    static_assert(sizeof(ImDrawIdx) == 2);

    void attribute(const char* name, int size, unsigned int type, std::size_t offset) const {
        const unsigned int location = program_->getAttribLoc(name);
        glVertexAttribPointer(location, size, type, type == GL_UNSIGNED_BYTE ? GL_TRUE : GL_FALSE,
                              sizeof(ImDrawVert), reinterpret_cast<const void*>(offset));
        glEnableVertexAttribArray(location);
    }

    template <class T>
    static void fill(unsigned int target, const ImVector<T>& elements) {
        glBufferData(target, static_cast<GLsizeiptr>(elements.size_in_bytes()), elements.Data,
                     GL_STREAM_DRAW);
    }

    Library& library_ = Library::instance();
    ImDrawList list_;
    std::shared_ptr<Program> program_ = Program::make(vertexSource, fragmentSource);
    unsigned int vertexArray_ = 0;
    unsigned int buffers_[2] = {};
};

std::vector<ImVec2> toImgui(const std::vector<glm::vec2>& points) {
    std::vector<ImVec2> result;
    for (const glm::vec2& point : points)
        result.emplace_back(point.x, point.y);
    return result;
}

unsigned int color() {
    return ImGui::ColorConvertFloat4ToU32(
        ImVec4(sceneColor.r, sceneColor.g, sceneColor.b, sceneColor.a));
}

class ImguiLines {
public:
    explicit ImguiLines(unsigned int size) : points_(toImgui(shortLines(size))) {}
    void operator()() {
        list_.draw([&](ImDrawList& list) {
            for (std::size_t i = 0; i < points_.size(); i += 2)
                list.AddLine(points_[i], points_[i + 1], color());
        });
    }

private:
    std::vector<ImVec2> points_;
    DrawList list_;
};

template <unsigned int width>
class ImguiStrip {
public:
    explicit ImguiStrip(unsigned int size) : points_(toImgui(walk(size))) {}
    void operator()() {
        list_.draw([&](ImDrawList& list) {
            list.AddPolyline(points_.data(), static_cast<int>(points_.size()), color(),
                             ImDrawFlags_None, float{width});
        });
    }

private:
    std::vector<ImVec2> points_;
    DrawList list_;
};

struct Row {
    const char* workload;
    MakeSide make;
};
constexpr Row rows[] = {
    {"lines/antialiased", makeSide<ImguiLines>},
    {"strip/thin", makeSide<ImguiStrip<1>>},
    {"strip/wide", makeSide<ImguiStrip<8>>},
};

} // namespace

void addImgui(std::vector<Workload>& workloads) {
    for (Workload& workload : workloads) {
        for (const Row& row : rows) {
            if (workload.name == std::string(row.workload))
                workload.implementations.push_back({"imgui", row.make});
        }
    }
}

} // namespace vellis::bench
