#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <span>
#include <vector>

namespace velox::console
{

/// Hands sound from a device's thread to the one that listens. What is not fetched in time is lost, and counted.
class SoundQueue
{
public:
    /// @param room  samples that wait at most
    explicit SoundQueue(std::size_t room);

    /// Takes a piece of sound as a whole, or loses it when there is no room. For the device's thread: it never waits for sound to
    /// be fetched, and allocates nothing.
    /// @param gap  sound was lost before it
    void Put(std::span<const float> piece, bool gap);

    /// Waits until there is sound.
    /// @param sound  receives all that there is; empty when none came in that time
    void Fetch(std::chrono::milliseconds patience, std::vector<float>* sound);

    /// How often sound was lost.
    std::size_t Overruns() const;

private:
    mutable std::mutex mutex;
    std::condition_variable came;
    std::vector<float> waiting; ///< never grows beyond the room that it has from the beginning
    std::size_t overruns = 0;
};

} // namespace velox::console
