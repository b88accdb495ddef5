#pragma once

#include <map>
#include <memory>
#include <vector>

#include <vellis/export.hpp>
#include <vellis/shading/program.hpp>

namespace vellis {

/// The registry of programs: one of each Context, and one of the process for where none is in use.
/// It owns every program that is added to it, until that is removed or engine::dispose or
/// Context::dispose releases them all; a program's address is its key. Besides, it makes the six
/// built-in programs, each on first request.
///
/// \code
/// auto& registry = vellis::ProgramManager::instance();
/// const auto& flat = registry.get(vellis::ProgramManager::BuiltIn::UniformColor2D);
/// flat->bind(binding);
/// flat->setUniform("color", glm::vec4(1.f, 0.5f, 0.f, 1.f));
/// flat->setUniform("mvp", glm::mat4(1.f));
/// \endcode
///
/// Releasing the last reference to a program deletes its GL program, so call what releases, and
/// what makes a built-in, with the GL context current. A program is out of the registry before it
/// ends: what ends with it may call the registry, and what is added then stays there.
///
/// The process's own is made on first use and emptied at the end of the process, as by dispose().
/// The destructors of static objects may call it even after that: they meet an empty registry,
/// which is emptied once more. That of a Context is made on first use, too, and goes with it.
class VELLIS_EXPORT ProgramManager {
public:
    /// The built-in programs, in GLSL 1.20. All have the uniforms `mvp` (mat4) and `color` (vec4).
    enum class BuiltIn : unsigned int {
        /// Round points with a soft rim. Attribute `position` (vec2), uniforms `radius` (float, the
        /// diameter of the point in pixels) and `softness` (float, the part of its radius over
        /// which it fades). Nothing is drawn outside the disc. Point sprites, program point size
        /// and blending must be on.
        SoftPoints2D = 0,
        /// The same with `position` (vec3). Outside the disc the alpha falls below zero.
        SoftPoints3D = 1,
        /// One colour. Attribute `position` (vec2).
        UniformColor2D = 2,
        /// One colour. Attribute `position` (vec3).
        UniformColor3D = 3,
        /// Dashed lines. Attribute `position_t` (vec3: x, y, distance along the line), uniform
        /// `dash` (vec2: the lengths of a dash and of a gap).
        DashLines2D = 4,
        /// The same with `position_t` (vec4: x, y, z, distance along the line).
        DashLines3D = 5,
    };

    /// The registry of the Context in use. The reference holds until that is disposed of.
    static ProgramManager& instance();

    /// Adds \p program, unless it is there already.
    /// \return its key; the invalid one for an empty pointer, which is not added.
    Program* add(const std::shared_ptr<Program>& program);

    /// Releases the program with that key; an unknown key does nothing.
    void remove(Program* program);

    /// The program with that key, or an empty pointer. The reference holds until the program is
    /// removed: copy the pointer to keep the program.
    const std::shared_ptr<Program>& get(Program* program) const;

    /// A built-in program, compiled and linked on its first request. Empty after dispose() and for
    /// a value that is no enumerator. A program that did not link is handed out, too: ask its
    /// hasLinkError(). The reference holds until dispose().
    const std::shared_ptr<Program>& get(BuiltIn builtIn) const;

    /// True for any key but the invalid one. The registry is not asked.
    static bool isValid(Program* program) { return program != invalidId(); }

    /// The invalid key, null.
    static Program* invalidId() { return nullptr; }

    /// Empties the registry of the Context in use and releases its built-in programs, which are not
    /// made again. Programs that somebody else owns live on.
    static void dispose();

    /// Copies the entries: a copy owns the same programs. Assignment releases those of before.
    /// @{
    ProgramManager(const ProgramManager&) = default;
    ProgramManager& operator=(const ProgramManager& other);
    /// @}

    /// Empties the registry, as dispose() does. That holds for a copy, too: its end empties the
    /// registry of the Context in use beside the copy itself.
    ~ProgramManager();

private:
    ProgramManager();

    /// Releases all programs, those of the callers first. They are out of the registry before the
    /// first of them ends.
    VELLIS_NO_EXPORT void clear();

    static std::shared_ptr<Program> makeBuiltIn(BuiltIn builtIn);

    mutable std::vector<std::shared_ptr<Program>> builtIns_;
    std::map<Program*, std::shared_ptr<Program>> programs_;
};

} // namespace vellis
