#include "signal.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace plot {
namespace {

constexpr std::size_t count = 1'000'000;
constexpr double begin = 1'750'000'000'000.0;
constexpr double pi = 3.14159265358979;

/// Numbers from -1 to 1.
class Noise {
public:
    double next() {
        state_ = state_ * 1664525u + 1013904223u;
        return static_cast<double>(state_ >> 8) / 8388608.0 - 1.0;
    }

private:
    std::uint32_t state_ = 1;
};

/// The value without noise, at a time in seconds: slow and fast oscillations, and a burst.
double valueAt(double seconds) {
    const double fromBurst = seconds - 618.0;
    const double burst = 2.4 * std::exp(-fromBurst * fromBurst / 0.5);
    return std::sin(2.0 * pi * seconds / 410.0) + 0.4 * std::sin(2.0 * pi * seconds / 37.0) +
           burst * std::cos(2.0 * pi * 1.9 * fromBurst);
}

bool isLower(const glm::dvec2& a, const glm::dvec2& b) {
    return a.y < b.y;
}

} // namespace

Range Signal::range() const {
    const auto [lowest, top] = std::minmax_element(samples.begin(), samples.end(), isLower);
    const double room = 0.08 * (top->y - lowest->y);
    return {{samples.front().x, lowest->y - room}, {samples.back().x, top->y + room}};
}

std::vector<glm::dvec2> Signal::thinned(std::size_t step) const {
    std::vector<glm::dvec2> result;
    for (std::size_t i = 0; i < samples.size(); i += step) {
        const auto first = samples.begin() + static_cast<std::ptrdiff_t>(i);
        const auto last = first + static_cast<std::ptrdiff_t>(std::min(step, samples.size() - i));
        const auto [lowest, top] = std::minmax_element(first, last, isLower);
        result.push_back(*std::min(lowest, top));
        result.push_back(*std::max(lowest, top));
    }
    return result;
}

Signal makeSignal() {
    Signal signal;
    signal.samples.reserve(count);
    Noise noise;
    double error = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto milliseconds = static_cast<double>(i);
        error = 0.92 * error + 0.08 * noise.next();
        signal.samples.emplace_back(begin + milliseconds, valueAt(milliseconds / 1000.0) + error);
    }
    const auto highest = std::max_element(signal.samples.begin(), signal.samples.end(), isLower);
    signal.highest = static_cast<std::size_t>(highest - signal.samples.begin());
    return signal;
}

} // namespace plot
