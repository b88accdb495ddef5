#pragma once

/// \file
/// Framebuffers, the state of the fragment pipeline, blits and read-back.

#include <vellis/framebuffer/fragment_state.hpp>
#include <vellis/framebuffer/framebuffer.hpp>
