/// Random sequences of calls on the driver: see fuzz/machine/state_machine.hpp.

#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "fuzz/machine/state_machine.hpp"
#include "support/render_test.hpp"

namespace {

using namespace vellis;

/// A driver, which the machine does not make fail, and whose names it does not know.
class Driver : public test::Surroundings {
public:
    Driver() : programs_(ProgramManager::instance()), buffer_(Toolbox::getVertexBuffer()) {}

    void begin(test::World& world, test::Bytes&) override { world.isOnDriver = true; }

    std::string end(const std::set<std::string>&) override {
        for (int i = 0; i < test::mostGenerations; ++i) {
            ProgramManager::instance() = programs_;
            BufferObjectManager::dispose();
        }
        BufferObjectManager::instance().add(buffer_);
        Framebuffer::bind(0);
        return "";
    }

private:
    const ProgramManager programs_;
    const std::shared_ptr<BufferObject> buffer_;
};

class StateMachineRender : public RenderTest {
protected:
    // Without vertex array objects, GL would draw from buffers that are gone.
    StateMachineRender() : RenderTest(64, {Extension::VertexArrays}) {}
};

TEST_F(StateMachineRender, KeepsEveryPromiseForRandomInputs) {
    constexpr int numInputs = 8;
    constexpr std::size_t numSteps = 500;
    std::mt19937 random(1);
    {
        Driver driver;
        for (int i = 0; i < numInputs; ++i) {
            std::vector<std::uint8_t> input(16 * numSteps);
            for (std::uint8_t& byte : input)
                byte = static_cast<std::uint8_t>(random());
            const std::string problem =
                test::runStateMachine({input.data(), input.size()}, driver, numSteps);
            ASSERT_EQ(problem, "") << "input " << i;
        }
    }
    while (internal::check_glerror() != nullptr) {
    }
}

} // namespace
