#include "text/runs.hpp"

#include <algorithm>

#include <fribidi.h>

namespace vellis::text {
namespace {

struct Levels {
    std::vector<FriBidiLevel> levels;
    bool isRightToLeft;
};

/// The first character that may turn others around, be it a letter or a control.
constexpr std::uint32_t firstTurning = 0x590;

/// The level of each character.
Levels findLevels(const std::uint32_t* characters, std::size_t count) {
    if (std::all_of(characters, characters + count,
                    [](std::uint32_t character) { return character < firstTurning; }))
        return {std::vector<FriBidiLevel>(count), false};
    const auto length = static_cast<FriBidiStrIndex>(count);
    std::vector<FriBidiCharType> types(count);
    std::vector<FriBidiBracketType> brackets(count);
    fribidi_get_bidi_types(characters, length, types.data());
    fribidi_get_bracket_types(characters, length, types.data(), brackets.data());
    Levels result{std::vector<FriBidiLevel>(count), false};
    FriBidiParType base = FRIBIDI_PAR_ON;
    const FriBidiLevel most = fribidi_get_par_embedding_levels_ex(
        types.data(), brackets.data(), length, &base, result.levels.data());
    if (most == 0) { // no memory
        std::fill(result.levels.begin(), result.levels.end(), FriBidiLevel{0});
        return result;
    }
    result.isRightToLeft = FRIBIDI_IS_RTL(base);
    return result;
}

bool isReal(hb_script_t script) {
    return script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED &&
           script != HB_SCRIPT_UNKNOWN;
}

/// The script of each character. One that has none of its own has that of the character before,
/// or, at the beginning, that of the first one that has.
std::vector<hb_script_t> findScripts(const std::uint32_t* characters, std::size_t count) {
    hb_unicode_funcs_t* const functions = hb_unicode_funcs_get_default();
    std::vector<hb_script_t> scripts(count);
    for (std::size_t i = 0; i < count; ++i)
        scripts[i] = hb_unicode_script(functions, characters[i]);
    const auto first = std::find_if(scripts.begin(), scripts.end(), isReal);
    hb_script_t last = first != scripts.end() ? *first : HB_SCRIPT_COMMON;
    for (hb_script_t& script : scripts) {
        if (isReal(script))
            last = script;
        script = last;
    }
    return scripts;
}

/// Puts runs into the order from left to right: from the highest level down to the lowest odd one,
/// what has at least that level is turned around.
void reorder(std::vector<Run>& runs) {
    std::uint8_t highest = 0;
    std::uint8_t lowestOdd = 255;
    for (const Run& run : runs) {
        highest = (std::max)(highest, run.level);
        if (run.isRightToLeft())
            lowestOdd = (std::min)(lowestOdd, run.level);
    }
    for (int level = highest; level >= lowestOdd; --level) {
        const auto isLower = [&](const Run& run) { return run.level < level; };
        for (auto begin = runs.begin(); begin != runs.end();) {
            begin = std::find_if_not(begin, runs.end(), isLower);
            const auto end = std::find_if(begin, runs.end(), isLower);
            std::reverse(begin, end);
            begin = end;
        }
    }
}

} // namespace

LineRuns findRuns(const std::uint32_t* characters, std::size_t count) {
    if (count == 0)
        return {{}, false};
    const Levels levels = findLevels(characters, count);
    const std::vector<hb_script_t> scripts = findScripts(characters, count);
    LineRuns result{{}, levels.isRightToLeft};
    for (std::size_t i = 0; i < count; ++i) {
        const auto level = static_cast<std::uint8_t>(levels.levels[i]);
        if (result.runs.empty() || result.runs.back().level != level ||
            result.runs.back().script != scripts[i])
            result.runs.push_back({i, i, scripts[i], level});
        result.runs.back().end = i + 1;
    }
    reorder(result.runs);
    return result;
}

} // namespace vellis::text
