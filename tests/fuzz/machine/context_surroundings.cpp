#include "fuzz/machine/context_surroundings.hpp"

#include "fuzz/machine/context_operations.hpp"

namespace vellis::test {

ContextSurroundings::ContextSurroundings() {
    modelState(process());
    resetState();
    chooseContents(process());
    kept_.emplace();
    names_ = process().liveNames();
}

ContextSurroundings::~ContextSurroundings() {
    kept_.reset(); // which empties the registries
    gl_.ignoreTheRest();
}

const std::vector<Operation>& ContextSurroundings::operations() const {
    return operationsOfSeveralContexts();
}

void ContextSurroundings::begin(World& world, Bytes& bytes) {
    world.host = &host_;
    faults_.emplace();
    mayMemoryFail_ = bytes.below(4) == 3;
    chooseContents(process(), bytes);
}

void ContextSurroundings::beforeOperation(Bytes& bytes) {
    host_.forEachGl([](FakeContext& gl) { gl.setRecording(true); });
    faults_->begin(*host_.here().gl, bytes, mayMemoryFail_);
}

void ContextSurroundings::afterOperation() {
    host_.forEachGl([&](FakeContext& gl) { faults_->end(gl); });
}

void ContextSurroundings::settle(World& world) {
    host_.settle(world);
    host_.forEachGl([](FakeContext& gl) { gl.ignoreTheRest(); });
}

std::string ContextSurroundings::end(const std::set<std::string>&) {
    afterOperation();
    const bool areNamesLost = faults_->hasMemoryFailed();
    std::string problem = host_.end(*kept_, areNamesLost);
    resetState();
    process().forget();
    const std::vector<std::string> names = process().liveNames();
    if (problem.empty() && !areNamesLost)
        problem = strayNames("left: ", names, names_);
    if (problem.empty())
        problem = strayNames("deleted twice: ", process().doubleDeletes(), {});
    names_ = names; // each run begins like the first, also after one that went wrong
    process().forgetDeletedNames();
    return problem;
}

} // namespace vellis::test
