#include "canvas/programs.hpp"

#include <string>

#include <vellis/gl.hpp>
#include <vellis/shading/shader.hpp>

#include "canvas/plain_shaders.hpp"
#include "canvas/stroke_shaders.hpp"

namespace vellis::canvas {
namespace {

struct Sources {
    const char* vertex;
    const char* fragment;
};

/// In the order of ProgramFamily.
const Sources sources[] = {
    {flatVertexSource, flatFragmentSource},   {strokeVertexSource, strokeFragmentSource},
    {discVertexSource, discFragmentSource},   {maskVertexSource, maskFragmentSource},
    {imageVertexSource, imageFragmentSource},
};

struct AttributeName {
    const char* name;
    unsigned int location;
};
constexpr AttributeName attributeNames[] = {
    {"corner", cornerLocation},       {"position", cornerLocation},
    {"p0", firstPointLocation},       {"center", firstPointLocation},
    {"p1", firstPointLocation + 1},   {"p2", firstPointLocation + 2},
    {"p3", firstPointLocation + 3},   {"phaseAndHalf", sizeLocation},
    {"radius", sizeLocation},         {"color", colorLocation},
    {"nextColor", nextColorLocation}, {"offset", firstPointLocation},
    {"part", sizeLocation},
};

/// In the order of UniformName.
constexpr const char* uniformNames[numUniforms] = {
    "matrix",    "viewport",  "miterLimit", "dashes", "dashPeriod", "dashMatrix",
    "dashScale", "halfWidth", "styleColor", "texels", "frame",      "box"};

/// The lines that say which joins and caps strokes have.
std::string endsOf(unsigned int variants) {
    const auto digit = [&](unsigned int shift) {
        return static_cast<char>('0' + ((variants >> shift) & 3u));
    };
    return std::string("#define join ") + digit(4) + ".\n#define cap " + digit(6) + ".\n";
}

/// The lines in front of a source.
std::string preamble(const Capabilities& capabilities, bool isVertex, unsigned int variants) {
    struct VariantName {
        unsigned int variant;
        const char* line;
    };
    constexpr VariantName names[] = {
        {dashed, "#define DASHED\n"},     {alone, "#define ALONE\n"},
        {gradient, "#define GRADIENT\n"}, {uniformStyle, "#define UNIFORM_STYLE\n"},
        {coverage, "#define COVERAGE\n"}, {wholePixels, "#define WHOLE_PIXELS\n"}};
    std::string result;
    if (capabilities.hasGlsl150) {
        result = "#version 150\n#define OUT out\n#define IN in\n#define TEXTURE texture\n"
                 "#define FLAT flat\n#define LINEAR noperspective\n";
        if (!isVertex)
            result += "out vec4 OUT0;\n";
    } else {
        result = "#version 120\n#define OUT varying\n#define TEXTURE texture2D\n"
                 "#define FLAT\n#define LINEAR\n";
        result += isVertex ? "#define IN attribute\n"
                           : "#define IN varying\n"
                             "#define OUT0 gl_FragColor\n";
    }
    for (const VariantName& name : names) {
        if ((variants & name.variant) != 0)
            result += name.line;
    }
    return result;
}

} // namespace

CanvasProgram::CanvasProgram(ProgramFamily family, unsigned int variants,
                             const Capabilities& capabilities)
    : family_(family),
      variants_(variants) {
    const Sources& source = sources[static_cast<std::size_t>(family)];
    const std::string ends = family == ProgramFamily::Stroke ? endsOf(variants) : "";
    const auto vertex =
        VertexShader::make(preamble(capabilities, true, variants) + ends + source.vertex);
    const auto fragment =
        FragmentShader::make(preamble(capabilities, false, variants) + ends + source.fragment);
    program_ = ProgramName(glCreateProgram());
    const unsigned int program = program_.name();
    glAttachShader(program, vertex->id());
    glAttachShader(program, fragment->id());
    for (const AttributeName& attribute : attributeNames)
        glBindAttribLocation(program, attribute.location, attribute.name);
    glLinkProgram(program);
    int status = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &status);
    isLinked_ = status == GL_TRUE;
    for (std::size_t i = 0; i < numUniforms; ++i)
        locations_[i] = isLinked_ ? glGetUniformLocation(program, uniformNames[i]) : -1;
}

} // namespace vellis::canvas
