#include "console/audio/RecentSound.h"

#include <algorithm>

namespace velox::console
{

void RecentSound::Add(std::span<const float> samples)
{
    if (sound.size() > 2 * kept)
    {
        const std::size_t old = sound.size() - kept;
        sound.erase(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(old));
        forgotten += static_cast<int64_t>(old);
    }
    sound.insert(sound.end(), samples.begin(), samples.end());
}

std::span<const float> RecentSound::Between(int64_t begin, int64_t end, int64_t* from) const
{
    *from = std::clamp(begin, forgotten, Heard());
    const int64_t last = std::clamp(end, *from, Heard());
    return std::span(sound).subspan(static_cast<std::size_t>(*from - forgotten), static_cast<std::size_t>(last - *from));
}

} // namespace velox::console
