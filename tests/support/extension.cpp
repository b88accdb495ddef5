#include "support/extension.hpp"

#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>

#include <vellis/gl.hpp>

namespace {

struct ExtensionRow {
    Extension extension;
    const char* name;
    const int& flag;
};

const ExtensionRow extensions[] = {
#define VELLIS_EXTENSION(extension, name)                                                          \
    {Extension::extension, "GL_ARB_" #name, GLAD_GL_ARB_##name},
#define VELLIS_EXTENSION_ENTRY_POINT(extension, entryPoint)
#include "support/extensions.inc"
#undef VELLIS_EXTENSION
#undef VELLIS_EXTENSION_ENTRY_POINT
};

struct EntryPointRow {
    Extension extension;
    const char* name;
};

constexpr EntryPointRow entryPoints[] = {
#define VELLIS_EXTENSION(extension, name)
#define VELLIS_EXTENSION_ENTRY_POINT(extension, entryPoint) {Extension::extension, #entryPoint},
#include "support/extensions.inc"
#undef VELLIS_EXTENSION
#undef VELLIS_EXTENSION_ENTRY_POINT
};

const ExtensionRow& row(Extension extension) {
    return extensions[static_cast<std::size_t>(extension)];
}

/// A context as it would be without an extension: what a load asks of it.
struct LimitedContext {
    std::map<std::string, void*> entryPoints;
    PFNGLGETSTRINGPROC getString = nullptr;
    std::string version;
    std::string extensions;
};

LimitedContext limited;

const GLubyte* GLAD_API_PTR limitedGetString(GLenum name) {
    const auto bytes = [](const std::string& text) {
        return reinterpret_cast<const GLubyte*>(text.c_str());
    };
    if (name == GL_VERSION)
        return bytes(limited.version);
    if (name == GL_EXTENSIONS)
        return bytes(limited.extensions);
    return limited.getString(name);
}

void* findLimited(const char* name) {
    const auto found = limited.entryPoints.find(name);
    return found != limited.entryPoints.end() ? found->second : nullptr;
}

/// The full context's entry points by name.
std::map<std::string, void*> loadedEntryPoints() {
    return {
#define VELLIS_ENTRY_POINT(name, member) {#name, reinterpret_cast<void*>(glad_##name)},
#define VELLIS_LOADER_FLAG(name, member)
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    };
}

/// The words of a list of extensions but for \p hidden.
std::string without(const std::string& hidden, const std::string& list) {
    std::istringstream words(list);
    std::string kept;
    for (std::string word; words >> word;) {
        if (word != hidden)
            kept += word + " ";
    }
    return kept;
}

std::string text(GLenum name) {
    const GLubyte* answer = glGetString(name);
    return answer != nullptr ? reinterpret_cast<const char*>(answer) : "";
}

} // namespace

std::string name(Extension extension) {
    return row(extension).name;
}

bool has(Extension extension) {
    return GLAD_GL_VERSION_3_0 != 0 || row(extension).flag != 0;
}

bool hide(Extension extension) {
    // An extension may be hidden already: its entry points are null, its name is not in the list.
    const PFNGLGETSTRINGPROC getString =
        glGetString == limitedGetString ? limited.getString : glGetString;
    // The list as one text is what OpenGL 2.1 has, and what later contexts of the compatibility
    // kind keep.
    limited = {loadedEntryPoints(), getString, "2.1 of " + text(GL_VERSION),
               without(name(extension), text(GL_EXTENSIONS))};
    for (const EntryPointRow& entryPoint : entryPoints) {
        if (entryPoint.extension == extension)
            limited.entryPoints[entryPoint.name] = nullptr;
    }
    limited.entryPoints["glGetString"] = reinterpret_cast<void*>(limitedGetString);
    return gladLoadGLLoader(findLimited) == 1;
}

bool knows(unsigned int pname) {
    GLdouble values[16] = {};
    glGetDoublev(pname, values);
    return glGetError() == GL_NO_ERROR;
}

bool isCore() {
    GLint profile = 0;
    if (GLAD_GL_VERSION_3_2 != 0)
        glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    return (profile & GL_CONTEXT_CORE_PROFILE_BIT) != 0;
}

bool isForwardCompatible() {
    GLint flags = 0;
    if (GLAD_GL_VERSION_3_0 != 0)
        glGetIntegerv(GL_CONTEXT_FLAGS, &flags);
    return (flags & GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT) != 0;
}

std::string extensionNames() {
    if (!isCore())
        return text(GL_EXTENSIONS);
    GLint count = 0;
    glGetIntegerv(GL_NUM_EXTENSIONS, &count);
    std::string names;
    for (GLuint i = 0; i < static_cast<GLuint>(count); ++i)
        names += std::string(reinterpret_cast<const char*>(glGetStringi(GL_EXTENSIONS, i))) + " ";
    return names;
}

std::string missingState() {
    struct StateRow {
        const char* name;
        GLenum pname;
    };
    constexpr StateRow states[] = {
#define VELLIS_STATE(T, N, pname, queries, command) {#pname, pname},
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
    };
    for (const Extension extension : {Extension::VertexArrays, Extension::Framebuffers}) {
        if (!has(extension))
            return name(extension);
    }
    for (const StateRow& state : states) {
        if (!knows(state.pname))
            return state.name;
    }
    return {};
}

std::optional<Extension> extensionToHide() {
    const char* variable = std::getenv("RENDER_WITHOUT");
    const std::string wanted = variable != nullptr ? variable : "";
    if (wanted.empty())
        return std::nullopt;
    std::string names;
    for (const ExtensionRow& extension : extensions) {
        if (wanted == extension.name)
            return extension.extension;
        names += (names.empty() ? "" : ", ") + std::string(extension.name);
    }
    throw std::invalid_argument("The environment variable RENDER_WITHOUT is \"" + wanted +
                                "\": unset it or set it to one of " + names + ".");
}
