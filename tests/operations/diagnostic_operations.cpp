/// The operations of state records and of diagnostics.

#include <vellis/internal.hpp>
#include <vellis/shading.hpp>
#include <vellis/state.hpp>

#include "operations/operations.hpp"
#include "support/stderr_capture.hpp"

namespace vellis::test {

void useState(UseRecorder& use) {
    use.begin("State");
    use.of("state");
#define VELLIS_STATE(type, count, pname, queries, command)                                         \
    {                                                                                              \
        vellis::state::State<type, count, pname> record{};                                         \
        use("get", [&] { vellis::state::get(record); });                                           \
        use("set", [&] { vellis::state::set(record); });                                           \
    }
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
    const vellis::state::State<bool, 1, GL_BLEND> on = {{true}};
    use("set", [&] { vellis::state::set(on); });
}

void useDiagnostics(UseRecorder& use) {
    use.begin("Diagnostics");
    const StderrCapture silence;
    use.gl.setCompileLog("log");
    use.gl.setLinkLog("log");
    use.gl.setActiveUniforms({{"color", GL_FLOAT_VEC4}});
    use.gl.setActiveAttributes({{"position", GL_FLOAT_VEC2}});
    const auto vertex = VertexShader::make("void main() {}");
    const auto program = Program::make(vertex, FragmentShader::make("void main() {}"));
    const unsigned int id = program->id();

    use.of("internal");
    use("check_glerror", [] { internal::check_glerror(); });
    use("check_framebuffer_complete", [] { internal::check_framebuffer_complete(); });
    use("print_gl_info", [] { internal::print_gl_info(); });
    use("print_gl_extensions", [] { internal::print_gl_extensions(); });
    use("print_gl_caps", [] { internal::print_gl_caps(); });
    use("print_gl_states", [] { internal::print_gl_states(); });
    use("diff_gl_states", [] { internal::diff_gl_states(); });
    use("print_shader", [&] { internal::print_shader(vertex->id()); });
    use("print_vertex_shader", [&] { internal::print_vertex_shader(id); });
    use("print_fragment_shader", [&] { internal::print_fragment_shader(id); });
    use("print_shader_compilation_info",
        [&] { internal::print_shader_compilation_info(vertex->id()); });
    use("print_program_link_info", [&] { internal::print_program_link_info(id); });
    use("print_program_attributes", [&] { internal::print_program_attributes(id); });
    use("print_program_uniforms", [&] { internal::print_program_uniforms(id); });
    use("attrib_type", [&] { internal::attrib_type(id, "position"); });
    use("uniform_type", [&] { internal::uniform_type(id, "color"); });
}

} // namespace vellis::test
