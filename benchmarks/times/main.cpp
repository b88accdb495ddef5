/// The times of all workloads.

#include "times/program.hpp"

int main(int argc, char** argv) {
    return vellis::bench::runTimes(argc, argv, vellis::bench::workloads);
}
