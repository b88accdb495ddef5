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
        std::stable_sort(entries_.begin(), entries_.end(),
                         [](const Entry& a, const Entry& b) { return order(a, b.name) < 0; });
        const auto end =
            std::unique(entries_.begin(), entries_.end(),
                        [](const Entry& a, const Entry& b) { return a.name == b.name; });
        entries_.erase(end, entries_.end());
    }

    /// Lets go of all objects.
    void clear() { entries_.clear(); }

    /// The object of that name, or null; a null name has none.
    T* find(const char* name) const {
        if (name == nullptr)
            return nullptr;
        const Entry* first = entries_.data();
        std::size_t count = entries_.size();
        while (count > 0) {
            const std::size_t half = count / 2;
            const Entry* const middle = first + half;
            const int difference = order(*middle, name);
            if (difference == 0)
                return middle->object.get();
            if (difference > 0) {
                count = half;
            } else {
                first = middle + 1;
                count -= half + 1;
            }
        }
        return nullptr;
    }

private:
    struct Entry {
        std::string name;
        std::shared_ptr<T> object;
    };

    /// As strcmp, which is not called for names that differ at once, as most do.
    static int order(const Entry& entry, const char* name) {
        const char* const own = entry.name.c_str();
        const auto first = static_cast<unsigned char>(*own);
        const auto second = static_cast<unsigned char>(*name);
        return first != second ? first - second : std::strcmp(own, name);
    }
    static int order(const Entry& entry, const std::string& name) {
        return order(entry, name.c_str());
    }

    std::vector<Entry> entries_;
};

} // namespace vellis
