#pragma once

/// \def VELLIS_DIRECT
/// Marks what draws call: a program calls it by its address and not by way of a stub in its
/// procedure linkage table, where the compiler knows how.
#if defined(__ELF__) && defined(__GNUC__) && !defined(__clang__)
#define VELLIS_DIRECT [[gnu::noplt]]
#else
#define VELLIS_DIRECT
#endif

/// \def VELLIS_HOT
/// Marks what every draw calls. The library keeps these few functions side by side, too, where they
/// take little of the processor's cache.
#if defined(__GNUC__)
#define VELLIS_HOT VELLIS_DIRECT [[gnu::hot]]
#else
#define VELLIS_HOT VELLIS_DIRECT
#endif
