#pragma once

/// \file
/// Where the code lies that draws call.
///
/// On a driver a draw costs the cache lines that the code between GL's calls lies in, rather than
/// the instructions: the same functions take 0.6 to 1.4 percent of a draw, depending on where they
/// lie. So what every draw calls stands side by side (VELLIS_HOT), is called by its address
/// (VELLIS_DIRECT), and has what it seldom needs elsewhere (VELLIS_COLD). The benchmarks
/// draw/handles and draw/values show it; they are held by their limits. Keep the set of VELLIS_HOT
/// small: one function more made those draws slower.

/// \def VELLIS_DIRECT
/// Marks what draws call: a program calls it by its address and not by way of a stub in its
/// procedure linkage table, where the compiler knows how.
#if defined(__ELF__) && defined(__GNUC__) && !defined(__clang__)
#define VELLIS_DIRECT [[gnu::noplt]]
#else
#define VELLIS_DIRECT
#endif

/// \def VELLIS_HOT
/// Marks what every draw calls, for the library to keep side by side.
///
/// \def VELLIS_COLD
/// Marks what a function seldom needs, for the compiler to leave out of it.
#if defined(__GNUC__)
#define VELLIS_HOT VELLIS_DIRECT [[gnu::hot]]
#define VELLIS_COLD [[gnu::noinline, gnu::cold]]
#else
#define VELLIS_HOT VELLIS_DIRECT
#define VELLIS_COLD
#endif
