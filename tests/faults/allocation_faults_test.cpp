/// Every operation with each of its allocations failing in turn, until it succeeds.

#include <algorithm>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/engine.hpp>
#include <vellis/shading/program.hpp>

#include "docs/page.hpp"
#include "docs/tables.hpp"
#include "faults/failing_allocations.hpp"
#include "operations/operations.hpp"
#include "operations/silent_operations.hpp"
#include "operations/state_effects.hpp"
#include "support/allocation_count.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using vellis::test::Effect;
using vellis::test::FailingAllocations;
using vellis::test::FakeGl;
using vellis::test::Page;
using vellis::test::Use;
using vellis::test::UseRecorder;
using Extent = FailingAllocations::Extent;
using Lines = std::vector<std::string>;

/// A use that went well after its allocations had failed one after the other.
struct Outcome {
    Use use;
    std::size_t numAllocations;
};

/// How a pass over all operations goes.
struct Pass {
    std::optional<Extent> failures; ///< none where nothing fails
    bool keepsNothing;              ///< whether no operation has anything left to make for good
};

/// Whether the calls left each piece of state as the whole operation leaves it, or as they found
/// it. A failed attempt may have done less than the whole, but nothing else.
void expectStateOf(const Lines& failedCalls, const std::vector<Effect>& whole) {
    for (const Effect& effect : test::effectsOf({"", "", "", failedCalls})) {
        const bool isLeftAsByTheWhole =
            std::any_of(whole.begin(), whole.end(), [&](const Effect& other) {
                return other.state == effect.state && other.value == effect.value;
            });
        EXPECT_TRUE(effect.kind == Effect::Kind::PutBack || isLeftAsByTheWhole)
            << effect.state << " is left " << effect.value;
    }
}

/// Does every operation as often as it takes to succeed, with another allocation failing each time.
class FailingUses : public UseRecorder {
public:
    FailingUses(FakeGl& fakeGl, Pass pass) : UseRecorder(fakeGl), pass_(pass) {}

    std::vector<Outcome> outcomes;

private:
    void run(Use use, const Once& once) override {
        SCOPED_TRACE(use.name());
        std::vector<Lines> failedCalls;
        while (!attempt(use, once, failedCalls.size() + 1))
            failedCalls.push_back(gl.takeCalls());
        const std::vector<Effect> effects = test::effectsOf(use);
        for (std::size_t i = 0; i < failedCalls.size(); ++i) {
            if (i != 0 && failedCalls[i] == failedCalls[i - 1])
                continue; // the same state, too
            SCOPED_TRACE("with allocation " + std::to_string(i + 1) + " failing");
            expectStateOf(failedCalls[i], effects);
        }
        gl.forget();
        outcomes.push_back({std::move(use), failedCalls.size()});
    }

    /// Whether the operation succeeded. If not, all must be as before.
    bool attempt(Use& use, const Once& once, std::size_t number) {
        SCOPED_TRACE("with allocation " + std::to_string(number) + " failing");
        std::optional<FailingAllocations> failing;
        const Then writeDown = [&] {
            failing.reset();
            use.calls = gl.takeCalls();
        };
        occupySpareMemory();
        gl.forget();
        const Lines names = gl.liveNames();
        const std::ptrdiff_t numLive = test::numLiveAllocations();
        try {
            if (pass_.failures)
                failing.emplace(number, *pass_.failures);
            once(writeDown);
            EXPECT_FALSE(pass_.failures && FailingAllocations::haveFailed())
                << "and nobody was told";
            return true;
        } catch (const std::bad_alloc&) {
            failing.reset();
        }
        if (pass_.keepsNothing) {
            EXPECT_LE(test::numLiveAllocations(), numLive);
        }
        EXPECT_EQ(gl.liveNames(), names);
        EXPECT_EQ(gl.doubleDeletes(), Lines());
        return false;
    }

    /// Takes the memory that is kept for the next binding, so that the operation needs some.
    void occupySpareMemory() {
        program_->beginAttributesBinding();
        occupying_.push_back(program_->finishAttributesBinding());
    }

    Pass pass_;
    std::shared_ptr<Program> program_ = Program::make();
    std::vector<std::shared_ptr<VertexAttributesBinding>> occupying_;
};

/// The tests share a GL, since the library keeps objects until its end.
class AllocationFaults : public testing::Test {
protected:
    static void SetUpTestSuite() { gl = std::make_unique<FakeGl>(); }
    static void TearDownTestSuite() {
        engine::dispose();
        EXPECT_EQ(gl->doubleDeletes(), Lines());
        EXPECT_LE(gl->liveNames().size(), 1u); // Program::current() leaves one behind
        gl->ignoreTheRest();
        gl.reset();
    }

    void SetUp() override { SKIP_WITHOUT_LIBRARY_ALLOCATIONS(); }

    static std::vector<Outcome> useEverything(Pass pass) {
        FailingUses uses(*gl, pass);
        test::useEverything(uses);
        useSilentOperations(uses);
        return std::move(uses.outcomes);
    }

    /// What the operations did when they were used for the first time in the process.
    static const std::vector<Outcome>& firstUses() {
        static const std::vector<Outcome> outcomes = useEverything({Extent::One, false});
        return outcomes;
    }

    static std::unique_ptr<FakeGl> gl;
};

std::unique_ptr<FakeGl> AllocationFaults::gl;

/// The entry points of calls.
Lines entryPoints(const Lines& calls) {
    Lines names;
    for (const std::string& call : calls)
        names.push_back(call.substr(0, call.find('(')));
    return names;
}

/// Expects that each operation did in the end what it does where nothing fails.
void expectSameCalls(const std::vector<Outcome>& outcomes, const std::vector<Outcome>& healthy) {
    ASSERT_EQ(outcomes.size(), healthy.size());
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        EXPECT_EQ(entryPoints(outcomes[i].use.calls), entryPoints(healthy[i].use.calls))
            << outcomes[i].use.name();
    }
}

TEST_F(AllocationFaults, FirstUsesLeaveNothingBehindAndCanBeRepeated) {
    const std::vector<Outcome>& outcomes = firstUses();
    const auto allocates = [](const Outcome& outcome) { return outcome.numAllocations > 0; };
    EXPECT_GT(outcomes.size(), 300u);
    EXPECT_GT(std::count_if(outcomes.begin(), outcomes.end(), allocates), 60);
}

TEST_F(AllocationFaults, LaterUsesLeaveNoMemoryBehindEither) {
    firstUses();
    const std::vector<Outcome> healthy = useEverything({std::nullopt, true});
    expectSameCalls(useEverything({Extent::One, true}), healthy);
}

TEST_F(AllocationFaults, NorDoTheyWhereThereIsNoMoreMemoryAtAll) {
    firstUses();
    const std::vector<Outcome> healthy = useEverything({std::nullopt, true});
    expectSameCalls(useEverything({Extent::AndAfter, true}), healthy);
}

TEST_F(AllocationFaults, OperationsThatAllocateAreThoseOfThePage) {
    Page page("docs/faults.md");
    std::vector<Use> allocating;
    for (const Outcome& outcome : firstUses()) {
        if (outcome.numAllocations > 0)
            allocating.push_back(outcome.use);
    }
    page.expectPart("allocations", test::classTable(allocating));
}

} // namespace
