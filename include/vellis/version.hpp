#pragma once

/// \file
/// The version of the headers. CMakeLists.txt reads it from here.

/// Goes up with changes that break programs.
#define VELLIS_VERSION_MAJOR 1
/// Goes up with additions.
#define VELLIS_VERSION_MINOR 0
/// Goes up with corrections.
#define VELLIS_VERSION_PATCH 0

/// One number to compare: 10203 stands for version 1.2.3.
#define VELLIS_VERSION                                                                             \
    (VELLIS_VERSION_MAJOR * 10000 + VELLIS_VERSION_MINOR * 100 + VELLIS_VERSION_PATCH)
