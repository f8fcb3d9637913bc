#include "console/audio/SoundQueue.h"

namespace velox::console
{

SoundQueue::SoundQueue(std::size_t room)
{
    waiting.reserve(room);
}

void SoundQueue::Put(std::span<const float> piece, bool gap)
{
    {
        const std::lock_guard lock(mutex);
        const bool fits = piece.size() <= waiting.capacity() - waiting.size();
        overruns += gap || !fits ? 1U : 0U;
        if (fits)
        {
            waiting.insert(waiting.end(), piece.begin(), piece.end());
        }
    }
    came.notify_one();
}

void SoundQueue::Fetch(std::chrono::milliseconds patience, std::vector<float>* sound)
{
    std::unique_lock lock(mutex);
    came.wait_for(lock, patience, [this] { return !waiting.empty(); });
    sound->assign(waiting.begin(), waiting.end());
    waiting.clear();
}

std::size_t SoundQueue::Overruns() const
{
    const std::lock_guard lock(mutex);
    return overruns;
}

} // namespace velox::console
