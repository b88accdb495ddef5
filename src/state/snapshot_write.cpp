#include <algorithm>
#include <cstring>
#include <type_traits>

#include <vellis/gl.hpp>
#include <vellis/state/state.hpp>

#include "gl/capability.hpp"
#include "gl/entry_point.hpp"
#include "state/later_enumerators.hpp"
#include "state/snapshot_access.hpp"

namespace vellis::state::snapshot {
namespace {

int signedOf(Word word) {
    return static_cast<int>(word);
}

template <class T>
T valueOf(const Word* words) {
    T value;
    std::memcpy(&value, words, sizeof value);
    return value;
}

float floatOf(Word word) {
    return valueOf<float>(&word);
}

bool truthOf(Word word) {
    return valueOf<unsigned char>(&word) != 0;
}

template <class T>
bool areEqual(const T* words, unsigned int size) {
    return std::all_of(words, words + size, [=](T word) { return word == words[0]; });
}

void switchList(unsigned int capability, const Word* words, unsigned int size) {
    if (areEqual(words, size)) {
        switchCapability(capability, truthOf(words[0]));
        return;
    }
    for (unsigned int i = 0; i < size; ++i)
        callIfLoaded(truthOf(words[i]) ? glEnablei : glDisablei, capability, i);
}

void setMasks(const Word* words, unsigned int size) {
    unsigned char mask[4];
    if (areEqual(words, size)) {
        std::memcpy(mask, words, sizeof mask);
        glColorMask(mask[0], mask[1], mask[2], mask[3]);
        return;
    }
    for (unsigned int i = 0; i < size; ++i) {
        std::memcpy(mask, words + i, sizeof mask);
        callIfLoaded(glColorMaski, i, mask[0], mask[1], mask[2], mask[3]);
    }
}

/// A default framebuffer has names that only the plain call takes.
void setDrawBuffers(const Word* words, unsigned int size) {
    if (std::all_of(words + 1, words + size, [](Word buffer) { return buffer == GL_NONE; }))
        glDrawBuffer(words[0]);
    else
        glDrawBuffers(static_cast<GLsizei>(size), words);
}

void bindRange(unsigned int target, unsigned int index, const Word* words) {
    const auto start = valueOf<GLint64>(words + 1);
    const auto size = valueOf<GLint64>(words + 3);
    if (words[0] == 0 || size == 0)
        callIfLoaded(glBindBufferBase, target, index, words[0]);
    else
        callIfLoaded(glBindBufferRange, target, index, words[0], static_cast<GLintptr>(start),
                     static_cast<GLsizeiptr>(size));
}

/// The words of an attribute, in the order of their rows.
enum AttributeWord {
    Size,
    Type,
    IsNormalized,
    Stride,
    BufferName,
    Pointer,
    IsInteger = Pointer + 2
};

/// Leaves another array buffer bound, whose row comes later.
void setAttribute(unsigned int index, const Word* words, unsigned int size) {
    const void* pointer = valueOf<const void*>(words + Pointer);
    glBindBuffer(GL_ARRAY_BUFFER, words[BufferName]);
    if (size > IsInteger && words[IsInteger] != 0)
        callIfLoaded(glVertexAttribIPointer, index, signedOf(words[Size]), words[Type],
                     signedOf(words[Stride]), pointer);
    else
        glVertexAttribPointer(index, signedOf(words[Size]), words[Type],
                              words[IsNormalized] != 0 ? GL_TRUE : GL_FALSE,
                              signedOf(words[Stride]), pointer);
}

/// A core context takes one mode for both faces.
void setPolygonMode(Word front, Word back) {
    if (front == back || back == 0) {
        glPolygonMode(GL_FRONT_AND_BACK, front);
    } else {
        glPolygonMode(GL_FRONT, front);
        glPolygonMode(GL_BACK, back);
    }
}

template <class T, unsigned int N, unsigned int pname>
void setRecord(const Word* words) {
    if constexpr (std::is_same_v<T, int>) { // of the words' own size: without a copy
        set(reinterpret_cast<const State<T, N, pname>&>(*words));
    } else {
        State<T, N, pname> record;
        std::memcpy(record.value, words, sizeof record.value);
        set(record);
    }
}

/// Writes the record of that enumerator. Inlined, each command would end as the caller does.
[[gnu::noinline]] void writeRecord(const Word* words, unsigned int key) {
    switch (key) {
#define VELLIS_STATE(T, N, pname, queries, command)                                                \
    case pname:                                                                                    \
        return setRecord<T, N, pname>(words);
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
    default:
        break;
    }
}

/// The commands that one piece has alone.
[[gnu::noinline]] void call(const Word* words, unsigned int pname) {
    const auto number = [words](unsigned int i) { return floatOf(words[i]); };
    switch (pname) {
    case GL_CLIENT_ACTIVE_TEXTURE:
        return glClientActiveTexture(words[0]);
    case GL_CURRENT_COLOR:
        return glColor4f(number(0), number(1), number(2), number(3));
    case GL_PROGRAM_PIPELINE_BINDING:
        return callIfLoaded(glBindProgramPipeline, words[0]);
    case GL_BLEND_COLOR:
        return glBlendColor(number(0), number(1), number(2), number(3));
    case GL_STENCIL_WRITEMASK:
        return glStencilMaskSeparate(GL_FRONT, words[0]);
    case GL_STENCIL_BACK_WRITEMASK:
        return glStencilMaskSeparate(GL_BACK, words[0]);
    case GL_CLAMP_READ_COLOR:
    case GL_CLAMP_VERTEX_COLOR:
    case GL_CLAMP_FRAGMENT_COLOR:
        return callIfLoaded(glClampColor, pname, words[0]);
    case GL_ALPHA_TEST_FUNC:
        return glAlphaFunc(words[0], number(1));
    case GL_CLIP_ORIGIN:
        return callIfLoaded(glClipControl, words[0], words[1]);
    case GL_PRIMITIVE_RESTART_INDEX:
        return callIfLoaded(glPrimitiveRestartIndex, words[0]);
    case GL_PROVOKING_VERTEX:
        return callIfLoaded(glProvokingVertex, words[0]);
    case GL_FRONT_FACE:
        return glFrontFace(words[0]);
    case GL_POLYGON_MODE:
        return setPolygonMode(words[0], words[1]);
    case GL_POLYGON_OFFSET_FACTOR:
        return glPolygonOffset(number(0), number(1));
    case GL_LINE_STIPPLE_REPEAT:
        return glLineStipple(signedOf(words[0]), static_cast<GLushort>(words[1]));
    case GL_POINT_SPRITE_COORD_ORIGIN:
        return glPointParameteri(pname, signedOf(words[0]));
    case GL_POINT_FADE_THRESHOLD_SIZE:
    case GL_POINT_SIZE_MIN:
    case GL_POINT_SIZE_MAX:
        return glPointParameterf(pname, number(0));
    case GL_POINT_DISTANCE_ATTENUATION: {
        const float factors[] = {number(0), number(1), number(2)};
        return glPointParameterfv(pname, factors);
    }
    case GL_SAMPLE_COVERAGE_VALUE:
        return glSampleCoverage(number(0), truthOf(words[1]) ? GL_TRUE : GL_FALSE);
    case GL_SAMPLE_MASK_VALUE:
        return callIfLoaded(glSampleMaski, 0u, words[0]);
    case GL_SHADE_MODEL:
        return glShadeModel(words[0]);
    case GL_MATRIX_MODE:
        return glMatrixMode(words[0]);
    default:
        break;
    }
}

/// Whether there is an object of that kind and name.
bool exists(Print kind, Word name) {
    switch (kind) {
    case Print::Range:
    case Print::Buffer:
        return glIsBuffer(name) != GL_FALSE;
    case Print::Texture:
        return glIsTexture(name) != GL_FALSE;
    case Print::Sampler:
        return callIfLoaded(glIsSampler, name) != GL_FALSE;
    case Print::VertexArray:
        return callIfLoaded(glIsVertexArray, name) != GL_FALSE;
    case Print::Framebuffer:
        return callIfLoaded(glIsFramebuffer, name) != GL_FALSE;
    case Print::Renderbuffer:
        return callIfLoaded(glIsRenderbuffer, name) != GL_FALSE;
    case Print::Program:
        return glIsProgram(name) != GL_FALSE;
    case Print::Pipeline:
        return callIfLoaded(glIsProgramPipeline, name) != GL_FALSE;
    default:
        return true;
    }
}

/// Whether a name was 0'ed, since its object is gone.
bool forget(Print kind, Word& name) {
    if (name == 0 || exists(kind, name))
        return false;
    name = 0;
    return true;
}

} // namespace

Gone forgetGone(const Piece& piece, Word* words) {
    if (piece.write == Write::Framebuffers) {
        Gone gone = 0;
        if (forget(piece.print, words[0]))
            gone |= OfDraw;
        if (forget(piece.print, words[1]))
            gone |= OfRead;
        return gone;
    }
    if (piece.write == Write::Attribute && forget(Print::Buffer, words[BufferName]))
        std::memset(words + Pointer, 0, 2 * sizeof(Word)); // an offset into nothing
    if (!forget(piece.print, words[0]))
        return 0;
    if (piece.print == Print::Range)
        std::memset(words, 0, 5 * sizeof(Word));
    return piece.write == Write::VertexArray ? Gone(OfArray) : 0;
}

void write(const Piece& piece, unsigned int index, const Word* words, unsigned int size) {
    const unsigned int pname = piece.pname;
    switch (piece.write) {
    case Write::Never:
    case Write::WithPrevious:
        break;
    case Write::Record:
    case Write::Framebuffers:
    case Write::VertexArray:
        writeRecord(words, pname);
        break;
    case Write::Call:
        call(words, pname);
        break;
    case Write::Switch:
        switchCapability(pname + (piece.per == Per::ClipDistance ? index : 0), truthOf(words[0]));
        break;
    case Write::SwitchList:
        switchList(pname, words, size);
        break;
    case Write::ClientSwitch:
        (truthOf(words[0]) ? glEnableClientState : glDisableClientState)(pname);
        break;
    case Write::MaskList:
        setMasks(words, size);
        break;
    case Write::DrawBuffers:
        setDrawBuffers(words, size);
        break;
    case Write::Store:
        glPixelStorei(pname, signedOf(words[0]));
        break;
    case Write::Transfer:
        glPixelTransferf(pname, floatOf(words[0]));
        break;
    case Write::Hint:
        glHint(pname, words[0]);
        break;
    case Write::Buffer:
        glBindBuffer(piece.target, words[0]);
        break;
    case Write::Range:
        bindRange(piece.target, index, words);
        break;
    case Write::Texture:
        glBindTexture(piece.target, words[0]);
        break;
    case Write::Sampler:
        callIfLoaded(glBindSampler, index, words[0]);
        break;
    case Write::Attribute:
        setAttribute(index, words, size);
        break;
    case Write::AttributeSwitch:
        (words[0] != 0 ? glEnableVertexAttribArray : glDisableVertexAttribArray)(index);
        break;
    case Write::AttributeDivisor:
        callIfLoaded(glVertexAttribDivisorARB, index, words[0]);
        break;
    case Write::AttributeValue:
        glVertexAttrib4f(index, floatOf(words[0]), floatOf(words[1]), floatOf(words[2]),
                         floatOf(words[3]));
        break;
    }
}

void initialWords(const Piece& piece, unsigned int size, Word* words) {
    static constexpr Word values[] = {
        0, 0, 1, 4, ~0u, GL_TEXTURE0, GL_CCW, GL_FILL, GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE};
    Word word = values[static_cast<unsigned int>(piece.initial)];
    if (piece.query == Query::Float) {
        const float number = static_cast<float>(word);
        std::memcpy(&word, &number, sizeof number);
    } else if (piece.print == Print::Boolean || piece.print == Print::MaskList) {
        word *= 0x01010101; // each byte is a truth
    }
    std::fill_n(words, size, word);
}

} // namespace vellis::state::snapshot
