#pragma once

#include <memory>
#include <type_traits>
#include <vector>

#include "workloads/shaders.hpp"

/// \file
/// What is measured: operations written once in GL by hand and once through the library.

namespace vellis::bench {

/// One way to do a workload's operation, ready to run: what is made only once is there.
class Side {
public:
    Side() = default;
    virtual ~Side() = default;
    Side(const Side&) = delete;
    Side& operator=(const Side&) = delete;

    /// Does the operation once. It leaves GL as it found it, so that sides may take turns.
    virtual void run() = 0;
};

/// Makes a side for a workload of that size. A GL context or the NullDriver is current.
using MakeSide = std::unique_ptr<Side> (*)(unsigned int size);

/// A MakeSide of a class whose objects are called to do the operation, and that is constructed from
/// the size or from nothing.
template <class Operation>
std::unique_ptr<Side> makeSide([[maybe_unused]] unsigned int size) {
    struct OperationSide final : Side {
        explicit OperationSide([[maybe_unused]] unsigned int operationSize)
            : operation([&] {
                  if constexpr (std::is_constructible_v<Operation, unsigned int>)
                      return Operation(operationSize);
                  else
                      return Operation();
              }()) {}
        void run() override { operation(); }
        Operation operation;
    };
    return std::make_unique<OperationSide>(size);
}

/// Draws one after the other, each with a program of its own: GL cannot keep a program in use.
template <class Draw>
class Alternating {
public:
    void operator()() {
        first_();
        second_();
    }

private:
    Draw first_;
    Draw second_;
};

/// A library that does the operation, or GL itself.
struct Implementation {
    const char* library; ///< "raw", "vellis" or another library's name
    MakeSide make;
};

/// Where a workload tells something.
enum class Where {
    NullDriver, ///< without a driver only: no GL call takes its time
    Driver,     ///< with a driver only: its work is the point
    Both,
};

/// Whether raw GL and the library make the same GL calls. Where they do, the difference is what the
/// library costs; a test holds it.
enum class Calls { Same, Different };

/// An operation to measure.
struct Workload {
    const char* name;        ///< family/operation: "draw/handles"
    const char* description; ///< what one operation does, in a few words
    /// "raw" first, then "vellis", then others.
    std::vector<Implementation> implementations;
    Where where = Where::Both;
    Calls calls = Calls::Same;
    /// How much of something there is: one size for a plain workload, several for a curve of
    /// growth.
    std::vector<unsigned int> sizes = {1};
    /// The active uniforms and attributes that programs report on the null driver.
    Variables (*uniforms)(unsigned int size) = flatUniforms;
    Variables (*attributes)() = flatAttributes;
};

/// All workloads of the library.
std::vector<Workload> workloads();

} // namespace vellis::bench
