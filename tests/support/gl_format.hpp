#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

#include "support/gl_entry_points.hpp"

namespace vellis::test {

/// An argument of a GL call, whatever its type: what the calls of all entry points are turned into,
/// so that one function writes them.
struct Argument {
    enum class Kind : unsigned char { Signed, Unsigned, Float, Double, Pointer };
    using ElementAt = Argument (*)(const void* array, std::size_t index);

    Kind kind = Kind::Unsigned;
    union {
        std::int64_t signedValue;
        std::uint64_t unsignedValue = 0;
        double floating;
        const void* pointer;
    };
    /// Reads an element of the array that the pointer points to; null where the type is opaque.
    ElementAt elementAt = nullptr;

    template <class T>
    static Argument of(T value) {
        Argument argument;
        if constexpr (std::is_function_v<std::remove_pointer_t<T>>) {
            argument.kind = Kind::Pointer;
            argument.pointer = reinterpret_cast<const void*>(value);
        } else if constexpr (std::is_pointer_v<T>) {
            argument.kind = Kind::Pointer;
            argument.pointer = value;
            argument.elementAt = elementReader<std::remove_cv_t<std::remove_pointer_t<T>>>();
        } else if constexpr (std::is_floating_point_v<T>) {
            argument.kind = std::is_same_v<T, float> ? Kind::Float : Kind::Double;
            argument.floating = static_cast<double>(value);
        } else if constexpr (std::is_signed_v<T>) {
            argument.kind = Kind::Signed;
            argument.signedValue = static_cast<std::int64_t>(value);
        } else {
            argument.kind = Kind::Unsigned;
            argument.unsignedValue = value;
        }
        return argument;
    }

private:
    template <class T>
    static Argument readElement(const void* array, std::size_t index) {
        return of(static_cast<const T*>(array)[index]);
    }

    template <class T>
    static constexpr ElementAt elementReader() {
        if constexpr (std::is_arithmetic_v<T> || std::is_pointer_v<T>)
            return &readElement<T>;
        else
            return nullptr;
    }
};

/// Whether the pixel transfers of the moment read and write buffers instead of the client's memory.
struct PixelBuffers {
    bool unpack = false;
    bool pack = false;
};

/// A call as one line: `glBindBuffer(GL_ARRAY_BUFFER, 7)`.
///
/// Enumerators and bits are written by name, booleans as GL_TRUE and GL_FALSE, numbers in their
/// shortest form, arrays with their contents (`{1, 0.5}`), texts quoted with the escapes of C,
/// pointers that stand for offsets as numbers, other pointers as `null`, `data`, `out` or, to a
/// function, `function`.
std::string formatCall(EntryPoint entryPoint, const Argument* arguments,
                       PixelBuffers pixelBuffers = {});

} // namespace vellis::test
