#pragma once

#include <memory>

#include <vellis/export.hpp>

namespace vellis {

class Program;

namespace detail {
struct AttributeRecorder;
}

/// A GL vertex array object: which buffers feed which attributes of a program, and which element
/// buffer is bound. Program::beginAttributesBinding and Program::finishAttributesBinding make one;
/// a Drawable keeps it.
///
/// Where the context has no vertex array objects, the GL name is 0 and no operation does anything.
/// With another Context in use than it was made with, bind binds 0, and drawables draw nothing
/// until the next binding or unbind.
///
/// Copies copy the GL name, and each destructor deletes that name. Hold a binding through the
/// shared pointer that a program gave, and copy the pointer.
class VELLIS_EXPORT VertexAttributesBinding {
public:
    /// Copies the GL name: no GL call is made, and isCurrent() holds for neither but the one that
    /// was bound itself.
    /// @{
    VertexAttributesBinding(const VertexAttributesBinding&) = default;
    VertexAttributesBinding& operator=(const VertexAttributesBinding&) = default;
    /// @}

    /// Deletes the vertex array object with `glDeleteVertexArrays`, whatever its name. GL binds 0
    /// instead where it was bound.
    ~VertexAttributesBinding();

    /// `glBindVertexArray`: what is set up now lands in this binding.
    void bind() const;

    /// Binds the vertex array object 0.
    static void unbind();

    /// True for the binding that was bound last on this thread, until unbind; with a Context in
    /// use, that was bound last in it. GL is not asked.
    bool isCurrent() const { return current() == this; }

    /// The GL name; 0 where the context has no vertex array objects, and where it does not exist:
    /// see Context.
    unsigned int id() const;

protected:
    VertexAttributesBinding();

private:
    friend class Program;
    friend struct detail::AttributeRecorder;

    /// bind and unbind for the library's own sources.
    struct Inlined;

    static std::shared_ptr<VertexAttributesBinding> make();

    /// The binding that was bound last, or null. Only unbind clears it, so that it may outlive its
    /// object: it is compared, never followed.
    static const void* current();

    unsigned int id_ = 0;
    unsigned int context_; ///< where it exists: see gl/names.hpp
};

} // namespace vellis
