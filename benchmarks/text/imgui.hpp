#pragma once

#include <string>
#include <vector>

#include "canvas/imgui_list.hpp"
#include "text/words.hpp"

namespace vellis::bench {

/// The same words through Dear ImGui, whose letters have the same size, in the same font.
class ImguiWords {
public:
    explicit ImguiWords(unsigned int size);
    void operator()();

private:
    std::vector<Word> words_;
    ImguiList list_;
};

} // namespace vellis::bench
