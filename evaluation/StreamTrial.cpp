#include "evaluation/Format.h"
#include "evaluation/Listening.h"
#include "evaluation/Trial.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <map>

namespace velox::evaluation
{

namespace
{

constexpr std::size_t Offsets = 16;
constexpr double MostPlaceError = 100.0; // milliseconds
constexpr float SpeechLevel = 0.03F;     // of a clip's peak: where it starts and ends
constexpr double Everything = 100.0;     // percent: where there is no clip

/// @return the least and the most of a clip's score as the frames' borders move over it
std::pair<float, float> ScoreRange(const engine::PhraseModel& model, const Clip& clip)
{
    float least = engine::ScoreScale::Most;
    float most = engine::ScoreScale::Least;
    for (std::size_t i = 0; i < Offsets; ++i)
    {
        std::vector<float> samples(i * engine::FrameSize / Offsets, 0.0F);
        const std::vector<float> padded = WithSilence(clip.samples);
        samples.insert(samples.end(), padded.begin(), padded.end());
        const float score = BestIn(model, samples).score;
        least = std::min(least, score);
        most = std::max(most, score);
    }
    return {least, most};
}

/// How many milliseconds late start and end of a detection are, beside where the clip's speech lies.
std::pair<double, double> PlaceErrors(const engine::Detection& found, std::span<const float> padded)
{
    float peak = 0.0F;
    for (const float sample : padded)
    {
        peak = std::max(peak, std::abs(sample));
    }
    const auto loud = [peak](float sample) {
        return std::abs(sample) > SpeechLevel * peak;
    };
    const auto first = std::find_if(padded.begin(), padded.end(), loud) - padded.begin();
    const auto last = padded.rend() - std::find_if(padded.rbegin(), padded.rend(), loud);
    constexpr double PerMillisecond = engine::SampleRate / 1000.0;
    return {static_cast<double>(found.startSample - first) / PerMillisecond,
            static_cast<double>(found.endSample - last) / PerMillisecond};
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

} // namespace

void TryStream(const Language& language, const Judged& judged, Report* report)
{
    const auto threshold = static_cast<float>(language.blobs.preDefinedThreshold);
    std::map<std::string, std::vector<double>> spreads{{"natural", {}}}; // by kind of voice, in percent of the threshold
    Share misplaced;
    std::vector<double> startErrors;
    std::vector<double> endErrors;
    for (const Clip& take : judged.takes)
    {
        const auto [least, most] = ScoreRange(language.firmware, take);
        spreads[take.entry.kind].push_back(100.0 * static_cast<double>((most - least) / threshold));
        report->Note("offsets of " + take.entry.path + ": " + Short(static_cast<double>(least)) + " to " +
                     Short(static_cast<double>(most)));
        const std::vector<float> padded = WithSilence(take.samples);
        const engine::Detection best = BestIn(language.firmware, padded);
        if (best.score >= threshold)
        {
            const auto [start, end] = PlaceErrors(best, padded);
            startErrors.push_back(start);
            endErrors.push_back(end);
            misplaced.Add(std::max(std::abs(start), std::abs(end)) > MostPlaceError);
        }
    }
    for (const auto& [kind, ofKind] : spreads)
    {
        const std::string name = judged.phrase + ": spread of the score over offsets, ";
        const double worst = ofKind.empty() ? Everything : *std::ranges::max_element(ofKind);
        report->Add(name + "median, " + kind, Median(ofKind), {});
        report->Add(name + "worst clip, " + kind, worst, kind == "natural" ? Goal{10.0} : Goal());
    }
    report->Add(judged.phrase + ": place more than 100 ms off", misplaced, {5.0});
    report->Add(judged.phrase + ": start reported late, median", Median(startErrors), {}, "ms");
    report->Add(judged.phrase + ": end reported late, median", Median(endErrors), {}, "ms");

    const Clip& longest = *std::max_element(judged.background.begin(), judged.background.end(),
                                            [](const Clip& a, const Clip& b) { return a.samples.size() < b.samples.size(); });
    const std::clock_t start = std::clock();
    constexpr int Rounds = 5;
    for (int i = 0; i < Rounds; ++i)
    {
        Listen(language.firmware, longest.samples);
    }
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    report->Add(judged.phrase + ": real-time factor, processor time",
                seconds / Rounds * engine::SampleRate / static_cast<double>(longest.samples.size()), {0.001}, "");
    report->Add(judged.phrase + ": seconds of the training", language.trainingSeconds, {60.0}, "s");
    report->Add(judged.phrase + ": bytes of the firmware model", static_cast<double>(language.blobs.firmwareModel.size()),
                {160.0 * 1024.0}, "");
}

} // namespace velox::evaluation
