/// The five mistakes, what is printed of them, and the page that shows it.

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "examples/program_picture.hpp"

namespace {

using ::testing::HasSubstr;

class DiagnoseProgram : public ProgramPicture {
protected:
    DiagnoseProgram() : ProgramPicture(VELLIS_DIAGNOSE_PROGRAM, 600, 200, false) {}
};

TEST_F(DiagnoseProgram, LeakSpoilsTheSecondFrame) {
    EXPECT_TRUE(hasColor(80, 120, 38, 69, 99)) << "a bar of the first frame";
    EXPECT_TRUE(hasColor(380, 120, 255, 255, 255)) << "the same bar of the second frame";
    EXPECT_TRUE(hasColor(20, 20, 250, 247, 242)) << "the paper of the first frame";
    EXPECT_TRUE(hasColor(320, 20, 250, 247, 242)) << "the paper of the second frame";
}

TEST_F(DiagnoseProgram, DiffNamesTheLeak) {
    EXPECT_THAT(errors, HasSubstr("Corvane DIFF : BLEND = false -> true\n"
                                  "Corvane DIFF : BLEND_SRC_RGB = 1 -> 770\n"
                                  "Corvane DIFF : BLEND_DST_RGB = 0 -> 1\n"
                                  "Corvane DIFF : BLEND_SRC_ALPHA = 1 -> 770\n"
                                  "Corvane DIFF : BLEND_DST_ALPHA = 0 -> 1\n"
                                  "---"))
        << "and nothing else";
}

TEST_F(DiagnoseProgram, DumpsNameTheOtherMistakes) {
    EXPECT_THAT(errors, HasSubstr("triangle: GL_INVALID_VALUE\n"));
    EXPECT_THAT(errors, HasSubstr("name = position, type = GL_FLOAT_VEC2\n"));
    EXPECT_THAT(errors, HasSubstr("Shader Compilation: "));
    EXPECT_THAT(errors, HasSubstr("  15:     OUT0 = colour;\n"));
    EXPECT_THAT(errors, HasSubstr("framebuffer: GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT\n"
                                  "framebuffer: GL_INVALID_FRAMEBUFFER_OPERATION\n"));
}

TEST_F(DiagnoseProgram, DifferencesNameTheUnit) {
    EXPECT_THAT(errors, HasSubstr("--- A texture unit that stays active\n"
                                  "mix: GL_ACTIVE_TEXTURE: GL_TEXTURE0 -> GL_TEXTURE1\n"));
    EXPECT_THAT(errors, ::testing::EndsWith("GL_TEXTURE1\n")) << "and nothing else";
}

/// The blocks of a page that show output.
std::vector<std::string> outputBlocks(const std::string& page) {
    const std::string begin = "```text\n";
    const std::string end = "```";
    std::vector<std::string> blocks;
    for (std::size_t at = page.find(begin); at != std::string::npos; at = page.find(begin, at)) {
        at += begin.size();
        blocks.push_back(page.substr(at, page.find(end, at) - at));
    }
    return blocks;
}

TEST_F(DiagnoseProgram, PageShowsTheTrueOutput) {
    const std::vector<std::string> blocks = outputBlocks(contents(VELLIS_DIAGNOSE_PAGE));
    ASSERT_EQ(blocks.size(), 5u);
    // The wording of a shader's log is the driver's: the page has Mesa's.
    const bool isMesa = errors.find("0:15(18): error: `colour' undeclared") != std::string::npos;
    for (const std::string& block : blocks) {
        if (isMesa || block.find("Shader Compilation") == std::string::npos) {
            EXPECT_THAT(errors, HasSubstr(block));
        }
    }
}

} // namespace
