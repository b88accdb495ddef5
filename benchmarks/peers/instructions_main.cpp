/// The program that scripts/measurements/peers.sh runs under valgrind.

#include "instructions/count.hpp"
#include "null_driver/null_driver.hpp"
#include "peers/peers.hpp"

int main() {
    vellis::bench::NullDriver::install();
    vellis::bench::countAll(vellis::bench::peerWorkloads());
}
