/// The operations of shaders, programs, uniforms and the registry of programs.

#include <glm/matrix.hpp>
#include <vellis/gl.hpp>

#include "fuzz/machine/operations.hpp"

namespace vellis::test {
namespace {

constexpr const char* vertexSources[] = {
    "attribute vec2 position; void main() { gl_Position = vec4(position, 0.0, 1.0); }",
    R"(uniform mat4 mvp;
       uniform float weights[3];
       attribute vec2 position;
       void main() { gl_Position = mvp * vec4(position * weights[1], 0.0, 1.0); })",
    "void main() { gl_Position = vec4(0.0) }",
    "",
    "IN vec2 position; void main() { gl_Position = vec4(position, 0.0, 1.0); }",
};

constexpr const char* fragmentSources[] = {
    "void main() { gl_FragColor = vec4(1.0); }",
    R"(uniform sampler2D image;
       uniform vec4 color;
       uniform ivec2 size;
       struct Light { vec4 color; bool isOn; };
       uniform Light light;
       uniform mat2 bones[2];
       void main() {
           vec4 lit = light.isOn ? light.color : color;
           lit.xy = bones[0] * bones[1] * lit.xy;
           gl_FragColor = lit * texture2D(image, gl_FragCoord.xy / vec2(size));
       })",
    "void main() { no such thing; }",
    "",
    "DECL_OUT0; void main() { OUT0 = vec4(1.0); }",
};

constexpr const char* names[] = {"mvp",        "color",        "weights",    "image",
                                 "size",       "position",     "",           nullptr,
                                 "weights[0]", "no such name", "weights[1]", "light.color",
                                 "light.isOn", "bones",        "bones[1]",   "weights[7]"};

constexpr Shader::Version versions[] = {Shader::Version::V210, Shader::Version::V330,
                                        Shader::Version::V410, static_cast<Shader::Version>(400)};

template <auto places, std::size_t N>
void makeShader(World& world, Bytes& bytes, const char* const (&sources)[N]) {
    auto& place = pick(world.*places, bytes);
    using Made = typename std::decay_t<decltype(place)>::element_type;
    const char* const source = bytes.oneOf(sources);
    place = bytes.flag() ? Made::make(source, bytes.oneOf(versions)) : Made::make(source);
}

void makeVertexShader(World& world, Bytes& bytes) {
    makeShader<&World::vertexShaders>(world, bytes, vertexSources);
}

void makeFragmentShader(World& world, Bytes& bytes) {
    makeShader<&World::fragmentShaders>(world, bytes, fragmentSources);
}

void releaseShaders(World& world, Bytes& bytes) {
    pick(world.vertexShaders, bytes) = nullptr;
    pick(world.fragmentShaders, bytes) = nullptr;
}

void copyShader(World& world, Bytes& bytes) {
    const auto& shader = pick(world.vertexShaders, bytes);
    if (shader == nullptr || !world.canCopyOwners)
        return;
    world.copiedNames.insert("shader " + std::to_string(shader->id()));
    const VertexShader copied(*shader);
    world.require(copied.id() == shader->id(), "a copy has another name");
}

void makeProgram(World& world, Bytes& bytes) {
    auto& place = pick(world.programs, bytes);
    switch (bytes.below(5)) {
    case 0:
        place = {Program::make(bytes.oneOf(vertexSources), bytes.oneOf(fragmentSources)), false};
        break;
    case 1:
        place = {Program::make(bytes.oneOf(vertexSources), nullptr, {2, 0, 2}), false};
        world.require(place.object->getOutputs().size() == 3, "outputs are not as recorded");
        break;
    case 2:
        place = {Program::make(), false};
        break;
    default:
        place = {
            Program::make(pick(world.vertexShaders, bytes), pick(world.fragmentShaders, bytes)),
            false};
    }
    world.require(!place.object->isBound(), "a new program is bound");
}

template <class Function>
void onProgram(World& world, Bytes& bytes, Function function) {
    auto& place = pick(world.programs, bytes);
    if (place.object != nullptr)
        function(place);
}

using Place = Bindable<Program>;

void bind(World& world, Bytes& bytes) {
    onProgram(world, bytes, [](Place& place) {
        place.object->bind();
        place.isBound = true;
    });
}

void bindWithBinding(World& world, Bytes& bytes) {
    onProgram(world, bytes, [&](Place& place) {
        const auto& drawable = pick(world.shapes, bytes).drawable;
        place.object->bind(drawable != nullptr ? drawable->getAttributesBinding()
                                               : pick(world.bindings, bytes));
        place.isBound = true;
    });
}

void unbind(World& world, Bytes& bytes) {
    onProgram(world, bytes, [](Place& place) {
        place.object->unbind();
        place.isBound = false;
    });
}

/// Whether GL has the indices of a draw: a buffer's store is not there where memory for it ran out.
/// Drivers may end the process then.
bool hasIndices(const IndexBuffer<unsigned short>& indices, unsigned int first,
                unsigned int count) {
    const GLuint before = observedName(GL_ELEMENT_ARRAY_BUFFER_BINDING);
    GLint numBytes = 0;
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices.id());
    glGetBufferParameteriv(GL_ELEMENT_ARRAY_BUFFER, GL_BUFFER_SIZE, &numBytes);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, before);
    return (first + count) * sizeof(unsigned short) <= static_cast<std::size_t>(numBytes);
}

template <class... Values>
void drawShape(World& world, Bytes& bytes, const Values&... values) {
    onProgram(world, bytes, [&](Place& place) {
        const auto& drawable = pick(world.shapes, bytes).drawable;
        if (drawable == nullptr)
            return;
        const auto& indices = pick(world.indices, bytes).object;
        const unsigned int first = bytes.number();
        const unsigned int count = bytes.number();
        if (indices != nullptr && bytes.flag()) {
            if (world.isOnDriver && !hasIndices(*indices, first, count))
                return;
            place.object->draw(*drawable, *indices, first, count, values...);
        } else {
            place.object->draw(*drawable, first, count, values...);
        }
        place.isBound = false;
        for (auto& index : world.indices)
            index.isBound = index.isBound && index.object->isBound();
    });
}

void draw(World& world, Bytes& bytes) {
    drawShape(world, bytes);
}

void drawWithValues(World& world, Bytes& bytes) {
    const char* const name = bytes.oneOf(names);
    const auto& picture = pick(world.pictures, bytes);
    if (picture != nullptr && bytes.flag())
        return drawShape(world, bytes, Uniform(name, *picture), Uniform("image", *picture));
    drawShape(world, bytes, Uniform(name, glm::vec4(bytes.fraction())),
              Uniform(bytes.oneOf(names), std::vector<float>(bytes.number())));
}

void recordBinding(World& world, Bytes& bytes) {
    onProgram(world, bytes, [](Place& place) { place.object->beginAttributesBinding(); });
}

void finishBinding(World& world, Bytes& bytes) {
    onProgram(world, bytes, [&](Place& place) {
        pick(world.bindings, bytes) = place.object->finishAttributesBinding();
    });
}

/// The values of types that have no handles, too.
void setUniformWithoutHandle(World& world, Bytes& bytes) {
    onProgram(world, bytes, [&](Place& place) {
        Program& program = *place.object;
        const char* const name = bytes.oneOf(names);
        const float number = bytes.fraction();
        const std::size_t size = bytes.number() % 8;
        switch (bytes.below(9)) {
        case 0:
            return program.setUniform(name, number > 0.5f);
        case 1:
            return program.setUniform(name, glm::bvec3(number > 0.5f));
        case 2:
            return program.setUniform(name, std::vector<bool>(size, true));
        case 3:
            return program.setUniform(name, std::vector<glm::bvec4>(size));
        case 4:
            return program.setUniform(name, glm::mat2(number));
        case 5:
            return program.setUniform(name, glm::mat4x3(number));
        case 6:
            return program.setUniform(name, std::vector<glm::mat2>(size, glm::mat2(number)));
        case 7:
            return program.setUniform(name, std::vector<glm::mat4>(size));
        default:
            return program.setUniform(Uniform<glm::vec4>(name));
        }
    });
}

/// The values of each type that a uniform can have.
void setUniform(World& world, Bytes& bytes) {
    onProgram(world, bytes, [&](Place& place) {
        Program& program = *place.object;
        const char* const name = bytes.oneOf(names);
        const float number = bytes.fraction();
        const unsigned int size = bytes.number();
        switch (bytes.below(12)) {
        case 0:
            return program.setUniform(name, glm::mat4(number));
        case 1:
            return program.setUniform(name, glm::vec4(number));
        case 2:
            return program.setUniform(name, std::vector<float>(size, number));
        case 3:
            return program.setUniform(name, glm::ivec2(glm::uvec2(size)));
        case 4:
            return program.setUniform(name, size);
        case 5:
            return program.setUniform(name, std::vector<unsigned int>(size));
        case 6:
            return program.setUniform(name, glm::uvec3(size));
        case 7:
            return program.setUniform(name, glm::mat3(number));
        case 8:
            return program.setUniform(name, static_cast<int>(size));
        case 9:
            return program.setUniform(name, std::vector<glm::uvec4>(size));
        case 10:
            return program.setUniform(Uniform<glm::vec4>(name));
        default:
            program.getUniform<float>(name).value = number;
            return program.setUniform(program.getUniform<float>(name));
        }
    });
}

void setTexture(World& world, Bytes& bytes) {
    onProgram(world, bytes, [&](Place& place) {
        const char* const name = bytes.oneOf(names);
        const auto& picture = pick(world.pictures, bytes);
        if (picture == nullptr)
            return;
        if (bytes.flag()) {
            place.object->setUniform(name, *picture);
        } else {
            place.object->setUniform(Uniform<Texture>(name, picture.get()));
        }
    });
}

void ask(World& world, Bytes& bytes) {
    onProgram(world, bytes, [&](Place& place) {
        const Program& program = *place.object;
        const char* const name = bytes.oneOf(names);
        world.require(program.hasAttrib(name) || program.getAttribLoc(name) == 0xFFFFFFFF,
                      "an attribute without a name has a location");
        world.require(program.hasUniform(name) || program.getUniformLoc(name) == 0xFFFFFFFF,
                      "a uniform without a name has a location");
        program.hasLinkError();
        world.require(program.linkLog().find('\0') == std::string::npos, "a log has a NUL");
        const auto& shader = pick(world.vertexShaders, bytes);
        world.require(shader == nullptr || shader->compilationLog().find('\0') == std::string::npos,
                      "a log has a NUL");
        internal::attrib_type(program.id(), name);
        internal::uniform_type(program.id(), name);
    });
}

void dispose(World& world, Bytes& bytes) {
    onProgram(world, bytes, [&](Place& place) {
        place.object->dispose();
        world.require(place.object->id() == 0, "a disposed program has a name");
        world.require(!place.object->hasUniform("mvp"), "a disposed program has uniforms");
    });
}

void release(World& world, Bytes& bytes) {
    pick(world.programs, bytes) = {};
}

void copyProgram(World& world, Bytes& bytes) {
    const auto& program = pick(world.programs, bytes).object;
    if (program == nullptr || !world.canCopyOwners)
        return;
    world.copiedNames.insert("program " + std::to_string(program->id()));
    const Program copied(*program);
    world.require(copied.hasUniform("mvp") == program->hasUniform("mvp"), "a copy has no uniforms");
}

void releaseBinding(World& world, Bytes& bytes) {
    pick(world.bindings, bytes) = nullptr;
}

void add(World& world, Bytes& bytes) {
    const auto& program = pick(world.programs, bytes).object;
    ProgramManager& programs = ProgramManager::instance();
    world.require(programs.add(program) == program.get(),
                  "the key of a program is not its address");
    world.require(programs.get(program.get()) == program, "a program that was added is not there");
}

void remove(World& world, Bytes& bytes) {
    ProgramManager::instance().remove(pick(world.programs, bytes).object.get());
}

void addMeddler(World& world, Bytes& bytes) {
    world.meddlingPrograms.add(bytes);
}

void removeMeddler(World& world, Bytes& bytes) {
    world.meddlingPrograms.removeOne(bytes);
}

void getBuiltIn(World& world, Bytes& bytes) {
    const auto builtIn = bytes.enumerator<ProgramManager::BuiltIn>(6);
    const bool isOne = static_cast<unsigned int>(builtIn) < 6;
    world.require((ProgramManager::instance().get(builtIn) != nullptr) == isOne,
                  "a built-in program is missing, or one too many");
}

void useCurrent(World& world, Bytes& bytes) {
    const Program& current = bytes.flag() ? Program::current() : Program::null();
    current.bind();
    current.unbind();
    world.require(Program::current().id() == 0, "no program is current, but has a name");
}

} // namespace

std::vector<Operation> shadingOperations() {
    const GLenum program = GL_CURRENT_PROGRAM;
    const GLenum vertexArray = GL_VERTEX_ARRAY_BINDING;
    return {
        {"VertexShader: make", makeVertexShader, {}},
        {"FragmentShader: make", makeFragmentShader, {}},
        {"Shader: release", releaseShaders, {}},
        {"Shader: copy", copyShader, {}},
        {"Program: make", makeProgram, {{program, vertexArray}, {}}},
        {"Program: bind", bind, {{}, {program}}},
        {"Program: bind with a binding", bindWithBinding, {{vertexArray}, {program, vertexArray}}},
        {"Program: unbind", unbind, {{program, vertexArray}, {}}},
        {"Program: draw", draw, {{program, vertexArray, GL_ELEMENT_ARRAY_BUFFER_BINDING}, {}}},
        {"Program: draw with values",
         drawWithValues,
         {{program, vertexArray, GL_ELEMENT_ARRAY_BUFFER_BINDING},
          {GL_ACTIVE_TEXTURE, GL_TEXTURE_BINDING_2D}}},
        {"Program: beginAttributesBinding", recordBinding, {{}, {vertexArray}}},
        {"Program: finishAttributesBinding", finishBinding, {{vertexArray}, {}}},
        {"Program: setUniform", setUniform, {}},
        {"Program: setUniform without a handle", setUniformWithoutHandle, {}},
        {"Program: setUniform with a texture",
         setTexture,
         {{}, {GL_ACTIVE_TEXTURE, GL_TEXTURE_BINDING_2D}}},
        {"Program: ask", ask, {}},
        {"Program: dispose", dispose, {{program}, {}}},
        {"Program: release", release, {{program, vertexArray}, {}}},
        {"Program: copy", copyProgram, {{program}, {}}},
        {"VertexAttributesBinding: release", releaseBinding, {{vertexArray}, {}}},
        {"ProgramManager: add", add, {}},
        {"ProgramManager: remove", remove, {{program, vertexArray}, {}}},
        {"ProgramManager: add a meddler", addMeddler, {}},
        {"ProgramManager: remove a meddler", removeMeddler, {}},
        {"ProgramManager: get", getBuiltIn, {{program}, {}}},
        {"Program: current", useCurrent, {{program}, {}}},
    };
}

} // namespace vellis::test
