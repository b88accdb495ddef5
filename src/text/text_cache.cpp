#include "text/text_cache.hpp"

#include <algorithm>
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
    if (table_.empty())
        return nullptr;
    const std::uint32_t hash = hashOf(text);
    for (Index i = placeOf(hash); i != nowhere; i = texts_[i].next) {
        if (texts_[i].hash != hash || texts_[i].text != text)
            continue;
        if (i != newest_) {
            unlink(i);
            link(i);
        }
        return texts_[i].shape;
    }
    return nullptr;
}

void TextCache::keep(std::string_view text, std::shared_ptr<const ShapedText> shape) {
    const std::size_t size = bytesOf(text, *shape);
    if (size > mostBytes_ || mostTexts_ == 0)
        return;
    while (numTexts_ == mostTexts_ || numBytes_ + size > mostBytes_)
        forgetOldest();
    std::string copy(text);
    if (numTexts_ == table_.size())
        growTable();
    const Index index = takeFree();
    Kept& kept = texts_[index];
    kept.text = std::move(copy);
    kept.shape = std::move(shape);
    kept.numBytes = size;
    kept.hash = hashOf(text);
    kept.next = std::exchange(placeOf(kept.hash), index);
    link(index);
    ++numTexts_;
    numBytes_ += size;
}

/// Has at least as many places as there are texts.
void TextCache::growTable() {
    constexpr std::size_t least = 64;
    std::vector<Index> larger((std::max)(2 * table_.size(), least), nowhere);
    table_.swap(larger);
    for (Index i = newest_; i != nowhere; i = texts_[i].older)
        texts_[i].next = std::exchange(placeOf(texts_[i].hash), i);
}

TextCache::Index TextCache::takeFree() {
    if (free_ != nowhere)
        return std::exchange(free_, texts_[free_].next);
    texts_.emplace_back();
    return static_cast<Index>(texts_.size() - 1);
}

/// Makes a text the newest.
void TextCache::link(Index index) {
    texts_[index].older = newest_;
    texts_[index].newer = nowhere;
    (newest_ != nowhere ? texts_[newest_].newer : oldest_) = index;
    newest_ = index;
}

void TextCache::unlink(Index index) {
    const Kept& kept = texts_[index];
    (kept.newer != nowhere ? texts_[kept.newer].older : newest_) = kept.older;
    (kept.older != nowhere ? texts_[kept.older].newer : oldest_) = kept.newer;
}

void TextCache::forgetOldest() {
    const Index index = oldest_;
    unlink(index);
    Kept& kept = texts_[index];
    Index* place = &placeOf(kept.hash);
    while (*place != index)
        place = &texts_[*place].next;
    *place = kept.next;
    numBytes_ -= kept.numBytes;
    --numTexts_;
    kept = Kept();
    kept.next = std::exchange(free_, index);
}

} // namespace vellis::text
