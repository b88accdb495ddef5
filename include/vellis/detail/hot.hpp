#pragma once

/// \def VELLIS_HOT
/// Marks what every draw calls. The library keeps these functions side by side, where they take few
/// lines of the processor's cache. A program calls them by their address, where the compiler knows
/// how, and not by way of a stub in its procedure linkage table.
#if defined(__ELF__) && defined(__GNUC__) && !defined(__clang__)
#define VELLIS_HOT [[gnu::hot, gnu::noplt]]
#elif defined(__GNUC__)
#define VELLIS_HOT [[gnu::hot]]
#else
#define VELLIS_HOT
#endif
