#pragma once

#include <cstddef>
#include <cstring>
#include <initializer_list>

#include <vellis/canvas/canvas.hpp>
#include <vellis/canvas/image.hpp>
#include <vellis/canvas/points.hpp>
#include <vellis/canvas/stroke.hpp>

#include "canvas/dash_pattern.hpp"
#include "canvas/drawing.hpp"
#include "canvas/point_reader.hpp"

namespace vellis::canvas {

/// What holds for the calls of a batch from some point on.
struct Setting {
    Placement placement;
    glm::mat4 matrix{1.f}; ///< from placed points to clip coordinates; of a picture, to its own
    glm::mat4 pixelMatrix{1.f}; ///< from placed points to clip coordinates, for lengths of dashes
    float pixelRatio = 1.f;
    float pixelUp = 1.f;    ///< -1 where the pixels of quads count downwards
    bool paintsOnce = true; ///< whether half-transparent strokes paint each pixel once
};

/// Where a recorder gets room for more records.
class Room {
public:
    /// Makes room for \p numBytes more bytes in an arena, by more memory, or by drawing all there
    /// is and emptying every arena.
    virtual void make(std::size_t arena, std::size_t numBytes) = 0;

    /// The size of the viewport in pixels, for the lengths of dashes.
    virtual glm::vec2 viewportSize() = 0;

protected:
    ~Room() = default;
};

/// A record as it will stand in memory: see Corner, StrokeRecord and Disc. It consists of words of
/// 4 bytes.
class Record {
    static constexpr unsigned int wordsAtOnce = 4;

public:
    static constexpr std::size_t slack = (wordsAtOnce - 1) * sizeof(std::uint32_t);

    Record() = default;
    Record(const Record&) = delete; // it is made where it stays
    Record& operator=(const Record&) = delete;

    Record& add(const glm::vec3& position, unsigned int dimensions) {
        std::memcpy(words_ + numWords_, &position, sizeof position);
        numWords_ += dimensions;
        return *this;
    }
    Record& add(const glm::vec2& numbers) { return add(numbers.x).add(numbers.y); }
    Record& add(float number) {
        std::memcpy(words_ + numWords_++, &number, sizeof number);
        return *this;
    }
    Record& add(Color color) {
        std::memcpy(words_ + numWords_++, &color, sizeof color);
        return *this;
    }

    std::size_t size() const { return numWords_ * sizeof *words_; }

    /// Writes it, and some of what `slack` leaves room for.
    /// \return where the next one goes.
    unsigned char* copyTo(unsigned char* memory) const {
        for (unsigned int i = 0; i < numWords_; i += wordsAtOnce)
            std::memcpy(memory + i * sizeof *words_, words_ + i, wordsAtOnce * sizeof *words_);
        return memory + size();
    }

private:
    std::uint32_t words_[12]; ///< up to a segment in space
    unsigned int numWords_ = 0;
};

/// Turns the calls of a canvas into records and commands. A call whose records are of the kind, the
/// style and the matrix of the one before adds to its command.
class Recorder {
public:
    /// \param isInstanced  Whether GL is to read each record once for all vertices that it makes of
    ///                     it; otherwise a record stands in memory for each of them.
    Recorder(Drawing& drawing, Room& room, bool isInstanced)
        : drawing_(drawing),
          room_(room),
          isInstanced_(isInstanced) {}

    /// Lines of one colour, or with \p colors.
    void stroke(Shape shape, const Stroke& stroke, const Points& points, const Colors* colors,
                const Setting& setting);

    void area(Shape shape, const Colors& colors, const Points& points, const Setting& setting);

    /// Round points.
    void discs(const Colors& colors, const Sizes& sizes, const Points& points,
               const Setting& setting);

    /// Discs within discs, bullseye by bullseye.
    void bullseyes(const Colors& colors, const Colors& colors2, const Sizes& sizes,
                   const Points& points, const Setting& setting);

    /// An image whose corners are four points: that where its part begins, the next one along its
    /// rows, and then the same on the other side.
    void image(const std::shared_ptr<const Texture>& texture, const Points& corners,
               const TexturePart& part, Color tint, const Setting& setting);

    /// Quads of so many pixels around a place, which is one point.
    void quads(const std::shared_ptr<const Texture>& texture, const QuadStyle& style,
               const Points& place, const PixelQuad* quads, std::size_t count, Color color,
               const Setting& setting);

    /// Points of a buffer, which GL draws from there.
    /// \param kind    Lines, triangles, a strip or discs.
    /// \param buffer  That of the points.
    /// \param matrix  From the buffer's points to clip coordinates; of a picture, to its own.
    /// \param stroke  Of a strip.
    void bufferPoints(Kind kind, const BufferPoints& points,
                      const std::shared_ptr<const VertexBuffer>& buffer, unsigned int dimensions,
                      const Setting& setting, const glm::mat4& matrix, const Stroke* stroke);

private:
    friend class StripWriter;

    /// Has the records from now on be of a kind, and be drawn without a style.
    void begin(Kind kind, unsigned int dimensions, const glm::mat4& matrix);
    /// \param isWhole  Whether the call before did not run out of memory, so that this one may add
    /// to
    ///                 its command.
    void openCommand(bool isWhole);
    bool addsToLast() const;
    void makeRoom(std::size_t numBytes, std::size_t numRepeated);

    /// Adds a record.
    /// \param numRepeated  How many of the records before belong to the next ones: they stand again
    ///                     where those had to be drawn for room.
    void put(const Record& record, std::size_t numRepeated = 0) {
        const std::size_t numBytes = copies_ * record.size();
        if (arena_->bytes.size() - arena_->used < numBytes + Record::slack || command_ == none)
            makeRoom(numBytes, numRepeated);
        unsigned char* to = arena_->bytes.data() + arena_->used;
        for (std::size_t i = 0; i < copies_; ++i)
            to = record.copyTo(to);
        arena_->used += numBytes;
        ++arena_->count;
        ++drawing_.commands[command_].count;
    }

    void putCorner(const glm::vec3& point, Color color, std::size_t numRepeated);
    void putDisc(const glm::vec3& center, float radius, Color color);

    void strip(Shape shape, PointReader& points, const ColorReader& colors, const Stroke& stroke,
               const Setting& setting);
    void segments(PointReader& points, const ColorReader& colors, const Stroke& stroke,
                  const Setting& setting);
    void aliasedLines(Shape shape, PointReader& points, const ColorReader& colors,
                      const Setting& setting);

    /// Has the records from now on be images of a texture.
    void beginImages(const std::shared_ptr<const Texture>& texture, unsigned int dimensions,
                     const Setting& setting);

    unsigned char* roomForImages(std::size_t numBytes);
    void addImages(std::size_t count, std::size_t numBytes);
    template <unsigned int D>
    void putImage(const glm::vec3 (&points)[4], const TexturePart& part, Color color);
    template <unsigned int D>
    void putQuads(const glm::vec3& point, const PixelQuad* quads, std::size_t count, Color color,
                  float up);

    /// Puts what is of no length in the middle of a stroke: a disc where its caps are round.
    void putDot(const glm::vec3& point, Color color, const Stroke& stroke, const Setting& setting);

    /// A disc of each bullseye: its colours, and its part of the size.
    struct Ring {
        const ColorReader* colors;
        float size;
    };
    void rings(std::initializer_list<Ring> rings, const Sizes& sizes, const Points& points,
               const Setting& setting);

    Drawing& drawing_;
    Room& room_;
    bool isInstanced_;
    Kind kind_ = Kind::Lines;
    unsigned int dimensions_ = 2;
    Look look_;
    Arena* arena_ = nullptr;
    std::size_t copies_ = 1;
    std::uint32_t command_ = none;
    bool isOpaque_ = false;        ///< whether the records need no blending
    bool isWhole_ = true;          ///< whether the call before did not run out of memory
    bool isWithinOverlap_ = false; ///< whether a command of the current overlap has been drawn
};

} // namespace vellis::canvas
