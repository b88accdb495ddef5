/// The 46 state records: every row of the table is read and written, and its GL calls compared.

#include <vellis/state.hpp>

#include <algorithm>
#include <array>
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace {

using vellis::state::State;
using vellis::test::FakeGl;

/// The enumerator of a query, and its name.
struct Query {
    unsigned int pname;
    const char* name;
};
#define QUERY(pname)                                                                               \
    Query {                                                                                        \
        pname, #pname                                                                              \
    }

/// One record: how GL is asked for it, and how it is written back.
struct Row {
    std::string key;                                ///< type, number of values, enumerator
    std::string name;                               ///< for the test's name
    std::vector<std::string> queries;               ///< the calls of get
    std::vector<std::string> commands;              ///< the calls of set
    std::function<void(FakeGl&)> getWithAnswers;    ///< gets, and checks every value
    std::function<void(FakeGl&)> getWithoutAnswers; ///< gets while GL refuses to tell
    std::function<void()> set;                      ///< sets
};

/// GoogleTest would read every byte, the unset ones, too.
void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name;
}

template <class T>
const char* typeName() {
    if (std::is_same_v<T, int>)
        return "int";
    if (std::is_same_v<T, float>)
        return "float";
    return std::is_same_v<T, double> ? "double" : "bool";
}

template <class T>
const char* getterOf() {
    if (std::is_same_v<T, int>)
        return "glGetIntegerv";
    if (std::is_same_v<T, float>)
        return "glGetFloatv";
    return std::is_same_v<T, double> ? "glGetDoublev" : "glGetBooleanv";
}

template <class T, unsigned int N, unsigned int pname>
std::string keyOf() {
    return std::string(typeName<T>()) + ' ' + std::to_string(N) + ' ' + std::to_string(pname);
}

/// \param values    What the record holds.
/// \param queries   One query for all values, or one for each.
/// \param commands  The GL calls that write exactly these values.
template <class T, unsigned int N, unsigned int pname>
Row row(std::array<T, N> values, std::vector<Query> queries, std::vector<std::string> commands) {
    using Record = State<T, N, pname>;
    static_assert(sizeof(Record) == N * sizeof(T), "nothing but the values is stored");
    static_assert(std::is_aggregate_v<Record> && std::is_trivially_copyable_v<Record>);

    Row result;
    result.key = keyOf<T, N, pname>();
    result.name = queries.front().name;
    result.commands = std::move(commands);
    for (const Query& query : queries)
        result.queries.push_back(std::string(getterOf<T>()) + "(" + query.name + ", out)");

    result.getWithAnswers = [=](FakeGl& gl) {
        if (queries.size() == 1)
            gl.setState(pname, std::vector<double>(values.begin(), values.end()));
        else
            for (unsigned int i = 0; i < N; ++i)
                gl.setState(queries[i].pname, {static_cast<double>(values[i])});
        Record record{};
        vellis::state::get(record);
        EXPECT_TRUE(std::equal(values.begin(), values.end(), record.value));
    };
    result.getWithoutAnswers = [=](FakeGl& gl) {
        for (const Query& query : queries)
            gl.refuse(query.pname);
        Record record;
        std::copy(values.begin(), values.end(), record.value);
        vellis::state::get(record);
        for (const T value : record.value)
            EXPECT_EQ(value, T());
    };
    result.set = [=] {
        Record record;
        std::copy(values.begin(), values.end(), record.value);
        vellis::state::set(record);
    };
    return result;
}

/// A capability that is enabled.
template <unsigned int pname>
Row capability(const char* name) {
    return row<bool, 1, pname>({true}, {{pname, name}}, {std::string("glEnable(") + name + ")"});
}

const std::vector<Row>& rows() {
    // clang-format off
    static const std::vector<Row> all = {
        row<int, 1, GL_TEXTURE_BINDING_1D>({7}, {QUERY(GL_TEXTURE_BINDING_1D)}, {"glBindTexture(GL_TEXTURE_1D, 7)"}),
        row<int, 1, GL_TEXTURE_BINDING_2D>({7}, {QUERY(GL_TEXTURE_BINDING_2D)}, {"glBindTexture(GL_TEXTURE_2D, 7)"}),
        row<int, 1, GL_TEXTURE_BINDING_3D>({7}, {QUERY(GL_TEXTURE_BINDING_3D)}, {"glBindTexture(GL_TEXTURE_3D, 7)"}),
        row<int, 1, GL_TEXTURE_BINDING_RECTANGLE>({7}, {QUERY(GL_TEXTURE_BINDING_RECTANGLE)}, {"glBindTexture(GL_TEXTURE_RECTANGLE, 7)"}),
        row<int, 1, GL_TEXTURE_BINDING_CUBE_MAP>({7}, {QUERY(GL_TEXTURE_BINDING_CUBE_MAP)}, {"glBindTexture(GL_TEXTURE_CUBE_MAP, 7)"}),
        row<int, 1, GL_TEXTURE_BINDING_1D_ARRAY>({7}, {QUERY(GL_TEXTURE_BINDING_1D_ARRAY)}, {"glBindTexture(GL_TEXTURE_1D_ARRAY, 7)"}),
        row<int, 1, GL_TEXTURE_BINDING_2D_ARRAY>({7}, {QUERY(GL_TEXTURE_BINDING_2D_ARRAY)}, {"glBindTexture(GL_TEXTURE_2D_ARRAY, 7)"}),
        row<int, 1, GL_ACTIVE_TEXTURE>({GL_TEXTURE3}, {QUERY(GL_ACTIVE_TEXTURE)}, {"glActiveTexture(GL_TEXTURE3)"}),
        row<int, 1, GL_VERTEX_ARRAY_BINDING>({7}, {QUERY(GL_VERTEX_ARRAY_BINDING)}, {"glBindVertexArray(7)"}),
        row<int, 1, GL_ELEMENT_ARRAY_BUFFER_BINDING>({7}, {QUERY(GL_ELEMENT_ARRAY_BUFFER_BINDING)}, {"glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 7)"}),
        row<int, 1, GL_CURRENT_PROGRAM>({7}, {QUERY(GL_CURRENT_PROGRAM)}, {"glUseProgram(7)"}),
        row<int, 1, GL_RENDERBUFFER_BINDING>({7}, {QUERY(GL_RENDERBUFFER_BINDING)}, {"glBindRenderbuffer(GL_RENDERBUFFER, 7)"}),
        row<int, 1, GL_CULL_FACE_MODE>({GL_FRONT}, {QUERY(GL_CULL_FACE_MODE)}, {"glCullFace(GL_FRONT)"}),
        row<int, 1, GL_DEPTH_FUNC>({GL_GEQUAL}, {QUERY(GL_DEPTH_FUNC)}, {"glDepthFunc(GL_GEQUAL)"}),
        row<int, 1, GL_STENCIL_CLEAR_VALUE>({-5}, {QUERY(GL_STENCIL_CLEAR_VALUE)}, {"glClearStencil(-5)"}),
        row<int, 1, GL_LOGIC_OP_MODE>({GL_XOR}, {QUERY(GL_LOGIC_OP_MODE)}, {"glLogicOp(GL_XOR)"}),
        row<int, 1, GL_DRAW_BUFFER>({GL_BACK}, {QUERY(GL_DRAW_BUFFER)}, {"glDrawBuffer(GL_BACK)"}),
        row<int, 1, GL_READ_BUFFER>({GL_NONE}, {QUERY(GL_READ_BUFFER)}, {"glReadBuffer(GL_NONE)"}),
        row<int, 1, GL_UNPACK_ALIGNMENT>({8}, {QUERY(GL_UNPACK_ALIGNMENT)}, {"glPixelStorei(GL_UNPACK_ALIGNMENT, 8)"}),
        row<int, 1, GL_PACK_ALIGNMENT>({2}, {QUERY(GL_PACK_ALIGNMENT)}, {"glPixelStorei(GL_PACK_ALIGNMENT, 2)"}),

        row<int, 2, GL_BLEND_EQUATION_RGB>({GL_FUNC_ADD, GL_MAX},
            {QUERY(GL_BLEND_EQUATION_RGB), QUERY(GL_BLEND_EQUATION_ALPHA)},
            {"glBlendEquationSeparate(GL_FUNC_ADD, GL_MAX)"}),
        row<int, 2, GL_DRAW_FRAMEBUFFER_BINDING>({5, 0},
            {QUERY(GL_DRAW_FRAMEBUFFER_BINDING), QUERY(GL_READ_FRAMEBUFFER_BINDING)},
            {"glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 5)", "glBindFramebuffer(GL_READ_FRAMEBUFFER, 0)"}),
        row<int, 2, GL_POLYGON_MODE>({GL_LINE, GL_FILL}, {QUERY(GL_POLYGON_MODE)},
            {"glPolygonMode(GL_FRONT, GL_LINE)", "glPolygonMode(GL_BACK, GL_FILL)"}),

        row<int, 3, GL_STENCIL_FUNC>({GL_LESS, -2, 255},
            {QUERY(GL_STENCIL_FUNC), QUERY(GL_STENCIL_REF), QUERY(GL_STENCIL_VALUE_MASK)},
            {"glStencilFuncSeparate(GL_FRONT, GL_LESS, -2, 255)"}),
        row<int, 3, GL_STENCIL_FAIL>({GL_KEEP, GL_INCR, GL_INVERT},
            {QUERY(GL_STENCIL_FAIL), QUERY(GL_STENCIL_PASS_DEPTH_FAIL), QUERY(GL_STENCIL_PASS_DEPTH_PASS)},
            {"glStencilOpSeparate(GL_FRONT, GL_KEEP, GL_INCR, GL_INVERT)"}),
        row<int, 3, GL_STENCIL_BACK_FUNC>({GL_LESS, -2, 255},
            {QUERY(GL_STENCIL_BACK_FUNC), QUERY(GL_STENCIL_BACK_REF), QUERY(GL_STENCIL_BACK_VALUE_MASK)},
            {"glStencilFuncSeparate(GL_BACK, GL_LESS, -2, 255)"}),
        row<int, 3, GL_STENCIL_BACK_FAIL>({GL_KEEP, GL_INCR, GL_INVERT},
            {QUERY(GL_STENCIL_BACK_FAIL), QUERY(GL_STENCIL_BACK_PASS_DEPTH_FAIL), QUERY(GL_STENCIL_BACK_PASS_DEPTH_PASS)},
            {"glStencilOpSeparate(GL_BACK, GL_KEEP, GL_INCR, GL_INVERT)"}),

        row<int, 4, GL_BLEND_SRC_RGB>({GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ZERO},
            {QUERY(GL_BLEND_SRC_RGB), QUERY(GL_BLEND_DST_RGB), QUERY(GL_BLEND_SRC_ALPHA), QUERY(GL_BLEND_DST_ALPHA)},
            {"glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ZERO)"}),
        row<int, 4, GL_VIEWPORT>({-1, 2, 30, 40}, {QUERY(GL_VIEWPORT)}, {"glViewport(-1, 2, 30, 40)"}),
        row<int, 4, GL_SCISSOR_BOX>({-1, 2, 30, 40}, {QUERY(GL_SCISSOR_BOX)}, {"glScissor(-1, 2, 30, 40)"}),

        row<float, 1, GL_POINT_SIZE>({2.5f}, {QUERY(GL_POINT_SIZE)}, {"glPointSize(2.5)"}),
        row<float, 1, GL_LINE_WIDTH>({1.5f}, {QUERY(GL_LINE_WIDTH)}, {"glLineWidth(1.5)"}),
        row<float, 4, GL_COLOR_CLEAR_VALUE>({0.25f, 0.5f, 0.75f, 1.f}, {QUERY(GL_COLOR_CLEAR_VALUE)}, {"glClearColor(0.25, 0.5, 0.75, 1)"}),
        row<double, 1, GL_DEPTH_CLEAR_VALUE>({0.5}, {QUERY(GL_DEPTH_CLEAR_VALUE)}, {"glClearDepth(0.5)"}),
        row<double, 2, GL_DEPTH_RANGE>({0.25, 0.75}, {QUERY(GL_DEPTH_RANGE)}, {"glDepthRange(0.25, 0.75)"}),

        capability<GL_PROGRAM_POINT_SIZE>("GL_VERTEX_PROGRAM_POINT_SIZE"),
        capability<GL_LINE_SMOOTH>("GL_LINE_SMOOTH"),
        capability<GL_POLYGON_SMOOTH>("GL_POLYGON_SMOOTH"),
        capability<GL_CULL_FACE>("GL_CULL_FACE"),
        capability<GL_DEPTH_TEST>("GL_DEPTH_TEST"),
        capability<GL_STENCIL_TEST>("GL_STENCIL_TEST"),
        capability<GL_BLEND>("GL_BLEND"),
        capability<GL_COLOR_LOGIC_OP>("GL_COLOR_LOGIC_OP"),
        capability<GL_SCISSOR_TEST>("GL_SCISSOR_TEST"),
        row<bool, 1, GL_DEPTH_WRITEMASK>({true}, {QUERY(GL_DEPTH_WRITEMASK)}, {"glDepthMask(GL_TRUE)"}),
        row<bool, 4, GL_COLOR_WRITEMASK>({true, false, false, true}, {QUERY(GL_COLOR_WRITEMASK)},
            {"glColorMask(GL_TRUE, GL_FALSE, GL_FALSE, GL_TRUE)"}),
    };
    // clang-format on
    return all;
}

class StateTrace : public testing::TestWithParam<Row> {
protected:
    FakeGl gl;
};

TEST_P(StateTrace, GetAsksGlOnceForEachPlaceOfTheValues) {
    GetParam().getWithAnswers(gl);
    EXPECT_EQ(gl.takeCalls(), GetParam().queries);
}

TEST_P(StateTrace, GetGivesZerosWhereGlRefusesToTell) {
    GetParam().getWithoutAnswers(gl);
    EXPECT_EQ(gl.takeCalls(), GetParam().queries);
}

TEST_P(StateTrace, SetIssuesTheCommandThatOwnsTheState) {
    GetParam().set();
    EXPECT_EQ(gl.takeCalls(), GetParam().commands);
}

INSTANTIATE_TEST_SUITE_P(Records, StateTrace, testing::ValuesIn(rows()),
                         [](const auto& row) { return row.param.name; });

TEST(StateTable, HasThe46RecordsThatTheTestsWalk) {
    const std::multiset<std::string> table = {
#define VELLIS_STATE(T, N, pname, queries, command) keyOf<T, N, pname>(),
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
    };
    std::multiset<std::string> walked;
    for (const Row& row : rows())
        walked.insert(row.key);
    EXPECT_EQ(table, walked);
    EXPECT_EQ(table.size(), 46u);
}

/// Sets a record that is off, and behind which in memory is one that is on.
template <unsigned int pname>
void setOff() {
    const State<bool, 1, pname> records[] = {{{false}}, {{true}}};
    vellis::state::set(records[0]);
}

TEST(StateTrace, CapabilityThatIsOffIsDisabledWithoutAsking) {
    FakeGl gl;
    setOff<GL_PROGRAM_POINT_SIZE>();
    setOff<GL_LINE_SMOOTH>();
    setOff<GL_POLYGON_SMOOTH>();
    setOff<GL_CULL_FACE>();
    setOff<GL_DEPTH_TEST>();
    setOff<GL_STENCIL_TEST>();
    setOff<GL_BLEND>();
    setOff<GL_COLOR_LOGIC_OP>();
    setOff<GL_SCISSOR_TEST>();
    EXPECT_GL_CALLS(gl, "glDisable(GL_VERTEX_PROGRAM_POINT_SIZE)", "glDisable(GL_LINE_SMOOTH)",
                    "glDisable(GL_POLYGON_SMOOTH)", "glDisable(GL_CULL_FACE)",
                    "glDisable(GL_DEPTH_TEST)", "glDisable(GL_STENCIL_TEST)", "glDisable(GL_BLEND)",
                    "glDisable(GL_COLOR_LOGIC_OP)", "glDisable(GL_SCISSOR_TEST)");
}

TEST(StateTrace, DepthMaskThatIsOffIsWritten) {
    FakeGl gl;
    setOff<GL_DEPTH_WRITEMASK>();
    EXPECT_GL_CALLS(gl, "glDepthMask(GL_FALSE)");
}

TEST(StateTrace, EqualFramebuffersAreBoundInOneCall) {
    FakeGl gl;
    vellis::state::set(State<int, 2, GL_FRAMEBUFFER_BINDING>{{5, 5}});
    EXPECT_GL_CALLS(gl, "glBindFramebuffer(GL_FRAMEBUFFER, 5)");
}

TEST(StateTrace, DifferentFramebuffersAreBoundForDrawingThenForReading) {
    FakeGl gl;
    vellis::state::set(State<int, 2, GL_DRAW_FRAMEBUFFER_BINDING>{{5, 0}});
    EXPECT_GL_CALLS(gl, "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 5)",
                    "glBindFramebuffer(GL_READ_FRAMEBUFFER, 0)");
}

TEST(StateTrace, ActiveTextureTravelsAsTheEnumeratorNotTheUnit) {
    FakeGl gl;
    gl.setState(GL_ACTIVE_TEXTURE, {GL_TEXTURE5});
    State<int, 1, GL_ACTIVE_TEXTURE> unit{};
    vellis::state::get(unit);
    vellis::state::set(unit);
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_ACTIVE_TEXTURE, out)", "glActiveTexture(GL_TEXTURE5)");
}

TEST(StateTrace, ObjectsThatTheContextLacksAreLeftAlone) {
    FakeGl gl;
    gl.remove(glad_glBindVertexArray);
    gl.remove(glad_glBindRenderbuffer);
    gl.remove(glad_glBindFramebuffer);
    vellis::state::set(State<int, 1, GL_VERTEX_ARRAY_BINDING>{{0}});
    vellis::state::set(State<int, 1, GL_RENDERBUFFER_BINDING>{{0}});
    vellis::state::set(State<int, 2, GL_DRAW_FRAMEBUFFER_BINDING>{{0, 0}});
    vellis::state::set(State<int, 2, GL_DRAW_FRAMEBUFFER_BINDING>{{1, 0}});
    EXPECT_GL_CALLS(gl);
}

} // namespace
