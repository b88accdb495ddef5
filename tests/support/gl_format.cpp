#include "support/gl_format.hpp"

#include <charconv>
#include <cstring>
#include <iterator>
#include <string_view>

#include "support/gl_signatures.hpp"

namespace vellis::test {
namespace {

template <class T>
std::string shortest(T value) {
    char digits[32];
    return {std::begin(digits), std::to_chars(std::begin(digits), std::end(digits), value).ptr};
}

std::int64_t integer(const Argument& argument) {
    switch (argument.kind) {
    case Argument::Kind::Signed:
        return argument.signedValue;
    case Argument::Kind::Unsigned:
        return static_cast<std::int64_t>(argument.unsignedValue);
    case Argument::Kind::Float:
    case Argument::Kind::Double:
        return static_cast<std::int64_t>(argument.floating);
    case Argument::Kind::Pointer:
        break;
    }
    return static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(argument.pointer));
}

std::string number(const Argument& argument) {
    switch (argument.kind) {
    case Argument::Kind::Unsigned:
        return shortest(argument.unsignedValue);
    case Argument::Kind::Float:
        return shortest(static_cast<float>(argument.floating));
    case Argument::Kind::Double:
        return shortest(argument.floating);
    case Argument::Kind::Signed:
    case Argument::Kind::Pointer:
        break;
    }
    return shortest(integer(argument));
}

std::string boolean(const Argument& argument) {
    const std::int64_t value = integer(argument);
    return value == 0 ? "GL_FALSE" : value == 1 ? "GL_TRUE" : number(argument);
}

std::string formatValue(const Argument& argument, Meaning meaning, Group group) {
    switch (meaning) {
    case Meaning::Boolean:
        return boolean(argument);
    case Meaning::Enum:
        return enumName(group, static_cast<std::uint32_t>(integer(argument)));
    case Meaning::Bits:
        return bitNames(group, static_cast<std::uint32_t>(integer(argument)));
    case Meaning::Number:
    case Meaning::ByPname:
        break;
    }
    return number(argument);
}

std::string escaped(char character) {
    switch (character) {
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    case '\r':
        return "\\r";
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    default:
        break;
    }
    const auto code = static_cast<unsigned char>(character);
    if (code >= 0x20 && code != 0x7F)
        return {character};
    // Three octal digits, so that a digit that follows is not taken for a part of the escape.
    const char octal[] = {'\\', static_cast<char>('0' + code / 64),
                          static_cast<char>('0' + code / 8 % 8), static_cast<char>('0' + code % 8)};
    return {std::begin(octal), std::end(octal)};
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char character : text)
        result += escaped(character);
    return result + '"';
}

/// The elements 0 to \p count - 1, as \p element writes them.
template <class Element>
std::string list(std::size_t count, Element element) {
    std::string result = "{";
    for (std::size_t i = 0; i < count; ++i) {
        if (i != 0)
            result += ", ";
        result += element(i);
    }
    return result + '}';
}

/// One call while it is written.
class Call {
public:
    Call(EntryPoint entryPoint, const Argument* arguments, PixelBuffers pixelBuffers)
        : signature_(signature(entryPoint)),
          arguments_(arguments),
          pixelBuffers_(pixelBuffers) {}

    std::size_t numParameters() const { return signature_.count; }

    std::string argument(std::size_t i) const {
        const ParameterSignature& parameter = signature_.parameters[i];
        const Argument& argument = arguments_[i];
        switch (parameter.form) {
        case Form::Value:
            return value(parameter, argument);
        case Form::Offset:
            return number(argument);
        case Form::PixelInput:
            return pixelBuffers_.unpack ? number(argument) : pointer(argument, "data");
        case Form::PixelOutput:
            return pixelBuffers_.pack ? number(argument) : pointer(argument, "out");
        case Form::Array:
        case Form::Text:
        case Form::Texts:
        case Form::Data:
        case Form::Output:
            break;
        }
        return argument.pointer == nullptr ? "null" : contents(i);
    }

private:
    /// What stands behind a pointer that is not null.
    std::string contents(std::size_t i) const {
        const ParameterSignature& parameter = signature_.parameters[i];
        if (parameter.form == Form::Array)
            return array(parameter, arguments_[i]);
        if (parameter.form == Form::Text)
            return quoted(static_cast<const char*>(arguments_[i].pointer));
        if (parameter.form == Form::Texts)
            return texts(i);
        return parameter.form == Form::Output ? "out" : "data";
    }

    static std::string pointer(const Argument& argument, const char* word) {
        return argument.pointer == nullptr ? "null" : word;
    }

    std::string value(const ParameterSignature& parameter, const Argument& argument) const {
        if (argument.kind == Argument::Kind::Pointer)
            return pointer(argument, "function");
        const PnameSignature values = resolved(parameter);
        return formatValue(argument, values.meaning, values.group);
    }

    std::string array(const ParameterSignature& parameter, const Argument& argument) const {
        const PnameSignature values = resolved(parameter);
        return list(values.count, [&](std::size_t i) {
            return formatValue(argument.elementAt(argument.pointer, i), values.meaning,
                               values.group);
        });
    }

    /// The number, meaning and group of a parameter's values, from the argument it depends on.
    PnameSignature resolved(const ParameterSignature& parameter) const {
        const bool byPname = parameter.factor == 0 && parameter.argument >= 0;
        const PnameSignature named =
            byPname ? pnameSignature(static_cast<std::uint32_t>(dependedOn(parameter)))
                    : PnameSignature{length(parameter), parameter.meaning, parameter.group};
        if (parameter.meaning == Meaning::ByPname)
            return named;
        return {named.count, parameter.meaning, parameter.group};
    }

    std::int64_t dependedOn(const ParameterSignature& parameter) const {
        return integer(arguments_[parameter.argument]);
    }

    std::size_t length(const ParameterSignature& parameter) const {
        const std::int64_t units = parameter.argument < 0 ? 1 : dependedOn(parameter);
        return units < 0 ? 0 : static_cast<std::size_t>(units * parameter.factor);
    }

    /// Texts end at the lengths in the array that follows them, where there is one
    /// (glShaderSource).
    std::string texts(std::size_t i) const {
        const Argument& strings = arguments_[i];
        const bool hasLengths =
            i + 1 < signature_.count && signature_.parameters[i + 1].form == Form::Array;
        const Argument* lengths =
            hasLengths && arguments_[i + 1].pointer != nullptr ? &arguments_[i + 1] : nullptr;
        return list(length(signature_.parameters[i]), [&](std::size_t k) -> std::string {
            const auto text =
                static_cast<const char*>(strings.elementAt(strings.pointer, k).pointer);
            if (text == nullptr)
                return "null";
            const std::int64_t given =
                lengths == nullptr ? -1 : integer(lengths->elementAt(lengths->pointer, k));
            return quoted({text, given < 0 ? std::strlen(text) : static_cast<std::size_t>(given)});
        });
    }

    Signature signature_;
    const Argument* arguments_;
    PixelBuffers pixelBuffers_;
};

} // namespace

std::string formatCall(EntryPoint entryPoint, const Argument* arguments,
                       PixelBuffers pixelBuffers) {
    const Call call(entryPoint, arguments, pixelBuffers);
    std::string line = name(entryPoint);
    line += '(';
    for (std::size_t i = 0; i < call.numParameters(); ++i) {
        if (i != 0)
            line += ", ";
        line += call.argument(i);
    }
    return line + ')';
}

} // namespace vellis::test
