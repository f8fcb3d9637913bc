#include "engine/enrollment/TakeAgreement.h"

#include <algorithm>

namespace velox::engine
{

bool VoicesAgree(const GenericSpeakers& generic, std::span<const PhraseFrames> takes)
{
    for (std::size_t i = 0; i < takes.size() && takes.size() > 1; ++i)
    {
        std::vector<PhraseFrames> others(takes.begin(), takes.end());
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
        if (SpeakerRatio(TrainSpeaker(generic, others), takes[i].frames, takes[i].counts) < 0.0F)
        {
            return false;
        }
    }
    return true;
}

bool LevelsAgree(std::span<const double> levels)
{
    const auto [quietest, loudest] = std::minmax_element(levels.begin(), levels.end());
    return levels.empty() || *loudest - *quietest <= MostLevelDifference;
}

} // namespace velox::engine
