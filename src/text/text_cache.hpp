#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include <vellis/text/shaped_text.hpp>

namespace vellis::text {

/// Keeps shaped texts up to a number and a size. Where there are more, the one that was looked for
/// longest ago is forgotten.
class TextCache {
public:
    TextCache(std::size_t mostTexts, std::size_t mostBytes)
        : mostTexts_(mostTexts),
          mostBytes_(mostBytes) {}

    /// The shape of that text, or an empty pointer. Makes no allocation.
    std::shared_ptr<const ShapedText> find(std::string_view text);

    /// Keeps the shape of a text that find() does not find, unless it is larger than all that may
    /// be kept.
    void keep(std::string_view text, std::shared_ptr<const ShapedText> shape);

    std::size_t numTexts() const { return texts_.size(); }
    std::size_t numBytes() const { return numBytes_; }

private:
    struct Kept {
        std::string text;
        std::shared_ptr<const ShapedText> shape;
        std::size_t numBytes;
    };
    using Texts = std::list<Kept>;

    void forgetLast();

    std::size_t mostTexts_;
    std::size_t mostBytes_;
    std::size_t numBytes_ = 0;
    Texts texts_; ///< the one that was used last first
    std::unordered_map<std::string_view, Texts::iterator> places_;
};

} // namespace vellis::text
