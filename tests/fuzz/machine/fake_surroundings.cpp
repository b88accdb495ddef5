#include "fuzz/machine/fake_surroundings.hpp"

namespace vellis::test {

FakeSurroundings::FakeSurroundings() {
    modelState(gl_);
    resetState();
    chooseContents(gl_);
    kept_.emplace();
    names_ = gl_.liveNames();
    gl_.forget();
}

FakeSurroundings::~FakeSurroundings() {
    kept_.reset(); // which empties the registries
    gl_.ignoreTheRest();
}

void FakeSurroundings::begin(World&, Bytes& bytes) {
    const unsigned int missing = bytes.below(4) == 3 ? bytes.next() : 0;
    if (missing != std::exchange(missing_, missing))
        setMissing(missing);
    chooseContents(gl_, bytes);
}

void FakeSurroundings::beforeOperation(Bytes& bytes) {
    gl_.setRecording(true);
    faults_.begin(gl_, bytes);
}

void FakeSurroundings::afterOperation() {
    faults_.end(gl_);
    gl_.ignoreTheRest(); // what the machine itself asks is nobody's to look at
}

std::string FakeSurroundings::end(const std::set<std::string>& copiedNames) {
    afterOperation();
    gl_.setRecording(true);
    kept_->restore();
    if (std::exchange(missing_, 0) != 0)
        setMissing(0);
    resetState();
    gl_.forget();
    std::string problem = strayNames("left: ", gl_.liveNames(), names_);
    if (problem.empty())
        problem = strayNames("deleted twice: ", gl_.doubleDeletes(),
                             {copiedNames.begin(), copiedNames.end()});
    gl_.forgetDeletedNames();
    return problem;
}

} // namespace vellis::test
