#include "engine/training/PhrasePlaces.h"

#include "engine/training/TakeDamage.h"

namespace velox::engine
{

namespace
{

constexpr int DamagedPerTake = 6;

std::vector<PhrasePlace> FindInDamaged(const PhraseModel& model, const PreparedTake& take,
                                       const std::vector<std::vector<float>>& background, uint64_t seed)
{
    RandomStream random(seed);
    std::vector<PhrasePlace> places;
    for (int i = 0; i < DamagedPerTake; ++i)
    {
        const std::vector<float> near = Pad(DamageTake(take.PhraseSamples(), background, &random));
        if (auto place = FindPhrase(model, near))
        {
            places.push_back(std::move(*place));
        }
    }
    return places;
}

} // namespace

void FindPhrasePlaces(const PhraseModel& model, const PhraseRecordings& recordings, WorkerPool* pool, PhrasePlaces* places)
{
    places->takes.resize(recordings.takes.size());
    places->copies.resize(recordings.plans.size());
    const std::size_t takeCopies = recordings.plans.size() / recordings.takes.size();
    pool->Run(static_cast<int>(recordings.wanted.size()), [&](int part) {
        const std::size_t number = recordings.wanted[static_cast<std::size_t>(part)];
        if (recordings.alignment.labels[number].empty())
        {
            return;
        }
        places->takes[number] = FindPhrase(model, recordings.takes[number].samples).value_or(PhrasePlace{});
        for (std::size_t slot = number * takeCopies; slot < (number + 1) * takeCopies; ++slot)
        {
            const AugmentationPlan& plan = recordings.plans[slot];
            const std::vector<float> copy = MakeCopy(plan, recordings.takes[number].samples, recordings.background);
            places->copies[slot] = FindPhrase(model, copy, plan.warp).value_or(PhrasePlace{});
        }
    });
}

std::vector<PhrasePlace> FindDamagedPlaces(const PhraseModel& model, const PhraseRecordings& recordings, uint64_t seed,
                                           WorkerPool* pool)
{
    std::vector<std::vector<PhrasePlace>> damaged(recordings.wanted.size());
    pool->Run(static_cast<int>(damaged.size()), [&](int part) {
        const auto slot = static_cast<std::size_t>(part);
        const std::size_t number = recordings.wanted[slot];
        if (!recordings.alignment.labels[number].empty())
        {
            damaged[slot] = FindInDamaged(model, recordings.takes[number], recordings.background, seed * 9000011U + number);
        }
    });
    std::vector<PhrasePlace> places;
    for (std::vector<PhrasePlace>& found : damaged)
    {
        std::move(found.begin(), found.end(), std::back_inserter(places));
    }
    return places;
}

} // namespace velox::engine
