#include "engine/training/PopulationTraining.h"

#include "engine/listening/PathDescription.h"

#include <algorithm>
#include <functional>
#include <set>

namespace velox::engine
{

namespace
{

std::vector<Population::Place> HighestOf(const PhraseModel& model, std::vector<PhrasePlace> peaks)
{
    std::vector<std::pair<float, std::size_t>> judged;
    for (std::size_t i = 0; i < peaks.size(); ++i)
    {
        judged.emplace_back(JudgePath(model, peaks[i].path), i);
    }
    const std::size_t kept = std::min(Population::MostPeaks, peaks.size());
    std::partial_sort(judged.begin(), judged.begin() + static_cast<std::ptrdiff_t>(kept), judged.end(), std::greater<>());
    std::vector<Population::Place> highest;
    for (const auto& [factors, number] : std::span(judged).first(kept))
    {
        highest.push_back({factors, std::move(peaks[number].path.counts), std::move(peaks[number].features)});
    }
    return highest;
}

std::vector<Population::Place> OneOfEachVoice(const PopulationMaterial& material)
{
    std::vector<Population::Place> speakers;
    std::set<std::string> voices;
    for (std::size_t i = 0; i < material.takes.size() && speakers.size() < Population::MostSpeakers; ++i)
    {
        const PhrasePlace& place = material.places[i];
        if (!place.features.empty() && voices.insert(material.takes[i].voice).second)
        {
            speakers.push_back({material.factors[i], place.path.counts, place.features});
        }
    }
    return speakers;
}

/// Pieces of the recordings joined, at equal distances.
std::vector<std::vector<float>> PiecesOf(const std::vector<std::vector<float>>& background)
{
    std::size_t all = 0;
    for (const std::vector<float>& recording : background)
    {
        all += recording.size();
    }
    const std::size_t length = std::min(Population::MostTalkerSamples, all / Population::MostTalkers);
    std::vector<std::vector<float>> pieces(Population::MostTalkers);
    std::size_t before = 0;
    for (const std::vector<float>& recording : background)
    {
        for (std::size_t piece = 0; piece < pieces.size(); ++piece)
        {
            const std::size_t begin = std::max(before, piece * all / pieces.size());
            const std::size_t end = std::min(before + recording.size(), piece * all / pieces.size() + length);
            if (begin < end)
            {
                const auto from = recording.begin() + static_cast<std::ptrdiff_t>(begin - before);
                std::transform(from, from + static_cast<std::ptrdiff_t>(end - begin), std::back_inserter(pieces[piece]),
                               [](float sample) { return std::clamp(sample, -1.0F, 1.0F); });
            }
        }
        before += recording.size();
    }
    std::erase_if(pieces, [](const std::vector<float>& piece) { return piece.empty(); });
    return pieces;
}

} // namespace

Population MakePopulation(const PhraseModel& model, PopulationMaterial material)
{
    std::vector<Population::Place> speakers = OneOfEachVoice(material);
    return {material.hours, HighestOf(model, std::move(material.peaks)), std::move(speakers), PiecesOf(material.background)};
}

} // namespace velox::engine
