/// The operations of the engine, of buffers, and of shading.

#include <iterator>
#include <memory>

#include <glm/matrix.hpp>

#include <vellis/buffers.hpp>
#include <vellis/context.hpp>
#include <vellis/engine.hpp>
#include <vellis/shading.hpp>
#include <vellis/texture.hpp>

#include "operations/operations.hpp"

namespace vellis::test {
namespace {

template <class Buffer, class Element>
void useTypedBuffer(UseRecorder& use, const char* scope, const Element& element) {
    use.of(scope);
    const auto make = [] { return Buffer::make(4, BufferUsage::Static, BufferAccess::Draw); };
    use("make", make);
    use("make", [&] { return Buffer::make({element}, BufferUsage::Static, BufferAccess::Draw); });
    const auto buffer = make();
    use("bind", [&] { buffer->bind(); });
    use("unbind", [&] { buffer->unbind(); });
    use("load", [&] { buffer->load(&element, 1); });
    use("load", [&] { buffer->load(&element, 0, 1); });
    use("map", [&] { buffer->map(MapAccess::WriteOnly); });
    use("flush", [&] { buffer->flush(0, 1); });
    use("unmap", [&] { buffer->unmap(false); });
    buffer->map(MapAccess::WriteOnly);
    use("flushAndUnmap", [&] { buffer->flushAndUnmap(0, 1); });
    use("dispose", [&] { buffer->dispose(); });
    auto other = make();
    use("destruction", [&] { other.reset(); });
}

void usePixelBuffer(UseRecorder& use, PixelBuffer::DataFlow flow) {
    use.of("PixelBuffer");
    const auto make = [flow] {
        return PixelBuffer::make(flow, 4, BufferUsage::Stream, BufferAccess::Read);
    };
    use("make", make);
    const auto buffer = make();
    const float value = 1.f;
    use("bind", [&] { buffer->bind(); });
    use("unbind", [&] { buffer->unbind(); });
    use("load", [&] { buffer->load(&value, 4); });
    use("map", [&] { buffer->map(MapAccess::ReadWrite); });
    use("flush", [&] { buffer->flush(0, 4); });
    use("unmap", [&] { buffer->unmap(false); });
    buffer->map(MapAccess::ReadWrite);
    use("flushAndUnmap", [&] { buffer->flushAndUnmap(0, 4); });
    use("dispose", [&] { buffer->dispose(); });
    auto other = make();
    use("destruction", [&] { other.reset(); });
}

/// A program with a uniform of each type that has an entry point of its own.
std::shared_ptr<Program> makeProgram(FakeGl& gl) {
    gl.setActiveUniforms({{"i", GL_INT},
                          {"i2", GL_INT_VEC2},
                          {"i3", GL_INT_VEC3},
                          {"i4", GL_INT_VEC4},
                          {"u", GL_UNSIGNED_INT},
                          {"u2", GL_UNSIGNED_INT_VEC2},
                          {"u3", GL_UNSIGNED_INT_VEC3},
                          {"u4", GL_UNSIGNED_INT_VEC4},
                          {"f", GL_FLOAT},
                          {"f2", GL_FLOAT_VEC2},
                          {"f3", GL_FLOAT_VEC3},
                          {"f4", GL_FLOAT_VEC4},
                          {"m3", GL_FLOAT_MAT3},
                          {"m4", GL_FLOAT_MAT4},
                          {"is[0]", GL_INT, 2},
                          {"us[0]", GL_UNSIGNED_INT, 2},
                          {"fs[0]", GL_FLOAT, 2},
                          {"b", GL_BOOL},
                          {"m2", GL_FLOAT_MAT2},
                          {"m2x3", GL_FLOAT_MAT2x3},
                          {"m2x4", GL_FLOAT_MAT2x4},
                          {"m3x2", GL_FLOAT_MAT3x2},
                          {"m3x4", GL_FLOAT_MAT3x4},
                          {"m4x2", GL_FLOAT_MAT4x2},
                          {"m4x3", GL_FLOAT_MAT4x3},
                          {"m3s[0]", GL_FLOAT_MAT3, 2},
                          {"m4s[0]", GL_FLOAT_MAT4, 2},
                          {"image", GL_SAMPLER_2D}});
    gl.setActiveAttributes({{"position", GL_FLOAT_VEC2}});
    return Program::make("", "");
}

void useUnsignedUniforms(UseRecorder& use, Program& program) {
    const std::vector<unsigned int> array(2);
    use("setUniform", [&] {
        program.setUniform("u", 1u);
        program.setUniform("u2", glm::uvec2(1));
        program.setUniform("u3", glm::uvec3(1));
        program.setUniform("u4", glm::uvec4(1));
        program.setUniform("us", array);
    });
}

/// Uniforms for which GL is asked the first time.
void useUniformsWithoutHandles(UseRecorder& use, Program& program) {
    use("setUniform (without a handle, first)", [&] { program.setUniform("b", true); });
    const std::vector<glm::mat3> threes(2);
    const std::vector<glm::mat4> fours(2);
    const auto setAll = [&] {
        program.setUniform("b", true);
        program.setUniform("m2", glm::mat2(1));
        program.setUniform("m2x3", glm::mat2x3(1));
        program.setUniform("m2x4", glm::mat2x4(1));
        program.setUniform("m3x2", glm::mat3x2(1));
        program.setUniform("m3x4", glm::mat3x4(1));
        program.setUniform("m4x2", glm::mat4x2(1));
        program.setUniform("m4x3", glm::mat4x3(1));
        program.setUniform("m3s", threes);
        program.setUniform("m4s", fours);
        program.setUniform("fs[1]", 1.f);
    };
    setAll();
    use("setUniform (without a handle)", setAll);
}

void useUniforms(UseRecorder& use, Program& program, const Texture& texture) {
    const std::vector<int> integers(2);
    const std::vector<float> floats(2);
    use("setUniform", [&] {
        program.setUniform("i", 1);
        program.setUniform("i2", glm::ivec2(1));
        program.setUniform("i3", glm::ivec3(1));
        program.setUniform("i4", glm::ivec4(1));
        program.setUniform("f", 1.f);
        program.setUniform("f2", glm::vec2(1));
        program.setUniform("f3", glm::vec3(1));
        program.setUniform("f4", glm::vec4(1));
        program.setUniform("m3", glm::mat3(1));
        program.setUniform("m4", glm::mat4(1));
        program.setUniform("is", integers);
        program.setUniform("fs", floats);
    });
    useUnsignedUniforms(use, program);
    // A context that has them from the extension alone.
    const auto saved = std::make_tuple(glad_glUniform1ui, glad_glUniform1uiv, glad_glUniform2uiv,
                                       glad_glUniform3uiv, glad_glUniform4uiv);
    std::tie(glad_glUniform1ui, glad_glUniform1uiv, glad_glUniform2uiv, glad_glUniform3uiv,
             glad_glUniform4uiv) = decltype(saved){};
    useUnsignedUniforms(use, program);
    std::tie(glad_glUniform1ui, glad_glUniform1uiv, glad_glUniform2uiv, glad_glUniform3uiv,
             glad_glUniform4uiv) = saved;
    useUniformsWithoutHandles(use, program);
    use("setUniform (a texture)", [&] { program.setUniform("image", texture); });
}

void useProgram(UseRecorder& use) {
    use.of("Program");
    use("make", [&] { return makeProgram(use.gl); });
    const auto program = makeProgram(use.gl);
    const Texture2D<glm::vec4> texture;
    use("hasLinkError", [&] { program->hasLinkError(); });
    use.gl.setLinkLog("log");
    use("linkLog", [&] { program->linkLog(); });
    use.gl.setLinkLog("");
    use("bind", [&] { program->bind(); });
    useUniforms(use, *program, texture);
    use("unbind", [&] { program->unbind(); });
    use("beginAttributesBinding", [&] { program->beginAttributesBinding(); });
    use("finishAttributesBinding", [&] { return program->finishAttributesBinding(); });
    Program::current();
    use("current", [] { Program::current(); });
    use("dispose", [&] { program->dispose(); });
    auto other = makeProgram(use.gl);
    use("destruction", [&] { other.reset(); });
}

void useContexts(UseRecorder& use) {
    use.of("Context");
    const auto make = [] { return Context::make(FakeGl::lookUp); };
    use("make", make);
    const auto context = make();
    const auto sharing = [&] { return Context::make(*context, FakeGl::lookUp); };
    const auto makeBuffer = [] {
        return VertexAttributeBuffer<float>::make(1, BufferUsage::Static, BufferAccess::Draw);
    };
    auto waiting = makeBuffer();
    Context::useProcess();
    use("make (a sharing one)", sharing);
    waiting.reset();
    // Operations begin and end with the process's own in use.
    const auto useContext = [&] {
        context->use();
        Context::useProcess();
    };
    use("use (with a name that waits)", useContext);
    use("use", useContext);
    use("useProcess", [] { Context::useProcess(); });
    use("Scope", [&] { const Context::Scope scope(*context); });
    auto other = sharing();
    Context::useProcess();
    use("abandon", [&] { other->abandon(); });
    other = sharing();
    Context::useProcess();
    use("destruction", [&] { other.reset(); });
    context->use();
    BufferObjectManager::instance().add(makeBuffer());
    Context::useProcess();
    use("dispose", [&] { context->dispose(); });
}

} // namespace

void useEngine(UseRecorder& use) {
    use.begin("Engine");
    use.of("engine");
    // engine::init loads in the same way, through the lookup of the platform. The second load
    // leaves everything that other operations call, also what extensions alone bring.
    use.gl.setString(GL_VERSION, "2.1");
    use("init", [] { gladLoadGLLoader(FakeGl::lookUp); });
    use.gl.setString(GL_VERSION, "3.2");
    use.gl.setState(GL_NUM_EXTENSIONS, {static_cast<double>(std::size(loadedExtensions))});
    use.gl.answer(glad_glGetStringi, [](GLenum, GLuint index) {
        return reinterpret_cast<const GLubyte*>(loadedExtensions[index]);
    });
    use("init", [] { gladLoadGLLoader(FakeGl::lookUp); });
    useContexts(use);
}

void useShutDown(UseRecorder& use) {
    use.begin("Engine");
    use.of("engine");
    use("dispose", [] { engine::dispose(); });
}

void useBuffers(UseRecorder& use) {
    use.begin("Buffers");
    useTypedBuffer<VertexAttributeBuffer<float>>(use, "VertexAttributeBuffer", 1.f);
    useTypedBuffer<IndexBuffer<unsigned int>>(use, "IndexBuffer", 1u);
    usePixelBuffer(use, PixelBuffer::DataFlow::Upload);
    usePixelBuffer(use, PixelBuffer::DataFlow::Download);
}

void useShading(UseRecorder& use) {
    use.begin("Shading");
    use.of("Shader");
    use("make", [] { return VertexShader::make("", Shader::Version::V210); });
    use("make", [] { return FragmentShader::make("", Shader::Version::V210); });
    auto shader = FragmentShader::make("");
    use("hasCompilationError", [&] { shader->hasCompilationError(); });
    use.gl.setCompileLog("log");
    use("compilationLog", [&] { shader->compilationLog(); });
    use.gl.setCompileLog("");
    use("destruction", [&] { shader.reset(); });
    useProgram(use);
    use.of("ProgramManager");
    use("get (a built-in program, first)",
        [] { ProgramManager::instance().get(ProgramManager::BuiltIn::UniformColor2D); });
}

} // namespace vellis::test
