#include "console/takes/TakeComparison.h"

#include "console/audio/SampleTime.h"
#include "console/text/Interruption.h"
#include "console/text/Wording.h"
#include "engine/enrollment/Enrollment.h"
#include "engine/enrollment/TakeAgreement.h"
#include "engine/listening/PhraseSearch.h"
#include "engine/listening/SpeakerRatio.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace velox::console
{

namespace
{

/// Takes are of one voice that have at least this share of the likeness that takes have to the one most like them. Of synthesised
/// takes, about one pair in a hundred of one voice has less, and more than eight in ten of two voices.
constexpr float LeastShare = 0.4F;
using TakeNumbers = std::vector<std::size_t>;

template <typename Number>
Number MiddleOf(std::vector<Number> values)
{
    const auto middle = values.begin() + std::ssize(values) / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// What of the takes is compared besides the voice.
struct ComparedFigure
{
    double (*of)(const Take&);
    bool (*differ)(double own, double other);
    const char* code;
    const char* text; ///< of the take's figure and that in the middle of the others'
    const char* fix;
};
constexpr std::array ComparedFigures{
    // The phrase was said differently, or not whole.
    ComparedFigure{[](const Take& take) { return Seconds(take.review.phrase->endSample - take.review.phrase->startSample); },
                   [](double own, double other) { return std::max(own, other) > 1.5 * std::min(own, other); }, "UnlikeInLength",
                   "unlike the others: the phrase takes {:.2f} s, in the others {:.2f} s", "Say it at your usual pace."},
    // Levels further apart, in dB, teach the model the distance and not the voice.
    ComparedFigure{[](const Take& take) { return take.review.level; },
                   [](double own, double other) { return std::abs(own - other) > 12.0; }, "UnlikeInLevel",
                   "unlike the others: the speech has {:.0f} dB, in the others {:.0f} dB",
                   "Keep the distance and the recording level the same."},
    // Three factors e of the false-alarm rate.
    ComparedFigure{[](const Take& take) { return static_cast<double>(take.review.phrase->score); },
                   [](double own, double other) { return other - own > 30.0; }, "UnlikeInScore",
                   "unlike the others: it scores {:.0f}, the others {:.0f}", "Say the phrase more clearly."},
};

/// Mean over the pairs.
float Likeness(const Eigen::MatrixXf& pairs, const TakeNumbers& one, const TakeNumbers& other)
{
    return pairs(one, other).mean();
}

/// From which on takes are of one voice.
float LeastLikeness(Eigen::MatrixXf pairs)
{
    pairs.diagonal().setConstant(-engine::MostSpeakerRatio);
    const Eigen::VectorXf best = pairs.rowwise().maxCoeff();
    return std::max(0.0F, LeastShare * MiddleOf(std::vector<float>(best.begin(), best.end())));
}

/// Each take belongs to the voice that it is most like, or to a new one; the voice with the most takes comes first.
std::vector<TakeNumbers> GroupByVoice(const Eigen::MatrixXf& pairs, float least)
{
    std::vector<TakeNumbers> voices;
    for (std::size_t take = 0; take < static_cast<std::size_t>(pairs.rows()); ++take)
    {
        const auto likeness = [&](const TakeNumbers& voice) {
            return Likeness(pairs, {take}, voice);
        };
        const auto most = std::ranges::max_element(voices, {}, likeness);
        (most != voices.end() && likeness(*most) >= least ? *most : voices.emplace_back()).push_back(take);
    }
    std::ranges::stable_sort(voices, std::greater<>(), &TakeNumbers::size);
    return voices;
}

class TakeComparer
{
public:
    TakeComparer(std::span<Take> allTakes, const StandInModels& standInModels) : takes(allTakes), accepted(NumbersOf(takes, true))
    {
        FindRepeated();
        if (standInModels.acoustic && accepted.size() > 1)
        {
            CompareVoices(*standInModels.acoustic);
        }
        CompareFigures();
    }

    TakeComparison comparison;

private:
    void Name(std::size_t take, const char* code, std::string text, const char* fix)
    {
        takes[take].remarks.push_back({Tone::Warning, code, std::move(text), fix});
        comparison.again.push_back(take);
    }

    /// Nothing is learned from the same samples twice.
    void FindRepeated()
    {
        for (auto take = accepted.begin(); take != accepted.end(); ++take)
        {
            const auto first = std::find_if(accepted.begin(), take, [&](std::size_t earlier) {
                return takes[earlier].audio.samples == takes[*take].audio.samples;
            });
            if (first != take)
            {
                comparison.remarks.push_back({Tone::Warning, "Repeated",
                                              takes[*take].file + " is the same recording as " + takes[*first].file,
                                              "Record each take anew."});
                comparison.again.push_back(*take);
            }
        }
    }

    /// Compares the voices as the engine does, by the clean frames of the phrase.
    void CompareVoices(const engine::AcousticModel& acoustic)
    {
        std::vector<engine::PhraseFrames> frames;
        TakeNumbers numbers;
        for (const std::size_t i : accepted)
        {
            StopIfInterrupted();
            if (const auto place = engine::FindPhrase(acoustic.phrase, engine::WithSilence(takes[i].audio.samples)))
            {
                frames.push_back({engine::SpeakerFrames(place->features), place->path.counts, 1.0F});
                numbers.push_back(i);
            }
        }
        const std::vector<float> ratios = engine::RatiosToOthers(acoustic.generic, frames);
        if (ratios.empty())
        {
            return;
        }
        const Eigen::MatrixXf pairs = engine::PairRatios(acoustic.generic, frames);
        const float least = LeastLikeness(pairs);
        const std::vector<TakeNumbers> voices = GroupByVoice(pairs, least);
        for (std::size_t i = 0; i < ratios.size(); ++i)
        {
            takes[numbers[i]].likeness = ratios[i];
            if (ratios[i] < 0.0F && voices.size() == 1) // the engine will not learn from these takes
            {
                NameVoice(numbers[i], ratios[i], 0.0F);
            }
        }
        const std::size_t largest = voices.front().size();
        const auto equals = static_cast<std::size_t>(std::ranges::count(voices, largest, &TakeNumbers::size));
        std::vector<std::string> parts;
        for (std::size_t i = 0; i < voices.size(); ++i)
        {
            TakeNumbers named;
            std::ranges::transform(voices[i], std::back_inserter(named), [&](std::size_t take) { return numbers[take]; });
            if (i < equals && equals > 1 && largest > 1)
            {
                parts.push_back(fmt::format("{} sound alike", fmt::join(NamesOf(takes, named), " and ")));
            }
            else if (i > 0 || equals > 1)
            {
                const float likeness = Likeness(pairs, voices[i], voices[i == 0 ? 1 : 0]);
                std::ranges::for_each(named, [&](std::size_t take) { NameVoice(take, likeness, least); });
            }
        }
        if (!parts.empty())
        {
            comparison.remarks.push_back({Tone::Warning, "TwoVoices",
                                          (equals == 2 ? "two" : std::to_string(equals)) + " voices: " + Joined(parts),
                                          "Enroll one person, with that person's takes alone."});
        }
    }

    void NameVoice(std::size_t take, float likeness, float least)
    {
        Name(take, "UnlikeInVoice",
             fmt::format("unlike the others in voice: likeness to each {:.1f} in the mean, at least {:.1f} is one voice",
                         likeness, least),
             "Is it the same person, at the same distance? Record it again.");
    }

    void CompareFigures()
    {
        TakeNumbers unnamed;
        std::ranges::copy_if(accepted, std::back_inserter(unnamed), [&](std::size_t i) {
            return takes[i].review.phrase && std::ranges::find(comparison.again, i) == comparison.again.end();
        });
        for (const ComparedFigure& figure : ComparedFigures)
        {
            for (const std::size_t take : unnamed)
            {
                CompareFigure(figure, take, unnamed);
            }
        }
    }

    /// Names a take whose figure differs from more than half of the others': of three takes only the odd one does, of two both.
    void CompareFigure(const ComparedFigure& figure, std::size_t take, const TakeNumbers& among)
    {
        const double own = figure.of(takes[take]);
        std::vector<double> others;
        for (const std::size_t other : among)
        {
            if (other != take)
            {
                others.push_back(figure.of(takes[other]));
            }
        }
        if (2 * std::ranges::count_if(others, [&](double other) { return figure.differ(own, other); }) > std::ssize(others))
        {
            Name(take, figure.code, fmt::format(fmt::runtime(figure.text), own, MiddleOf(others)), figure.fix);
        }
    }

    std::span<Take> takes;
    TakeNumbers accepted;
};

} // namespace

TakeComparison CompareTakes(std::span<Take> takes, const StandInModels& models)
{
    return TakeComparer(takes, models).comparison;
}

std::vector<std::size_t> NumbersOf(std::span<const Take> takes, bool accepted)
{
    TakeNumbers numbers;
    for (std::size_t i = 0; i < takes.size(); ++i)
    {
        if (takes[i].accepted == accepted)
        {
            numbers.push_back(i);
        }
    }
    return numbers;
}

std::vector<std::string> NamesOf(std::span<const Take> takes, std::vector<std::size_t> numbers)
{
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    std::vector<std::string> names;
    std::ranges::transform(numbers, std::back_inserter(names), [&](std::size_t i) { return takes[i].file; });
    return names;
}

} // namespace velox::console
