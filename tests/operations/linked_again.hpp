#pragma once

#include <vellis/shading.hpp>

namespace vellis::test {

/// A program of an application's own that links more than once.
class LinkedAgain : public Program {
public:
    LinkedAgain() : Program(VertexShader::make(""), FragmentShader::make("")) {}
    using Program::link;
};

} // namespace vellis::test
