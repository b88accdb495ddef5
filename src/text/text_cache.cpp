#include "text/text_cache.hpp"

#include <utility>

namespace vellis::text {
namespace {

/// What a kept text takes beside its characters and glyphs, about.
constexpr std::size_t overhead = 256;

std::size_t bytesOf(std::string_view text, const ShapedText& shape) {
    return overhead + text.size() + shape.glyphs.capacity() * sizeof(ShapedGlyph) +
           shape.lines.capacity() * sizeof(ShapedLine);
}

} // namespace

std::shared_ptr<const ShapedText> TextCache::find(std::string_view text) {
    const auto place = places_.find(text);
    if (place == places_.end())
        return nullptr;
    texts_.splice(texts_.begin(), texts_, place->second);
    return place->second->shape;
}

void TextCache::keep(std::string_view text, std::shared_ptr<const ShapedText> shape) {
    const std::size_t size = bytesOf(text, *shape);
    if (size > mostBytes_ || mostTexts_ == 0)
        return;
    Texts fresh;
    fresh.push_back({std::string(text), std::move(shape), size});
    places_.emplace(fresh.front().text, fresh.begin());
    texts_.splice(texts_.begin(), fresh);
    numBytes_ += size;
    while (texts_.size() > mostTexts_ || numBytes_ > mostBytes_)
        forgetLast();
}

void TextCache::forgetLast() {
    numBytes_ -= texts_.back().numBytes;
    places_.erase(texts_.back().text);
    texts_.pop_back();
}

} // namespace vellis::text
