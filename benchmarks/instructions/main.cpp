/// The program that scripts/measurements/instructions.sh runs under valgrind.

#include "instructions/count.hpp"

int main() {
    vellis::bench::countAll(vellis::bench::workloads());
}
