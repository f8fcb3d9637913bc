#pragma once

#include "console/audio/AudioFile.h"
#include "console/audio/Microphone.h"

#include <functional>

/// Plays sound as a microphone gives it, some milliseconds at a time, and is unplugged at its end.
class FileMicrophone : public velox::console::Microphone
{
public:
    /// @param file  a recording
    explicit FileMicrophone(const std::filesystem::path& file) : FileMicrophone(velox::console::ReadAudio(file).samples)
    {
    }
    explicit FileMicrophone(std::vector<float> samples) : sound(std::move(samples))
    {
    }

    std::string Name() const override
    {
        return "Desk";
    }
    std::string Conversion() const override
    {
        return "converted from 48 kHz mono";
    }
    std::vector<float> Read() override;
    std::size_t Overruns() const override
    {
        return overruns;
    }

    std::size_t overruns = 0;                       ///< that it tells of
    std::size_t piece = 160;                        ///< samples at a time
    std::function<void(std::size_t played)> before; ///< called before each piece with the samples played so far; may be empty

private:
    std::vector<float> sound;
    std::size_t played = 0;
    bool started = false;
};
