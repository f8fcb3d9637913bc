#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velox::console
{

/// The last seconds of what was heard.
class RecentSound
{
public:
    /// @param keptSamples  that are there at least, once so many were heard
    explicit RecentSound(std::size_t keptSamples) : kept(keptSamples)
    {
    }

    void Add(std::span<const float> samples);

    /// Samples heard so far.
    int64_t Heard() const
    {
        return forgotten + static_cast<int64_t>(sound.size());
    }

    /// What is there of a stretch. @param begin  sample from the beginning, and so is end
    /// @param from  receives the first sample that is there
    std::span<const float> Between(int64_t begin, int64_t end, int64_t* from) const;

private:
    std::size_t kept;
    int64_t forgotten = 0;
    std::vector<float> sound;
};

} // namespace velox::console
