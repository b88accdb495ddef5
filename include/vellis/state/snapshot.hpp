#pragma once

/// \file
/// GL state as a whole: taken, compared, put back; and set to what drawing with vellis assumes.

#include <iosfwd>
#include <memory>
#include <string_view>
#include <vector>

#include <vellis/export.hpp>

namespace vellis::state {

/// A piece of GL state that is another in two snapshots. Copies share the text.
struct Difference {
    /// GL's name of the piece, `GL_BLEND_SRC_RGB`; of those that there are several of with the
    /// number: `GL_TEXTURE_BINDING_2D[1]` is that of texture unit 1.
    std::string_view name;
    std::string_view before; ///< its value in the first snapshot, `GL_ONE`
    std::string_view after;  ///< its value in the second
    /// Keeps the text that these three look at: they are valid as long as there is a copy of it.
    std::shared_ptr<const void> text = nullptr;
};

/// Writes a line without its end: `GL_ACTIVE_TEXTURE: GL_TEXTURE0 -> GL_TEXTURE1`.
VELLIS_EXPORT std::ostream& operator<<(std::ostream& stream, const Difference& difference);

/// The GL state of a moment: all that vellis changes and what a program or a toolkit around it may
/// change. A value: copied, moved, compared. A default-made one is empty.
///
/// \code
/// const auto before = vellis::state::Snapshot::take();
/// drawOverlay();
/// for (const auto& difference : differences(before, vellis::state::Snapshot::take()))
///     std::cerr << difference << '\n';
/// before.restore();
/// \endcode
///
/// It has, each where the context has it: the framebuffers with their draw and read buffers; the
/// vertex array with its index buffer; the attributes and client arrays, where no vertex array
/// object is bound; the current values of attributes; the bindings of buffers, indexed ones with
/// their ranges (from GL 3.2 on); the textures, sampler objects and fixed-function switches of all
/// units; the program and the pipeline; the pixel store and pixel transfers; blending, tests,
/// masks, clears, rasterisation, multisampling, hints; the switches of the fixed function. It has
/// neither what is kept in objects, nor matrices, lights, materials, stipple patterns and queries,
/// nor blend functions of draw buffers past the first. State of attributes is that of floats.
///
/// What there is of a later version is asked for by the version alone: in a context of OpenGL 2.1
/// not the bindings of array and rectangle textures.
class VELLIS_EXPORT Snapshot {
public:
    /// Takes the state of the current GL context, which it leaves as it is, with no error of its
    /// own in GL's queue: it asks only for what the context has. One query for each piece, and
    /// `glActiveTexture` for each unit; one allocation.
    ///
    /// Empty where the entry points are not loaded, or where the Context in use is gone.
    static Snapshot take();

    /// Asks for each piece again and writes those back that differ from this: framebuffers first,
    /// then vertex array, attributes, buffers, textures, programs, and all else. No allocation.
    ///
    /// A name that `glIs…` denies, since its object was deleted meanwhile, is restored as 0; what
    /// belongs to that object (draw buffers, the index buffer, attributes) is left as it is.
    ///
    /// \return false, with a line in the log and without a change, where this is empty, or was
    ///         taken in another Context. Without a Context the library knows no GL context from
    ///         another; it restores nothing where one has what the other has not.
    bool restore() const;

    /// Whether this has nothing: it was default-made, or moved from.
    bool isEmpty() const { return words_.empty(); }

    /// Whether both are empty, or were taken in the same Context with the same values.
    friend bool operator==(const Snapshot& a, const Snapshot& b) { return a.words_ == b.words_; }

    /// The opposite.
    friend bool operator!=(const Snapshot& a, const Snapshot& b) { return a.words_ != b.words_; }

private:
    friend VELLIS_EXPORT std::vector<Difference> differences(const Snapshot& before,
                                                             const Snapshot& after);

    std::vector<unsigned int> words_; ///< what there is, then the values
};

/// The pieces that are others in \p after than in \p before, in the order in which they are taken.
/// Only what both have is compared: nothing, where one is empty. No GL call.
VELLIS_EXPORT std::vector<Difference> differences(const Snapshot& before, const Snapshot& after);

/// Parts of the state, for a scope that must be fast. Combined with `|`.
enum class Group : unsigned int {
    /// Whether there is blending, its factors, equations and colour.
    Blending = 1,
    /// All bindings of buffers, indexed ones with their ranges, and the vertex array.
    Buffers = 2,
    /// All parameters of pixel transfers to and from memory, and their two buffers.
    PixelStore = 4,
    /// The textures and the sampler objects of all units, and the active unit.
    Textures = 8,
};

/// Both.
constexpr Group operator|(Group a, Group b) {
    return static_cast<Group>(static_cast<unsigned int>(a) | static_cast<unsigned int>(b));
}

/// Keeps GL state for a scope: takes it, and restores it in the end, also when an exception leaves
/// the scope. As a Snapshot does both.
///
/// \code
/// const vellis::state::Kept kept; // whatever drawOverlay() leaves changed
/// drawOverlay();
/// \endcode
class VELLIS_EXPORT Kept {
public:
    /// Takes all of the state, with one allocation.
    Kept();

    /// Takes some groups. Blending and the pixel store make no allocation, the others one.
    explicit Kept(Group groups);

    /// Restores, unless dismissed. A log line says where it cannot: in another Context.
    ~Kept();

    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;

    /// Leaves the state as it is at the end of the scope.
    void dismiss() { words_ = nullptr; }

private:
    void take(unsigned int groups);

    unsigned int* words_ = nullptr; ///< those of the two that are used; null: restore nothing
    unsigned int few_[96];
    std::unique_ptr<unsigned int[]> many_;
};

/// Sets what drawing with vellis assumes, for hosts that leave anything behind, each where the
/// context has it:
///
/// - no vertex array, program, pipeline and sampler object; no array, index, pixel pack and pixel
///   unpack buffer; texture unit 0 active;
/// - the pixel store and pixel transfers as GL begins with them;
/// - blending, the tests of depth, stencil, scissor and alpha, the logic operation, face culling,
///   sRGB of framebuffers, clip distances, depth clamping, primitive restart, discarding, polygon
///   offsets, stipples, smooth lines and polygons, point sprites, point sizes of programs and all
///   of multisampling but itself off; that on;
/// - all colours, depth and stencil bits written;
/// - filled polygons whose front is counter-clockwise, lines and points of width 1, clip
///   coordinates as GL begins with them.
///
/// What is left: framebuffers and renderbuffers, textures, buffers bound at an index, viewport and
/// scissor box, functions of blending and tests, clear values, attributes, hints, the fixed
/// function. Without a query but for what the context has; nothing where the entry points are not
/// loaded or the Context in use is gone.
VELLIS_EXPORT void reset();

} // namespace vellis::state
