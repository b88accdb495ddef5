#pragma once

/// \file
/// Names for GL objects, which dumps, debug messages and debuggers show.

#include <iosfwd> // declares std::string: who takes one includes <string>
#include <memory>
#include <type_traits>

#include <vellis/export.hpp>

namespace vellis {

class BufferObject;
class Canvas;
class Drawable;
class Framebuffer;
class Picture;
class Program;
class RBO;
class Shader;
class Texture;
class VertexAttributesBinding;

namespace internal {

/// The kinds of GL names that can have a label.
enum class LabelledKind : unsigned char {
    VertexArray,  ///< of drawables and bindings of attributes
    Framebuffer,  ///< of a Framebuffer
    Program,      ///< of a Program
    Shader,       ///< of a VertexShader or FragmentShader
    Buffer,       ///< of a buffer of any kind
    Texture,      ///< of a texture of any kind
    Renderbuffer, ///< of a renderbuffer of any kind
};

} // namespace internal

namespace detail {

/// The kind of the name that an object of a class has.
/// @{
template <internal::LabelledKind kind>
using IsLabelled = std::integral_constant<internal::LabelledKind, kind>;
IsLabelled<internal::LabelledKind::VertexArray> labelledKind(const Drawable*);
IsLabelled<internal::LabelledKind::VertexArray> labelledKind(const VertexAttributesBinding*);
IsLabelled<internal::LabelledKind::Framebuffer> labelledKind(const Framebuffer*);
IsLabelled<internal::LabelledKind::Program> labelledKind(const Program*);
IsLabelled<internal::LabelledKind::Shader> labelledKind(const Shader*);
IsLabelled<internal::LabelledKind::Buffer> labelledKind(const BufferObject*);
IsLabelled<internal::LabelledKind::Texture> labelledKind(const Texture*);
IsLabelled<internal::LabelledKind::Renderbuffer> labelledKind(const RBO*);
template <class Object>
using LabelledKindOf = decltype(labelledKind(static_cast<const Object*>(nullptr)));
/// @}

/// The name that the label of an object goes to.
template <class Object>
unsigned int labelledName(const Object& object) {
    if constexpr (std::is_base_of<Drawable, Object>::value) {
        const auto& binding = object.getAttributesBinding();
        return binding != nullptr ? binding->id() : 0;
    } else {
        return object.id();
    }
}

} // namespace detail

namespace internal {

/// What label() and label_of() do with a GL name of the library's, 0 for none.
/// @{
VELLIS_EXPORT bool label_name(LabelledKind kind, unsigned int name, const char* label);
VELLIS_EXPORT std::string label_of_name(LabelledKind kind, unsigned int name);
/// @}

/// \name Labels
/// Names for objects, for those who read dumps and debug messages, and for debuggers such as
/// apitrace and RenderDoc.
///
/// \code
/// vellis::internal::label(texture, "shadow map");
/// vellis::internal::print_gl_states(); // Corvane: TEXTURE_BINDING_2D = 7 'shadow map'
/// \endcode
///
/// A label stays until the object ends or gets another one; null and an empty text take it away. It
/// belongs to the GL name, so that copies of an object share it, and may be of any length and in
/// any language, in UTF-8.
///
/// Where the context has KHR_debug, GL is told with one `glObjectLabel`. What is longer than GL
/// takes is cut for it in front of a character, and whole in what the library prints. For a label
/// of 256 bytes or more GL is asked for its limit with one `glGetIntegerv`. Elsewhere GL is not
/// called, and what the library prints has the label all the same.
///
/// It takes whatever owns a name: buffers, textures, renderbuffers, framebuffers, shaders,
/// programs, vertex attribute bindings, drawables (for their vertex arrays) and shared pointers to
/// them. GL has a framebuffer only once it was bound: GL is asked with one `glIsFramebuffer`, and
/// one that was not is bound to draw for a moment.
///
/// An object with the name 0, such as the default framebuffer, one that was disposed of or belongs
/// to another Context, gets no label: the result is false, and no GL call is made.
///
/// \throws std::bad_alloc where there is no memory for the label. The object keeps that of before.
/// @{
template <class Object>
bool label(const Object& object, const char* name) {
    return label_name(detail::LabelledKindOf<Object>::value, detail::labelledName(object), name);
}

/// That of each of its buffers: false where it has none.
VELLIS_EXPORT bool label(const Picture& object, const char* name);

/// What the groups of GL's calls are called that it draws with, `vellis canvas` at first: see
/// start_debug_output(). Makes no GL call, and a canvas of another Context has one, too.
VELLIS_EXPORT bool label(const Canvas& object, const char* name);

/// The same for what a pointer points to: false where it is null.
template <class T>
bool label(const std::shared_ptr<T>& object, const char* name) {
    return object != nullptr && label(*object, name);
}
/// @}

/// The label of an object, whole; empty where it has none, and where it could not get one. Makes no
/// GL call.
/// @{
template <class Object>
auto label_of(const Object& object) {
    return label_of_name(detail::LabelledKindOf<Object>::value, detail::labelledName(object));
}
VELLIS_EXPORT std::string label_of(const Picture& object);
VELLIS_EXPORT std::string label_of(const Canvas& object);
template <class T>
auto label_of(const std::shared_ptr<T>& object) {
    using Label = decltype(label_of(*object)); // std::string, which need not be complete here
    return object != nullptr ? label_of(*object) : Label();
}
/// @}

} // namespace internal

} // namespace vellis
