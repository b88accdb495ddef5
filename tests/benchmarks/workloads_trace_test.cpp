// needs: a program of its own

/// The two sides of a workload make the same GL calls, so that the difference between them is what
/// the library costs.

#include <ostream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/engine.hpp>

#include "support/fake_gl.hpp"
#include "workloads/workload.hpp"

namespace {

using vellis::test::FakeGl;

using namespace vellis::bench;

/// A workload of one size.
struct Case {
    Workload workload;
    unsigned int size;
};

void PrintTo(const Case& c, std::ostream* out) {
    *out << c.workload.name << " of size " << c.size;
}

std::vector<vellis::test::ActiveVariable> active(const Variables& variables) {
    std::vector<vellis::test::ActiveVariable> result;
    for (const Variable& variable : variables)
        result.push_back({variable.name, variable.type});
    return result;
}

/// The calls of a side's first two runs. Every side starts in a GL of its own, so that its objects
/// have the same names as the other side's.
std::vector<std::string> calls(const Case& c, const Implementation& implementation) {
    FakeGl gl;
    gl.setActiveUniforms(active(c.workload.uniforms(c.size)));
    gl.setActiveAttributes(active(c.workload.attributes()));
    std::vector<std::string> made;
    {
        const std::unique_ptr<Side> side = implementation.make(c.size);
        gl.forget();
        side->run();
        side->run();
        made = gl.takeCalls();
    }
    gl.forget();
    return made;
}

/// The built-in programs and the Toolbox's buffer are made once in a process, at first use, and
/// outlive every test.
class OuterGl : public testing::Environment {
public:
    void TearDown() override {
        vellis::engine::dispose();
        gl_.ignoreTheRest();
    }

private:
    FakeGl gl_;
};

const testing::Environment* const outerGl = testing::AddGlobalTestEnvironment(new OuterGl);

class Workloads : public testing::TestWithParam<Case> {};

TEST_P(Workloads, MakeTheSameCallsByHandAndThroughTheLibrary) {
    const std::vector<Implementation>& sides = GetParam().workload.implementations;
    for (const Implementation& side : sides) // what is made at first use is made
        calls(GetParam(), side);
    const std::vector<std::string> raw = calls(GetParam(), sides[0]);
    EXPECT_THAT(calls(GetParam(), sides[1]), testing::ElementsAreArray(raw));
    EXPECT_EQ(calls(GetParam(), sides[0]), raw) << "not the same a second time: nothing is held";
}

/// One case of each workload of which it is claimed: sizes differ in numbers alone.
std::vector<Case> cases() {
    std::vector<Case> result;
    for (const Workload& workload : workloads()) {
        if (workload.calls == Calls::Same)
            result.push_back({workload, workload.sizes.front()});
    }
    return result;
}

/// A test's name from a workload's: `draw/handles` is `draw_handles`.
std::string caseName(const testing::TestParamInfo<Case>& info) {
    std::string name = info.param.workload.name;
    for (char& c : name) {
        if (c == '/')
            c = '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, Workloads, testing::ValuesIn(cases()), caseName);

} // namespace
