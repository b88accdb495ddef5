// needs: a program of its own

/// The lengths along a dashed line, compiled so that the compiler may use any instruction that
/// multiplies and adds at once.

#include "drawing/dash_distances.hpp"

#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace {

/// Whether the processor has what the source was compiled for.
bool runsHere() {
#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
    return __builtin_cpu_supports("fma") != 0;
#else
    return true;
#endif
}

/// A difference, a product or a sum, rounded to single precision whatever the compiler would like.
/// @{
float minus(float a, float b) {
    const volatile float result = a - b;
    return result;
}
float times(float a, float b) {
    const volatile float result = a * b;
    return result;
}
float plus(float a, float b) {
    const volatile float result = a + b;
    return result;
}
/// @}

/// A product and a sum, rounded once. Not every std::fma is exact for floats, whose product a
/// double holds.
float fused(float a, float b, float c) {
    return static_cast<float>(double{a} * double{b} + double{c});
}

using Numbers = std::vector<float>;
using SumOfSquares = float (*)(const Numbers& step);

float inSteps(const Numbers& step) {
    float sum = plus(times(step[1], step[1]), times(step[0], step[0]));
    if (step.size() == 3)
        sum = plus(sum, times(step[2], step[2]));
    return sum;
}

/// With the first square and the sum in one.
float firstFused(const Numbers& step) {
    float sum = fused(step[1], step[1], times(step[0], step[0]));
    if (step.size() == 3)
        sum = plus(sum, times(step[2], step[2]));
    return sum;
}

/// With the last square and the sum in one.
float lastFused(const Numbers& step) {
    if (step.size() == 3)
        return fused(step[2], step[2], inSteps({step[0], step[1]}));
    return fused(step[0], step[0], times(step[1], step[1]));
}

/// Points and the lengths up to them, as they should be.
Numbers withDistances(const Numbers& points, unsigned int dimensions, SumOfSquares sumOfSquares) {
    Numbers result;
    float length = 0.f;
    for (std::size_t i = 0; i < points.size(); i += dimensions) {
        Numbers step;
        for (std::size_t j = i; i > 0 && j < i + dimensions; ++j)
            step.push_back(minus(points[j], points[j - dimensions]));
        if (!step.empty())
            length = plus(length, std::sqrt(sumOfSquares(step)));
        result.insert(result.end(), points.begin() + static_cast<std::ptrdiff_t>(i),
                      points.begin() + static_cast<std::ptrdiff_t>(i + dimensions));
        result.push_back(length);
    }
    return result;
}

/// A line back and forth, by random numbers that are the same everywhere. Its steps grow, so that
/// the length before does not swallow the last digits of a step.
Numbers crookedLine(unsigned int dimensions, unsigned int count) {
    std::minstd_rand random;
    Numbers points;
    float scale = 1.f;
    for (unsigned int i = 0; i < count; ++i) {
        for (unsigned int j = 0; j < dimensions; ++j)
            points.push_back(scale * static_cast<float>(random()) / 1e9f);
        scale *= 1.5f;
    }
    return points;
}

class DashDistances : public testing::TestWithParam<unsigned int> {};

TEST_P(DashDistances, AreRoundedAtEachStepWhereTheProcessorCouldFuseThem) {
    if (!runsHere())
        GTEST_SKIP() << "the processor has no fused multiply and add";
    constexpr unsigned int count = 40;
    const unsigned int dimensions = GetParam();
    const Numbers points = crookedLine(dimensions, count);
    const Numbers expected = withDistances(points, dimensions, inSteps);
    // Otherwise the line would not show the difference.
    ASSERT_NE(expected, withDistances(points, dimensions, firstFused));
    ASSERT_NE(expected, withDistances(points, dimensions, lastFused));
    Numbers result(expected.size());
    vellis::addDistances(points.data(), dimensions, count, result.data());
    EXPECT_EQ(result, expected);
}

INSTANTIATE_TEST_SUITE_P(Dimensions, DashDistances, testing::Values(2u, 3u),
                         testing::PrintToStringParamName());

} // namespace
