#include "canvas/imgui_list.hpp"

#include <cstdlib>

#include <vellis/gl.hpp>

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

static_assert(sizeof(ImDrawIdx) == 2);

template <class T>
void fill(unsigned int target, const ImVector<T>& elements) {
    glBufferData(target, static_cast<GLsizeiptr>(elements.size_in_bytes()), elements.Data,
                 GL_STREAM_DRAW);
}

} // namespace

ImguiLibrary::ImguiLibrary(const char* path, float lineHeight) {
    ImGui::CreateContext();
    ImGuiIO& io = ImGui::GetIO();
    io.DisplaySize = ImVec2(pictureSize, pictureSize);
    io.IniFilename = nullptr;
    if (path != nullptr && io.Fonts->AddFontFromFileTTF(path, lineHeight) == nullptr)
        std::exit(EXIT_FAILURE);
    unsigned char* texels = nullptr;
    int width = 0;
    int height = 0;
    io.Fonts->GetTexDataAsRGBA32(&texels, &width, &height);
    glGenTextures(1, &atlas_);
    glBindTexture(GL_TEXTURE_2D, atlas_);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
    glBindTexture(GL_TEXTURE_2D, 0);
    ImGui::NewFrame();
}

ImguiList::ImguiList(const ImguiLibrary& library, const glm::mat4& matrix)
    : atlas_(library.atlas()),
      list_(ImGui::GetDrawListSharedData()),
      program_(Program::make(vertexSource, fragmentSource)) {
    glGenVertexArrays(1, &vertexArray_);
    glGenBuffers(2, buffers_);
    glBindVertexArray(vertexArray_);
    glBindBuffer(GL_ARRAY_BUFFER, buffers_[0]);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers_[1]);
    pointTo(0);
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glUseProgram(program_->id());
    glUniformMatrix4fv(glGetUniformLocation(program_->id(), "matrix"), 1, GL_FALSE, &matrix[0][0]);
    glUseProgram(0);
}

ImguiList::~ImguiList() {
    glDeleteBuffers(2, buffers_);
    glDeleteVertexArrays(1, &vertexArray_);
}

void ImguiList::begin() {
    list_._ResetForNewFrame();
    list_.PushClipRectFullScreen();
    list_.PushTextureID(nullptr);
    list_.Flags = ImDrawListFlags_AntiAliasedLines | ImDrawListFlags_AntiAliasedLinesUseTex |
                  ImDrawListFlags_AllowVtxOffset;
}

void ImguiList::end() const {
    glUseProgram(program_->id());
    glBindTexture(GL_TEXTURE_2D, atlas_);
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glBindVertexArray(vertexArray_);
    glBindBuffer(GL_ARRAY_BUFFER, buffers_[0]);
    fill(GL_ARRAY_BUFFER, list_.VtxBuffer);
    fill(GL_ELEMENT_ARRAY_BUFFER, list_.IdxBuffer);
    // An index has 16 bits: each command says where its vertices begin.
    for (const ImDrawCmd& command : list_.CmdBuffer) {
        if (list_.CmdBuffer.Size > 1)
            pointTo(command.VtxOffset);
        glDrawElements(GL_TRIANGLES, static_cast<int>(command.ElemCount), GL_UNSIGNED_SHORT,
                       reinterpret_cast<const void*>(command.IdxOffset * sizeof(ImDrawIdx)));
    }
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glDisable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, 0);
    glUseProgram(0);
}

void ImguiList::pointTo(std::size_t firstVertex) const {
    const std::size_t first = firstVertex * sizeof(ImDrawVert);
    attribute("position", 2, GL_FLOAT, first + IM_OFFSETOF(ImDrawVert, pos));
    attribute("place", 2, GL_FLOAT, first + IM_OFFSETOF(ImDrawVert, uv));
    attribute("color", 4, GL_UNSIGNED_BYTE, first + IM_OFFSETOF(ImDrawVert, col));
}

void ImguiList::attribute(const char* name, int size, unsigned int type, std::size_t offset) const {
    const unsigned int location = program_->getAttribLoc(name);
    glVertexAttribPointer(location, size, type, type == GL_UNSIGNED_BYTE ? GL_TRUE : GL_FALSE,
                          sizeof(ImDrawVert), reinterpret_cast<const void*>(offset));
    glEnableVertexAttribArray(location);
}

} // namespace vellis::bench
