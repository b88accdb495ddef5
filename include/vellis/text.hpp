#pragma once

/// \file
/// Text in all scripts: the library vellis-text, which is built on FreeType, HarfBuzz and FriBidi.

#include <vellis/text/draw.hpp>
#include <vellis/text/font.hpp>
#include <vellis/text/layout.hpp>
#include <vellis/text/shaped_text.hpp>
