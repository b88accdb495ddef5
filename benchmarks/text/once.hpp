#pragma once

namespace vellis::bench {

/// Prints what words cost that are new to a font: the nanoseconds of each through HarfBuzz alone
/// and through Font::shape, in turns.
void printShaping();

/// Prints what frames cost in each of which there are 60 new glyphs: the nanoseconds of the calls
/// that draw them, of the median frame and the longest one. The same frames are drawn several
/// times, anew each time; the time of a frame is the median of these.
void printNewGlyphs();

} // namespace vellis::bench
