#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velox::console
{

/// A recording as the library takes it.
struct Audio
{
    std::vector<float> samples; ///< 16 kHz mono, nominally in [-1, 1]
    std::string conversion;     ///< what was done to get there, "converted from 44.1 kHz stereo"; empty when nothing was
    double seconds = 0.0;
};

/// Reads a sound file of any rate and number of channels; the channels are averaged.
/// @throws CommandFailure BadInput for what cannot be opened, is no audio, is empty, is cut or holds what is no number
Audio ReadAudio(const std::filesystem::path& file);

} // namespace velox::console
