#pragma once

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <iosfwd> // declares std::string: who hands one over or takes one includes <string>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include <vellis/detail/hot.hpp>
#include <vellis/detail/per_thread.hpp>
#include <vellis/detail/use.hpp>
#include <vellis/drawing/drawable.hpp>
#include <vellis/export.hpp>
#include <vellis/shading/attrib.hpp>
#include <vellis/shading/shader.hpp>
#include <vellis/shading/uniform.hpp>

namespace vellis {

class Texture;
class Toolbox;

namespace detail {

struct AttributeRecorder;

/// What a pointer points to.
/// @{
template <class T>
std::true_type isUniform(const Uniform<T>*);
std::false_type isUniform(...);
template <class T>
std::true_type isIndexBuffer(const IndexBuffer<T>*);
std::false_type isIndexBuffer(...);
/// @}

/// Whether that is a value for Program::draw: a handle of a uniform.
template <class T>
struct IsUniform : decltype(isUniform(static_cast<std::remove_reference_t<T>*>(nullptr))) {};

/// Whether the arguments behind a drawable, or behind its indices, begin with a value, and not with
/// the number of the first vertex or with indices. Anything else counts as one, to be refused by
/// name.
template <class... Arguments>
struct BeginsWithValue : std::false_type {};
template <class First, class... Others>
struct BeginsWithValue<First, Others...>
    : std::integral_constant<bool, !std::is_convertible<First, unsigned int>::value &&
                                       !decltype(isIndexBuffer(
                                           static_cast<std::remove_reference_t<First>*>(
                                               nullptr)))::value> {};

} // namespace detail

/// A GL program, linked from one vertex shader and one fragment shader, through which a caller
/// binds and draws.
///
/// \code
/// auto program = vellis::Program::make(vertexSource, fragmentSource);
/// if (program->hasLinkError())
///     return showError(program->linkLog());
/// const glm::vec4 orange(1.f, 0.5f, 0.f, 1.f);
/// program->draw(triangle, vellis::Uniform("color", orange), vellis::Uniform("image", texture));
/// \endcode
///
/// Linking never fails loudly: a program that did not link is an object like any other, whose
/// hasLinkError() is true. (Linking uses the program for a moment, which such a program refuses
/// with `GL_INVALID_OPERATION`.)
///
/// **Uniforms and attributes.** Each link reads the active uniforms and attributes into tables of
/// handles by name. A uniform array goes by its name without brackets; one of a single element is
/// no array, and goes by the name that GL reports, mostly `name[0]`. Sampler uniforms get the
/// texture units 0, 1, 2 … in GL's order. Uniforms of other types than IsUniformValue and 1D, 2D
/// and 3D samplers have no handle, and neither have arrays of matrices and of samplers.
///
/// Values go along with a draw, which sets them while the program is in use. setUniform sets one by
/// itself, for the program in use, so bind first: GL refuses it with `GL_INVALID_OPERATION` where
/// there is none.
///
/// \code
/// auto& radius = program->getUniform<float>("radius"); // once
/// radius.value = 3.f;
/// program->draw(triangle, radius); // without a lookup
/// \endcode
///
/// Linking sends no units to GL, whose samplers all begin with unit 0: textures that are bound by
/// hand to units 0 and 1 are both looked for at unit 0 until each sampler was set.
///
/// setUniform takes a value of any type that GLSL 1.20 has, also where there is no handle, and an
/// element of an array or a member by its name. For these GL is asked once for each name: the
/// program remembers it, also that GL does not have it, until it links again or is disposed.
///
/// \code
/// program->bind();
/// program->setUniform("isLit", true); // has no handle
/// program->setUniform("weights[1]", 0.5f);
/// program->draw(triangle);
/// \endcode
///
/// A uniform stays set when the program is unbound. An unknown name is no error: locations are then
/// `0xFFFFFFFF`, handles inert. Ask hasUniform and hasAttrib first where it matters.
///
/// After draw and unbind no program is in use and no vertex array object is bound, whatever was
/// before.
///
/// In a Context in which the program does not exist it is not used, and what is drawn with it is
/// not drawn: `glUseProgram(0)` takes its place, so that GL refuses uniforms.
///
/// Copies copy the GL name, and each destructor deletes it; they share the handles. Hold a program
/// through the shared pointer that made it.
class VELLIS_EXPORT Program {
public:
    /// A GL program with nothing attached.
    static std::shared_ptr<Program> make();

    /// Attaches both shaders and links. The program keeps the shaders. An empty pointer attaches
    /// nothing: a compatibility context links all the same, and its fixed functions take the place
    /// of what is missing; other contexts refuse to link.
    static std::shared_ptr<Program> make(const std::shared_ptr<VertexShader>& vertexShader,
                                         const std::shared_ptr<FragmentShader>& fragmentShader);

    /// The same, and records \p outputs: the indices of the fragment outputs that the shader
    /// writes. They are only kept, for getOutputs(); the shader says itself where its outputs are
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

    /// Copies the GL name; the handles are shared.
    /// @{
    Program(const Program&) = default;
    Program& operator=(const Program&) = default;
    /// @}

    /// Deletes the GL program, as dispose() does.
    virtual ~Program();

    /// Deletes the GL program with `glDeleteProgram`, empties both tables and sets the name to 0; a
    /// second call does nothing. GL keeps a program for as long as it is in use.
    void dispose();

    /// The GL name; 0 once disposed, where GL could not make the program, and where it does not
    /// exist: see Context.
    unsigned int id() const;

    /// True when `GL_LINK_STATUS` is not `GL_TRUE`.
    bool hasLinkError() const;

    /// What GL has to say of the last link, as it says it: errors, warnings, or nothing. Empty also
    /// for a name of 0, for which GL records `GL_INVALID_VALUE`.
    std::string linkLog() const;

    /// The fragment outputs recorded at creation, in their order, repetitions included.
    const std::vector<unsigned int>& getOutputs() const { return outputs_; }

    /// `glUseProgram`; with 0 in a Context in which the program does not exist.
    void bind() const;

    /// `glUseProgram`, then binds \p binding, which the program keeps until unbind. An empty
    /// pointer binds nothing.
    VELLIS_HOT void bind(const std::shared_ptr<VertexAttributesBinding>& binding) const;

    /// Unbinds the binding that was bound through this program, if there is one, and then the
    /// program with `glUseProgram(0)`.
    VELLIS_HOT void unbind() const;

    /// True between bind and unbind. GL is not asked.
    bool isBound() const { return usage_.isBound(); }

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

    /// Draws with these values of uniforms, in the same steps: behind `glBindVertexArray` each
    /// value is set as by setUniform, in their order, and nothing else is called.
    ///
    /// \code
    /// program->draw(mesh, 0, 3, vellis::Uniform("color", glm::vec4(1.f)));
    /// \endcode
    ///
    /// A value is a handle of the program, as getUniform finds it, or a `Uniform` of a name and a
    /// value of any of the 27 types, textures included. What has a name is looked up in this
    /// program's table; the value is not kept in the program's handle. As with setUniform, a name
    /// that the program does not have sets nothing.
    /// @{
    template <class... Values, class = std::enable_if_t<detail::BeginsWithValue<Values...>::value>>
    void draw(const Drawable& drawable, Values&&... values) {
        drawWith([&] { drawable.draw(0, 0); }, drawable, std::forward<Values>(values)...);
    }
    template <class Value, class... Values>
    void draw(const Drawable& drawable, unsigned int first, unsigned int count, Value&& value,
              Values&&... values) {
        drawWith([&] { drawable.draw(first, count); }, drawable, std::forward<Value>(value),
                 std::forward<Values>(values)...);
    }
    template <class T, class... Values,
              class = std::enable_if_t<detail::BeginsWithValue<Values...>::value>>
    void draw(const Drawable& drawable, const IndexBuffer<T>& indices, Values&&... values) {
        drawWith([&] { drawable.draw(indices, 0, 0); }, drawable, std::forward<Values>(values)...);
    }
    template <class T, class Value, class... Values>
    void draw(const Drawable& drawable, const IndexBuffer<T>& indices, unsigned int first,
              unsigned int count, Value&& value, Values&&... values) {
        drawWith([&] { drawable.draw(indices, first, count); }, drawable,
                 std::forward<Value>(value), std::forward<Values>(values)...);
    }
    /// @}

    /// Makes a vertex attribute binding and binds it: the buffers and attribute pointers that are
    /// set up from now on land in it, until finishAttributesBinding(). A binding begun before and
    /// not finished is dropped.
    void beginAttributesBinding() const;

    /// Ends what beginAttributesBinding() began; binds the vertex array object 0.
    /// \return the binding, typically for a Drawable to keep; empty if none was begun.
    std::shared_ptr<VertexAttributesBinding> finishAttributesBinding() const;

    /// Whether there is an active uniform of that name that has a handle.
    bool hasUniform(const char* name) const { return findUniform(name) != nullptr; }

    /// Whether there is an active attribute of that name.
    bool hasAttrib(const char* name) const { return findAttrib(name) != nullptr; }

    /// The GL location of a uniform; `0xFFFFFFFF` for an unknown name.
    unsigned int getUniformLoc(const char* name) const {
        const UniformVariable* const uniform = findUniform(name);
        return static_cast<unsigned int>(uniform != nullptr ? uniform->loc : -1);
    }

    /// The GL location of an attribute, for `glVertexAttribPointer`; `0xFFFFFFFF` for an unknown
    /// name.
    unsigned int getAttribLoc(const char* name) const {
        const Attrib* const attribute = findAttrib(name);
        return static_cast<unsigned int>(attribute != nullptr ? attribute->loc : -1);
    }

    /// The handle of a uniform. It stays valid until the program links again or is disposed.
    ///
    /// Where there is no uniform of that name and type the handle is inert: its location is -1,
    /// which GL ignores, and what is stored in it is gone with the next lookup.
    ///
    /// \tparam T  A type of IsUniformValue, or `Texture`.
    template <class T>
    Uniform<T>& getUniform(const char* name) {
        Uniform<T>* const uniform = findUniform<T>(name);
        return uniform != nullptr ? *uniform : inert<T>();
    }

    /// The handle of a sampler: getUniform<Texture>.
    Uniform<Texture>& getUniformTexture(const char* name) { return getUniform<Texture>(name); }

    /// Sets the uniform of that name with the one GL call of its type, and keeps the value in its
    /// handle. A list is sent with its own length, from the first element of the array on.
    ///
    /// What no handle stands for is asked of GL by `glGetUniformLocation`, once for each name until
    /// the next link: a uniform of a type without handles, and a name with a `.` or a `[` that the
    /// table does not have, such as `lights[2].weights` or `weights[1]`. Nothing is kept of such a
    /// value; that of the array's handle stays. Lists go from the named element on.
    ///
    /// An unknown name is no error. Where there is no uniform of that name and of a type with
    /// handles, the call goes to location -1, which GL ignores; where GL was asked and has none,
    /// there is no call.
    ///
    /// \tparam T  A type of IsSettableUniformValue, which the type of the uniform must be exactly.
    template <class T, class = std::enable_if_t<IsSettableUniformValue<T>::value>>
    void setUniform(const char* name, const T& value) {
        if constexpr (IsUniformValue<T>::value) {
            if (Uniform<T>* const uniform = findUniform<T>(name)) {
                uniform->value = value;
                detail::sendUniform(uniform->loc, value);
                return;
            }
        }
        setUnkept(name, value);
    }

    /// Sends the value of a handle to its location, or, where it has none, to that of this
    /// program's uniform of its name and type.
    template <class T, class = std::enable_if_t<IsUniformValue<T>::value>>
    void setUniform(const Uniform<T>& uniform) {
        if (uniform.loc >= 0)
            detail::sendUniform(uniform.loc, uniform.value);
        else
            sendByName(uniform);
    }

    /// Binds \p texture on the unit of the sampler of that name: `glUniform1i`, `glActiveTexture`,
    /// Texture::bind. The handle keeps the texture's address. The active unit stays that one. Makes
    /// no GL call where there is no sampler of that name.
    void setUniform(const char* name, const Texture& texture);

    /// The same with the location, the unit and the texture of a handle, or, where it has no
    /// location, with the location and unit of this program's sampler of its name. Makes no GL call
    /// where the handle has no texture or the program no such sampler.
    void setUniform(const Uniform<Texture>& uniform);

    /// The same with a location and a unit of one's own.
    void setUniform(int location, int unit, const Texture& texture);

    /// The program in use, whoever made it: one object whose id() is what GL answered last to
    /// `GL_CURRENT_PROGRAM`, here and now, or 0. It knows nothing else of that program, and never
    /// deletes it. The first call makes one GL program name of its own and leaves it behind; with a
    /// Context in use, which has an object of its own, none is made.
    static const Program& current();

    /// A program whose id() is 0: binding it is `glUseProgram(0)`. The first call makes one GL
    /// program name and leaves it behind, unless a Context is in use.
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

    /// The handle of an attribute; one with location -1 for an unknown name.
    const Attrib& getAttrib(const char* name) const;

    unsigned int id_; ///< the GL name

private:
    friend class Toolbox;
    friend struct detail::AttributeRecorder;
    struct Variables;
    class Proxy;

    /// Where a program exists, whether it is bound, and the binding that it keeps meanwhile. It
    /// stands beside the name, so that bind and unbind touch one cache line: see detail/hot.hpp.
    class Usage {
    public:
        /// Of a program that exists there: see gl/names.hpp.
        explicit Usage(unsigned int group) : group_(group) {}

        /// Copies share the binding.
        /// @{
        Usage(const Usage& other) : group_(other.group_), flags_(other.flags_ & bound) {
            hold(other.binding());
        }
        Usage& operator=(const Usage& other) {
            group_ = other.group_;
            hold(other.binding());
            setBound(other.isBound());
            return *this;
        }
        /// @}
        ~Usage() { release(); }

        unsigned int group() const { return group_; }

        bool isBound() const { return (flags_ & bound) != 0; }
        void setBound(bool on) { flags_ = on ? flags_ | bound : flags_ & ~bound; }

        /// Whether the program exists in the group of that index, is not bound, and keeps nothing:
        /// one comparison with that index and a 0 behind it.
        bool isUnusedIn(const unsigned int* group) const {
            return std::memcmp(&group_, group, 2 * sizeof(group_)) == 0;
        }

        /// Binds what keeps nothing, and keeps a binding.
        void holdBound(const std::shared_ptr<VertexAttributesBinding>& binding) {
            new (&binding_) std::shared_ptr<VertexAttributesBinding>(binding);
            flags_ = bound | holding;
        }

        /// Keeps another binding. An empty pointer may own something all the same.
        void hold(std::shared_ptr<VertexAttributesBinding> binding) {
            release();
            flags_ |= binding != nullptr ? holding : holding | empty;
            new (&binding_) std::shared_ptr<VertexAttributesBinding>(std::move(binding));
        }

        /// The binding that is kept.
        std::shared_ptr<VertexAttributesBinding> binding() const {
            return (flags_ & holding) != 0 ? binding_ : nullptr;
        }

        /// Whether there is one to unbind.
        /// @{
        bool isHolding() const { return (flags_ & (holding | empty)) == holding; }
        bool isHoldingBound() const { return flags_ == (bound | holding); }
        /// @}

        /// Hands over the binding that is kept.
        std::shared_ptr<VertexAttributesBinding> take() {
            auto taken = binding();
            release();
            return taken;
        }

        /// Lets go of it.
        void release() {
            if ((flags_ & holding) == 0)
                return;
            flags_ &= bound;
            binding_.~shared_ptr();
        }

        /// Unbinds and lets go of the binding that is kept, behind a call of \p unbindBinding.
        template <class Unbind>
        void releaseUnbound(Unbind unbindBinding) {
            flags_ = 0;
            const std::shared_ptr<VertexAttributesBinding> released = std::move(binding_);
            unbindBinding();
        }

    private:
        static constexpr unsigned int bound = 1;
        static constexpr unsigned int holding = 2; ///< binding_ is there
        static constexpr unsigned int empty = 4;   ///< and points to nothing

        alignas(2 * sizeof(unsigned int)) unsigned int group_;
        unsigned int flags_ = 0;
        union {
            std::shared_ptr<VertexAttributesBinding> binding_; ///< there while it is kept
        };
    };
    mutable Usage usage_;

    /// One of that name, which GL made elsewhere.
    VELLIS_NO_EXPORT explicit Program(unsigned int id);

    /// bind with the drawable's binding.
    void bind(const Drawable& drawable) const;

    /// Does \p draw with the drawable's binding and these values.
    template <class Draw, class... Values>
    void drawWith(const Draw& draw, const Drawable& drawable, Values&&... values) {
        static_assert((detail::IsUniform<Values>::value && ...),
                      "each value is a Uniform: a handle of the program, or Uniform(name, value)");
        const auto drawWithParts = [&](const auto&... parts) {
            const detail::Use<Program> use(*this, drawable.getAttributesBinding());
            (setUniform(parts), ...);
            draw();
        };
        drawWithParts(takeApart(std::forward<Values>(values))...);
    }

    /// What a handle says that was made for one call. The compiler knows all of it, and suspects no
    /// other call of changing it, as it does with the handle itself.
    template <class T>
    struct Parts {
        int location;
        const char* name;
        std::size_t length;
        const T& value;
    };
    template <class T, class = std::enable_if_t<IsUniformValue<T>::value>>
    static Parts<T> takeApart(Uniform<T>&& uniform) {
        return {uniform.loc, uniform.name, lengthOf(uniform.name), uniform.value};
    }
    template <class T>
    static const Uniform<T>& takeApart(const Uniform<T>& uniform) {
        return uniform;
    }
    template <class T>
    void setUniform(const Parts<T>& uniform) {
        int location = uniform.location;
        if (location < 0) {
            const Uniform<T>* const target = findUniform<T>(uniform.name, uniform.length);
            if (target == nullptr) {
                setUnkept(uniform.name, uniform.value);
                return;
            }
            location = target->loc;
        }
        detail::sendUniform(location, uniform.value);
    }

    /// Whether the program exists in the Context in use.
    VELLIS_NO_EXPORT bool exists() const;

    /// bind where the program does not exist, or debug output is on, which wants to know its name.
    VELLIS_NO_EXPORT void bindOther() const;

    /// What unbind does with the binding in other cases than a draw's.
    VELLIS_NO_EXPORT void unbindOther() const;

    /// bind in other cases than a draw's: the program is bound, keeps a binding or does not exist,
    /// the binding is empty or does not exist.
    VELLIS_NO_EXPORT void rebind(const std::shared_ptr<VertexAttributesBinding>& binding) const;

    /// The handle of that name, or null; a null name finds nothing. The compiler measures a name
    /// that it knows.
    /// @{
    UniformVariable* findUniform(const char* name) const {
        return findUniform(name, lengthOf(name));
    }
    VELLIS_DIRECT UniformVariable* findUniform(const char* name, std::size_t length) const;
    const Attrib* findAttrib(const char* name) const { return findAttrib(name, lengthOf(name)); }
    VELLIS_DIRECT const Attrib* findAttrib(const char* name, std::size_t length) const;
    static std::size_t lengthOf(const char* name) {
        return name != nullptr ? std::strlen(name) : (std::numeric_limits<std::size_t>::max)();
    }
    /// @}

    /// The handle of that name and type, or null.
    template <class T>
    Uniform<T>* findUniform(const char* name) const {
        return findUniform<T>(name, lengthOf(name));
    }
    template <class T>
    Uniform<T>* findUniform(const char* name, std::size_t length) const {
        UniformVariable* const uniform = findUniform(name, length);
        return uniform != nullptr && uniform->type_ == detail::UniformType<T>::value
                   ? static_cast<Uniform<T>*>(uniform)
                   : nullptr;
    }

    /// Sends the value of a handle without a location to this program's uniform of its name.
    template <class T>
    VELLIS_COLD void sendByName(const Uniform<T>& uniform) {
        setUniform(Parts<T>{-1, uniform.name, lengthOf(uniform.name), uniform.value});
    }

    /// Sends a value that no handle of its type stands for.
    template <class T>
    VELLIS_COLD void setUnkept(const char* name, const T& value) {
        const int location = findUnkept(name, IsUniformValue<T>::value);
        if (location == nowhere)
            return;
        if constexpr (IsUniformValue<T>::value)
            detail::sendUniform(location, value);
        else
            detail::sendUnkept(location, value);
    }

    static constexpr int nowhere = -2; ///< no location, to which nothing is sent

    /// The location of a uniform that no handle of the value's type stands for, which GL is asked
    /// for. Names that the table has are not asked for, and with a type that has handles only those
    /// of elements and members are: such a value goes to location -1. Otherwise, and where GL has
    /// no such name, it goes nowhere.
    VELLIS_COLD int findUnkept(const char* name, bool hasHandles) const;

    /// A handle with location -1 and its first value; each thread has its own.
    template <class T>
    static Uniform<T>& inert() {
        using Handle = detail::PerThread<Uniform<T>>;
        if constexpr ((detail::UniformType<T>::value & detail::uniformArray) != 0)
            Handle::releaseAtEnd(); // what callers store in it
        return Handle::set(Uniform<T>(-1));
    }

    VELLIS_NO_EXPORT void gl_link();
    VELLIS_NO_EXPORT void initUniforms();
    VELLIS_NO_EXPORT void initAttributes();
    VELLIS_NO_EXPORT void addUniform(const char* reportedName, int size, unsigned int type,
                                     unsigned int& nextUnit);
    VELLIS_NO_EXPORT void addOutputs(unsigned int output);
    VELLIS_NO_EXPORT void addOutputs(std::initializer_list<unsigned int> outputs);
    VELLIS_NO_EXPORT void clearOutputs();

    std::shared_ptr<VertexShader> vertexShader_;
    std::shared_ptr<FragmentShader> fragmentShader_;
    /// The two tables of the last link, which copies share: each link makes new ones. Null before
    /// the first link and after dispose.
    std::shared_ptr<Variables> variables_;
    std::vector<unsigned int> outputs_;
};

} // namespace vellis
