#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace vellis::text {

/// Packs rectangles into a square, each as low as it goes on top of what is there.
class Skyline {
public:
    struct Place {
        unsigned int x;
        unsigned int y;
    };

    explicit Skyline(unsigned int size) : size_(size), steps_{{0, 0, size}} {}

    /// Where a rectangle now is that overlaps no other; nothing where there is no room or one of
    /// its sides is 0.
    std::optional<Place> add(unsigned int width, unsigned int height);

private:
    /// A piece of the line on top of what is there.
    struct Step {
        unsigned int x;
        unsigned int y;
        unsigned int width;
    };

    std::optional<unsigned int> heightAt(std::size_t first, unsigned int width) const;
    void raise(std::size_t first, const Step& top);

    unsigned int size_;
    std::vector<Step> steps_; ///< from left to right
};

} // namespace vellis::text
