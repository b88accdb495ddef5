#pragma once

#include <cstddef>
#include <cstdint>

namespace vellis::test {

/// The choices that an input stands for, byte by byte. Once it has run out, each is the first.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}

    bool isAtEnd() const { return data_ == end_; }

    unsigned int next() { return isAtEnd() ? 0 : *data_++; }

    /// A number below \p count, of 256 at most.
    unsigned int below(std::size_t count) { return next() % static_cast<unsigned int>(count); }

    bool flag() { return below(2) != 0; }

    template <class T, std::size_t N>
    const T& oneOf(const T (&values)[N]) {
        return values[below(N)];
    }

    /// A number that a program could well mean.
    unsigned int number() {
        static constexpr unsigned int numbers[] = {3, 0, 1, 2, 4, 5, 7, 8, 12, 16};
        return oneOf(numbers);
    }

    /// One that it could not: mostly as above, else too large for something or negative to GL.
    unsigned int anyNumber() {
        static constexpr unsigned int numbers[] = {300,        0x1000,     0x20000001, 0x40000000,
                                                   0x7FFFFFFF, 0x80000000, 0xFFFFFFF0, 0xFFFFFFFF};
        return below(4) != 3 ? number() : oneOf(numbers);
    }

    /// The side of an image: GL allocates that much, or refuses it.
    unsigned int side() {
        static constexpr unsigned int refused[] = {0x01000000, 0x02000000, 0x40000000,
                                                   0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
        return below(8) != 7 ? number() : oneOf(refused);
    }

    /// An enumerator of an enumeration that counts from 0, or the value behind its last.
    template <class Enumeration>
    Enumeration enumerator(std::size_t count) {
        return static_cast<Enumeration>(below(count + 1));
    }

    /// A number from 0 to 1.
    float fraction() { return static_cast<float>(next()) / 255.f; }

private:
    const std::uint8_t* data_;
    const std::uint8_t* end_;
};

} // namespace vellis::test
