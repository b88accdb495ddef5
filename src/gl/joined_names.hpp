#pragma once

#include <cstddef>
#include <cstdint>

/// \file
/// Many names in little room.

namespace vellis {

/// Names one after the other, which are read in their order. Most begin as the one before: each is
/// the number of characters that they share, which is no character of a name and so ends the one
/// before, and the rest.
template <std::size_t most>
struct JoinedNames {
    std::size_t size = 0;
    std::size_t longest = 0;
    char text[most + 1] = {}; ///< the 0 ends the last one

    constexpr void add(const char* name, const char* previous) {
        std::size_t length = 0;
        while (previous[length] != '\0' && previous[length] == name[length])
            ++length;
        text[size++] = static_cast<char>(length);
        for (; name[length] != '\0'; ++length)
            text[size++] = name[length];
        longest = length > longest ? length : longest;
    }
};

/// Joins names of letters, digits and underscores. Room for \p most characters is enough.
template <std::size_t most, std::size_t number>
constexpr JoinedNames<most> joinNames(const char* const (&names)[number]) {
    JoinedNames<most> all;
    const char* previous = "";
    for (const char* name : names) {
        all.add(name, previous);
        previous = name;
    }
    return all;
}

/// Reads joined names, one after the other.
class NameReader {
public:
    /// The longest name with its prefix.
    static constexpr std::size_t most = 63;

    /// \param prefix  What each name is given to begin with.
    template <std::size_t size>
    explicit NameReader(const JoinedNames<size>& names, const char* prefix) : at_(names.text) {
        while (*prefix != '\0')
            name_[prefixLength_++] = *prefix++;
    }

    /// The next name, which the call after this one overwrites. Not to be called after the last.
    const char* next() {
        char* end = name_ + prefixLength_ + static_cast<std::uint8_t>(*at_++);
        while (*at_ >= firstCharacter)
            *end++ = *at_++;
        *end = '\0';
        return name_;
    }

private:
    /// What is less is a number of characters: none shares as many.
    static constexpr char firstCharacter = '0';

    const char* at_;
    std::size_t prefixLength_ = 0;
    char name_[most + 1];
};

/// Whether names can be read with a prefix of so many characters.
template <std::size_t size>
constexpr bool isReadable(const JoinedNames<size>& names, std::size_t prefixLength) {
    return names.longest < '0' && names.longest + prefixLength <= NameReader::most;
}

} // namespace vellis
