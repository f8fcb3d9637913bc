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

PhrasePlaces FindPhrasePlaces(const PhraseModel& model, const std::vector<PreparedTake>& takes, const PhraseAlignment& alignment,
                              const std::vector<AugmentationPlan>& plans, const std::vector<std::vector<float>>& background,
                              uint64_t seed, WorkerPool* pool)
{
    PhrasePlaces places;
    places.takes.resize(takes.size());
    places.copies.resize(plans.size());
    std::vector<std::vector<PhrasePlace>> damaged(takes.size());
    const std::size_t takeCopies = plans.size() / takes.size();
    pool->Run(static_cast<int>(takes.size()), [&](int part) {
        const auto number = static_cast<std::size_t>(part);
        if (alignment.labels[number].empty())
        {
            return;
        }
        places.takes[number] = FindPhrase(model, takes[number].samples).value_or(PhrasePlace{});
        for (std::size_t slot = number * takeCopies; slot < (number + 1) * takeCopies; ++slot)
        {
            const std::vector<float> copy = MakeCopy(plans[slot], takes[number].samples, background);
            places.copies[slot] = FindPhrase(model, copy, plans[slot].warp).value_or(PhrasePlace{});
        }
        damaged[number] = FindInDamaged(model, takes[number], background, seed * 9000011U + number);
    });
    for (std::vector<PhrasePlace>& found : damaged)
    {
        std::move(found.begin(), found.end(), std::back_inserter(places.damaged));
    }
    return places;
}

} // namespace velox::engine
