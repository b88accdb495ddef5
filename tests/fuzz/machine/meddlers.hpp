#pragma once

#include <memory>
#include <new>
#include <vector>

#include "fuzz/machine/bytes.hpp"
#include "support/ending_objects.hpp"

namespace vellis::test {

/// How often a registry must be emptied before the last meddler has ended.
constexpr int mostGenerations = 4;

/// Whether meddlers add others as they end: not where there is no GL context for them.
inline bool mayMeddlersMake = true;

/// Registered objects that meddle with their registry as they end: each removes others, and adds
/// some of its kind, for a few generations.
///
/// \tparam Kind  Buffers or Programs.
template <class Kind>
class Meddlers {
public:
    /// Registers one, with as many generations after it as the bytes say.
    void add(Bytes& bytes) { add(keys_, bytes.below(mostGenerations)); }

    /// Removes one, which removes and adds others.
    void removeOne(Bytes& bytes) {
        if (!keys_->empty())
            Kind::Registry::instance().remove((*keys_)[bytes.next() % keys_->size()]);
    }

private:
    /// Where they are, or were: another object may be there now.
    using Keys = std::vector<typename Kind::Object*>;

    static void add(const std::shared_ptr<Keys>& keys, unsigned int generations) {
        keys->push_back(nullptr); // first, so that none is registered whose key is not known
        const std::size_t place = keys->size() - 1;
        typename Kind::Object* const key =
            Kind::Registry::instance().add(Kind::make([=] { meddle(keys, generations); }));
        if (place < keys->size())
            (*keys)[place] = key;
    }

    static void meddle(const std::shared_ptr<Keys>& keys, unsigned int generations) {
        if (generations == 0)
            return;
        try {
            removeEach(
                {keys->begin(), keys->begin() + static_cast<std::ptrdiff_t>(keys->size() / 2)});
            for (int i = 0; i < 2 && mayMeddlersMake; ++i)
                add(keys, generations - 1);
        } catch (const std::bad_alloc&) { // in a destructor
        }
    }

    static void removeEach(const Keys& keys) {
        for (typename Kind::Object* const key : keys)
            Kind::Registry::instance().remove(key);
    }

    std::shared_ptr<Keys> keys_ = std::make_shared<Keys>();
};

} // namespace vellis::test
