#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

/// Writes WAV files for tests.
namespace SoundFile
{

/// The bytes of a WAV file of 16-bit samples, the channels interleaved.
std::string Wav(std::span<const float> interleaved, int rate = 16000, int channels = 1);

/// The bytes of a WAV file of 32-bit float samples, mono: nothing is lost.
std::string FloatWav(std::span<const float> samples, int rate = 16000);

void Write(const std::filesystem::path& file, const std::string& bytes);

} // namespace SoundFile
