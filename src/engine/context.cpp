#include <vellis/context.hpp>

#include <utility>

#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/engine/debug_output.hpp>
#include <vellis/shading/program_manager.hpp>

#include "gl/context_state.hpp"

namespace vellis {
namespace {

/// Releases what the Context in use has in its registries and beside. Objects may put others into
/// the registries as they end: they get as many rounds as at the end of the process.
void empty(gl::ContextState& state) {
    for (int round = 0; round < 4; ++round) {
        if (state.has(gl::Slot::Programs))
            ProgramManager::dispose();
        if (state.has(gl::Slot::Buffers))
            BufferObjectManager::dispose();
    }
    state.emptySlots();
}

/// What use() does where it cannot.
bool refuse() {
    gl::enterWithEntryPoints(nullptr);
    return false;
}

} // namespace

std::shared_ptr<Context> Context::make(Lookup lookup) {
    return make(nullptr, lookup);
}

std::shared_ptr<Context> Context::make(const Context& other, Lookup lookup) {
    return make(&other, lookup);
}

std::shared_ptr<Context> Context::make(const Context* other, Lookup lookup) {
    loader::OwnedTable table = loader::findTable(lookup);
    if (table == nullptr)
        return nullptr;
    std::shared_ptr<Context> context(new Context);
    auto group = other != nullptr && other->isAlive()
                     ? other->state_->groupNames->share()
                     : gl::WaitingNames::Owned(new gl::WaitingNames);
    context->state_ = new gl::ContextState(*context, std::move(group), std::move(table));
    gl::enterWithEntryPoints(context->state_);
    context->state_->native = loader::currentContext();
    context->use();
    return context;
}

Context::~Context() {
    abandon();
    if (state_ != nullptr)
        state_->release();
}

bool Context::use() {
    if (!isAlive())
        return refuse();
    const bool waits = state_->groupNames->any() || state_->ownNames->any();
    if (waits ? !state_->native.isCurrent() : !state_->native.isProbablyCurrent())
        return refuse();
    gl::enterWithEntryPoints(state_);
    if (waits) {
        state_->ownNames->deleteAll();
        state_->groupNames->deleteAll();
    }
    return true;
}

Context* Context::current() {
    return gl::thread().state != nullptr ? gl::thread().state->context : nullptr;
}

void Context::useProcess() {
    gl::enterWithEntryPoints(nullptr);
    gl::WaitingNames& names = gl::WaitingNames::ofProcess();
    if (names.any() && loader::isProcessContextCurrent())
        names.deleteAll();
}

void Context::dispose() {
    if (!isAlive())
        return;
    if (use()) {
        internal::stop_debug_output();
        state_->isClosing = true;
        empty(*state_);
    }
    abandon();
}

void Context::abandon() {
    if (!isAlive())
        return;
    gl::ContextState* const before = gl::thread().state;
    if (before != nullptr)
        before->keep();
    gl::enter(state_);
    state_->isClosing = true;
    state_->context = nullptr;
    gl::forgetNamesHere();
    empty(*state_); // names that the group shares wait for others of it
    state_->groupNames.reset();
    state_->ownNames.reset();
    if (before == state_)
        gl::enterWithEntryPoints(nullptr);
    else
        gl::enter(before);
    if (before != nullptr)
        before->release();
}

bool Context::isAlive() const {
    return state_ != nullptr && state_->context != nullptr;
}

Context::Scope::Scope(Context& context) : before_(gl::thread().state) {
    if (before_ != nullptr)
        before_->keep();
    isUsed_ = context.use();
}

Context::Scope::~Scope() {
    if (before_ == nullptr || before_->context == nullptr)
        useProcess();
    else
        gl::enterWithEntryPoints(before_);
    if (before_ != nullptr)
        before_->release();
}

} // namespace vellis
