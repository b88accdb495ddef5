#include <vellis/shading/program_manager.hpp>

#include "shading/built_in_programs.hpp"

namespace vellis {
namespace {

/// What lookups that find nothing give.
const std::shared_ptr<Program>& none() {
    static const std::shared_ptr<Program> pointer;
    return pointer;
}

} // namespace

ProgramManager& ProgramManager::instance() {
    static ProgramManager manager;
    return manager;
}

ProgramManager::ProgramManager() : builtIns_(builtInPrograms.size()) {}

ProgramManager::~ProgramManager() {
    dispose();
}

Program* ProgramManager::add(const std::shared_ptr<Program>& program) {
    if (program == nullptr)
        return invalidId();
    return programs_.try_emplace(program.get(), program).first->first;
}

void ProgramManager::remove(Program* program) {
    programs_.erase(program);
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
    instance().programs_.clear();
    instance().builtIns_.clear();
}

std::shared_ptr<Program> ProgramManager::makeBuiltIn(BuiltIn builtIn) {
    const auto index = static_cast<std::size_t>(builtIn);
    if (index >= builtInPrograms.size())
        return nullptr;
    return Program::make(builtInPrograms[index].vertexSource,
                         builtInPrograms[index].fragmentSource);
}

} // namespace vellis
