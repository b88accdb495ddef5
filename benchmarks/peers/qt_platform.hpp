#pragma once

namespace vellis::bench {

/// The name of a Qt platform that opens no display: its GL context is the one that is current
/// already, whoever made it, with peerLookUp() for its entry points.
extern const char* const qtPlatformName;

} // namespace vellis::bench
