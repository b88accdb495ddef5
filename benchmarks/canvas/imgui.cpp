#include "canvas/imgui.hpp"

#include <string>

#include "canvas/imgui_list.hpp"
#include "canvas/scenes.hpp"

namespace vellis::bench {
namespace {

const ImguiLibrary& library() {
    static const ImguiLibrary library;
    return library;
}

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
    ImguiList list_{library(), pixelsToClip()};
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
    ImguiList list_{library(), pixelsToClip()};
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
