#include "operations/silent_operations.hpp"

#include <vellis/buffers.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/internal.hpp>
#include <vellis/shading.hpp>

#include "operations/linked_again.hpp"
#include "support/stderr_capture.hpp"

namespace vellis::test {
namespace {

void useRegistries(UseRecorder& use) {
    const auto buffer =
        VertexAttributeBuffer<float>::make(4, BufferUsage::Static, BufferAccess::Draw);
    const auto program = Program::make("", "");
    BufferObjectManager& buffers = BufferObjectManager::instance();
    ProgramManager& programs = ProgramManager::instance();
    use.of("BufferObjectManager");
    use("add", [&] { buffers.add(buffer); });
    use("remove", [&] { buffers.remove(buffer.get()); });
    use.of("ProgramManager");
    use("add", [&] { programs.add(program); });
    use("remove", [&] { programs.remove(program.get()); });
}

void usePrograms(UseRecorder& use) {
    use.gl.setActiveUniforms(
        {{"fs[0]", GL_FLOAT, 4}, {"color", GL_FLOAT_VEC4}, {"flags[0]", GL_BOOL, 8}});
    LinkedAgain program;
    program.link({0, 1, 2}); // makes room for outputs, which the program keeps
    use.of("Program");
    use("make (with outputs)", [] { return Program::make("", "", {2, 0, 2}); });
    use("link", [&] { program.link(); });
    use("link (with outputs)", [&] { program.link({2, 0, 2}); });
    Uniform<std::vector<float>> handle("fs", {1.f, 2.f});
    const std::vector<float> more(8);
    use("setUniform (an array of more elements)", [&] { program.setUniform("fs", more); });
    use("setUniform (a handle)", [&] { program.setUniform(handle); });
    const std::vector<bool> flags(8);
    program.setUniform("flags", flags);
    use("setUniform (a list of booleans)", [&] { program.setUniform("flags", flags); });
    use.of("Uniform");
    use("copy (of an array)", [&] { return Uniform<std::vector<float>>(handle); });
}

void useMessages(UseRecorder& use) {
    const StderrCapture silence;
    use.gl.setCompileLog("0:1(1): error: syntax error");
    use.gl.setLinkLog("error: the vertex shader did not compile");
    const auto program = Program::make("", "");
    use.of("Shader");
    const auto shader = VertexShader::make("");
    use("compilationLog", [&] { return shader->compilationLog(); });
    use.of("Program");
    use("linkLog", [&] { return program->linkLog(); });
    use.of("internal");
    use("log", [] { internal::log("title", "%d", 1); });
    use("log (with a file)", [] { internal::log("file", 1, "title", "%d", 1); });
    use("warning_fail", [] { internal::warning_fail("condition", "file", 1, "%d", 1); });
    use("not_implemented", [] { internal::not_implemented("what", "file", 1); });
    use("not_tested", [] { internal::not_tested("what", "file", 1); });
    use("print_shader (a text)",
        [] { internal::print_shader("void main() {\n  gl_FragColor = vec4(1.0);\n}\n"); });
    use("print_shader_compilation_info",
        [&] { internal::print_shader_compilation_info(program->id()); });
    use("print_program_link_info", [&] { internal::print_program_link_info(program->id()); });
    use.gl.setState(GL_DEPTH_TEST, {1});
    use("diff_gl_states (with a difference)", [] { internal::diff_gl_states(); });
    use.gl.setState(GL_DEPTH_TEST, {0});
    use("diff_gl_states (with a difference)", [] { internal::diff_gl_states(); });
    const std::string text(300, 'x');
    internal::label(program, text.c_str());
    use("label_of", [&] { return internal::label_of(program); });
    use("print_program_link_info (with a label)",
        [&] { internal::print_program_link_info(program->id()); });
    use("print_program_uniforms (with a label)",
        [&] { internal::print_program_uniforms(program->id()); });
    use.of("Sampler");
    use("print", [] { Sampler::trilinear_clamp().print(); });
}

} // namespace

void useSilentOperations(UseRecorder& use) {
    use.begin("Others");
    useRegistries(use);
    usePrograms(use);
    use.of("Framebuffer");
    use("makeNull", [] { return Framebuffer::makeNull(); });
    useNewCanvases(use);
    useMessages(use);
}

} // namespace vellis::test
