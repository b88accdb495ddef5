#pragma once

#include <array>
#include <memory>
#include <type_traits>
#include <utility>

#include <vellis/gl.hpp>

#include "support/gl_entry_points.hpp"

namespace vellis::test {

/// What answers the calls of one entry point, of whatever type.
class AnyAnswer {
public:
    AnyAnswer() = default;
    virtual ~AnyAnswer() = default;
    AnyAnswer(const AnyAnswer&) = delete;
    AnyAnswer& operator=(const AnyAnswer&) = delete;
};

/// What answers the calls of an entry point of that type.
template <class Result, class... Parameters>
class Answer : public AnyAnswer {
public:
    virtual Result operator()(Parameters... parameters) = 0;
};

/// An answer that is a function object.
template <class Function, class Result, class... Parameters>
class FunctionAnswer final : public Answer<Result, Parameters...> {
public:
    explicit FunctionAnswer(Function function) : function_(std::move(function)) {}
    Result operator()(Parameters... parameters) override {
        // A cast, since the enumerators that functions return are ints.
        return static_cast<Result>(function_(parameters...));
    }

private:
    Function function_;
};

/// The answers to all entry points. Where there is none, a call gives 0 or null.
class AnswerTable {
public:
    /// Answers calls of \p entryPoint (`glad_glBindBuffer`) with \p function, which takes the same
    /// arguments.
    template <class Result, class... Parameters, class Function>
    void set(Result(GLAD_API_PTR*& entryPoint)(Parameters...), Function function) {
        static_assert(std::is_invocable_r_v<Result, Function&, Parameters...>,
                      "The answer must take the entry point's arguments and give its result.");
        answers_[index(entryPointAt(&entryPoint))] =
            std::make_unique<FunctionAnswer<Function, Result, Parameters...>>(std::move(function));
    }

    AnyAnswer* operator[](EntryPoint entryPoint) const { return answers_[index(entryPoint)].get(); }

private:
    std::array<std::unique_ptr<AnyAnswer>, entryPointCount> answers_;
};

} // namespace vellis::test
