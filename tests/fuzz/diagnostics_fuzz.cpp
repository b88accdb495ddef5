/// Texts and values of any kind through the diagnostics that need no GL: what they print is
/// compared with what a plainer piece of code makes of the same input.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include <vellis/gl.hpp>
#include <vellis/internal.hpp>

#include "state/value_writers.hpp"

namespace {

using namespace vellis::internal;

/// Ends the process, with both texts, where they differ: a find.
void expectEqual(const std::string& made, const std::string& expected) {
    if (made == expected)
        return;
    std::fprintf(stderr, "made:     '%s'\nexpected: '%s'\n", made.c_str(), expected.c_str());
    std::abort();
}

/// What is written through the `stderr` stream; a sanitizer's report goes to the terminal all the
/// same.
template <class Function>
std::string printed(Function function) {
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* const before = stderr;
    stderr = open_memstream(&text, &size);
    function();
    std::fclose(stderr);
    stderr = before;
    std::string result(text, size);
    std::free(text);
    return result;
}

std::string withSinglePercents(std::string text) {
    for (std::size_t at = text.find("%%"); at != std::string::npos; at = text.find("%%", at + 1))
        text.erase(at, 1);
    return text;
}

void dumpSource(const std::string& source) {
    std::string expected = "Corvane: Shader Source Code\n";
    std::size_t begin = 0;
    for (int number = 1; begin < source.size(); ++number) {
        const std::size_t end = std::min(source.find('\n', begin), source.size());
        std::string digits = std::to_string(number);
        digits.insert(0, 4 - std::min<std::size_t>(digits.size(), 4), ' ');
        expected += digits + ": " + withSinglePercents(source.substr(begin, end - begin)) + "\n";
        begin = end + 1;
    }
    expectEqual(printed([&] { print_shader(source.c_str()); }), expected);
}

void logText(const std::string& text) {
    const std::string message = text.substr(0, 257); // the format has 2 characters, 255 are added
    expectEqual(printed([&] { log("title", "%s", text.c_str()); }), "title: " + message + "\n");
    expectEqual(printed([&] { log(text.c_str(), "%d", 7); }), text + ": 7\n");
    expectEqual(printed([&] { log("file", 3, "title", "%s", text.c_str()); }),
                "title [file Ln 3]: " + message + "\n");
}

/// The bytes as values of a type, whole ones.
template <class T>
std::vector<T> valuesOf(const std::string& bytes) {
    std::vector<T> values(bytes.size() / sizeof(T));
    if (!values.empty())
        std::memcpy(values.data(), bytes.data(), values.size() * sizeof(T));
    return values;
}

/// The values as printf writes them, separated.
template <class T>
std::string joined(const std::vector<T>& values, const char* format) {
    std::string text;
    for (const T value : values) {
        char buffer[64];
        std::snprintf(buffer, sizeof(buffer), format, value);
        text += (text.empty() ? "" : ", ") + std::string(buffer);
    }
    return text;
}

template <class T, class Writer>
std::string written(Writer write, const std::vector<T>& values) {
    std::ostringstream stream;
    write(stream, values.data(), static_cast<unsigned int>(values.size()));
    return stream.str();
}

void writeValues(const std::string& bytes) {
    const auto integers = valuesOf<int>(bytes);
    expectEqual(written(write_decimal_values, integers), joined(integers, "%d"));
    expectEqual(written(write_hex_values, integers), joined(integers, "0x%x"));
    const auto floats = valuesOf<float>(bytes);
    expectEqual(written(write_float_values, floats), joined(floats, "%g"));
    std::string booleans;
    for (const char byte : bytes)
        booleans += (booleans.empty() ? "" : ", ") + std::string(byte == 1 ? "true" : "false");
    expectEqual(written(write_bool_values, valuesOf<GLboolean>(bytes)), booleans);
}

/// The states that have names of their own for their values.
constexpr unsigned int namedStates[] = {GL_BLEND_EQUATION_RGB, GL_DEPTH_FUNC,
                                        GL_STENCIL_BACK_FUNC,  GL_STENCIL_FAIL,
                                        GL_READ_BUFFER,        GL_STENCIL_BACK_PASS_DEPTH_PASS};

void writeEnums(const std::string& bytes) {
    std::vector<int> values = valuesOf<int>(bytes);
    if (values.empty())
        return;
    const auto text = [&](unsigned int pname) {
        std::ostringstream stream;
        write_enum_values(stream, values.data(), pname, static_cast<unsigned int>(values.size()));
        return stream.str();
    };
    const std::string first = joined<int>({values[0]}, "0x%x");
    for (const unsigned int pname : namedStates) {
        const std::string name = text(pname);
        if (name.substr(0, 3) != "GL_")
            expectEqual(name, "unknown enum : " + first);
    }
    expectEqual(text(GL_POLYGON_MODE), joined(values, "0x%x"));
    const std::string unit = text(GL_ACTIVE_TEXTURE);
    expectEqual(unit, "GL_TEXTURE" + std::to_string(values[0]));
    expectEqual(joined<unsigned int>({static_cast<unsigned int>(values[0]) + GL_TEXTURE0}, "0x%x"),
                first);
}

} // namespace

/// The first byte chooses what the rest goes through.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    switch (data[0] % 4) {
    case 0:
        dumpSource(bytes.c_str()); // up to the first zero, as a C string goes
        break;
    case 1:
        logText(bytes.c_str());
        break;
    case 2:
        writeValues(bytes);
        break;
    default:
        writeEnums(bytes);
        break;
    }
    return 0;
}
