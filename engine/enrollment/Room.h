#pragma once

#include <cstdint>
#include <vector>

namespace velox::engine
{

/// A room as a microphone hears it: the direct sound and, behind it, noise that decays exponentially (Polack 1988; the
/// reverberation time is that of Sabine).
struct Room
{
    double reverberationTime = 0.5;   ///< seconds until the tail has lost 60 dB
    double directToReverberant = 0.0; ///< energy of the direct sound over that of the tail, dB
    uint64_t seed = 0;                ///< of the tail's noise
};

/// The room's impulse response, as long as the reverberation time. The direct sound is its first sample and has the value 1.
std::vector<float> RoomResponse(const Room& room);

} // namespace velox::engine
