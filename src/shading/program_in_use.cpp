/// The program that GL uses, and none, as objects; and bindings that are recorded for a program.

#include <vellis/shading/program.hpp>

#include <new>
#include <utility>

#include <vellis/detail/lasting.hpp>
#include <vellis/gl.hpp>

#include "drawing/vertex_attributes_binding_inlined.hpp"
#include "gl/context_state.hpp"

namespace vellis {

/// Stands for a GL program that somebody else owns, to the very end of the process or of a Context.
class VELLIS_NO_EXPORT Program::Proxy : public Program {
public:
    /// The program that GL uses.
    static Proxy& current();

    /// None.
    static Proxy& null();

    void setId(unsigned int id) { id_ = id; }

private:
    class Pair;

    // The name that the base class made is left behind: GL may give it a meaning elsewhere.
    Proxy() { id_ = 0; }
    explicit Proxy(unsigned int id) : Program(id) {}
};

/// The two, each made on first use. They do not delete what they stand for.
class Program::Proxy::Pair {
public:
    /// That of the Context in use, or of the process.
    static Pair& inUse() {
        static detail::Lasting ofProcess([] { return Pair(); });
        if (gl::thread().state != nullptr)
            return gl::thread().state->at<Pair>(gl::Slot::ProgramProxies);
        detail::AtExit<Pair>::arm();
        return *ofProcess;
    }

    Pair() = default;
    ~Pair() { releaseBindings(); }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    Proxy& at(std::size_t index) {
        if (!isMade_[index])
            gl::thread().state != nullptr ? new (rooms_[index]) Proxy(0)
                                          : new (rooms_[index]) Proxy();
        isMade_[index] = true;
        return *std::launder(reinterpret_cast<Proxy*>(rooms_[index]));
    }

    /// At the end of the process.
    static void release() {
        gl::enter(nullptr);
        inUse().releaseBindings();
    }

private:
    void releaseBindings() {
        for (std::size_t index = 0; index < 2; ++index) {
            if (isMade_[index])
                at(index).usage_.release();
        }
    }

    bool isMade_[2] = {};
    alignas(Proxy) unsigned char rooms_[2][sizeof(Proxy)];
};

Program::Proxy& Program::Proxy::current() {
    return Pair::inUse().at(0);
}

Program::Proxy& Program::Proxy::null() {
    return Pair::inUse().at(1);
}

void Program::beginAttributesBinding() const {
    auto binding = VertexAttributesBinding::make();
    const VertexAttributesBinding& begun = *binding;
    usage_.hold(std::move(binding));
    VertexAttributesBinding::Inlined::bindExisting(begun);
}

std::shared_ptr<VertexAttributesBinding> Program::finishAttributesBinding() const {
    std::shared_ptr<VertexAttributesBinding> finished = usage_.take();
    VertexAttributesBinding::Inlined::unbind();
    return finished;
}

const Program& Program::current() {
    Proxy& program = Proxy::current();
    int id = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &id);
    program.setId(static_cast<unsigned int>(id));
    return program;
}

const Program& Program::null() {
    return Proxy::null();
}

} // namespace vellis
