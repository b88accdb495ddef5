#include "support/stroke_reference.hpp"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <cstdint>
#include <limits>

#include <glm/geometric.hpp>

namespace vellis::test {
namespace {

using Points = std::vector<glm::dvec2>;

constexpr int samples = 16; ///< of a pixel, in a row of them
constexpr int rows = 64;    ///< of samples in a pixel

/// What is on one side of a line: dot(normal, p) <= limit.
struct HalfPlane {
    glm::dvec2 normal;
    double limit;
};

/// An interval of x, empty where it ends before it begins.
struct Span {
    double begin = -std::numeric_limits<double>::infinity();
    double end = std::numeric_limits<double>::infinity();
};

/// A convex piece of a stroke: half planes, and a disc where the radius is not infinite.
class Piece {
public:
    Piece(const glm::dvec2& center, double reach)
        : bottom(center.y - reach),
          top(center.y + reach),
          center_(center) {}

    void cut(const glm::dvec2& normal, const glm::dvec2& through) {
        planes_.push_back({normal, glm::dot(normal, through)});
    }

    void makeRound(double radius) { radius_ = radius; }

    Span at(double y) const {
        Span span;
        if (std::isfinite(radius_)) {
            const double squared = radius_ * radius_ - (y - center_.y) * (y - center_.y);
            if (squared < 0)
                return {0, -1};
            span = {center_.x - std::sqrt(squared), center_.x + std::sqrt(squared)};
        }
        for (const HalfPlane& plane : planes_) {
            const double rest = plane.limit - plane.normal.y * y;
            if (plane.normal.x > 0)
                span.end = std::min(span.end, rest / plane.normal.x);
            else if (plane.normal.x < 0)
                span.begin = std::max(span.begin, rest / plane.normal.x);
            else if (rest < 0)
                return {0, -1};
        }
        return span;
    }

    double bottom;
    double top;

private:
    glm::dvec2 center_;
    double radius_ = std::numeric_limits<double>::infinity();
    std::vector<HalfPlane> planes_;
};

glm::dvec2 left(const glm::dvec2& direction) {
    return {-direction.y, direction.x};
}

/// One line without dashes, as the pieces whose union it is.
class Pieces {
public:
    explicit Pieces(const Stroke& stroke) : stroke_(stroke), half_(stroke.width / 2) {}

    /// Adds a line. Neighbours in it differ.
    void addLine(const Points& points, bool closed) {
        const std::size_t count = points.size();
        const std::size_t segments = closed ? count : count - 1;
        for (std::size_t i = 0; i != segments; ++i)
            addSegment(points[i], points[(i + 1) % count]);
        for (std::size_t i = closed ? 0 : 1; i + (closed ? 0 : 1) < count; ++i) {
            const glm::dvec2& at = points[i];
            addJoin(at, glm::normalize(at - points[(i + count - 1) % count]),
                    glm::normalize(points[(i + 1) % count] - at));
        }
        if (!closed) {
            addCap(points.front(), glm::normalize(points[0] - points[1]));
            addCap(points.back(), glm::normalize(points[count - 1] - points[count - 2]));
        }
    }

    /// Adds a dash without length.
    void addDot(const glm::dvec2& at, const glm::dvec2& direction) {
        addCap(at, direction);
        addCap(at, -direction);
    }

    const std::vector<Piece>& list() const { return pieces_; }

private:
    void addSegment(const glm::dvec2& from, const glm::dvec2& to) {
        const glm::dvec2 direction = glm::normalize(to - from);
        Piece piece((from + to) / 2.0, half_ + glm::distance(from, to) / 2);
        piece.cut(direction, to);
        piece.cut(-direction, from);
        addSides(piece, from, direction);
    }

    void addSides(Piece& piece, const glm::dvec2& at, const glm::dvec2& direction) {
        const glm::dvec2 side = left(direction);
        piece.cut(side, at + half_ * side);
        piece.cut(-side, at - half_ * side);
        pieces_.push_back(piece);
    }

    /// The end of a line, which goes in that direction.
    void addCap(const glm::dvec2& at, const glm::dvec2& direction) {
        if (stroke_.cap == StrokeCap::Butt)
            return;
        Piece piece(at, half_ * 2);
        piece.cut(-direction, at);
        if (stroke_.cap == StrokeCap::Round)
            piece.makeRound(half_);
        else
            piece.cut(direction, at + half_ * direction);
        addSides(piece, at, direction);
    }

    /// What is outside of both segments at a point, between their ends.
    void addJoin(const glm::dvec2& at, const glm::dvec2& in, const glm::dvec2& out) {
        const double cosine = glm::dot(in, out);
        const double sine = in.x * out.y - in.y * out.x;
        const double outer = sine > 0 ? -half_ : half_;
        const double halfCosine = std::sqrt(std::max(0.0, (1 + cosine) / 2));
        const bool pointed =
            stroke_.join == StrokeJoin::Miter && halfCosine * stroke_.miterLimit >= 1;
        Piece piece(at, half_ * (pointed ? stroke_.miterLimit : 1.0) + 1);
        piece.cut(-in, at);
        piece.cut(out, at);
        if (stroke_.join == StrokeJoin::Round) {
            piece.makeRound(half_);
        } else if (sine == 0) {
            return;
        } else if (pointed) {
            const double sign = outer > 0 ? 1 : -1;
            piece.cut(sign * left(in), at + outer * left(in));
            piece.cut(sign * left(out), at + outer * left(out));
        } else {
            const glm::dvec2 across = glm::normalize(in - out);
            piece.cut(across, at + outer * left(in));
        }
        pieces_.push_back(piece);
    }

    const Stroke& stroke_;
    double half_;
    std::vector<Piece> pieces_;
};

/// The points without those that repeat the one before.
Points differentPoints(const Stroke& stroke) {
    Points points;
    for (const glm::dvec2& point : stroke.points)
        if (points.empty() || point != points.back())
            points.push_back(point);
    while (stroke.closed && points.size() > 1 && points.front() == points.back())
        points.pop_back();
    return points;
}

/// A line cut into dashes.
class Dasher {
public:
    Dasher(const Points& points, const Stroke& stroke) : points_(points), stroke_(stroke) {
        if (stroke.closed)
            points_.push_back(points_.front());
        for (std::size_t i = 0; i + 1 < points_.size(); ++i)
            ends_.push_back(length() + glm::distance(points_[i], points_[i + 1]));
    }

    void addTo(Pieces& pieces) const {
        std::vector<Span> spans = dashes();
        const bool both = stroke_.closed && !spans.empty() && spans.front().begin == 0 &&
                          spans.back().end == length();
        if (both && spans.size() == 1) {
            pieces.addLine(Points(points_.begin(), points_.end() - 1), true);
            return;
        }
        if (both) { // the last goes on in the first
            spans.front().begin = spans.back().begin - length();
            spans.pop_back();
        }
        for (const Span& span : spans)
            addDash(pieces, span);
    }

private:
    double length() const { return ends_.empty() ? 0 : ends_.back(); }

    std::vector<Span> dashes() const {
        double period = 0;
        for (const double part : stroke_.dashes)
            period += part;
        std::vector<Span> spans;
        double at =
            -stroke_.dashOffset - period * std::floor(-stroke_.dashOffset / period) - period;
        for (std::size_t i = 0; at <= length(); i = (i + 2) % stroke_.dashes.size()) {
            const Span span = {std::max(at, 0.0), std::min(at + stroke_.dashes[i], length())};
            if (span.begin < span.end || (stroke_.dashes[i] == 0 && span.begin == span.end))
                spans.push_back(span);
            at += stroke_.dashes[i] + stroke_.dashes[i + 1];
        }
        return spans;
    }

    /// The segment at a distance from the start, and the direction there.
    std::size_t segmentAt(double distance) const {
        std::size_t segment = 0;
        while (segment + 1 < ends_.size() && ends_[segment] <= distance)
            ++segment;
        return segment;
    }

    glm::dvec2 directionOf(std::size_t segment) const {
        return glm::normalize(points_[segment + 1] - points_[segment]);
    }

    glm::dvec2 pointAt(double distance) const {
        const std::size_t segment = segmentAt(distance);
        if (distance >= ends_[segment]) // exactly, so that it is the first point of a closed line
            return points_[segment + 1];
        const double begin = segment == 0 ? 0 : ends_[segment - 1];
        return points_[segment] + (distance - begin) * directionOf(segment);
    }

    void append(Points& line, const Span& span) const {
        line.push_back(pointAt(span.begin));
        for (std::size_t i = 0; i + 1 < ends_.size(); ++i)
            if (span.begin < ends_[i] && ends_[i] < span.end)
                line.push_back(points_[i + 1]);
        line.push_back(pointAt(span.end));
    }

    void addDash(Pieces& pieces, const Span& span) const {
        Points line;
        if (span.begin == span.end) {
            pieces.addDot(pointAt(span.begin), directionOf(segmentAt(span.begin)));
            return;
        }
        if (span.begin < 0) {
            append(line, {span.begin + length(), length()});
            append(line, {0, span.end});
        } else {
            append(line, span);
        }
        line.erase(std::unique(line.begin(), line.end()), line.end());
        if (line.size() > 1)
            pieces.addLine(line, false);
    }

    Points points_;
    const Stroke& stroke_;
    std::vector<double> ends_; ///< of the segments, as distances from the start
};

/// The samples of one row that a stroke covers: a bit each, 16 a pixel.
class SampleRow {
public:
    explicit SampleRow(unsigned int width) : bits_(width) {}

    void add(const Span& span, double shift) {
        const double count = samples * static_cast<double>(bits_.size());
        const double first = std::clamp(std::ceil(span.begin * samples - shift), 0.0, count);
        const double last = std::clamp(std::ceil(span.end * samples - shift), 0.0, count);
        for (auto i = static_cast<std::size_t>(first); i < static_cast<std::size_t>(last);) {
            const std::size_t pixel = i / samples;
            const std::size_t end = std::min((pixel + 1) * samples, static_cast<std::size_t>(last));
            const std::uint32_t mask = (1U << (end - pixel * samples)) - (1U << (i % samples));
            bits_[pixel] = static_cast<std::uint16_t>(bits_[pixel] | mask);
            i = end;
        }
    }

    void moveTo(float* values) {
        for (std::uint16_t& bits : bits_) {
            if (bits != 0)
                *values += static_cast<float>(std::bitset<16>(bits).count()) / (samples * rows);
            bits = 0;
            ++values;
        }
    }

private:
    std::vector<std::uint16_t> bits_;
};

double percent(std::size_t part, std::size_t whole) {
    return whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

unsigned char toByte(double value) {
    return static_cast<unsigned char>(std::clamp(value + 0.5, 0.0, 255.0));
}

} // namespace

Coverage strokeCoverage(const Stroke& stroke, unsigned int width, unsigned int height) {
    Coverage coverage{width, height, std::vector<float>(std::size_t{width} * height)};
    const Points points = differentPoints(stroke);
    if (points.size() < 2)
        return coverage;
    Pieces pieces(stroke);
    if (stroke.dashes.empty())
        pieces.addLine(points, stroke.closed);
    else
        Dasher(points, stroke).addTo(pieces);
    SampleRow row(width);
    for (std::size_t i = 0; i != std::size_t{height} * rows; ++i) {
        const double y = (static_cast<double>(i) + 0.5) / rows;
        const double shift = (static_cast<double>(i * 39 % rows) + 0.5) / rows;
        for (const Piece& piece : pieces.list())
            if (piece.bottom <= y && y <= piece.top)
                row.add(piece.at(y), shift);
        row.moveTo(coverage.values.data() + (height - 1 - i / rows) * width);
    }
    return coverage;
}

double StrokeErrors::mean() const {
    return touched == 0 ? 0 : sum / static_cast<double>(touched);
}

double StrokeErrors::percentBeyond16() const {
    return percent(beyond16, touched);
}

double StrokeErrors::percentBeyond64() const {
    return percent(beyond64, touched);
}

StrokeErrors& StrokeErrors::operator+=(const StrokeErrors& other) {
    touched += other.touched;
    sum += other.sum;
    beyond16 += other.beyond16;
    beyond64 += other.beyond64;
    largest = std::max(largest, other.largest);
    return *this;
}

StrokeErrors strokeErrors(const Coverage& truth, double opacity, const offscreen::Image& image) {
    StrokeErrors errors;
    for (std::size_t i = 0; i != truth.values.size(); ++i) {
        const double expected = 255 * opacity * static_cast<double>(truth.values[i]);
        const double error = std::abs(expected - image.pixels[4 * i]);
        errors.touched += expected > 0 || image.pixels[4 * i] > 0;
        errors.sum += error;
        errors.beyond16 += error > 16;
        errors.beyond64 += error > 64;
        errors.largest = std::max(errors.largest, error);
    }
    return errors;
}

offscreen::Image strokeDifferences(const Coverage& truth, double opacity,
                                   const offscreen::Image& image) {
    offscreen::Image differences(3 * truth.width, truth.height);
    for (unsigned int y = 0; y != truth.height; ++y)
        for (unsigned int x = 0; x != truth.width; ++x) {
            const double is = *image.at(x, y);
            const double expected =
                255 * opacity * static_cast<double>(truth.values[std::size_t{y} * truth.width + x]);
            const double shown[3] = {is, expected, 8 * std::abs(is - expected)};
            for (unsigned int part = 0; part != 3; ++part) {
                unsigned char* pixel = differences.at(part * truth.width + x, y);
                std::fill(pixel, pixel + 3, toByte(shown[part]));
                pixel[3] = 255;
            }
        }
    return differences;
}

} // namespace vellis::test
