/// Samplers on a driver: every parameter reaches the texture, and shows.

#include <string>
#include <vector>

#include <offscreen/image.hpp>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "support/render_test.hpp"
#include "support/texel_formats.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

class SamplerRender : public RenderTest {
protected:
    SamplerRender() : RenderTest(96) {}
};

/// The parameters of a texture: minification, magnification, s and t.
std::vector<int> parametersOf(const Texture& texture) {
    constexpr GLenum pnames[] = {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER, GL_TEXTURE_WRAP_S,
                                 GL_TEXTURE_WRAP_T};
    std::vector<int> values;
    texture.bind();
    for (const GLenum pname : pnames) {
        values.push_back(-1);
        glGetTexParameteriv(texture.type(), pname, &values.back());
    }
    texture.unbind();
    return values;
}

struct SamplerRow {
    const char* name;
    Sampler sampler;
    std::vector<int> parameters;
};

std::vector<SamplerRow> samplerRows() {
    using S = Sampler;
    constexpr int clamp = GL_CLAMP_TO_EDGE;
    constexpr int repeat = GL_REPEAT;
    constexpr int mirrored = GL_MIRRORED_REPEAT;
    return {
        {"default", S(), {GL_NEAREST, GL_NEAREST, clamp, clamp}},
        {"nearest_clamp", S::nearest_clamp(), {GL_NEAREST, GL_NEAREST, clamp, clamp}},
        {"nearest_repeat", S::nearest_repeat(), {GL_NEAREST, GL_NEAREST, repeat, repeat}},
        {"linear_clamp", S::linear_clamp(), {GL_LINEAR, GL_LINEAR, clamp, clamp}},
        {"linear_repeat", S::linear_repeat(), {GL_LINEAR, GL_LINEAR, repeat, repeat}},
        {"trilinear_clamp",
         S::trilinear_clamp(),
         {GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, clamp, clamp}},
        {"trilinear_repeat",
         S::trilinear_repeat(),
         {GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, repeat, repeat}},
        {"mirrored", S(S::LINEAR, S::MIRRORED_REPEAT), {GL_LINEAR, GL_LINEAR, mirrored, mirrored}},
        {"nearest within levels",
         S({{S::MIN_FILTER, S::NEAREST}, {S::MIPMAP_MIN_FILTER, S::LINEAR}}),
         {GL_NEAREST_MIPMAP_LINEAR, GL_LINEAR, repeat, repeat}},
        {"nearest between levels",
         S({{S::MIN_FILTER, S::LINEAR}, {S::MIPMAP_MIN_FILTER, S::NEAREST}}),
         {GL_LINEAR_MIPMAP_NEAREST, GL_LINEAR, repeat, repeat}},
        {"nearest mipmap",
         S({{S::MIN_FILTER, S::NEAREST}, {S::MIPMAP_MIN_FILTER, S::NEAREST}}),
         {GL_NEAREST_MIPMAP_NEAREST, GL_LINEAR, repeat, repeat}},
        {"unset", S({}), {GL_NEAREST_MIPMAP_LINEAR, GL_LINEAR, repeat, repeat}},
    };
}

TEST_F(SamplerRender, ReachesTheTexture) {
    for (const SamplerRow& row : samplerRows()) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parametersOf(Texture1D<U8vec4>(row.sampler)), row.parameters);
        EXPECT_EQ(parametersOf(Texture2D<depth16>(row.sampler)), row.parameters);
        EXPECT_EQ(parametersOf(Texture3D<U8vec4>(row.sampler)), row.parameters);
    }
}

TEST_F(SamplerRender, KeepsWhatIsUnset) {
    Texture2D<U8vec4> texture(Sampler::linear_repeat());
    texture.setSampler(Sampler({{Sampler::WRAP_T, Sampler::CLAMP}}));
    EXPECT_EQ(parametersOf(texture),
              (std::vector<int>{GL_LINEAR, GL_LINEAR, GL_REPEAT, GL_CLAMP_TO_EDGE}));
}

struct WrapRow {
    Sampler::Wrap wrap;
    std::string texels; ///< what coordinates from -1 to 2 show of a red and a green texel
};

const WrapRow wraps[] = {
    {Sampler::CLAMP, "RRRGGG"},
    {Sampler::REPEAT, "RGRGRG"},
    {Sampler::MIRRORED_REPEAT, "GRRGGR"},
};

/// Fills the viewport with a texture, its coordinates from -1 to 2.
void drawThreeTimes(const Texture& texture) {
    const auto program = Program::make(
        VertexShader::make("IN vec2 corner; OUT vec2 place;\n"
                           "void main() {\n"
                           "  place = 1.5 * corner + 0.5; gl_Position = vec4(corner, 0, 1);\n"
                           "}\n",
                           Shader::Version::V210),
        FragmentShader::make("#if __VERSION__ >= 130\n"
                             "#define texture2D texture\n"
                             "#endif\n"
                             "uniform sampler2D image; IN vec2 place; DECL_OUT0;\n"
                             "void main() { OUT0 = texture2D(image, place); }\n",
                             Shader::Version::V210));
    const auto corners = VertexAttributeBuffer<glm::vec2>::make(
        {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}}, BufferUsage::Static, BufferAccess::Draw);
    program->draw(
        *drawable::TriangleStrip<VertexAttribute<glm::vec2>>::make(program, {"corner", corners}),
        Uniform("image", texture));
}

char colorAt(const offscreen::Image& image, unsigned int x, unsigned int y) {
    const unsigned char* const pixel = image.at(x, y);
    const bool red = pixel[0] == 255 && pixel[1] == 0;
    const bool green = pixel[0] == 0 && pixel[1] == 255;
    return red ? 'R' : green ? 'G' : '?';
}

TEST_F(SamplerRender, WrapModesShowInPictures) {
    constexpr unsigned int side = 96;
    const U8vec4 texels[] = {{255, 0, 0, 255}, {0, 255, 0, 255}};
    const auto alongS = Texture2D<U8vec4>::make(2, 1, texels);
    const auto alongT = Texture2D<U8vec4>::make(1, 2, texels);
    for (const WrapRow& row : wraps) {
        std::string seenAlongS;
        std::string seenAlongT;
        for (const auto& texture : {alongS, alongT}) {
            texture->setSampler(Sampler(Sampler::NEAREST, row.wrap));
            drawThreeTimes(*texture);
            const offscreen::Image image = offscreen::readPixels(side, side);
            for (unsigned int i = 0; i < 6; ++i) {
                const unsigned int along = side * (2 * i + 1) / 12;
                if (texture == alongS)
                    seenAlongS += colorAt(image, along, side / 2);
                else
                    seenAlongT += colorAt(image, side / 2, side - 1 - along);
            }
        }
        EXPECT_EQ(seenAlongS, row.texels);
        EXPECT_EQ(seenAlongT, row.texels);
    }
}

} // namespace
