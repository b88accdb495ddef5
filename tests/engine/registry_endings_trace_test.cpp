// needs: private access

/// The registries while objects end that call them: these meet a registry that has let go of them,
/// and what they put into it stays there.

#include <memory>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/engine.hpp>

#include "support/ending_objects.hpp"
#include "support/fake_gl.hpp"

namespace {

using vellis::test::Buffers;
using vellis::test::FakeGl;
using vellis::test::Programs;

std::size_t sizeOf(const vellis::BufferObjectManager& registry) {
    return registry.buffers_.size();
}
std::size_t sizeOf(const vellis::ProgramManager& registry) {
    return registry.programs_.size();
}

template <class Kind>
class RegistryEndingsTrace : public testing::Test {
protected:
    using Registry = typename Kind::Registry;
    using Object = typename Kind::Object;

    ~RegistryEndingsTrace() override {
        Registry::dispose();
        gl.ignoreTheRest();
    }

    /// Registers \p count objects that nobody else owns and that do something as they end.
    std::vector<Object*> add(int count, const vellis::test::Ending& ending) {
        std::vector<Object*> keys;
        for (int i = 0; i < count; ++i)
            keys.push_back(registry.add(Kind::make(ending)));
        return keys;
    }

    std::size_t size() const { return sizeOf(registry); }

    FakeGl gl;
    Registry& registry = Registry::instance();
    int numEnded = 0;
};

using Kinds = testing::Types<Buffers, Programs>;
TYPED_TEST_SUITE(RegistryEndingsTrace, Kinds, );

TYPED_TEST(RegistryEndingsTrace, RemovedObjectMayRemoveItselfAndOthers) {
    std::vector<typename TypeParam::Object*> keys;
    keys = this->add(8, [&] {
        ++this->numEnded;
        for (auto* const key : keys)
            this->registry.remove(key);
    });
    this->registry.remove(keys[3]);
    EXPECT_EQ(this->numEnded, 8);
    EXPECT_EQ(this->size(), 0u);
}

TYPED_TEST(RegistryEndingsTrace, RemovedObjectMayAddOthers) {
    const auto keys = this->add(1, [&] { this->add(20, [&] { ++this->numEnded; }); });
    this->registry.remove(keys[0]);
    EXPECT_EQ(this->size(), 20u);
    EXPECT_EQ(this->numEnded, 0);
}

TYPED_TEST(RegistryEndingsTrace, RemovedObjectMayDisposeOfTheRegistry) {
    const auto keys = this->add(8, [&] {
        ++this->numEnded;
        TypeParam::Registry::dispose();
        vellis::engine::dispose();
    });
    this->registry.remove(keys[3]);
    EXPECT_EQ(this->numEnded, 8);
    EXPECT_EQ(this->size(), 0u);
}

TYPED_TEST(RegistryEndingsTrace, ObjectsThatEndInDisposeAreNoLongerInTheRegistry) {
    std::vector<typename TypeParam::Object*> keys;
    std::size_t numFound = 0;
    keys = this->add(8, [&] {
        ++this->numEnded;
        numFound += this->size();
        for (auto* const key : keys)
            this->registry.remove(key);
        TypeParam::Registry::dispose();
        vellis::engine::dispose();
    });
    TypeParam::Registry::dispose();
    EXPECT_EQ(this->numEnded, 8);
    EXPECT_EQ(numFound, 0u);
    EXPECT_EQ(this->size(), 0u);
}

TYPED_TEST(RegistryEndingsTrace, WhatIsAddedDuringDisposeStaysThere) {
    this->add(8, [&] { this->add(5, [&] { ++this->numEnded; }); });
    TypeParam::Registry::dispose();
    EXPECT_EQ(this->size(), 40u);
    EXPECT_EQ(this->numEnded, 0);
    TypeParam::Registry::dispose();
    EXPECT_EQ(this->size(), 0u);
    EXPECT_EQ(this->numEnded, 40);
}

TYPED_TEST(RegistryEndingsTrace, WhatIsAddedDuringEngineDisposeStaysThere) {
    this->add(8, [&] { this->add(5, [] {}); });
    vellis::engine::dispose();
    EXPECT_EQ(this->size(), 40u);
}

TYPED_TEST(RegistryEndingsTrace, AssignmentHasReplacedTheEntriesWhenTheyEnd) {
    const auto kept = TypeParam::make();
    this->registry.add(kept);
    const auto copy = std::make_unique<typename TypeParam::Registry>(this->registry);
    this->add(8, [&] {
        this->add(1, [] {});
        ++this->numEnded;
    });
    this->registry = *copy;
    EXPECT_EQ(this->numEnded, 8);
    EXPECT_EQ(this->size(), 9u);
    this->registry.remove(kept.get());
    EXPECT_EQ(this->size(), 8u);
}

TYPED_TEST(RegistryEndingsTrace, CopyIsEmptyWhenItsObjectsEnd) {
    auto copy = std::make_unique<typename TypeParam::Registry>(this->registry);
    auto* const ending = copy.get();
    std::vector<typename TypeParam::Object*> keys;
    for (int i = 0; i < 8; ++i) {
        keys.push_back(ending->add(TypeParam::make([&] {
            ++this->numEnded;
            for (auto* const key : keys)
                ending->remove(key);
        })));
    }
    copy.reset();
    EXPECT_EQ(this->numEnded, 8);
}

/// The built-in programs end as others do: GL, which each of them calls, calls the registry.
TEST(BuiltInEndingsTrace, AreOutOfTheRegistryWhenTheyEnd) {
    using vellis::ProgramManager;
    using BuiltIn = ProgramManager::BuiltIn;
    FakeGl gl;
    ProgramManager::instance().builtIns_.clear();
    ProgramManager::instance().builtIns_.resize(6);
    ProgramManager::instance().get(BuiltIn::UniformColor2D);
    ProgramManager::instance().get(BuiltIn::UniformColor3D);
    int numEnded = 0;
    gl.answer(glad_glDeleteProgram, [&](GLuint) {
        ++numEnded;
        EXPECT_EQ(ProgramManager::instance().get(BuiltIn::UniformColor2D), nullptr);
        vellis::engine::dispose();
    });
    vellis::engine::dispose();
    EXPECT_EQ(numEnded, 2);
    gl.ignoreTheRest();
}

} // namespace
