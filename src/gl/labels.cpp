#include "gl/labels.hpp"

#include <algorithm>
#include <memory>
#include <mutex>

#include <vellis/detail/lasting.hpp>
#include <vellis/gl.hpp>

#include "gl/entry_point.hpp"
#include "gl/log.hpp"

namespace vellis::gl {
namespace {

/// GL's names of the kinds, in their order.
constexpr unsigned int identifiers[numKinds] = {
    GL_VERTEX_ARRAY, GL_FRAMEBUFFER, GL_PROGRAM, GL_SHADER, GL_BUFFER, GL_TEXTURE, GL_RENDERBUFFER,
};

/// What is bound, and its kind. Texture bindings that nobody prints are left out.
struct BindingKind {
    unsigned int pname;
    Kind kind;
};
constexpr BindingKind bindingKinds[] = {
    {GL_VERTEX_ARRAY_BINDING, Kind::VertexArray},
    {GL_DRAW_FRAMEBUFFER_BINDING, Kind::Framebuffer},
    {GL_READ_FRAMEBUFFER_BINDING, Kind::Framebuffer},
    {GL_CURRENT_PROGRAM, Kind::Program},
    {GL_ARRAY_BUFFER_BINDING, Kind::Buffer},
    {GL_ELEMENT_ARRAY_BUFFER_BINDING, Kind::Buffer},
    {GL_PIXEL_PACK_BUFFER_BINDING, Kind::Buffer},
    {GL_PIXEL_UNPACK_BUFFER_BINDING, Kind::Buffer},
    {GL_UNIFORM_BUFFER_BINDING, Kind::Buffer},
    {GL_TRANSFORM_FEEDBACK_BUFFER_BINDING, Kind::Buffer},
    {GL_COPY_READ_BUFFER, Kind::Buffer},
    {GL_COPY_WRITE_BUFFER, Kind::Buffer},
    {GL_TEXTURE_BINDING_1D, Kind::Texture},
    {GL_TEXTURE_BINDING_1D_ARRAY, Kind::Texture},
    {GL_TEXTURE_BINDING_2D, Kind::Texture},
    {GL_TEXTURE_BINDING_2D_ARRAY, Kind::Texture},
    {GL_TEXTURE_BINDING_2D_MULTISAMPLE, Kind::Texture},
    {GL_TEXTURE_BINDING_2D_MULTISAMPLE_ARRAY, Kind::Texture},
    {GL_TEXTURE_BINDING_3D, Kind::Texture},
    {GL_TEXTURE_BINDING_BUFFER, Kind::Texture},
    {GL_TEXTURE_BINDING_CUBE_MAP, Kind::Texture},
    {GL_TEXTURE_BINDING_RECTANGLE, Kind::Texture},
    {GL_RENDERBUFFER_BINDING, Kind::Renderbuffer},
};

/// What has a label.
struct Labelled {
    unsigned int index;
    unsigned int name;
    Kind kind;

    bool operator==(const Labelled& other) const {
        return index == other.index && name == other.name && kind == other.kind;
    }
};

/// A label, in a list of its own for each remainder of names: programs have many labels or none.
struct Label {
    Labelled object;
    std::string text;
    Label* next;
};

constexpr std::size_t numLists = 256;
Label* lists[numLists] = {}; // which outlast the destructors of static objects

std::mutex mutex; // which needs neither construction nor destruction

using Lock = std::lock_guard<std::mutex>;

/// The place of the pointer to the label of an object, or of the null at the end of its list.
Label** find(const Labelled& object) {
    Label** place = &lists[object.name % numLists];
    while (*place != nullptr && !((*place)->object == object))
        place = &(*place)->next;
    return place;
}

void remove(Label** place) noexcept {
    Label* const removed = *place;
    *place = removed->next;
    delete removed;
    numLabels.fetch_sub(1, std::memory_order_relaxed);
}

/// Forgets the labels of the indices that \p isMeant holds for.
template <class IsMeant>
void forgetAll(IsMeant isMeant) noexcept {
    if (!haveLabels())
        return;
    const Lock lock(mutex);
    for (Label*& first : lists) {
        for (Label** place = &first; *place != nullptr;) {
            if (isMeant((*place)->object.index))
                remove(place);
            else
                place = &(*place)->next;
        }
    }
}

/// The end of the process forgets them.
struct AllLabels {
    static void release() {
        forgetAll([](unsigned int) { return true; });
    }
};

void keep(const Labelled& object, std::string_view text) {
    auto made = std::make_unique<Label>(Label{object, std::string(text), nullptr});
    const Lock lock(mutex);
    detail::AtExit<AllLabels>::arm();
    if (Label** const place = find(object); *place != nullptr) {
        (*place)->text.swap(made->text);
    } else {
        *place = made.release();
        numLabels.fetch_add(1, std::memory_order_relaxed);
    }
}

/// ` 'shadow map'`; empty where the name has no label.
std::string quotedLabel(Kind kind, unsigned int name) {
    std::string text = labelOf(kind, name);
    if (!text.empty()) {
        text.insert(0, " '");
        text += '\'';
    }
    return text;
}

/// How many bytes of a label GL takes.
std::size_t mostTaken(std::size_t size) {
    int most = 0; // and the NUL behind them
    if (size > surelyTaken)
        glGetIntegerv(GL_MAX_LABEL_LENGTH, &most);
    return std::max(static_cast<std::size_t>(std::max(most, 1)) - 1, surelyTaken);
}

void tell(Kind kind, unsigned int name, std::string_view label) {
    const std::string_view taken = cutText(label, mostTaken(label.size()));
    glObjectLabel(identifiers[static_cast<std::size_t>(kind)], name, static_cast<int>(taken.size()),
                  taken.empty() ? nullptr : taken.data());
}

} // namespace

void setLabel(Kind kind, unsigned int name, std::string_view label) {
    const unsigned int index = indexHere(kind);
    if (label.empty())
        forgetLabel(kind, index, name);
    else
        keep({index, name, kind}, label);
    if (glObjectLabel == nullptr)
        return;
    if (kind != Kind::Framebuffer || glIsFramebuffer == nullptr || glIsFramebuffer(name) != 0)
        return tell(kind, name, label);
    int bound = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
    callIfLoaded(glBindFramebuffer, GL_DRAW_FRAMEBUFFER, name);
    tell(kind, name, label);
    callIfLoaded(glBindFramebuffer, GL_DRAW_FRAMEBUFFER, static_cast<unsigned int>(bound));
}

std::string labelOf(Kind kind, unsigned int name) {
    if (!haveLabels())
        return {};
    const Lock lock(mutex);
    const Label* const found = *find({indexHere(kind), name, kind});
    return found != nullptr ? found->text : std::string();
}

std::string nameText(Kind kind, unsigned int name) {
    return std::string(internal::Decimal(name)) + quotedLabel(kind, name);
}

std::string labelOfBinding(unsigned int pname, int name) {
    if (haveLabels()) {
        for (const BindingKind& binding : bindingKinds) {
            if (binding.pname == pname)
                return quotedLabel(binding.kind, static_cast<unsigned int>(name));
        }
    }
    return {};
}

bool haveLabelsHere() {
    if (!haveLabels())
        return false;
    const Lock lock(mutex);
    for (const Label* label : lists) {
        for (; label != nullptr; label = label->next) {
            if (isHere(label->object.kind, label->object.index))
                return true;
        }
    }
    return false;
}

void forgetLabel(Kind kind, unsigned int index, unsigned int name) noexcept {
    const Lock lock(mutex);
    if (Label** const place = find({index, name, kind}); *place != nullptr)
        remove(place);
}

void forgetLabels(unsigned int index) noexcept {
    forgetAll([index](unsigned int other) { return other == index; });
}

std::string_view cutText(std::string_view text, std::size_t most) {
    if (text.size() <= most)
        return text;
    while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80)
        --most;
    return text.substr(0, most);
}

} // namespace vellis::gl
