#include "engine/training/PhrasePlaces.h"

#include "engine/training/TakeDamage.h"

namespace velox::engine
{

namespace
{

std::vector<PhrasePlace> FindInDamaged(const PhraseModel& model, const PhraseRecordings& recordings, std::size_t number,
                                       uint64_t seed)
{
    std::vector<PhrasePlace> places;
    for (const DamagedCopy& copy : DamagedCopies(recordings.takes[number], number, recordings.background, seed))
    {
        const std::vector<float> samples = MakeCopy(copy.plan, copy.take.samples, recordings.background);
        if (auto place = FindPhrase(model, samples, copy.plan.warp))
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
            damaged[slot] = FindInDamaged(model, recordings, number, seed);
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
