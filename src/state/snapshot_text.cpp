#include "state/snapshot_text.hpp"

#include <algorithm>
#include <cstring>

#include <vellis/gl.hpp>

#include "gl/enumerator_names.hpp"
#include "gl/log.hpp"
#include "state/later_enumerators.hpp"
#include "state/state_values.hpp"

namespace vellis::state::snapshot {
namespace {

using internal::Decimal;
using internal::ValueKind;

/// One after the other, each with its end: without a pointer for each.
constexpr std::uint16_t enumerators[] = {
#define VELLIS_ENUMERATOR(name) name,
#include "state/snapshot_enumerators.inc"
#undef VELLIS_ENUMERATOR
};
constexpr char enumeratorNames[] =
#define VELLIS_ENUMERATOR(name) #name "\0"
#include "state/snapshot_enumerators.inc"
#undef VELLIS_ENUMERATOR
    ;

std::string numberText(Word number) {
    return std::string(std::string_view(Decimal(number)));
}

/// The name of an object, as everything of state prints it.
std::string objectText(Print, Word name) {
    return numberText(name);
}

/// Values as the tracked states print theirs.
template <class T, std::size_t N>
std::string plainText(ValueKind kind, unsigned int pname, T (internal::StateValues::*member)[N],
                      const T* values, unsigned int count) {
    internal::StateValues all;
    std::copy_n(values, count, all.*member);
    return text({"", pname, kind, count}, all);
}

std::string integersText(ValueKind kind, const Piece& piece, const Word* words,
                         unsigned int count) {
    int integers[internal::mostStateValues] = {};
    std::memcpy(integers, words, count * sizeof(Word));
    return plainText(kind, piece.pname, &internal::StateValues::integers, integers, count);
}

std::string hexadecimalText(const Piece& piece, const Word* words, unsigned int count) {
    if (piece.query == Query::AttributePointer) { // one number of two words
        std::uintptr_t pointer = 0;
        std::memcpy(&pointer, words, sizeof pointer);
        std::string digits;
        do {
            digits.insert(digits.begin(), "0123456789abcdef"[pointer & 15]);
            pointer >>= 4;
        } while (pointer != 0);
        return "0x" + digits;
    }
    return integersText(ValueKind::Hexadecimal, piece, words, count);
}

std::string floatsText(const Piece& piece, const Word* words) {
    float values[internal::mostStateValues] = {};
    for (unsigned int i = 0; i < piece.count; ++i) {
        if (piece.query == Query::Double) {
            double value = 0;
            std::memcpy(&value, words + 2 * i, sizeof value);
            values[i] = static_cast<float>(value);
        } else {
            std::memcpy(values + i, words + i, sizeof(float));
        }
    }
    return plainText(ValueKind::Float, piece.pname, &internal::StateValues::floats, values,
                     piece.count);
}

const char* enumeratorName(Word value) {
    for (const gl::EnumeratorNames* some :
         {&gl::comparisons, &gl::stencilOperations, &gl::blendEquations}) {
        if (const char* const name = some->find(value))
            return name;
    }
    const char* name = enumeratorNames;
    for (const Word enumerator : enumerators) {
        if (enumerator == value)
            return name;
        name += std::strlen(name) + 1;
    }
    return nullptr;
}

std::string enumeratorText(const Piece& piece, Word value) {
    const char* const name = enumeratorName(value);
    return name != nullptr ? name : integersText(ValueKind::Hexadecimal, piece, &value, 1);
}

std::string colorBufferText(const Piece& piece, Word buffer) {
    if (buffer == GL_NONE)
        return "GL_NONE";
    if (buffer >= GL_COLOR_ATTACHMENT0 && buffer < GL_COLOR_ATTACHMENT0 + 32)
        return "GL_COLOR_ATTACHMENT" + numberText(buffer - GL_COLOR_ATTACHMENT0);
    return enumeratorText(piece, buffer);
}

/// The texts of all values, separated; one where it is that of all.
template <class Text>
std::string listText(const Word* words, unsigned int size, Text textOf) {
    if (std::all_of(words, words + size, [=](Word word) { return word == words[0]; }))
        return textOf(words[0]);
    std::string all;
    for (unsigned int i = 0; i < size; ++i)
        all += (i != 0 ? ", " : "") + textOf(words[i]);
    return all;
}

std::string booleansText(const Word* words, unsigned int count) {
    GLboolean bytes[sizeof(Word)] = {};
    std::memcpy(bytes, words, sizeof bytes);
    return plainText(ValueKind::Boolean, 0, &internal::StateValues::booleans, bytes, count);
}

std::string rangeText(const Word* words) {
    std::string all = objectText(Print::Buffer, words[0]);
    std::uint64_t numbers[2];
    std::memcpy(numbers, words + 1, sizeof numbers);
    if (numbers[1] != 0)
        all += " from " + std::to_string(numbers[0]) + ", " + std::to_string(numbers[1]) + " bytes";
    return all;
}

} // namespace

std::string nameText(const Piece& piece, unsigned int index) {
    std::string name = nameOf(piece);
    if (piece.per == Per::ClipDistance)
        return name.substr(0, name.size() - 1) + numberText(index);
    return piece.per == Per::Context ? name : name + "[" + numberText(index) + "]";
}

std::string valueText(const Piece& piece, const Word* words, unsigned int size) {
    switch (piece.print) {
    case Print::Decimal:
        return integersText(ValueKind::Decimal, piece, words, piece.count);
    case Print::Hexadecimal:
        return hexadecimalText(piece, words, piece.count);
    case Print::Float:
        return floatsText(piece, words);
    case Print::Boolean:
        return booleansText(words, 1);
    case Print::BooleanList:
        return listText(words, size, [](Word word) { return booleansText(&word, 1); });
    case Print::MaskList:
        return listText(words, size, [](Word word) { return booleansText(&word, 4); });
    case Print::Enum:
        return listText(words, size, [&](Word word) { return enumeratorText(piece, word); });
    case Print::ColorBuffer:
        while (size > 1 && words[size - 1] == GL_NONE)
            --size;
        return listText(words, size, [&](Word word) { return colorBufferText(piece, word); });
    case Print::Unit:
        return "GL_TEXTURE" + numberText(words[0] - GL_TEXTURE0);
    case Print::Range:
        return rangeText(words);
    default:
        return objectText(piece.print, words[0]);
    }
}

} // namespace vellis::state::snapshot
