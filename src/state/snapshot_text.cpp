#include "state/snapshot_text.hpp"

#include <algorithm>
#include <cstring>

#include <vellis/gl.hpp>

#include "gl/enumerator_names.hpp"
#include "gl/labels.hpp"
#include "gl/log.hpp"
#include "state/later_enumerators.hpp"
#include "state/state_values.hpp"

namespace vellis::state::snapshot {
namespace {

using internal::Decimal;

/// One after the other, each with its end: without a pointer for each.
constexpr std::uint16_t enumerators[] = {
#define VELLIS_ENUMERATOR(name) GL_##name,
#include "state/snapshot_enumerators.inc"
#undef VELLIS_ENUMERATOR
};
constexpr char enumeratorNames[] =
#define VELLIS_ENUMERATOR(name) #name "\0"
#include "state/snapshot_enumerators.inc"
#undef VELLIS_ENUMERATOR
    ;

/// \name Add to a text
/// @{

void addNumber(std::string& text, Word number) {
    text += Decimal(number);
}

void addHexadecimal(std::string& text, std::uint64_t number) {
    text += "0x";
    int shift = 60;
    while (shift > 0 && number >> shift == 0)
        shift -= 4;
    for (; shift >= 0; shift -= 4)
        text += "0123456789abcdef"[number >> shift & 15];
}

/// The name of an object, and its label, if it has one.
void addObject(std::string& text, Print print, Word name) {
    struct Row {
        Print print;
        gl::Kind kind;
    };
    constexpr Row rows[] = {
        {Print::Buffer, gl::Kind::Buffer},           {Print::Texture, gl::Kind::Texture},
        {Print::VertexArray, gl::Kind::VertexArray}, {Print::Framebuffer, gl::Kind::Framebuffer},
        {Print::Program, gl::Kind::Program},         {Print::Renderbuffer, gl::Kind::Renderbuffer},
    };
    for (const Row& row : rows) {
        if (row.print == print) {
            text += gl::nameText(row.kind, name);
            return;
        }
    }
    addNumber(text, name);
}

/// As the tracked states print theirs.
void addFloat(std::string& text, float value) {
    internal::StateValues values;
    values.floats[0] = value;
    text += internal::text({"", 0, internal::ValueKind::Float, 1}, values);
}

/// The name without its `GL_`, or null.
const char* enumeratorName(Word value) {
    for (const gl::EnumeratorNames* some :
         {&gl::comparisons, &gl::stencilOperations, &gl::blendEquations}) {
        if (const char* const name = some->find(value))
            return name + 3;
    }
    const char* name = enumeratorNames;
    for (const Word enumerator : enumerators) {
        if (enumerator == value)
            return name;
        name += std::strlen(name) + 1;
    }
    return nullptr;
}

void addEnumerator(std::string& text, Word value) {
    const char* const name = enumeratorName(value);
    if (name == nullptr)
        return addHexadecimal(text, value);
    text += "GL_";
    text += name;
}

void addColorBuffer(std::string& text, Word buffer) {
    if (buffer == GL_NONE) {
        text += "GL_NONE";
    } else if (buffer - GL_COLOR_ATTACHMENT0 < 32) {
        text += "GL_COLOR_ATTACHMENT";
        addNumber(text, buffer - GL_COLOR_ATTACHMENT0);
    } else {
        addEnumerator(text, buffer);
    }
}

void addTruths(std::string& text, const Word* words, unsigned int count) {
    unsigned char bytes[sizeof(Word)];
    std::memcpy(bytes, words, sizeof bytes);
    for (unsigned int i = 0; i < count; ++i) {
        text += i != 0 ? ", " : "";
        text += bytes[i] != 0 ? "true" : "false";
    }
}

void addRange(std::string& text, const Word* words) {
    std::uint64_t range[2];
    std::memcpy(range, words + 1, sizeof range);
    addObject(text, Print::Buffer, words[0]);
    if (range[1] == 0)
        return;
    text += " from ";
    addHexadecimal(text, range[0]);
    text += ", bytes ";
    addHexadecimal(text, range[1]);
}

/// One value.
void addValue(std::string& text, const Piece& piece, const Word* words) {
    switch (piece.print) {
    case Print::Decimal:
        text += Decimal(static_cast<int>(*words));
        break;
    case Print::Hexadecimal: {
        std::uint64_t number = *words;
        if (piece.query == Query::AttributePointer)
            std::memcpy(&number, words, sizeof number);
        addHexadecimal(text, number);
        break;
    }
    case Print::Float: {
        double value = 0;
        float narrow = 0;
        std::memcpy(&narrow, words, sizeof narrow);
        if (piece.query == Query::Double) {
            std::memcpy(&value, words, sizeof value);
            narrow = static_cast<float>(value);
        }
        addFloat(text, narrow);
        break;
    }
    case Print::Boolean:
        addTruths(text, words, 1);
        break;
    case Print::MaskList:
        addTruths(text, words, 4);
        break;
    case Print::Enum:
        addEnumerator(text, *words);
        break;
    case Print::ColorBuffer:
        addColorBuffer(text, *words);
        break;
    case Print::Unit:
        text += "GL_TEXTURE";
        addNumber(text, *words - GL_TEXTURE0);
        break;
    case Print::Range:
        addRange(text, words);
        break;
    default:
        addObject(text, piece.print, *words);
        break;
    }
}

/// @}

} // namespace

std::string nameText(const Piece& piece, unsigned int index) {
    std::string name = nameOf(piece);
    if (piece.per == Per::Context)
        return name;
    if (piece.per == Per::ClipDistance) {
        name.pop_back();
        addNumber(name, index);
    } else {
        name += '[';
        addNumber(name, index);
        name += ']';
    }
    return name;
}

std::string valueText(const Piece& piece, const Word* words, unsigned int size) {
    if (piece.print == Print::ColorBuffer) {
        while (size > 1 && words[size - 1] == GL_NONE)
            --size;
    } else if (piece.count == 0 && std::equal(words + 1, words + size, words)) {
        size = 1; // the same for all draw buffers
    }
    const bool isWide = piece.query == Query::Double || piece.query == Query::AttributePointer;
    const unsigned int step = piece.print == Print::Range ? size : isWide ? 2 : 1;
    std::string text;
    for (unsigned int i = 0; i < size; i += step) {
        text += i != 0 ? ", " : "";
        addValue(text, piece, words + i);
    }
    return text;
}

} // namespace vellis::state::snapshot
