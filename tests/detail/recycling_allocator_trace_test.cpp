#include <vellis/detail/recycling_allocator.hpp>

#include <memory>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "support/allocation_count.hpp"

namespace {

using vellis::detail::recyclesMemory;
using vellis::detail::RecyclingAllocator;
using vellis::test::allocationCount;

/// An object of a size that no other test's has.
struct Object {
    unsigned char bytes[72];
};

/// Its allocations are counted from the start, where nothing is kept.
class RecyclingAllocatorTest : public testing::Test {
protected:
    RecyclingAllocatorTest() : inUse_(allocator.allocate(1)), before_(allocationCount()) {}

    void SetUp() override { SKIP_WITHOUT_LIBRARY_ALLOCATIONS(); }
    ~RecyclingAllocatorTest() override { allocator.deallocate(inUse_, 1); }

    std::size_t numAllocations() const { return allocationCount() - before_; }

    RecyclingAllocator<Object> allocator;

private:
    Object* inUse_;
    std::size_t before_;
};

TEST_F(RecyclingAllocatorTest, GivesTheMemoryOfTheLastObjectToTheNext) {
    Object* const first = allocator.allocate(1);
    EXPECT_EQ(numAllocations(), 1u);
    allocator.deallocate(first, 1);
    Object* const second = allocator.allocate(1);
    EXPECT_EQ(numAllocations(), recyclesMemory ? 1u : 2u);
    if (recyclesMemory) {
        EXPECT_EQ(second, first);
    }
    allocator.deallocate(second, 1);
}

TEST_F(RecyclingAllocatorTest, KeepsTheMemoryOfOneObject) {
    Object* const first = allocator.allocate(1);
    Object* const second = allocator.allocate(1);
    EXPECT_NE(first, second);
    EXPECT_EQ(numAllocations(), 2u);
    allocator.deallocate(first, 1);
    allocator.deallocate(second, 1);
    Object* const third = allocator.allocate(1);
    Object* const fourth = allocator.allocate(1);
    EXPECT_NE(third, fourth);
    if (recyclesMemory) {
        EXPECT_EQ(third, first); // the second has gone back to the heap
    }
    EXPECT_EQ(numAllocations(), recyclesMemory ? 3u : 4u);
    allocator.deallocate(third, 1);
    allocator.deallocate(fourth, 1);
}

TEST_F(RecyclingAllocatorTest, TakesArraysFromTheHeapAndGivesThemBack) {
    Object* const one = allocator.allocate(1);
    allocator.deallocate(one, 1);
    Object* const array = allocator.allocate(2);
    EXPECT_EQ(numAllocations(), 2u);
    array[1] = Object{};
    Object* const next = allocator.allocate(1);
    EXPECT_EQ(numAllocations(), recyclesMemory ? 2u : 3u);
    allocator.deallocate(array, 2); // not kept, though nothing else is
    Object* const last = allocator.allocate(1);
    EXPECT_EQ(numAllocations(), recyclesMemory ? 3u : 4u);
    allocator.deallocate(next, 1);
    allocator.deallocate(last, 1);
}

TEST_F(RecyclingAllocatorTest, ServesSharedPointers) {
    const auto make = [] { return std::allocate_shared<Object>(RecyclingAllocator<Object>()); };
    auto inUse = make();
    const std::size_t before = numAllocations();
    std::weak_ptr<Object> watcher = make();
    EXPECT_EQ(numAllocations() - before, 1u);
    EXPECT_TRUE(watcher.expired());
    auto next = make(); // the memory of the first lives as long as who watches it
    EXPECT_EQ(numAllocations() - before, 2u);
    watcher.reset();
    make();
    EXPECT_EQ(numAllocations() - before, recyclesMemory ? 2u : 3u);
}

TEST_F(RecyclingAllocatorTest, AllAreEqual) {
    const RecyclingAllocator<int> other(allocator);
    EXPECT_TRUE(other == RecyclingAllocator<int>());
    EXPECT_FALSE(other != RecyclingAllocator<int>());
}

/// As allocators are required to, that are made from those of other types.
TEST_F(RecyclingAllocatorTest, AllAreEqualWhateverTheyAreFor) {
    using Traits = std::allocator_traits<RecyclingAllocator<Object>>;
    using Rebound = Traits::rebind_alloc<int>;
    static_assert(std::is_same_v<Rebound, RecyclingAllocator<int>>);
    static_assert(Traits::is_always_equal::value);
    const Rebound rebound(allocator);
    EXPECT_TRUE(allocator == rebound);
    EXPECT_TRUE(rebound == allocator);
    EXPECT_FALSE(allocator != rebound);
    EXPECT_FALSE(rebound != allocator);
    EXPECT_TRUE(allocator == RecyclingAllocator<Object>(rebound));
    EXPECT_TRUE(noexcept(allocator == rebound)&& noexcept(allocator != rebound));
}

} // namespace
