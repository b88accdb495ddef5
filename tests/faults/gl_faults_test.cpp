/// Every operation on a GL that fails in one way or another.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/engine.hpp>
#include <vellis/internal.hpp>
#include <vellis/shading.hpp>

#include "docs/page.hpp"
#include "faults/gl_faults.hpp"
#include "operations/operations.hpp"
#include "operations/silent_operations.hpp"
#include "operations/state_effects.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using vellis::test::Effect;
using vellis::test::FakeGl;
using vellis::test::GlFault;
using vellis::test::Page;
using vellis::test::Use;
using vellis::test::UseRecorder;
using Lines = std::vector<std::string>;

/// Two uses of an operation in a row.
struct TwoUses {
    Use first;
    Use second;
    long numNamesLeft; ///< by the first
};

/// Uses every operation twice: the first time with a fault, if there is one.
class UsesWithFault : public UseRecorder {
public:
    UsesWithFault(FakeGl& fakeGl, const GlFault* fault) : UseRecorder(fakeGl), fault_(fault) {}

    std::vector<TwoUses> uses;

private:
    void run(Use use, const Once& once) override {
        TwoUses two{use, use, 0};
        const auto numBefore = static_cast<long>(gl.liveNames().size());
        setFault(true);
        record(two.first, once);
        setFault(false);
        two.numNamesLeft = static_cast<long>(gl.liveNames().size()) - numBefore;
        record(two.second, once);
        EXPECT_EQ(gl.doubleDeletes(), Lines()) << use.name();
        uses.push_back(std::move(two));
    }

    void setFault(bool on) {
        if (fault_ != nullptr)
            fault_->set(gl, on);
    }

    void record(Use& use, const Once& once) {
        gl.forget();
        once([&] { use.calls = gl.takeCalls(); });
        gl.forget();
    }

    const GlFault* fault_;
};

/// The tests share a GL, since the library keeps objects until its end.
class GlFaults : public testing::TestWithParam<GlFault> {
protected:
    static void SetUpTestSuite() { gl = std::make_unique<FakeGl>(); }
    static void TearDownTestSuite() {
        engine::dispose();
        EXPECT_LE(gl->liveNames().size(), 1u); // Program::current() leaves one behind
        gl->ignoreTheRest();
        gl.reset();
    }

    static std::vector<TwoUses> useEverything(const GlFault* fault) {
        UsesWithFault uses(*gl, fault);
        test::useEverything(uses);
        test::useSilentOperations(uses);
        while (internal::check_glerror() != nullptr)
            gl->forget();
        gl->forget();
        return std::move(uses.uses);
    }

    static std::unique_ptr<FakeGl> gl;
};

std::unique_ptr<FakeGl> GlFaults::gl;

/// Expects that what an operation puts back or resets where nothing fails is put back or reset, and
/// that it touches nothing else.
void expectSameState(const Use& faulty, const Use& healthy) {
    const std::vector<Effect> effects = test::effectsOf(healthy);
    for (const Effect& effect : test::effectsOf(faulty)) {
        const auto other = std::find_if(effects.begin(), effects.end(), [&](const Effect& row) {
            return row.state == effect.state;
        });
        ASSERT_NE(other, effects.end()) << effect.state << " is touched by " << faulty.name();
        const bool isFixed =
            other->kind == Effect::Kind::PutBack || other->kind == Effect::Kind::Value;
        if (isFixed) {
            EXPECT_EQ(effect.value, other->value) << effect.state << " by " << faulty.name();
        }
    }
}

/// The entry points of calls.
Lines entryPoints(const Lines& calls) {
    Lines names;
    for (const std::string& call : calls)
        names.push_back(call.substr(0, call.find('(')));
    return names;
}

TEST_P(GlFaults, LeaveNoNameAndNoStateBehindAndTheOperationWorksAfterwards) {
    useEverything(nullptr); // what is made once for all is there from here on
    const std::vector<TwoUses> healthy = useEverything(nullptr);
    const std::vector<TwoUses> faulty = useEverything(&GetParam());
    ASSERT_EQ(faulty.size(), healthy.size());
    for (std::size_t i = 0; i < faulty.size(); ++i) {
        EXPECT_LE(faulty[i].numNamesLeft, healthy[i].numNamesLeft) << faulty[i].first.name();
        expectSameState(faulty[i].first, healthy[i].first);
        EXPECT_EQ(entryPoints(faulty[i].second.calls), entryPoints(healthy[i].second.calls))
            << faulty[i].second.name();
    }
}

TEST_P(GlFaults, HaveTheEffectThatThePageTells) {
    FakeGl fresh;
    GetParam().set(fresh, true);
    GetParam().expect(fresh);
    EXPECT_EQ(fresh.doubleDeletes(), Lines());
    EXPECT_EQ(fresh.liveNames(), Lines());
    fresh.ignoreTheRest();
}

INSTANTIATE_TEST_SUITE_P(All, GlFaults, testing::ValuesIn(test::glFaults()),
                         [](const auto& row) { return std::string(row.param.id); });

// Runs before the others, for which this program has no name then.
TEST(GlFaultsAtFirst, WhatIsMadeOnceStaysWithoutAName) {
    FakeGl gl;
    const ProgramManager& programs = ProgramManager::instance();
    gl.failToCreate();
    EXPECT_EQ(programs.get(ProgramManager::BuiltIn::DashLines3D)->id(), 0u);
    gl.failToCreate(false);
    EXPECT_EQ(programs.get(ProgramManager::BuiltIn::DashLines3D)->id(), 0u);
    gl.ignoreTheRest();
}

TEST(GlFaultsPage, ListsEveryFault) {
    std::string table = "| GL | then |\n|---|---|\n";
    for (const GlFault& row : test::glFaults())
        table += "| " + std::string(row.fault) + " | " + row.effect + " |\n";
    Page page("docs/faults.md");
    page.expectPart("faults of GL", table);
}

} // namespace
