#include <vellis/buffers.hpp>
#include <vellis/gl.hpp>

#include "workloads/groups.hpp"

namespace vellis::bench {
namespace {

/// 1 KiB.
constexpr unsigned int numFloats = 256;
constexpr unsigned int numBytes = numFloats * sizeof(float);
const std::vector<float> contents(numFloats, 0.5f);

std::shared_ptr<VertexAttributeBuffer<float>> makeBuffer() {
    return VertexAttributeBuffer<float>::make(contents.data(), numFloats, BufferUsage::Static,
                                              BufferAccess::Draw);
}

struct RawMake {
    void operator()() const {
        unsigned int name = 0;
        glGenBuffers(1, &name);
        glBindBuffer(GL_ARRAY_BUFFER, name);
        glBufferData(GL_ARRAY_BUFFER, numBytes, nullptr, GL_STATIC_DRAW);
        glBufferSubData(GL_ARRAY_BUFFER, 0, numBytes, contents.data());
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        glDeleteBuffers(1, &name);
    }
};

struct Make {
    void operator()() const {
        VertexAttributeBuffer<float>::make(contents.data(), numFloats, BufferUsage::Static,
                                           BufferAccess::Draw);
    }
};

/// A buffer that is there before.
struct RawBuffer {
    std::shared_ptr<VertexAttributeBuffer<float>> buffer = makeBuffer();
    unsigned int name = buffer->id();
};

struct RawLoadPart : RawBuffer {
    void operator()() const {
        glBindBuffer(GL_ARRAY_BUFFER, name);
        glBufferSubData(GL_ARRAY_BUFFER, numBytes / 4, numBytes / 2, contents.data());
        glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
};

struct LoadPart {
    void operator()() const { buffer->load(contents.data(), numFloats / 4, numFloats / 2); }
    std::shared_ptr<VertexAttributeBuffer<float>> buffer = makeBuffer();
};

struct RawMap : RawBuffer {
    void operator()() const {
        glBindBuffer(GL_ARRAY_BUFFER, name);
        auto* const store = static_cast<float*>(glMapBufferRange(
            GL_ARRAY_BUFFER, 0, numBytes, GL_MAP_WRITE_BIT | GL_MAP_FLUSH_EXPLICIT_BIT));
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        if (store == nullptr)
            return;
        store[0] = 1.f;
        glBindBuffer(GL_ARRAY_BUFFER, name);
        glFlushMappedBufferRange(GL_ARRAY_BUFFER, 0, numBytes);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        glBindBuffer(GL_ARRAY_BUFFER, name);
        glUnmapBuffer(GL_ARRAY_BUFFER);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
};

struct Map {
    void operator()() const {
        float* const store = buffer->map(MapAccess::WriteOnly);
        if (store == nullptr)
            return;
        store[0] = 1.f;
        buffer->flushAndUnmap(0, numFloats);
    }
    std::shared_ptr<VertexAttributeBuffer<float>> buffer = makeBuffer();
};

} // namespace

std::vector<Workload> bufferWorkloads() {
    return {
        {"buffer/make",
         "make a buffer, fill it with 1 KiB, destroy it",
         {{"raw", makeSide<RawMake>}, {"vellis", makeSide<Make>}}},
        {"buffer/load_part",
         "replace half of a buffer of 1 KiB",
         {{"raw", makeSide<RawLoadPart>}, {"vellis", makeSide<LoadPart>}}},
        {"buffer/map",
         "map a buffer of 1 KiB, write a number, flush, unmap",
         {{"raw", makeSide<RawMap>}, {"vellis", makeSide<Map>}}},
    };
}

} // namespace vellis::bench
