#pragma once

/// \file
/// Sampling parameters, texel formats, textures of one to three dimensions and renderbuffers.

#include <vellis/texture/multi_sample_renderbuffer.hpp>
#include <vellis/texture/rbo.hpp>
#include <vellis/texture/renderbuffer.hpp>
#include <vellis/texture/sampler.hpp>
#include <vellis/texture/texel_format.hpp>
#include <vellis/texture/texture.hpp>
#include <vellis/texture/texture_1d.hpp>
#include <vellis/texture/texture_2d.hpp>
#include <vellis/texture/texture_3d.hpp>
