/// Drawing with values of uniforms in one call.

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/shading/program.hpp>
#include <vellis/texture/texture_2d.hpp>

#include "support/allocation_count.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using vellis::test::FakeGl;
using Lines = std::vector<std::string>;

const glm::vec4 ink(0.5f, 0.25f, 1.f, 0.75f);

/// A drawable of 12 vertices.
class Shape : public Drawable {
public:
    explicit Shape(std::shared_ptr<VertexAttributesBinding> binding)
        : Drawable(PrimitiveType::Triangles) {
        numVertices_ = 12;
        attributesBinding_ = std::move(binding);
    }
};

/// Program 3, a shape with vertex array object 4, indices and a texture.
class DrawValuesTrace : public testing::Test {
protected:
    DrawValuesTrace() {
        gl.setActiveUniforms({{"color", GL_FLOAT_VEC4, 1, 20},
                              {"radius", GL_FLOAT, 1, 21},
                              {"count", GL_INT, 1, 22},
                              {"weights[0]", GL_FLOAT, 3, 23},
                              {"first", GL_SAMPLER_2D, 1, 24},
                              {"image", GL_SAMPLER_2D, 1, 25}});
        program = Program::make("v", "f");
        program->beginAttributesBinding();
        shape = std::make_unique<Shape>(program->finishAttributesBinding());
        indices = IndexBuffer<unsigned short>::make(10, BufferUsage::Static, BufferAccess::Draw);
        texture = Texture2D<glm::u8vec4>::make(Sampler());
        gl.forget();
    }
    ~DrawValuesTrace() override {
        EXPECT_GL_CALLS(gl); // every test looks at all calls of its own
        gl.ignoreTheRest();
    }

    /// What a draw calls around these lines.
    static Lines drawn(Lines lines) {
        lines.insert(lines.begin(), {"glUseProgram(3)", "glBindVertexArray(4)"});
        lines.insert(lines.end(), {"glBindVertexArray(0)", "glUseProgram(0)"});
        return lines;
    }

    /// What drawing with indices calls.
    template <class T>
    static Lines indexed(const IndexBuffer<T>& buffer, const std::string& arguments) {
        return {"glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, " + std::to_string(buffer.id()) + ")",
                "glDrawElements(GL_TRIANGLES, " + arguments + ")",
                "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0)"};
    }

    FakeGl gl;
    std::shared_ptr<Program> program;
    std::unique_ptr<Shape> shape;
    std::shared_ptr<IndexBuffer<unsigned short>> indices;
    std::shared_ptr<Texture2D<glm::u8vec4>> texture;

    const std::string colorCall = "glUniform4fv(20, 1, {0.5, 0.25, 1, 0.75})";
};

TEST_F(DrawValuesTrace, ValuesAreSetInOrderBetweenTheBindingAndTheDraw) {
    auto& radius = program->getUniform<float>("radius");
    radius.value = 3.f;
    program->draw(*shape, radius, Uniform("color", ink), Uniform("count", 7));
    EXPECT_GL_CALLS(gl, drawn({"glUniform1f(21, 3)", colorCall, "glUniform1i(22, 7)",
                               "glDrawArrays(GL_TRIANGLES, 0, 12)"}));
    EXPECT_FALSE(program->isBound());
    EXPECT_EQ(shape->getAttributesBinding().use_count(), 1);
}

TEST_F(DrawValuesTrace, PartOfTheVerticesIsDrawn) {
    program->draw(*shape, 3, 6, Uniform("color", ink));
    EXPECT_GL_CALLS(gl, drawn({colorCall, "glDrawArrays(GL_TRIANGLES, 3, 6)"}));
    program->draw(*shape, 3u, 0u, Uniform("color", ink));
    EXPECT_GL_CALLS(gl, drawn({colorCall, "glDrawArrays(GL_TRIANGLES, 3, 9)"}));
}

TEST_F(DrawValuesTrace, IndicesOfEachTypeAreDrawn) {
    const auto check = [this](auto index, const std::string& type) {
        using T = decltype(index);
        const auto buffer = IndexBuffer<T>::make(10, BufferUsage::Static, BufferAccess::Draw);
        gl.forget();
        program->draw(*shape, *buffer, Uniform("color", ink));
        Lines expected = indexed(*buffer, "10, " + type + ", 0");
        expected.insert(expected.begin(), colorCall);
        EXPECT_GL_CALLS(gl, drawn(expected));
        program->draw(*shape, *buffer, 4, 3, Uniform("color", ink));
        expected = indexed(*buffer, "3, " + type + ", " + std::to_string(4 * sizeof(T)));
        expected.insert(expected.begin(), colorCall);
        EXPECT_GL_CALLS(gl, drawn(expected));
        buffer->dispose();
        gl.forget();
    };
    check(static_cast<unsigned char>(0), "GL_UNSIGNED_BYTE");
    check(static_cast<unsigned short>(0), "GL_UNSIGNED_SHORT");
    check(0u, "GL_UNSIGNED_INT");
}

TEST_F(DrawValuesTrace, NumbersAndIndicesAloneMeanWhatTheyDoWithoutValues) {
    enum Row { third = 3 };
    program->draw(*shape);
    program->draw(*shape, 3);
    program->draw(*shape, third);
    program->draw(*shape, 3, 6);
    const Program& constant = *program;
    constant.draw(*shape, 3u);
    Lines expected;
    for (const char* const arguments : {"0, 12", "3, 9", "3, 9", "3, 6", "3, 9"}) {
        const Lines one = drawn({std::string("glDrawArrays(GL_TRIANGLES, ") + arguments + ")"});
        expected.insert(expected.end(), one.begin(), one.end());
    }
    EXPECT_GL_CALLS(gl, expected);
    program->draw(*shape, *indices);
    EXPECT_GL_CALLS(gl, drawn(indexed(*indices, "10, GL_UNSIGNED_SHORT, 0")));
    program->draw(*shape, *indices, 4);
    EXPECT_GL_CALLS(gl, drawn(indexed(*indices, "6, GL_UNSIGNED_SHORT, 8")));
    constant.draw(*shape, *indices, 4, 2);
    EXPECT_GL_CALLS(gl, drawn(indexed(*indices, "2, GL_UNSIGNED_SHORT, 8")));
}

TEST_F(DrawValuesTrace, TextureIsBoundOnTheUnitOfItsSampler) {
    const Lines expected =
        drawn({"glUniform1i(25, 1)", "glActiveTexture(GL_TEXTURE1)",
               "glBindTexture(GL_TEXTURE_2D, " + std::to_string(texture->id()) + ")",
               "glDrawArrays(GL_TRIANGLES, 0, 12)"});
    program->draw(*shape, Uniform("image", *texture));
    EXPECT_GL_CALLS(gl, expected);
    const Texture& base = *texture;
    program->draw(*shape, Uniform("image", base));
    EXPECT_GL_CALLS(gl, expected);
    const Uniform<Texture> kept("image", texture.get());
    program->draw(*shape, kept);
    EXPECT_GL_CALLS(gl, expected);
    auto& handle = program->getUniformTexture("image");
    EXPECT_EQ(handle.texture, nullptr); // a value by name is not kept
    handle.texture = texture.get();
    program->draw(*shape, handle);
    EXPECT_GL_CALLS(gl, expected);
}

TEST_F(DrawValuesTrace, ValueByNameIsNotKeptInTheProgramsHandle) {
    program->draw(*shape, Uniform("color", ink));
    EXPECT_EQ(program->getUniform<glm::vec4>("color").value, glm::vec4(0.f));
    gl.forget();
}

TEST_F(DrawValuesTrace, NamesThatTheProgramLacksSetNothing) {
    const auto draw = [](const std::string& line) {
        return drawn({line, "glDrawArrays(GL_TRIANGLES, 0, 12)"});
    };
    const Uniform kept("unknown", 2.f);
    program->draw(*shape, kept);
    EXPECT_GL_CALLS(gl, draw("glUniform1f(-1, 2)"));
    program->draw(*shape, Uniform("unknown", 2.f));
    EXPECT_GL_CALLS(gl, draw("glUniform1f(-1, 2)"));
    program->draw(*shape, Uniform(static_cast<const char*>(nullptr), 2.f));
    EXPECT_GL_CALLS(gl, draw("glUniform1f(-1, 2)"));
    program->draw(*shape, Uniform("radius", 2)); // another type
    EXPECT_GL_CALLS(gl, draw("glUniform1i(-1, 2)"));
    program->draw(*shape, program->getUniform<float>("unknown"));
    EXPECT_GL_CALLS(gl, draw("glUniform1f(-1, 0)"));
    program->draw(*shape, Uniform("unknown", *texture));
    EXPECT_GL_CALLS(gl, drawn({"glDrawArrays(GL_TRIANGLES, 0, 12)"}));
}

TEST_F(DrawValuesTrace, HandleGoesToItsLocationAlsoAsACopy) {
    auto& radius = program->getUniform<float>("radius");
    radius.value = 3.f;
    program->draw(*shape, Uniform<float>(radius));
    EXPECT_GL_CALLS(gl, drawn({"glUniform1f(21, 3)", "glDrawArrays(GL_TRIANGLES, 0, 12)"}));
    program->draw(*shape, std::move(radius)); // which takes nothing away
    EXPECT_GL_CALLS(gl, drawn({"glUniform1f(21, 3)", "glDrawArrays(GL_TRIANGLES, 0, 12)"}));
    EXPECT_EQ(radius.value, 3.f);
}

TEST_F(DrawValuesTrace, HandleOfANameServesManyDraws) {
    Uniform weights("weights", std::vector<float>{1.f, 2.f});
    program->draw(*shape, weights);
    weights.value.push_back(3.f);
    program->draw(*shape, std::as_const(weights));
    Lines expected = drawn({"glUniform1fv(23, 2, {1, 2})", "glDrawArrays(GL_TRIANGLES, 0, 12)"});
    const Lines second =
        drawn({"glUniform1fv(23, 3, {1, 2, 3})", "glDrawArrays(GL_TRIANGLES, 0, 12)"});
    expected.insert(expected.end(), second.begin(), second.end());
    EXPECT_GL_CALLS(gl, expected);
}

TEST_F(DrawValuesTrace, ValueSaysItsTypeToTheHandle) {
    static_assert(std::is_same_v<decltype(Uniform("n", 3)), Uniform<int>>);
    static_assert(std::is_same_v<decltype(Uniform("n", 3u)), Uniform<unsigned int>>);
    static_assert(std::is_same_v<decltype(Uniform("n", ink)), Uniform<glm::vec4>>);
    static_assert(std::is_same_v<decltype(Uniform("n", glm::mat4(1.f))), Uniform<glm::mat4>>);
    static_assert(
        std::is_same_v<decltype(Uniform("n", std::vector<float>())), Uniform<std::vector<float>>>);
    static_assert(std::is_same_v<decltype(Uniform("n", *texture)), Uniform<Texture>>);
    static_assert(
        std::is_same_v<decltype(Uniform("n", std::declval<const Texture&>())), Uniform<Texture>>);
    const Uniform image("image", *texture);
    EXPECT_EQ(image.texture, texture.get());
    EXPECT_EQ(Uniform<Texture>("image").texture, nullptr);
}

/// A drawable that does not come to its end.
class Interrupted : public Shape {
public:
    using Shape::Shape;
    void draw(unsigned int, unsigned int) const override {
        throw std::runtime_error("interrupted");
    }
};

TEST_F(DrawValuesTrace, ExceptionOfADrawableLeavesNothingBound) {
    const Interrupted interrupted(shape->getAttributesBinding());
    EXPECT_THROW(program->draw(interrupted, Uniform("color", ink)), std::runtime_error);
    EXPECT_GL_CALLS(gl, drawn({colorCall}));
    EXPECT_FALSE(program->isBound());
}

TEST_F(DrawValuesTrace, NothingIsAllocatedForNumbersAndTextures) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    gl.setRecording(false);
    const std::size_t before = vellis::test::allocationCount();
    program->draw(*shape, Uniform("color", ink), Uniform("image", *texture));
    EXPECT_EQ(vellis::test::allocationCount() - before, 0u);
}

} // namespace
