// Whether a test runs under Wine, which stands in for Windows but lacks a few of its ways. Any thread.
#pragma once

namespace kelsd::support {

bool UnderWine();

/// What a test says that needs more agents at one port than there are addresses.
inline constexpr char kOneLoopbackAddress[] =
    "Wine knows only the loopback address 127.0.0.1: a datagram socket at another one is bound to all of "
    "them";

/// What a test says that needs to hear at once that nobody listens.
inline constexpr char kRefusalsUnheard[] = "Wine wakes nobody when a datagram has been refused";

}  // namespace kelsd::support
