#pragma once

#include <string>
#include <string_view>

#include "gl/names.hpp"

/// The labels of GL's names: what a program calls its objects, beside what GL is told of it. A
/// label belongs to a name of a kind and an index, as in gl/names.hpp, and is forgotten with it.
namespace vellis::gl {

/// Gives a name that exists here a label, or takes it away where that is
/// empty; and tells GL with `glObjectLabel` where the context has KHR_debug. A label that is too
/// long for GL is cut for it in front of a character. GL has a framebuffer only once it was bound:
/// one that was not is bound to draw for the time of the call.
void setLabel(Kind kind, unsigned int name, std::string_view label);

/// The label of a name that exists here; empty where it has none.
std::string labelOf(Kind kind, unsigned int name);

/// The name for a text: `7`, or `7 'shadow map'` where it has a label.
std::string nameText(Kind kind, unsigned int name);

/// The label of what a piece of state such as GL_TEXTURE_BINDING_2D says is bound, to stand behind
/// its number: ` 'shadow map'`; empty where it has none, and for other pieces of state.
std::string labelOfBinding(unsigned int pname, int name);

/// Whether a name of the Context in use, or of its group, has a label.
bool haveLabelsHere();

/// Forgets the label of a name, if it has one.
void forgetLabel(Kind kind, unsigned int index, unsigned int name) noexcept;

/// Forgets the labels of all names of an index.
void forgetLabels(unsigned int index) noexcept;

/// The beginning of a text that has \p most bytes or fewer, and ends with a whole character of
/// UTF-8.
std::string_view cutText(std::string_view text, std::size_t most);

/// The most bytes that every GL takes as a label, or as the name of a group.
constexpr std::size_t surelyTaken = 255;

} // namespace vellis::gl
