#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace velox::console
{

/// Sound as it comes, from when it was opened on.
class Microphone
{
public:
    Microphone() = default;
    Microphone(const Microphone&) = delete;
    Microphone& operator=(const Microphone&) = delete;
    virtual ~Microphone() = default;

    /// Its name, as people know it.
    virtual std::string Name() const = 0;

    /// What is done to its sound to get 16 kHz mono, "converted from 44.1 kHz mono"; empty when nothing is.
    virtual std::string Conversion() const = 0;

    /// Waits for sound, a tenth of a second at most.
    /// @return 16 kHz mono, nominally in [-1, 1]; empty when none came
    /// @throws CommandFailure BadInput when no more will come: the device is gone
    virtual std::vector<float> Read() = 0;

    /// How often sound was lost so far, because nobody fetched it in time.
    virtual std::size_t Overruns() const = 0;
};

} // namespace velox::console
