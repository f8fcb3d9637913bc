#pragma once

#include <cstdint>
#include <vector>

namespace velox::evaluation
{

/// Response of an empty room with six flat walls of equal absorption, by the image method (Allen and Berkley, "Image method for
/// efficiently simulating small-room acoustics", 1979). Size of the room (a small office to a living room) and places in it, 0.5
/// to 1.2 m apart, are drawn. The training's rooms are noise that decays: what is judged is not made as what was learned.
///
/// @param reverberationTime  seconds, by Eyring's formula; its walls' absorption follows from it
/// @return as long as the reverberation time; begins with the direct sound, which has the value 1
std::vector<float> ImageRoomResponse(double reverberationTime, uint64_t seed);

} // namespace velox::evaluation
