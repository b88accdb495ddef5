#pragma once

#include <memory>

#include <vellis/export.hpp>

namespace vellis {

namespace gl {
class ContextState;
}

/// What the library keeps for one GL context, for programs with several windows, contexts or
/// threads, for plug-ins, and where contexts come and go. A program with one context for all its
/// life needs none.
///
/// \code
/// // For each window, with its GL context current:
/// auto context = vellis::Context::make();
/// // In each frame, likewise:
/// context->use();
/// vellis::Toolbox::drawRect(glm::vec4(1.f), {0.f, 0.f}, {1.f, 1.f}, glm::mat4(1.f));
/// // Before the GL context goes, likewise:
/// context->dispose();
/// \endcode
///
/// vellis makes no GL context and makes none current: the host does. A Context stands for the
/// host's own, with registries, built-in programs, a Toolbox and entry points of its own, and is
/// *in use* on one thread at a time. Where none is in use, there is what the process has one of, as
/// without this class.
///
/// **Objects.** What is made belongs to the Context in use: vertex arrays (so drawables) and
/// framebuffers to it alone; buffers, textures, renderbuffers, shaders and programs to its *group*,
/// the Contexts whose GL contexts share their objects, the last of which ends them. Elsewhere an
/// object has the name 0 and acts as one that was disposed of: a drawable is not drawn, a
/// framebuffer is not bound, nothing is read or written, and internal::check_context says so. So no
/// name of one context is ever used in another.
///
/// **Ends.** An object may end anywhere, on any thread. Where its Context is not in use, its GL
/// name waits for the next use() of that, or of another of its group where GL shares the name. What
/// the process's own has made waits for the way back to it.
///
/// **Threads.** Each Context is in use on one thread, and each object used on one thread, at a
/// time; Contexts on several threads need no lock. A Context goes from thread to thread as its GL
/// context does: use() on the new one takes it from the one before, which has nothing in use until
/// its next use() or useProcess(). use() puts the entry points of its own in place, for all
/// threads: Contexts whose entry points, versions or extensions differ, as those of two drivers do,
/// must not run at the same time.
class VELLIS_EXPORT Context {
public:
    /// Gives the entry point of a name, or null.
    using Lookup = void* (*)(const char* name);

    /// A Context for the GL context that is current, which is in use on this thread from then on.
    ///
    /// \param lookup  Finds the entry points; null for the lookup of the platform, as engine::init.
    /// \return an empty pointer, with everything as it was, where there is no GL context.
    /// \throws std::bad_alloc where there is no memory, with everything as it was.
    static std::shared_ptr<Context> make(Lookup lookup = nullptr);

    /// The same for a GL context that shares its objects with that of \p other: both are of one
    /// group. If \p other is disposed of or abandoned, there is no group to join.
    static std::shared_ptr<Context> make(const Context& other, Lookup lookup = nullptr);

    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    /// abandon(), so that no GL call is made: call dispose() while the GL context is there.
    ~Context();

    /// Has this thread use it from now on, and deletes the names that wait for it: vertex arrays
    /// and framebuffers, then programs, shaders, buffers, textures and renderbuffers, with one call
    /// for each kind, but one for each program and shader. Beside these it calls `glGetString` at
    /// most. Call it after the GL context was made current on this thread, each time.
    ///
    /// \return false where the GL context that is current on this thread is another one, or none,
    /// and
    ///         after dispose() and abandon(). The process's own is in use then, so that nothing of
    ///         any Context is used or deleted. Where the platform does not tell what is current (it
    ///         is neither EGL, GLX nor WGL), the caller's word is taken.
    bool use();

    /// The Context in use on this thread, or null for the process's own.
    static Context* current();

    /// Has this thread use the process's own again. If the GL context that it was loaded for last
    /// (engine::init, gladLoadGL(), gladLoadGLLoader()) is current, deletes the names that wait for
    /// it.
    static void useProcess();

    /// Releases what the library keeps for it, with its GL context current: the names that wait,
    /// the registries, the built-in programs and the Toolbox's buffer. Objects that the application
    /// holds become inert, with the group's last Context those that GL shares. The process's own is
    /// in use then. Objects that make others as they end get four rounds of that; in abandon(),
    /// too, where what they make goes to GL.
    ///
    /// Where its GL context is not current, it is abandoned instead. A second call does nothing.
    void dispose();

    /// Forgets everything that the library keeps for it without a GL call, since its GL context is
    /// gone: objects become inert as with dispose(). Where it was in use on this thread, the
    /// process's own is in use then.
    void abandon();

    /// Whether it was neither disposed of nor abandoned.
    bool isAlive() const;

    /// Uses a Context, and at the end of the scope again what was in use before: for plug-ins,
    /// whose hosts know nothing of it.
    ///
    /// \code
    /// // The host has made the GL context current.
    /// const vellis::Context::Scope scope(*context);
    /// if (scope)
    ///     drawOverlay();
    /// \endcode
    ///
    /// Where the scope has a GL context of its own, make the one of before current again ahead of
    /// its end.
    class VELLIS_EXPORT Scope {
    public:
        /// use().
        explicit Scope(Context& context);
        ~Scope(); ///< Puts in use again what was before.
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

        /// What use() has returned.
        explicit operator bool() const { return isUsed_; }

    private:
        gl::ContextState* before_;
        bool isUsed_;
    };

private:
    Context() = default;

    VELLIS_NO_EXPORT static std::shared_ptr<Context> make(const Context* other, Lookup lookup);

    gl::ContextState* state_ = nullptr;
};

} // namespace vellis
