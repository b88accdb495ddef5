/// The times of the workloads that other libraries do, too.

#include "peers/peers.hpp"
#include "times/program.hpp"

int main(int argc, char** argv) {
    return vellis::bench::runTimes(argc, argv, vellis::bench::peerWorkloads);
}
