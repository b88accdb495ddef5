#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vellis {

/// Shared objects by name, ordered byte by byte. A search compares with the caller's text as it is:
/// it makes no string of it and does not measure it. Copies share the objects.
///
/// Add all objects, then sort once: a search needs the order.
template <class T>
class NameTable {
public:
    /// Makes room for that many objects.
    void reserve(std::size_t count) { entries_.reserve(count); }

    /// Adds an object, which sort() lets go again where an earlier one has the name.
    void add(std::string name, std::shared_ptr<T> object) {
        entries_.push_back({std::move(name), std::move(object)});
    }

    /// Puts the objects in order.
    void sort() {
        std::stable_sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
            return order(a, b.name.data(), b.name.size()) < 0;
        });
        const auto end =
            std::unique(entries_.begin(), entries_.end(),
                        [](const Entry& a, const Entry& b) { return a.name == b.name; });
        entries_.erase(end, entries_.end());
    }

    /// Lets go of all objects.
    void clear() { entries_.clear(); }

    /// The object of that name, or null.
    T* find(const char* name, std::size_t length) const {
        std::size_t first = 0;
        std::size_t last = entries_.size();
        while (first < last) {
            const std::size_t middle = (first + last) / 2;
            const int difference = order(entries_[middle], name, length);
            if (difference == 0)
                return entries_[middle].object.get();
            if (difference > 0)
                last = middle;
            else
                first = middle + 1;
        }
        return nullptr;
    }

private:
    struct Entry {
        std::string name;
        std::shared_ptr<T> object;
    };

    /// By length, then by the bytes, four at a time: no alphabet, but an order, and found without a
    /// call.
    static int order(const Entry& entry, const char* name, std::size_t length) {
        if (entry.name.size() != length)
            return entry.name.size() < length ? -1 : 1;
        const char* const own = entry.name.data();
        std::size_t i = 0;
        for (; i + sizeof(unsigned int) <= length; i += sizeof(unsigned int)) {
            if (const int difference = order<unsigned int>(own + i, name + i))
                return difference;
        }
        for (; i < length; ++i) {
            if (const int difference = order<char>(own + i, name + i))
                return difference;
        }
        return 0;
    }

    /// The order of the numbers whose bytes stand in two places.
    template <class Number>
    static int order(const char* a, const char* b) {
        Number first;
        Number second;
        std::memcpy(&first, a, sizeof(Number));
        std::memcpy(&second, b, sizeof(Number));
        return first == second ? 0 : first < second ? -1 : 1;
    }

    std::vector<Entry> entries_;
};

} // namespace vellis
