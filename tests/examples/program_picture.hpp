#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include <offscreen/image.hpp>

#include "support/run_program.hpp"

/// A test of the picture that a program leaves in the file that is its one argument.
class ProgramPicture : public ::testing::Test {
protected:
    /// \param isQuiet  Whether the program prints nothing on standard error.
    ProgramPicture(const char* program, unsigned int width, unsigned int height,
                   bool isQuiet = true)
        : program_(program),
          width_(width),
          height_(height),
          isQuiet_(isQuiet) {}

    void SetUp() override {
        const TemporaryFolder folder;
        const std::filesystem::path file = folder.path() / "picture.png";
        const Outcome run = runProgram(program_, quoted(file));
        ASSERT_TRUE(run.succeeded) << run.errors;
        EXPECT_EQ(run.output, file.string() + "\n");
        EXPECT_EQ(run.errors.empty(), isQuiet_) << run.errors;
        errors = run.errors;
        std::string error;
        ASSERT_TRUE(offscreen::readPng(file, picture, error)) << error;
        ASSERT_EQ(picture.width, width_);
        ASSERT_EQ(picture.height, height_);
    }

    /// Whether a pixel has a colour but for a driver's rounding.
    ::testing::AssertionResult hasColor(unsigned int x, unsigned int y, int red, int green,
                                        int blue) const {
        const unsigned char* pixel = picture.at(x, y);
        const int expected[] = {red, green, blue};
        for (int i = 0; i < 3; ++i) {
            if (std::abs(pixel[i] - expected[i]) > 12) {
                return ::testing::AssertionFailure()
                       << "at (" << x << ", " << y << ") the colour is (" << int{pixel[0]} << ", "
                       << int{pixel[1]} << ", " << int{pixel[2]} << ")";
            }
        }
        return ::testing::AssertionSuccess();
    }

    offscreen::Image picture;
    std::string errors; ///< what the program has printed on standard error

private:
    const char* program_;
    unsigned int width_;
    unsigned int height_;
    bool isQuiet_;
};
