#include "support/fake_context.hpp"

#include <set>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include "support/gl_signatures.hpp"

namespace vellis::test {
namespace {

/// Leaves a thread that ends without a context.
class ThreadEnd {
public:
    ThreadEnd() = default;
    ~ThreadEnd() { FakeContext::releaseCurrent(); }
    ThreadEnd(const ThreadEnd&) = delete;
    ThreadEnd& operator=(const ThreadEnd&) = delete;
};

/// The extensions that the loader has a flag for.
std::string allExtensions() {
    constexpr std::string_view flags[] = {
#define VELLIS_ENTRY_POINT(name, member)
#define VELLIS_LOADER_FLAG(name, member) #name,
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    };
    constexpr std::string_view prefix = "GLAD_";
    std::string extensions;
    for (const std::string_view flag : flags) {
        if (flag.find("GL_VERSION_") == std::string_view::npos)
            extensions += std::string(flag.substr(prefix.size())) + ' ';
    }
    return extensions;
}

bool isDeletion(EntryPoint entryPoint) {
    constexpr std::string_view prefix = "glDelete";
    return std::string_view(name(entryPoint)).substr(0, prefix.size()) == prefix;
}

/// Whether GL keeps a deleted object of that kind, with its name, for as long as it is in use.
bool isKeptInUse(ObjectKind kind) {
    return kind == ObjectKind::Shader || kind == ObjectKind::Program;
}

/// The names in an argument that is one, or an array of them.
std::vector<GLuint> namesIn(const ParameterSignature& parameter, const Argument* arguments,
                            const Argument& argument) {
    if (parameter.form == Form::Value)
        return {static_cast<GLuint>(argument.unsignedValue)};
    const auto* names = static_cast<const GLuint*>(argument.pointer);
    const auto count = static_cast<GLsizei>(arguments[parameter.argument].signedValue);
    if (names == nullptr || count <= 0)
        return {};
    return {names, names + count};
}

} // namespace

FakeContext::FakeContext(const FakeContext* sharing) : RecordedGl(sharing) {
    setString(GL_VERSION, "2.1 fake");
    setString(GL_SHADING_LANGUAGE_VERSION, "1.20 fake");
    setString(GL_VENDOR, "fake");
    setString(GL_RENDERER, "fake");
    setString(GL_EXTENSIONS, allExtensions());
}

FakeContext::~FakeContext() {
    if (isCurrentHere())
        releaseCurrent();
    EXPECT_FALSE(isCurrent) << "The context is current on another thread.";
    for (std::size_t i = numLookedAt_; i < violations_.size(); ++i)
        ADD_FAILURE() << "A call used a name that its context does not have: " << violations_[i];
}

bool FakeContext::makeCurrent() {
    thread_local const ThreadEnd end;
    return RecordedGl::makeCurrent();
}

void FakeContext::releaseCurrent() {
    test::makeCurrent(nullptr);
}

std::vector<std::string> FakeContext::violations() {
    numLookedAt_ = violations_.size();
    return violations_;
}

void FakeContext::calling(EntryPoint entryPoint, const Argument* arguments) {
    if (usesForeignName(entryPoint, arguments))
        violations_.push_back(line(entryPoint, arguments));
}

bool FakeContext::usesForeignName(EntryPoint entryPoint, const Argument* arguments) const {
    const bool deletes = isDeletion(entryPoint);
    const Signature parameters = signature(entryPoint);
    std::set<std::pair<ObjectKind, GLuint>> deleted;
    for (std::size_t i = 0; i < parameters.count; ++i) {
        const ParameterSignature& parameter = parameters.parameters[i];
        if (!parameter.object)
            continue;
        const ObjectKind kind = *parameter.object;
        for (const GLuint object : namesIn(parameter, arguments, arguments[i])) {
            if (object == 0)
                continue;
            const bool mayBeDeleted = !deletes && isKeptInUse(kind);
            if (mayBeDeleted ? !wasMade(kind, object) : !isLive(kind, object))
                return true;
            if (deletes && !deleted.insert({kind, object}).second)
                return true;
        }
    }
    return false;
}

} // namespace vellis::test
