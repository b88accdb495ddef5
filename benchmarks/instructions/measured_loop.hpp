#pragma once

namespace vellis::bench {
class Side;
}

/// Does a side's operation again and again, and nothing else. valgrind is told to count in this
/// function only, by its name.
extern "C" void vellis_measured_loop(vellis::bench::Side& side, unsigned int iterations);
