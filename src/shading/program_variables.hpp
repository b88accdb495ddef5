#pragma once

#include <cstring>
#include <map>
#include <memory>
#include <string>

#include <vellis/shading/attrib.hpp>
#include <vellis/shading/program.hpp>
#include <vellis/shading/uniform.hpp>

namespace vellis {

/// Orders names byte by byte, and finds them without making strings of them.
struct NameLess {
    using is_transparent = void;

    bool operator()(const std::string& a, const std::string& b) const {
        return std::strcmp(a.c_str(), b.c_str()) < 0;
    }
    bool operator()(const std::string& a, const char* b) const {
        return std::strcmp(a.c_str(), b) < 0;
    }
    bool operator()(const char* a, const std::string& b) const {
        return std::strcmp(a, b.c_str()) < 0;
    }
};

/// The handles of a program's active uniforms and attributes by name.
struct Program::Variables {
    std::map<std::string, std::shared_ptr<UniformVariable>, NameLess> uniforms;
    std::map<std::string, std::shared_ptr<Attrib>, NameLess> attributes;
};

} // namespace vellis
