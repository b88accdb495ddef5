// needs: private access

/// Compiled with access to what is protected: apply and reset.

#include <vellis/texture/sampler.hpp>

#include <array>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"
#include "support/stderr_capture.hpp"

namespace {

using vellis::Sampler;
using vellis::test::FakeGl;
using vellis::test::stderrOf;
using Lines = std::vector<std::string>;
using Values = std::array<unsigned int, 5>;

constexpr unsigned int unset = 0xFFFFFFFF;

static_assert(Sampler::unset == unset);
static_assert(Sampler::MIN_FILTER == 0 && Sampler::MAG_FILTER == 1 &&
              Sampler::MIPMAP_MIN_FILTER == 2 && Sampler::WRAP_S == 3 && Sampler::WRAP_T == 4);
static_assert(Sampler::NEAREST == 0 && Sampler::LINEAR == 1);
static_assert(Sampler::CLAMP == 0 && Sampler::REPEAT == 1 && Sampler::MIRRORED_REPEAT == 2);
static_assert(std::is_same_v<std::underlying_type_t<Sampler::Property>, unsigned int> &&
              std::is_same_v<std::underlying_type_t<Sampler::Filter>, unsigned int> &&
              std::is_same_v<std::underlying_type_t<Sampler::Wrap>, unsigned int>);
static_assert(sizeof(Sampler) == 5 * sizeof(unsigned int));
static_assert(std::is_trivially_copyable_v<Sampler>);
static_assert(!std::is_polymorphic_v<Sampler>);

Values valuesOf(const Sampler& sampler) {
    return {sampler.get(Sampler::MIN_FILTER), sampler.get(Sampler::MAG_FILTER),
            sampler.get(Sampler::MIPMAP_MIN_FILTER), sampler.get(Sampler::WRAP_S),
            sampler.get(Sampler::WRAP_T)};
}

/// A sampler with these values in the order of the properties.
Sampler samplerOf(const Values& values) {
    return {{Sampler::MIN_FILTER, values[0]},
            {Sampler::MAG_FILTER, values[1]},
            {Sampler::MIPMAP_MIN_FILTER, values[2]},
            {Sampler::WRAP_S, values[3]},
            {Sampler::WRAP_T, values[4]}};
}

Lines callsOfApply(const Sampler& sampler, unsigned int target = GL_TEXTURE_2D) {
    FakeGl gl;
    sampler.apply(target);
    return gl.takeCalls();
}

std::string parameter(const std::string& name, const std::string& value,
                      const std::string& target = "GL_TEXTURE_2D") {
    return "glTexParameteri(" + target + ", " + name + ", " + value + ")";
}

TEST(SamplerTrace, DefaultEqualsNearestClampFieldForField) {
    EXPECT_EQ(valuesOf(Sampler()), (Values{0, 0, unset, 0, 0}));
    EXPECT_EQ(valuesOf(Sampler()), valuesOf(Sampler::nearest_clamp()));
    EXPECT_EQ(valuesOf(Sampler{}), valuesOf(Sampler(Sampler::NEAREST, Sampler::CLAMP)));
}

TEST(SamplerTrace, FilterAndWrapFillAllButTheMipmapFilter) {
    for (const auto filter : {Sampler::NEAREST, Sampler::LINEAR}) {
        for (const auto wrap : {Sampler::CLAMP, Sampler::REPEAT, Sampler::MIRRORED_REPEAT}) {
            const Values expected = {filter, filter, unset, wrap, wrap};
            EXPECT_EQ(valuesOf(Sampler(filter, wrap)), expected) << filter << ' ' << wrap;
            EXPECT_EQ(valuesOf(Sampler{filter, wrap}), expected) << filter << ' ' << wrap;
        }
    }
}

TEST(SamplerTrace, EmptyListLeavesAllUnset) {
    const Sampler sampler({});
    EXPECT_EQ(valuesOf(sampler), (Values{unset, unset, unset, unset, unset}));
    EXPECT_EQ(callsOfApply(sampler), Lines{});
    EXPECT_EQ(stderrOf([&] { sampler.print(); }), "");
}

TEST(SamplerTrace, ListSetsWhatItNames) {
    const unsigned int values[] = {Sampler::LINEAR, Sampler::NEAREST, Sampler::LINEAR,
                                   Sampler::MIRRORED_REPEAT, Sampler::REPEAT};
    for (unsigned int i = 0; i < 5; ++i) {
        Values expected = {unset, unset, unset, unset, unset};
        expected[i] = values[i];
        EXPECT_EQ(valuesOf(Sampler({{Sampler::Property(i), values[i]}})), expected) << i;
    }
}

TEST(SamplerTrace, LastPairForAPropertyWins) {
    const Sampler sampler({{Sampler::WRAP_S, Sampler::REPEAT},
                           {Sampler::WRAP_T, Sampler::CLAMP},
                           {Sampler::WRAP_S, Sampler::MIRRORED_REPEAT}});
    EXPECT_EQ(valuesOf(sampler),
              (Values{unset, unset, unset, Sampler::MIRRORED_REPEAT, Sampler::CLAMP}));
    Sampler other({});
    other.set({{Sampler::MIN_FILTER, Sampler::LINEAR}, {Sampler::MIN_FILTER, Sampler::NEAREST}});
    EXPECT_EQ(other.get(Sampler::MIN_FILTER), Sampler::NEAREST);
}

TEST(SamplerTrace, SetKeepsWhatItDoesNotName) {
    Sampler sampler = Sampler::linear_clamp();
    sampler.set({{Sampler::WRAP_S, Sampler::MIRRORED_REPEAT}});
    EXPECT_EQ(valuesOf(sampler), (Values{1, 1, unset, Sampler::MIRRORED_REPEAT, 0}));
    EXPECT_NE(stderrOf([&] { sampler.print(); }).find("WRAP_S = MIN_FILTER\n"), std::string::npos);
    sampler.set({});
    EXPECT_EQ(valuesOf(sampler), (Values{1, 1, unset, Sampler::MIRRORED_REPEAT, 0}));
}

TEST(SamplerTrace, SetCanUnset) {
    Sampler sampler = Sampler::trilinear_clamp();
    sampler.set({{Sampler::MIPMAP_MIN_FILTER, Sampler::unset}});
    EXPECT_EQ(sampler, Sampler::linear_clamp());
}

TEST(SamplerTrace, UnknownPropertyIsIgnored) {
    for (const unsigned int property : {5u, 6u, 1000u, unset}) {
        const auto unknown = static_cast<Sampler::Property>(property);
        struct {
            Sampler sampler;
            unsigned int behind = 7;
        } memory;
        memory.sampler = Sampler({{unknown, 1u}});
        memory.sampler.set({{unknown, 1u}, {Sampler::WRAP_T, Sampler::REPEAT}});
        EXPECT_EQ(valuesOf(memory.sampler), (Values{unset, unset, unset, unset, Sampler::REPEAT}));
        EXPECT_EQ(memory.behind, 7u);
        EXPECT_EQ(memory.sampler.get(unknown), unset);
    }
}

TEST(SamplerTrace, ResetUnsetsAll) {
    Sampler sampler = Sampler::trilinear_repeat();
    sampler.reset();
    EXPECT_EQ(valuesOf(sampler), (Values{unset, unset, unset, unset, unset}));
}

TEST(SamplerTrace, CopyTakesAllFields) {
    const Sampler source = samplerOf({1, 0, 1, 2, 1});
    const Sampler copy(source);
    Sampler assigned;
    assigned = source;
    EXPECT_EQ(valuesOf(copy), (Values{1, 0, 1, 2, 1}));
    EXPECT_EQ(valuesOf(assigned), (Values{1, 0, 1, 2, 1}));
}

TEST(SamplerTrace, EqualityComparesEveryField) {
    const Values values = {1, 0, 1, 2, 1};
    EXPECT_TRUE(samplerOf(values) == samplerOf(values));
    EXPECT_FALSE(samplerOf(values) != samplerOf(values));
    for (std::size_t i = 0; i < values.size(); ++i) {
        Values other = values;
        other[i] = unset;
        EXPECT_TRUE(samplerOf(values) != samplerOf(other)) << i;
        EXPECT_FALSE(samplerOf(values) == samplerOf(other)) << i;
    }
}

struct PresetRow {
    const char* name;
    Sampler (*make)();
    Values values;
};

const PresetRow presets[] = {
    {"nearest_clamp", Sampler::nearest_clamp, {0, 0, unset, 0, 0}},
    {"nearest_repeat", Sampler::nearest_repeat, {0, 0, unset, 1, 1}},
    {"linear_clamp", Sampler::linear_clamp, {1, 1, unset, 0, 0}},
    {"linear_repeat", Sampler::linear_repeat, {1, 1, unset, 1, 1}},
    {"trilinear_clamp", Sampler::trilinear_clamp, {1, 1, 1, 0, 0}},
    {"trilinear_repeat", Sampler::trilinear_repeat, {1, 1, 1, 1, 1}},
};

TEST(SamplerTrace, PresetsAreAsTheirNamesSay) {
    for (const PresetRow& row : presets)
        EXPECT_EQ(valuesOf(row.make()), row.values) << row.name;
}

TEST(SamplerTrace, ApplySendsMinificationMagnificationThenWraps) {
    EXPECT_EQ(callsOfApply(Sampler::trilinear_clamp()),
              (Lines{parameter("GL_TEXTURE_MIN_FILTER", "GL_LINEAR_MIPMAP_LINEAR"),
                     parameter("GL_TEXTURE_MAG_FILTER", "GL_LINEAR"),
                     parameter("GL_TEXTURE_WRAP_S", "GL_CLAMP_TO_EDGE"),
                     parameter("GL_TEXTURE_WRAP_T", "GL_CLAMP_TO_EDGE")}));
    EXPECT_EQ(callsOfApply(Sampler::nearest_repeat(), GL_TEXTURE_3D),
              (Lines{parameter("GL_TEXTURE_MIN_FILTER", "GL_NEAREST", "GL_TEXTURE_3D"),
                     parameter("GL_TEXTURE_MAG_FILTER", "GL_NEAREST", "GL_TEXTURE_3D"),
                     parameter("GL_TEXTURE_WRAP_S", "GL_REPEAT", "GL_TEXTURE_3D"),
                     parameter("GL_TEXTURE_WRAP_T", "GL_REPEAT", "GL_TEXTURE_3D")}));
}

struct MinificationRow {
    unsigned int filter;
    unsigned int mipmapFilter;
    const char* sent;
};

const MinificationRow minifications[] = {
    {Sampler::NEAREST, Sampler::NEAREST, "GL_NEAREST_MIPMAP_NEAREST"},
    {Sampler::NEAREST, Sampler::LINEAR, "GL_NEAREST_MIPMAP_LINEAR"},
    {Sampler::NEAREST, unset, "GL_NEAREST"},
    {Sampler::NEAREST, 2, "GL_NEAREST"},
    {Sampler::LINEAR, Sampler::NEAREST, "GL_LINEAR_MIPMAP_NEAREST"},
    {Sampler::LINEAR, Sampler::LINEAR, "GL_LINEAR_MIPMAP_LINEAR"},
    {Sampler::LINEAR, unset, "GL_LINEAR"},
    {Sampler::LINEAR, 77, "GL_LINEAR"},
};

TEST(SamplerTrace, MinificationCombinesBothFilters) {
    for (const MinificationRow& row : minifications) {
        EXPECT_EQ(callsOfApply(samplerOf({row.filter, unset, row.mipmapFilter, unset, unset})),
                  Lines{parameter("GL_TEXTURE_MIN_FILTER", row.sent)});
    }
}

TEST(SamplerTrace, MipmapFilterAloneSendsNothing) {
    for (const unsigned int filter : {unset, 2u, 5u, 0x2601u}) {
        for (const auto mipmap : {Sampler::NEAREST, Sampler::LINEAR})
            EXPECT_EQ(callsOfApply(samplerOf({filter, unset, mipmap, unset, unset})), Lines{});
    }
    EXPECT_EQ(callsOfApply(Sampler({{Sampler::MIPMAP_MIN_FILTER, Sampler::LINEAR}})), Lines{});
}

TEST(SamplerTrace, MagnificationIsTheFilter) {
    const char* const sent[] = {"GL_NEAREST", "GL_LINEAR"};
    for (unsigned int filter = 0; filter < 2; ++filter) {
        EXPECT_EQ(callsOfApply(Sampler({{Sampler::MAG_FILTER, filter}})),
                  Lines{parameter("GL_TEXTURE_MAG_FILTER", sent[filter])});
    }
}

TEST(SamplerTrace, WrapsAreSentByCoordinate) {
    const char* const sent[] = {"GL_CLAMP_TO_EDGE", "GL_REPEAT", "GL_MIRRORED_REPEAT"};
    for (unsigned int wrap = 0; wrap < 3; ++wrap) {
        EXPECT_EQ(callsOfApply(Sampler({{Sampler::WRAP_S, wrap}}), GL_TEXTURE_1D),
                  Lines{parameter("GL_TEXTURE_WRAP_S", sent[wrap], "GL_TEXTURE_1D")});
        EXPECT_EQ(callsOfApply(Sampler({{Sampler::WRAP_T, wrap}})),
                  Lines{parameter("GL_TEXTURE_WRAP_T", sent[wrap])});
    }
}

TEST(SamplerTrace, ValuesThatAreNoneOfTheParametersAreKeptAndNotSent) {
    const Values beyond = {2, 2, 2, 3, 3};
    EXPECT_EQ(valuesOf(samplerOf(beyond)), beyond);
    EXPECT_EQ(callsOfApply(samplerOf(beyond)), Lines{});
    EXPECT_EQ(callsOfApply(samplerOf({unset - 1, 0x2600, 0, 0x812F, unset - 1})), Lines{});
}

TEST(SamplerTrace, PrintWritesALineForEachFieldThatIsSet) {
    EXPECT_EQ(stderrOf([] { Sampler::linear_repeat().print(); }),
              "MIN_FILTER = LINEAR\nMAG_FILTER = LINEAR\nWRAP_S = LINEAR\nWRAP_T = LINEAR\n");
    EXPECT_EQ(stderrOf([] { Sampler::trilinear_clamp().print(); }),
              "MIN_FILTER = LINEAR\nMAG_FILTER = LINEAR\nMIPMAP_MIN_FILTER = LINEAR\n"
              "WRAP_S = NEAREST\nWRAP_T = NEAREST\n");
    EXPECT_EQ(stderrOf([] {
                  Sampler({{Sampler::WRAP_T, Sampler::MIRRORED_REPEAT}}).print();
              }),
              "WRAP_T = MIN_FILTER\n");
}

TEST(SamplerTrace, PrintTakesEveryWordFromOneList) {
    const char* const words[] = {"NEAREST",           "LINEAR", "MIN_FILTER", "MAG_FILTER",
                                 "MIPMAP_MIN_FILTER", "WRAP_S", "WRAP_T"};
    for (unsigned int value = 0; value < 7; ++value) {
        EXPECT_EQ(stderrOf([&] {
                      Sampler({{Sampler::MIPMAP_MIN_FILTER, value}}).print();
                  }),
                  std::string("MIPMAP_MIN_FILTER = ") + words[value] + "\n");
    }
}

TEST(SamplerTrace, PrintOfAValueWithoutAWordIsTheNumber) {
    const Sampler sampler({{Sampler::MIN_FILTER, 7}, {Sampler::WRAP_T, 0xFFFFFFFE}});
    EXPECT_EQ(stderrOf([&] { sampler.print(); }), "MIN_FILTER = 7\nWRAP_T = 4294967294\n");
}

} // namespace
