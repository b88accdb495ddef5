#include <vellis/shading/program_manager.hpp>

#include <cstring>
#include <string>

#include <vellis/detail/lasting.hpp>

#include "gl/context_state.hpp"
#include "gl/loader.hpp"
#include "shading/built_in_programs.hpp"

namespace vellis {
namespace {

/// The end of the process empties the registry.
struct Registry {
    static void release() {
        gl::enter(nullptr);
        ProgramManager::dispose();
    }
};

/// A source of a built-in program with \p preamble in the place of its first line.
std::string inCore(const char* preamble, const char* source) {
    std::string text;
    return text.append(preamble).append(std::strchr(source, '\n'));
}

/// What lookups that find nothing give.
const std::shared_ptr<Program>& none() {
    static detail::Lasting pointer([] { return std::shared_ptr<Program>(); });
    return *pointer;
}

} // namespace

ProgramManager& ProgramManager::instance() {
    struct Instance : detail::Lasting<ProgramManager> {
        Instance() : Lasting([] { return ProgramManager(); }) {}
    };
    if (gl::thread().state != nullptr)
        return *gl::thread().state->at<Instance>(gl::Slot::Programs);
    static Instance manager;
    detail::AtExit<Registry>::arm();
    return *manager;
}

ProgramManager::ProgramManager() : builtIns_(builtInPrograms.size()) {}

ProgramManager& ProgramManager::operator=(const ProgramManager& other) {
    if (this != &other) {
        auto builtIns = other.builtIns_;
        auto programs = other.programs_;
        builtIns_.swap(builtIns);
        programs_.swap(programs);
    }
    return *this;
}

ProgramManager::~ProgramManager() {
    dispose();
    clear();
}

Program* ProgramManager::add(const std::shared_ptr<Program>& program) {
    if (program == nullptr)
        return invalidId();
    if (gl::thread().state == nullptr)
        detail::AtExit<Registry>::arm();
    return programs_.try_emplace(program.get(), program).first->first;
}

void ProgramManager::remove(Program* program) {
    const auto released = programs_.extract(program);
}

const std::shared_ptr<Program>& ProgramManager::get(Program* program) const {
    const auto entry = programs_.find(program);
    return entry != programs_.end() ? entry->second : none();
}

const std::shared_ptr<Program>& ProgramManager::get(BuiltIn builtIn) const {
    const auto index = static_cast<std::size_t>(builtIn);
    if (index >= builtIns_.size())
        return none();
    std::shared_ptr<Program>& program = builtIns_[index];
    if (program == nullptr)
        program = makeBuiltIn(builtIn);
    return program;
}

void ProgramManager::dispose() {
    instance().clear();
}

void ProgramManager::clear() {
    {
        decltype(programs_) released;
        released.swap(programs_);
    }
    decltype(builtIns_) released;
    released.swap(builtIns_);
}

std::shared_ptr<Program> ProgramManager::makeBuiltIn(BuiltIn builtIn) {
    const auto index = static_cast<std::size_t>(builtIn);
    if (index >= builtInPrograms.size())
        return nullptr;
    const auto [vertex, fragment] = builtInPrograms[index];
    if (!loader::isCore())
        return Program::make(vertex, fragment);
    return Program::make(inCore(corePreambles.vertexSource, vertex).c_str(),
                         inCore(corePreambles.fragmentSource, fragment).c_str());
}

} // namespace vellis
