#include "engine/training/Folds.h"

#include <map>
#include <string>

namespace velox::engine
{

namespace
{

constexpr std::size_t FewestVoices = 4;
/// Parts of the background, by its length, that go to the halves in turn.
constexpr std::size_t BackgroundParts = 16;

std::vector<int> FoldsOfTakes(const std::vector<PreparedTake>& takes)
{
    std::map<std::string, std::size_t> voices;
    for (const PreparedTake& take : takes)
    {
        voices.try_emplace(take.voice, voices.size());
    }
    std::vector<int> folds;
    for (const PreparedTake& take : takes)
    {
        const std::size_t number = voices.size() < FewestVoices ? folds.size() : voices[take.voice];
        folds.push_back(static_cast<int>(number % Folds::Count));
    }
    return folds;
}

std::vector<int> FoldsOfBackground(const std::vector<std::vector<float>>& background)
{
    std::size_t all = 1;
    for (const std::vector<float>& recording : background)
    {
        all += recording.size();
    }
    std::vector<int> folds;
    std::size_t before = 0;
    for (const std::vector<float>& recording : background)
    {
        const std::size_t part = (before + recording.size() / 2) * BackgroundParts / all;
        folds.push_back(static_cast<int>(part % Folds::Count));
        before += recording.size();
    }
    return folds;
}

} // namespace

Folds Folds::Of(const std::vector<PreparedTake>& takes, const std::vector<std::vector<float>>& background)
{
    return {FoldsOfTakes(takes), FoldsOfBackground(background)};
}

} // namespace velox::engine
