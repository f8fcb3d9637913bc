#include "engine/training/HeldOutSearch.h"

#include "engine/training/BackgroundPeaks.h"

namespace velox::engine
{

namespace
{

void Append(std::vector<PhrasePlace> more, std::vector<PhrasePlace>* places)
{
    std::move(more.begin(), more.end(), std::back_inserter(*places));
}

std::vector<std::span<const float>> RecordingsOf(int fold, const SearchedMaterial& material)
{
    std::vector<std::span<const float>> recordings;
    for (std::size_t i = 0; i < material.background.size(); ++i)
    {
        if (material.folds.background[i] == fold)
        {
            recordings.emplace_back(material.background[i]);
        }
    }
    return recordings;
}

} // namespace

void SearchHeldOut(const PhraseModel& model, int fold, const SearchedMaterial& material, WorkerPool* pool, HeldOutPlaces* places)
{
    PhraseRecordings recordings{material.takes, material.alignment, material.plans, material.background, {}};
    for (std::size_t i = 0; i < material.takes.size(); ++i)
    {
        if (material.folds.takes[i] == fold)
        {
            recordings.wanted.push_back(i);
        }
    }
    FindPhrasePlaces(model, recordings, pool, &places->phrases);
    Append(FindDamagedPlaces(model, recordings, material.seed, pool), &places->damaged);
    Append(FindBackgroundPeaks(model, RecordingsOf(fold, material), pool), &places->background);
}

} // namespace velox::engine
