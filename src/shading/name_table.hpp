#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vellis {

/// What name tables of all types have in common, so that the library has it once.
class NameTableBase {
protected:
    /// An object and how it is destroyed.
    using Object = std::unique_ptr<void, void (*)(void*)>;

    void add(std::string_view name, Object object) {
        const Place found = place(name.data(), name.size());
        if (found.isTaken)
            return;
        auto entry = std::make_unique<Entry>(Entry{std::string(name), std::move(object)});
        entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(found.index),
                        std::move(entry));
    }

    void* find(const char* name, std::size_t length) const {
        const Place found = place(name, length);
        return found.isTaken ? entries_[found.index]->object.get() : nullptr;
    }

    struct Entry {
        std::string name;
        Object object;
    };

    std::vector<std::unique_ptr<Entry>> entries_; ///< in order

private:
    /// Where in the order a name stands, or would stand.
    struct Place {
        std::size_t index;
        bool isTaken;
    };

    Place place(const char* name, std::size_t length) const {
        std::size_t first = 0;
        std::size_t last = entries_.size();
        while (first < last) {
            const std::size_t middle = (first + last) / 2;
            const int difference = order(*entries_[middle], name, length);
            if (difference == 0)
                return {middle, true};
            if (difference > 0)
                last = middle;
            else
                first = middle + 1;
        }
        return {first, false};
    }

    /// By length, then by the bytes, four at a time: no alphabet, but an order that is found
    /// without a call. The benchmark draw/names shows it.
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
};

/// Objects by name. A search compares with the caller's text as it is: it makes no string of it.
template <class T>
class NameTable : NameTableBase {
public:
    /// Makes room for that many objects.
    void reserve(std::size_t count) { entries_.reserve(count); }

    /// Adds an object, unless there is one of that name.
    void add(std::string_view name, std::unique_ptr<T> object) {
        const auto destroy = [](void* it) { delete static_cast<T*>(it); };
        NameTableBase::add(name, Object(object.release(), destroy));
    }

    /// The object of that name, or null.
    T* find(const char* name, std::size_t length) const {
        return static_cast<T*>(NameTableBase::find(name, length));
    }
};

} // namespace vellis
