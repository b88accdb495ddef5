#pragma once

#include <memory>

#include <vellis/buffers.hpp>
#include <vellis/drawing.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>

#ifdef _WIN32
#define PLUG_IN_EXPORT extern "C" __declspec(dllexport)
#else
#define PLUG_IN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

/// Where a module of the process finds what there must be one of.
struct View {
    const void* pointer;         ///< the address of an entry point's pointer
    const void* function;        ///< what the pointer holds
    const void* version;         ///< the address of the loader's version
    const void* buffers;         ///< the registry of buffers
    const void* programs;        ///< the registry of programs
    const std::type_info* shape; ///< the type of the drawable below

    bool operator==(const View& other) const {
        return pointer == other.pointer && function == other.function && version == other.version &&
               buffers == other.buffers && programs == other.programs && *shape == *other.shape;
    }
};

using Shape = vellis::drawable::TriangleFan<vellis::VertexAttribute<glm::vec2>>;

/// The view of the module whose source calls it.
inline View viewFromHere() {
    return {&glad_glDrawArrays,
            reinterpret_cast<const void*>(glad_glDrawArrays),
            &GLVersion,
            &vellis::BufferObjectManager::instance(),
            &vellis::ProgramManager::instance(),
            &typeid(Shape)};
}

/// What the maker hands over to the painter.
struct Scene {
    std::shared_ptr<vellis::Program> program;
    std::shared_ptr<vellis::Drawable> shape;
    vellis::BufferObject* corners; ///< a buffer that only the registry owns
};
