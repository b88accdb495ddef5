#pragma once

#include <initializer_list>
#include <memory>
#include <vector>

#include <vellis/drawing/drawable.hpp>
#include <vellis/export.hpp>
#include <vellis/shading/shader.hpp>

namespace vellis {

/// A GL program, linked from one vertex shader and one fragment shader, through which a caller binds
/// and draws.
///
/// \code
/// auto program = vellis::Program::make(vertexSource, fragmentSource);
/// if (program->hasLinkError())
///     return;                  // glGetProgramInfoLog(program->id(), ...) says why
/// program->draw(triangle);     // uses the program, binds, draws, unbinds
/// \endcode
///
/// Linking never fails loudly: a program that did not link is an object like any other, whose
/// hasLinkError() is true.
///
/// After draw and unbind no program is in use and no vertex array object is bound, whatever was
/// before.
///
/// Copies copy the GL name, and each destructor deletes it: hold a program through the shared
/// pointer that made it.
class VELLIS_EXPORT Program {
public:
    /// A GL program with nothing attached.
    static std::shared_ptr<Program> make();

    /// Attaches both shaders and links. The program keeps the shaders. An empty pointer attaches
    /// nothing, and the link then fails.
    static std::shared_ptr<Program> make(const std::shared_ptr<VertexShader>& vertexShader,
                                         const std::shared_ptr<FragmentShader>& fragmentShader);

    /// The same, and records \p outputs: the indices of the fragment outputs that the shader writes.
    /// They are only kept, for getOutputs(); the shader says itself where its outputs are
    /// (`layout(location = …)`).
    static std::shared_ptr<Program> make(const std::shared_ptr<VertexShader>& vertexShader,
                                         const std::shared_ptr<FragmentShader>& fragmentShader,
                                         std::initializer_list<unsigned int> outputs);

    /// Compiles the fragment shader, then the vertex shader, both as they stand, and links. A null
    /// text counts as empty.
    static std::shared_ptr<Program> make(const char* vertexSource, const char* fragmentSource);

    /// The same, and records \p outputs.
    static std::shared_ptr<Program> make(const char* vertexSource, const char* fragmentSource,
                                         std::initializer_list<unsigned int> outputs);

    Program(const Program&) = default;
    Program& operator=(const Program&) = default;

    /// Deletes the GL program, as dispose() does.
    virtual ~Program();

    /// Deletes the GL program with `glDeleteProgram` and sets the name to 0; a second call does
    /// nothing. GL keeps a program for as long as it is in use.
    void dispose();

    /// The GL name; 0 once disposed, and where GL could not make the program.
    unsigned int id() const { return id_; }

    /// True when `GL_LINK_STATUS` is not `GL_TRUE`.
    bool hasLinkError() const;

    /// The fragment outputs recorded at creation, in their order, repetitions included.
    const std::vector<unsigned int>& getOutputs() const { return outputs_; }

    /// `glUseProgram`.
    void bind() const;

    /// `glUseProgram`, then binds \p binding, which the program keeps until unbind. An empty pointer
    /// binds nothing.
    void bind(const std::shared_ptr<VertexAttributesBinding>& binding) const;

    /// Unbinds the binding that was bound through this program, if there is one, and then the
    /// program with `glUseProgram(0)`.
    void unbind() const;

    /// True between bind and unbind. GL is not asked.
    bool isBound() const { return bound_; }

    /// Draws \p count vertices of \p drawable from \p first on; a \p count of 0 means all that
    /// remain. In this order: `glUseProgram`, `glBindVertexArray` with the drawable's binding, the
    /// drawable's own draw, `glBindVertexArray(0)`, `glUseProgram(0)`. A drawable without a binding
    /// is drawn with whatever vertex arrays are set up.
    void draw(const Drawable& drawable, unsigned int first = 0, unsigned int count = 0) const;

    /// Draws \p count vertices of \p drawable that \p indices name, from index \p first on, in the
    /// same steps. `T` is an index type: `unsigned char`, `unsigned short` or `unsigned int`.
    template <class T>
    void draw(const Drawable& drawable, const IndexBuffer<T>& indices, unsigned int first = 0,
              unsigned int count = 0) const {
        bind(drawable);
        drawable.draw(indices, first, count);
        unbind();
    }

    /// Makes a vertex attribute binding and binds it: the buffers and attribute pointers that are set
    /// up from now on land in it, until finishAttributesBinding(). A binding begun before and not
    /// finished is dropped.
    void beginAttributesBinding() const;

    /// Ends what beginAttributesBinding() began; binds the vertex array object 0.
    /// \return the binding, typically for a Drawable to keep; empty if none was begun.
    std::shared_ptr<VertexAttributesBinding> finishAttributesBinding() const;

    /// The program in use, whoever made it: one object whose id() is what GL answered last to
    /// `GL_CURRENT_PROGRAM`, here and now, or 0. It knows nothing else of that program, and never
    /// deletes it. The first call makes one GL program name of its own and leaves it behind.
    static const Program& current();

    /// A program whose id() is 0: binding it is `glUseProgram(0)`. The first call makes one GL
    /// program name and leaves it behind.
    static const Program& null();

protected:
    /// `glCreateProgram`.
    Program();

    /// The same, then link().
    Program(const std::shared_ptr<VertexShader>& vertexShader,
            const std::shared_ptr<FragmentShader>& fragmentShader);

    /// The same, then link(outputs).
    Program(const std::shared_ptr<VertexShader>& vertexShader,
            const std::shared_ptr<FragmentShader>& fragmentShader,
            std::initializer_list<unsigned int> outputs);

    /// Attaches the shaders and links; the program ends unbound. The recorded outputs stay as they
    /// are. Linking again attaches the shaders again, for which GL records an error.
    void link();

    /// The same, and records \p outputs in place of those recorded before.
    void link(std::initializer_list<unsigned int> outputs);

    unsigned int id_;

private:
    /// bind with the drawable's binding.
    void bind(const Drawable& drawable) const;

    void gl_link();
    void addOutputs(unsigned int output);
    void addOutputs(std::initializer_list<unsigned int> outputs);
    void clearOutputs();

    std::shared_ptr<VertexShader> vertexShader_;
    std::shared_ptr<FragmentShader> fragmentShader_;
    std::vector<unsigned int> outputs_;
    mutable bool bound_ = false;
    mutable std::shared_ptr<VertexAttributesBinding> attributesBinding_;
};

} // namespace vellis
