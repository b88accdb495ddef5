/// Every enumerator of the public headers against GL's: they are written as numbers there, so that
/// no header brings GL's own.

#include <vellis/drawing.hpp>
#include <vellis/engine/debug_output.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>
#include <vellis/texture.hpp>

#include "gl/enumerator.hpp"

namespace vellis {

using gl::value;

// Drawable

static_assert(value(Drawable::PrimitiveType::Points) == GL_POINTS);
static_assert(value(Drawable::PrimitiveType::Lines) == GL_LINES);
static_assert(value(Drawable::PrimitiveType::LineLoop) == GL_LINE_LOOP);
static_assert(value(Drawable::PrimitiveType::LineStrip) == GL_LINE_STRIP);
static_assert(value(Drawable::PrimitiveType::Triangles) == GL_TRIANGLES);
static_assert(value(Drawable::PrimitiveType::TriangleStrip) == GL_TRIANGLE_STRIP);
static_assert(value(Drawable::PrimitiveType::TriangleFan) == GL_TRIANGLE_FAN);
static_assert(value(Drawable::PrimitiveType::Quads) == GL_QUADS);
static_assert(value(Drawable::PrimitiveType::QuadStrip) == GL_QUAD_STRIP);
static_assert(value(Drawable::PrimitiveType::Polygon) == GL_POLYGON);
static_assert(value(Drawable::Face::Front) == GL_FRONT);
static_assert(value(Drawable::Face::Back) == GL_BACK);
static_assert(value(Drawable::Face::FrontAndBack) == GL_FRONT_AND_BACK);
static_assert(value(Drawable::SmoothHint::DontCare) == GL_DONT_CARE);
static_assert(value(Drawable::SmoothHint::Fastest) == GL_FASTEST);
static_assert(value(Drawable::SmoothHint::Nicest) == GL_NICEST);
static_assert(value(Drawable::PolygonMode::Point) == GL_POINT);
static_assert(value(Drawable::PolygonMode::Line) == GL_LINE);
static_assert(value(Drawable::PolygonMode::Fill) == GL_FILL);

// Debug messages

using internal::DebugSeverity;
using internal::DebugSource;
using internal::DebugType;

static_assert(value(DebugSource::Api) == GL_DEBUG_SOURCE_API);
static_assert(value(DebugSource::WindowSystem) == GL_DEBUG_SOURCE_WINDOW_SYSTEM);
static_assert(value(DebugSource::ShaderCompiler) == GL_DEBUG_SOURCE_SHADER_COMPILER);
static_assert(value(DebugSource::ThirdParty) == GL_DEBUG_SOURCE_THIRD_PARTY);
static_assert(value(DebugSource::Application) == GL_DEBUG_SOURCE_APPLICATION);
static_assert(value(DebugSource::Other) == GL_DEBUG_SOURCE_OTHER);
static_assert(value(DebugType::Error) == GL_DEBUG_TYPE_ERROR);
static_assert(value(DebugType::DeprecatedBehavior) == GL_DEBUG_TYPE_DEPRECATED_BEHAVIOR);
static_assert(value(DebugType::UndefinedBehavior) == GL_DEBUG_TYPE_UNDEFINED_BEHAVIOR);
static_assert(value(DebugType::Portability) == GL_DEBUG_TYPE_PORTABILITY);
static_assert(value(DebugType::Performance) == GL_DEBUG_TYPE_PERFORMANCE);
static_assert(value(DebugType::Other) == GL_DEBUG_TYPE_OTHER);
static_assert(value(DebugType::Marker) == GL_DEBUG_TYPE_MARKER);
static_assert(value(DebugType::PushGroup) == GL_DEBUG_TYPE_PUSH_GROUP);
static_assert(value(DebugType::PopGroup) == GL_DEBUG_TYPE_POP_GROUP);
static_assert(value(DebugSeverity::High) == GL_DEBUG_SEVERITY_HIGH);
static_assert(value(DebugSeverity::Medium) == GL_DEBUG_SEVERITY_MEDIUM);
static_assert(value(DebugSeverity::Low) == GL_DEBUG_SEVERITY_LOW);
static_assert(value(DebugSeverity::Notification) == GL_DEBUG_SEVERITY_NOTIFICATION);

// Vertex attributes

static_assert(AttributeComponent<signed char>::type == GL_BYTE);
static_assert(AttributeComponent<unsigned char>::type == GL_UNSIGNED_BYTE);
static_assert(AttributeComponent<short>::type == GL_SHORT);
static_assert(AttributeComponent<unsigned short>::type == GL_UNSIGNED_SHORT);
static_assert(AttributeComponent<int>::type == GL_INT);
static_assert(AttributeComponent<unsigned int>::type == GL_UNSIGNED_INT);
static_assert(AttributeComponent<float>::type == GL_FLOAT);

// Uniforms

#define VELLIS_UNIFORM_ELEMENT(glType, T, call)                                                    \
    static_assert(detail::UniformType<T>::value == glType);
#include "shading/uniform_elements.inc"
#undef VELLIS_UNIFORM_ELEMENT
static_assert(detail::UniformType<glm::mat3>::value == GL_FLOAT_MAT3);
static_assert(detail::UniformType<glm::mat4>::value == GL_FLOAT_MAT4);

// Texels and samplers

#define VELLIS_TEXEL(type, kind, internalFormat, internalNumber, pixelFormat, pixelNumber,         \
                     pixelType, typeNumber, needs)                                                 \
    static_assert(internalNumber == GL_##internalFormat);                                          \
    static_assert(pixelNumber == GL_##pixelFormat);                                                \
    static_assert(typeNumber == GL_##pixelType);
#include <vellis/texture/texel_formats.inc>
#undef VELLIS_TEXEL
static_assert(sampler1d{}.value == GL_SAMPLER_1D);
static_assert(sampler2d{}.value == GL_SAMPLER_2D);
static_assert(sampler3d{}.value == GL_SAMPLER_3D);
static_assert(samplercube{}.value == GL_SAMPLER_CUBE);

// What a texel type says of its width holds for its memory, too.
static_assert(sizeof(depth16) == 2 && sizeof(depth32) == 4 && sizeof(depth24_stencil8) == 4);
static_assert(sizeof(stencil8) == 1 && sizeof(stencil16) == 2);
static_assert(sizeof(texel::u8vec3) == 3 && sizeof(texel::u16vec3) == 6);

// Framebuffer

#define VELLIS_SAME_AS_GL(enumeration, name)                                                       \
    static_assert(value(Framebuffer::enumeration::name) == GL_##name)
#include "framebuffer/fragment_enumerators.inc"
#undef VELLIS_SAME_AS_GL

} // namespace vellis
