#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <vellis/text/shaped_text.hpp>

namespace vellis::text {

/// Keeps shaped texts up to a number and a size. Where there are more, the one that was looked for
/// longest ago is forgotten.
///
/// A search reads one entry of a table and one text, where a map of nodes and a list beside it
/// would read several places in memory.
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

    std::size_t numTexts() const { return numTexts_; }
    std::size_t numBytes() const { return numBytes_; }

private:
    /// Of a kept text, in texts_.
    using Index = std::uint32_t;
    static constexpr Index nowhere = 0xFFFFFFFF;

    struct Kept {
        std::string text;
        std::shared_ptr<const ShapedText> shape;
        std::size_t numBytes = 0;
        std::uint32_t hash = 0;
        Index next = nowhere;  ///< in the same place of the table, or the next one that is free
        Index newer = nowhere; ///< the one that was looked for next
        Index older = nowhere; ///< the one that was looked for before
    };

    static std::uint32_t hashOf(std::string_view text) {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(text));
    }
    Index& placeOf(std::uint32_t hash) { return table_[hash & (table_.size() - 1)]; }

    void growTable();
    Index takeFree();
    void link(Index index);
    void unlink(Index index);
    void forgetOldest();

    std::size_t mostTexts_;
    std::size_t mostBytes_;
    std::size_t numTexts_ = 0;
    std::size_t numBytes_ = 0;
    std::vector<Kept> texts_;  ///< those that are kept, and free ones
    std::vector<Index> table_; ///< the first text of each hash; as many as a power of two, or none
    Index free_ = nowhere;
    Index newest_ = nowhere;
    Index oldest_ = nowhere;
};

} // namespace vellis::text
