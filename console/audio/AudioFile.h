#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace velox::console
{

/// A recording as the library takes it.
struct Audio
{
    std::vector<float> samples{}; ///< 16 kHz mono, nominally in [-1, 1]
    std::string conversion{};     ///< what was done to get there, "converted from 44.1 kHz stereo"; empty when nothing was
    double seconds = 0.0;
    std::vector<std::string> warnings{}; ///< what is odd about the sound; begin with a small letter, no full stop
};

/// Reads a sound file of any rate and number of channels piece by piece; the channels are averaged.
class AudioStream
{
public:
    /// @throws CommandFailure BadInput for what cannot be opened, is no audio, or is empty
    explicit AudioStream(const std::filesystem::path& file);
    AudioStream(AudioStream&&) noexcept;
    AudioStream& operator=(AudioStream&&) noexcept;
    ~AudioStream();

    /// @param block  receives the next samples, 16 kHz mono, some seconds at most
    /// @return false at the end, where the block is empty
    /// @throws CommandFailure BadInput for a file that is cut or holds what is no number
    bool Read(std::vector<float>* block);

    /// Of the file that was read, 0 to 1.
    double Share() const;

    /// What is known of the recording once it was read to its end; without samples.
    Audio Summary() const;

private:
    struct Listened;
    struct State;
    std::unique_ptr<State> state;
};

/// Reads all of it.
/// @throws CommandFailure as AudioStream
Audio ReadAudio(const std::filesystem::path& file);

} // namespace velox::console
