#pragma once

#include <iosfwd> // declares std::string: who hands one over or takes one includes <string>
#include <memory>
#include <string_view>

#include <vellis/export.hpp>

namespace vellis {

/// A GL shader: created, given its source and compiled at construction, deleted at destruction.
///
/// A source may be taken as it stands, or get a version line and a few macros put in front, so that
/// one text compiles as GLSL 1.20, 3.30 and 4.10:
///
/// \code
/// auto vertex = vellis::VertexShader::make("IN vec2 position; \n"
///                                          "OUT vec2 uv; \n"
///                                          "void main() { \n"
///                                          "  uv = position; \n"
///                                          "  gl_Position = vec4(position, 0.0, 1.0); \n"
///                                          "} \n",
///                                          vellis::Shader::Version::V210);
/// auto fragment = vellis::FragmentShader::make("IN vec2 uv; \n"
///                                              "DECL_OUT0; \n"
///                                              "void main() { OUT0 = vec4(uv, 0.0, 1.0); } \n",
///                                              vellis::Shader::Version::V210);
/// \endcode
///
/// | macro | stage | up to GLSL 1.20 | from GLSL 1.30 |
/// |---|---|---|---|
/// | `IN` | vertex | `attribute` | `in` |
/// | `OUT` | vertex | `varying` | `out` |
/// | `IN` | fragment | `varying` | `in` |
/// | `DECL_OUT0;` | fragment | a float that nobody uses | `layout(location = 0) out vec4 OUT0;` |
/// | `OUT0` | fragment | `gl_FragColor` | the output that `DECL_OUT0` declares |
///
/// A core context need not have GLSL 1.20: there `V210` is GLSL 1.50, whose `DECL_OUT0;` is
/// `out vec4 OUT0;`. `texture1D`, `texture2D`, `texture3D` and `textureCube`, which it lacks, are
/// macros for `texture` then.
///
/// A source may be a string, characters up to a NUL, a view, or what converts to one of these. GL
/// gets it as one text that a NUL ends, so that what follows a NUL within a source is left out;
/// null characters count as an empty source.
///
/// Nothing is printed or thrown where the source does not compile: ask hasCompilationError, and
/// compilationLog for the reason. GL keeps a deleted shader for as long as a program has it
/// attached.
///
/// Copies copy the GL name, and each destructor deletes it: hold a shader through the shared
/// pointer that made it.
class VELLIS_EXPORT Shader {
public:
    /// The GL version whose GLSL the source is compiled as, times 100. Any other value counts as
    /// the newest.
    enum class Version : unsigned int {
        V210 = 210, ///< GLSL 1.20; in a core context 1.50
        V330 = 330, ///< GLSL 3.30
        V410 = 410, ///< GLSL 4.10
    };

    /// Copies the GL name.
    /// @{
    Shader(const Shader&) = default;
    Shader& operator=(const Shader&) = default;
    /// @}

    /// Deletes the GL shader with `glDeleteShader`.
    virtual ~Shader();

    /// The GL name; 0 where GL could not make the shader, and where it does not exist: see Context.
    unsigned int id() const;

    /// True when `GL_COMPILE_STATUS` is not `GL_TRUE`, so also for a name of 0.
    bool hasCompilationError() const;

    /// What GL has to say of the last compilation, as it says it: errors, warnings, or nothing.
    /// Empty also for a name of 0, for which GL records `GL_INVALID_VALUE`.
    std::string compilationLog() const;

protected:
    /// `glCreateShader`. \param type  `GL_VERTEX_SHADER` or `GL_FRAGMENT_SHADER`.
    explicit Shader(unsigned int type);

    /// Replaces the source with `glShaderSource` and compiles it with `glCompileShader`. A null
    /// \p source counts as empty.
    void compile(const char* source) const;

    /// compile of a copy, which a NUL ends, behind \p preamble.
    VELLIS_NO_EXPORT void compileBehind(std::string preamble, std::string_view source) const;

    /// Characters up to a NUL; none where they are null.
    static std::string_view textOf(const char* characters) {
        return characters != nullptr ? std::string_view(characters) : std::string_view();
    }

private:
    friend class Program;

    /// id(); that the shader does not exist here is noted.
    VELLIS_NO_EXPORT unsigned int idToUse() const;

    unsigned int id_;
    unsigned int group_; ///< where it exists: see gl/names.hpp
};

/// A shader of the vertex stage.
class VELLIS_EXPORT VertexShader : public Shader {
public:
    /// Compiles \p source as it stands.
    /// @{
    static std::shared_ptr<VertexShader> make(const std::string& source);
    static std::shared_ptr<VertexShader> make(const char* source) { return make(textOf(source)); }
    static std::shared_ptr<VertexShader> make(std::string_view source);
    /// @}

    /// Compiles \p source behind the line of that version and the vertex macros.
    /// @{
    static std::shared_ptr<VertexShader> make(const std::string& source, Version version);
    static std::shared_ptr<VertexShader> make(const char* source, Version version) {
        return make(textOf(source), version);
    }
    static std::shared_ptr<VertexShader> make(std::string_view source, Version version);
    /// @}

    /// Copies the GL name: see Shader.
    /// @{
    VertexShader(const VertexShader&) = default;
    VertexShader& operator=(const VertexShader&) = default;
    /// @}
    ~VertexShader() override;

protected:
    /// What make() makes.
    /// @{
    explicit VertexShader(const std::string& source);
    explicit VertexShader(const char* source) : VertexShader(textOf(source)) {}
    explicit VertexShader(std::string_view source);
    VertexShader(const std::string& source, Version version);
    VertexShader(const char* source, Version version) : VertexShader(textOf(source), version) {}
    VertexShader(std::string_view source, Version version);
    /// @}
};

/// A shader of the fragment stage.
class VELLIS_EXPORT FragmentShader : public Shader {
public:
    /// Compiles \p source as it stands.
    /// @{
    static std::shared_ptr<FragmentShader> make(const std::string& source);
    static std::shared_ptr<FragmentShader> make(const char* source) { return make(textOf(source)); }
    static std::shared_ptr<FragmentShader> make(std::string_view source);
    /// @}

    /// Compiles \p source behind the line of that version and the fragment macros.
    /// @{
    static std::shared_ptr<FragmentShader> make(const std::string& source, Version version);
    static std::shared_ptr<FragmentShader> make(const char* source, Version version) {
        return make(textOf(source), version);
    }
    static std::shared_ptr<FragmentShader> make(std::string_view source, Version version);
    /// @}

    /// Copies the GL name: see Shader.
    /// @{
    FragmentShader(const FragmentShader&) = default;
    FragmentShader& operator=(const FragmentShader&) = default;
    /// @}
    ~FragmentShader() override;

protected:
    /// What make() makes.
    /// @{
    explicit FragmentShader(const std::string& source);
    explicit FragmentShader(const char* source) : FragmentShader(textOf(source)) {}
    explicit FragmentShader(std::string_view source);
    FragmentShader(const std::string& source, Version version);
    FragmentShader(const char* source, Version version) : FragmentShader(textOf(source), version) {}
    FragmentShader(std::string_view source, Version version);
    /// @}
};

} // namespace vellis
