#pragma once

#include <string>
#include <vector>

namespace velox::evaluation
{

/// Reads any file that libsndfile knows; channels are averaged, and 8 to 64 kHz become 16 kHz.
/// @throws std::runtime_error when it cannot be read
std::vector<float> ReadAudioFile(const std::string& path);

/// Writes 16-bit samples at 16 kHz. @throws std::runtime_error when it cannot be written
void WriteAudioFile(const std::string& path, const std::vector<float>& samples);

} // namespace velox::evaluation
