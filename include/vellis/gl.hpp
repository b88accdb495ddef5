#pragma once

/// \file
/// OpenGL itself: types, enumerators and entry points, up to OpenGL 3.2 of the compatibility
/// profile, for code that calls GL beside the library.
///
/// The entry points are function pointers (`glBindBuffer` stands for `glad_glBindBuffer`) that are
/// null until vellis::engine::init, gladLoadGL() or gladLoadGLLoader() has succeeded with a context
/// current. An entry point that the context does not have stays null; the flags
/// `GLAD_GL_VERSION_2_1`, `GLAD_GL_ARB_map_buffer_range` and their like say what there is.
///
/// A program may have another loader beside this one, such as a glad of its own, in other sources
/// than those that include this header. The two are separate where the library is static. Beside
/// the shared library, pointers of the same name are one in the whole program: both loaders fill
/// them. A program that hides its own (`-fvisibility=hidden`) keeps the library's apart from them,
/// but not those of its sources that include this header: there, too, `glClear` is its own pointer
/// then.
///
/// No other header of the library includes this one. It takes the place of `<GL/gl.h>`: include it
/// before headers that would include that one by themselves.

#include <vellis/export.hpp>

#if defined(GLAD_GL_H_) || defined(__glad_h_)
#error "Include <vellis/gl.hpp> in place of another glad header: it brings its own loader."
#endif
#if defined(__gl_h_) || defined(__GL_H__)
#error "Include <vellis/gl.hpp> before headers that bring <GL/gl.h>, such as <GLFW/glfw3.h>."
#endif

#if !defined(VELLIS_STATIC_DEFINE)
#define GLAD_API_CALL_EXPORT
#endif
#include <vellis/glad/gl.h> // IWYU pragma: export
#undef GLAD_API_CALL_EXPORT

#if defined(VELLIS_STATIC_DEFINE)
// A static library's names for the linker: another loader in the program may have these.
#define GLVersion vellis_GLVersion
#define gladLoadGL vellis_loadGL
#define gladLoadGLLoader vellis_loadGLLoader
#endif

extern "C" {

/// Returns the address of the GL entry point of that name, or null.
typedef void* (*GLADloadproc)(const char* name);

/// A GL version number.
struct VellisGLVersion {
    int major; ///< the 2 of 2.1
    int minor; ///< the 1 of 2.1
};

/// The version of the loaded context: 0.0 before a load has succeeded, and again after one that
/// failed.
extern VELLIS_EXPORT struct VellisGLVersion GLVersion;

/// Loads every entry point through the lookup of the platform whose context is current: EGL or GLX
/// on Linux and its like (the system GL library's own lookup where neither reports a context), WGL
/// with the exports of opengl32.dll behind it on Windows.
/// \return 1 on success; 0 where no context is current or its GL cannot be loaded. A load that
///         fails leaves the entry points and flags as they were.
///
/// With a vellis::Context in use, what is loaded belongs to that; the same holds for
/// gladLoadGLLoader().
VELLIS_EXPORT int gladLoadGL(void);

/// Loads every entry point through \p load, for contexts with a lookup of their own (OSMesa, a
/// toolkit's). Entry points that the context does not have become null, also those that an earlier
/// load had filled.
/// \return 1 on success; 0 where \p load is null, has no `glGetString`, or where no context is
///         current. A load that fails leaves the entry points and flags as they were.
VELLIS_EXPORT int gladLoadGLLoader(GLADloadproc load);
}
