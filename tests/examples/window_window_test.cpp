/// The gallery's panels in a window, as a user sees and handles them.

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <string>

#include <X11/keysym.h>
#include <gmock/gmock.h>

#include <gallery/frame/panel.hpp>
#include <gallery/frame/picture.hpp>

#include "examples/window_fixture.hpp"
#include "support/run_program.hpp"

namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Ne;
using ::testing::Optional;
using ::testing::SizeIs;
using ::testing::StartsWith;

constexpr unsigned int panelSize = gallery::panelSize;

const gallery::Panel& panelNamed(const std::string& name) {
    return *std::find_if(gallery::panels().begin(), gallery::panels().end(),
                         [&](const gallery::Panel& panel) { return panel.name == name; });
}

/// A place in a window.
struct Place {
    unsigned int left;
    unsigned int top;
};

/// A part of a picture that is as wide as high.
offscreen::Image cutOut(const offscreen::Image& image, Place place, unsigned int side) {
    offscreen::Image part(side, side);
    for (unsigned int row = 0; row < side; ++row)
        std::copy_n(image.at(place.left, place.top + row), std::size_t{4} * side, part.at(0, row));
    return part;
}

bool hasColor(const offscreen::Image& image, unsigned int x, unsigned int y, gallery::Color color) {
    const unsigned char* pixel = image.at(x, y);
    return std::abs(pixel[0] - color.red) <= 2 && std::abs(pixel[1] - color.green) <= 2 &&
           std::abs(pixel[2] - color.blue) <= 2;
}

class WindowProgram : public WindowTest {
protected:
    WindowProgram() : WindowTest(VELLIS_WINDOW_PROGRAM) {}

    /// Waits until the window shows a panel, many times as large as it is.
    void expectPanel(const gallery::Panel& panel, unsigned int times, Place place = {0, 0}) {
        std::vector<std::string> failures = {"The window has another size."};
        eventuallyShows([&](const offscreen::Image& image) {
            const unsigned int side = times * panelSize;
            if (image.width != 2 * place.left + side || image.height != 2 * place.top + side)
                return false;
            failures =
                gallery::check(panel, gallery::scaledDown(cutOut(image, place, side), times));
            return failures.empty();
        });
        EXPECT_THAT(failures, IsEmpty());
    }

    void expectTitle(const std::string& expected) {
        EXPECT_TRUE(eventually([&] { return title() == expected; })) << title();
    }

    /// Presses a key and waits until the program has done what it does.
    /// \return what it has written to standard error since the start.
    std::vector<std::string> errorsAfter(unsigned long keySymbol) {
        const std::size_t before = program->output().size();
        press(keySymbol);
        press(XK_h); // prints the help
        EXPECT_TRUE(eventually([&] { return program->output().size() > before; }));
        return lines(program->errors());
    }
};

TEST_F(WindowProgram, ShowsEveryPanelOneAfterTheOther) {
    start();
    resize(2 * panelSize, 2 * panelSize);
    for (const gallery::Panel& panel : gallery::panels()) {
        SCOPED_TRACE(panel.name);
        expectPanel(panel, 2);
        EXPECT_THAT(title(), StartsWith(std::string(panel.caption) + " - "));
        press(XK_Right);
    }
    expectPanel(gallery::panels().front(), 2);
    press(XK_Left);
    expectPanel(gallery::panels().back(), 2);
    client->requestClose(window);
    expectToEnd();
}

TEST_F(WindowProgram, SaysWhatItsKeysDo) {
    start();
    const auto isWhole = [this] { return program->output().find("Escape") != std::string::npos; };
    EXPECT_TRUE(eventually(isWhole));
    const std::string help = program->output();
    EXPECT_THAT(help, AllOf(HasSubstr("Left, Right "), HasSubstr("\nUp, Down "),
                            HasSubstr("\n1 to 9, 0 "), HasSubstr("\nD "), HasSubstr("\nH ")));
    press(XK_h);
    EXPECT_TRUE(eventually([&] { return program->output() == help + help; })) << program->output();
}

TEST_F(WindowProgram, GoesToGroupsAndToPanelsOfAGroup) {
    start();
    const std::vector<gallery::Group>& groups = gallery::groups();
    press(XK_Down);
    expectPanel(groups[1].panels[0], 3);
    press(XK_3);
    expectPanel(groups[1].panels[2], 3);
    press(XK_0);
    expectPanel(groups[1].panels[9], 3);
    press(XK_1);
    expectPanel(groups[1].panels[0], 3);
    press(XK_Up);
    expectPanel(groups[0].panels[0], 3);
    press(XK_Up);
    expectPanel(groups.back().panels[0], 3);
    press(XK_Down);
    expectPanel(groups[0].panels[0], 3);
}

TEST_F(WindowProgram, CountsThePanelsInItsTitle) {
    start();
    const std::string count = std::to_string(gallery::panels().size());
    expectTitle("smooth triangle - Drawing (1 of " + count + ")");
    press(XK_Left);
    expectTitle(gallery::panels().back().caption +
                (" - Framebuffers (" + count + " of " + count + ")"));
}

TEST_F(WindowProgram, StartsWithThePanelThatIsNamed) {
    const gallery::Group& group = gallery::groups()[3];
    const gallery::Panel& panel = group.panels[1];
    start({panel.name});
    EXPECT_THAT(title(), HasSubstr(std::string(" - ") + group.heading + " ("));
    expectPanel(panel, 3);
}

TEST_F(WindowProgram, FitsThePanelIntoTheMiddleOfAnyWindow) {
    start();
    const gallery::Panel& panel = gallery::panels().front();
    const gallery::Color beside = gallery::palette::sheet;
    expectPanel(panel, 3);
    resize(2 * panelSize + 200, 2 * panelSize);
    expectPanel(panel, 2, {100, 0});
    const offscreen::Image wide = capture();
    EXPECT_TRUE(hasColor(wide, 0, 0, beside));
    EXPECT_TRUE(hasColor(wide, 99, 2 * panelSize - 1, beside));
    EXPECT_TRUE(hasColor(wide, 100, 100, gallery::palette::paper));
    EXPECT_TRUE(hasColor(wide, 2 * panelSize + 99, 100, gallery::palette::paper));
    EXPECT_TRUE(hasColor(wide, 2 * panelSize + 100, 100, beside));
    resize(panelSize, panelSize + 300);
    expectPanel(panel, 1, {0, 150});
    EXPECT_TRUE(hasColor(capture(), 100, 149, beside));
    EXPECT_TRUE(hasColor(capture(), 100, panelSize + 150, beside));
    resize(5 * panelSize, 5 * panelSize);
    expectPanel(panel, 5);
    resize(1, 1);
    EXPECT_TRUE(eventuallyShows([](const offscreen::Image& image) { return image.width == 1; }));
    resize(3 * panelSize, 3 * panelSize);
    expectPanel(panel, 3);
}

TEST_F(WindowProgram, ShowsPixelsAsSquaresWherePanelsAreAboutPixels) {
    start({"multisample"});
    const auto isTripled = [](const offscreen::Image& image) {
        for (unsigned int y = 0; y < image.height; ++y) {
            for (unsigned int x = 0; x < image.width; ++x) {
                if (!std::equal(image.at(x, y), image.at(x, y) + 4, image.at(x - x % 3, y - y % 3)))
                    return false;
            }
        }
        return image.width > 0;
    };
    expectPanel(panelNamed("multisample"), 3);
    EXPECT_TRUE(isTripled(capture()));
}

TEST_F(WindowProgram, IsAsManyTimesAsLargeAsTheScreenWants) {
    client->setResources("Xft.dpi:\t192\n"); // twice the usual
    start();
    expectPanel(gallery::panels().front(), 6);
}

TEST_F(WindowProgram, PrintsWhichStatesHaveChanged) {
    start();
    expectPanel(gallery::panels().front(), 3);
    const std::vector<std::string> sinceStart = errorsAfter(XK_d);
    EXPECT_THAT(sinceStart, Contains(HasSubstr(": COLOR_CLEAR_VALUE = 0, 0, 0, 0 -> 0.933333, ")));
    EXPECT_THAT(errorsAfter(XK_d), SizeIs(sinceStart.size())) << "nothing has changed";

    resize(2 * panelSize + 200, 2 * panelSize);
    expectPanel(gallery::panels().front(), 2, {100, 0});
    const std::vector<std::string> afterwards = errorsAfter(XK_d);
    ASSERT_THAT(afterwards, SizeIs(sinceStart.size() + 1));
    EXPECT_THAT(afterwards.back(), EndsWith(": VIEWPORT = 0, 0, 720, 720 -> 100, 0, 480, 480"));
}

TEST_F(WindowProgram, PrintsAllStates) {
    start();
    expectPanel(gallery::panels().front(), 3);
    const std::vector<std::string> states = errorsAfter(XK_p);
    EXPECT_THAT(states, SizeIs(57));
    EXPECT_THAT(states, Contains(EndsWith(": VIEWPORT = 0, 0, 720, 720")));
    press(XK_Right);
    expectPanel(gallery::panels()[1], 3); // no error that printing leaves is held against it
}

TEST_F(WindowProgram, EndsWhenItsWindowIsClosed) {
    start();
    client->requestClose(window);
    expectToEnd();
    EXPECT_THAT(lines(program->output()), SizeIs(7)) << "the help, once";
}

TEST_F(WindowProgram, EndsAtAKey) {
    for (const auto key : std::initializer_list<unsigned long>{XK_Escape, XK_q}) {
        start();
        press(key);
        expectToEnd();
    }
}

TEST_F(WindowProgram, NamesTheVersionThatIsNeeded) {
    launch({}, {"MESA_GL_VERSION_OVERRIDE=1.4"});
    EXPECT_THAT(program->wait(), Optional(Ne(0)));
    EXPECT_EQ(program->output(), "");
    EXPECT_THAT(lines(program->errors()), ElementsAre(HasSubstr("OpenGL 2.1")));
}

TEST_F(WindowProgram, NamesTheExtensionsThatAreMissing) {
    launch({}, {"MESA_GL_VERSION_OVERRIDE=2.1", "MESA_EXTENSION_MAX_YEAR=2005"});
    EXPECT_THAT(program->wait(), Optional(Ne(0)));
    EXPECT_EQ(program->output(), "");
    EXPECT_THAT(
        lines(program->errors()),
        ElementsAre(HasSubstr(" lacks GL_ARB_vertex_array_object, GL_ARB_map_buffer_range: ")));
}

TEST_F(WindowProgram, NeedsNoMoreThan21WithTheExtensions) {
    launch({}, {"MESA_GL_VERSION_OVERRIDE=2.1", "MESA_GLSL_VERSION_OVERRIDE=120",
                "MESA_SHADER_CACHE_DISABLE=true"});
    waitForWindow();
    expectPanel(gallery::panels().front(), 3);
    press(XK_p);
    press(XK_Right);
    expectPanel(gallery::panels()[1], 3);
}

/// What goes wrong before there is a window.
class WindowProgramFailure : public ::testing::Test {
protected:
    static std::string sentenceOf(const std::string& arguments,
                                  const std::vector<std::string>& environment = {}) {
        const Outcome run = runProgram(VELLIS_WINDOW_PROGRAM, arguments, environment);
        EXPECT_FALSE(run.succeeded);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(lines(run.errors), SizeIs(1)) << run.errors;
        return run.errors;
    }
};

TEST_F(WindowProgramFailure, SaysThatThereIsNoScreen) {
    EXPECT_THAT(sentenceOf("", {"DISPLAY", "WAYLAND_DISPLAY"}),
                AllOf(StartsWith("No window can be opened ("), HasSubstr("DISPLAY")));
    EXPECT_THAT(sentenceOf("", {"DISPLAY=:nowhere", "WAYLAND_DISPLAY"}),
                AllOf(StartsWith("No window can be opened ("), HasSubstr(":nowhere")));
}

TEST_F(WindowProgramFailure, SaysWhichPanelsThereAre) {
    EXPECT_THAT(sentenceOf("pie"),
                AllOf(StartsWith("There is no panel \"pie\"; there are triangle, "),
                      EndsWith(", blending-equations.\n")));
}

TEST_F(WindowProgramFailure, SaysHowItIsUsed) {
    EXPECT_EQ(sentenceOf("one two"), "Usage: vellis_window [name of the first panel]\n");
}

} // namespace
