#include "engine/enrollment/Augmentation.h"

#include "engine/base/AudioFormat.h"
#include "engine/enrollment/SpeedChange.h"
#include "engine/sound/FastConvolution.h"
#include "engine/sound/SpeechLevel.h"

#include <Eigen/Core>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velox::engine
{

namespace
{

using Samples = std::vector<float>;

double Draw(const Range& range, RandomStream* random)
{
    return range.least + (range.most - range.least) * random->Uniform();
}

bool Chance(double probability, RandomStream* random)
{
    return random->Uniform() < probability;
}

double Amplitude(double decibels)
{
    return std::pow(10.0, decibels / 20.0);
}

Eigen::Map<const Eigen::ArrayXf> AsArray(std::span<const float> samples)
{
    return {samples.data(), static_cast<Eigen::Index>(samples.size())};
}

Eigen::Map<Eigen::ArrayXf> AsArray(Samples* samples)
{
    return {samples->data(), static_cast<Eigen::Index>(samples->size())};
}

double RootMeanSquare(std::span<const float> samples)
{
    return samples.empty() ? 0.0 : std::sqrt(static_cast<double>(AsArray(samples).square().mean()));
}

/// Factor that brings `present` to `wanted`; silence stays as it is.
float GainTo(double wanted, double present)
{
    return present > 0.0 ? static_cast<float>(wanted / present) : 1.0F;
}

/// Every sample of the background begins a piece with the same chance: were recordings drawn, babble would be of short ones.
BackgroundPiece DrawPiece(std::span<const Samples> background, RandomStream* random)
{
    std::size_t all = 0;
    for (const Samples& recording : background)
    {
        all += recording.size();
    }
    BackgroundPiece piece{0, static_cast<std::size_t>(random->Integer(0, std::max<int64_t>(static_cast<int64_t>(all), 1) - 1))};
    while (piece.recording + 1 < background.size() && piece.start >= background[piece.recording].size())
    {
        piece.start -= background[piece.recording].size();
        ++piece.recording;
    }
    return piece;
}

std::vector<BackgroundPiece> DrawBabble(const AugmentationRanges& ranges, std::span<const Samples> background,
                                        RandomStream* random)
{
    std::vector<BackgroundPiece> pieces(static_cast<std::size_t>(random->Integer(ranges.fewestPieces, ranges.mostPieces)));
    std::generate(pieces.begin(), pieces.end(), [&] { return DrawPiece(background, random); });
    return pieces;
}

Lead DrawLead(const AugmentationRanges& ranges, std::span<const Samples> background, RandomStream* random)
{
    Lead lead;
    lead.frames = static_cast<std::size_t>(random->Integer(ranges.fewestLeadFrames, ranges.mostLeadFrames));
    if (Chance(ranges.leadSpeechChance, random) && !background.empty())
    {
        lead.speech = DrawPiece(background, random);
        lead.level = Draw(ranges.leadLevel, random);
    }
    return lead;
}

NoisePlan DrawNoise(const AugmentationRanges& ranges, std::span<const Samples> background, RandomStream* random)
{
    NoisePlan noise;
    noise.signalToNoise = Draw(ranges.signalToNoise, random);
    if (Chance(ranges.suddenChance, random))
    {
        noise.quiet = static_cast<std::size_t>(random->Integer(1, SampleRate / 2));
    }
    if (Chance(ranges.babbleChance, random) && !background.empty())
    {
        noise.babble = DrawBabble(ranges, background, random);
    }
    else
    {
        noise.colour = Draw(ranges.colour, random);
        noise.seed = random->Bits();
    }
    return noise;
}

void Tilt(double tap, Samples* samples)
{
    const auto weight = static_cast<float>(tap);
    float former = 0.0F;
    for (float& sample : *samples)
    {
        const float present = sample;
        sample += weight * former;
        former = present;
    }
}

/// Linear-phase response of a band-pass filter; its delay is half its length.
Samples BandResponse(const Band& band)
{
    constexpr int Delay = 160; // 165 Hz from pass band to stop band
    const auto lowPass = [](double frequency, int i) {
        const double cutoff = 2.0 * frequency / static_cast<double>(SampleRate);
        const double phase = std::numbers::pi * cutoff * i;
        return i == 0 ? cutoff : cutoff * std::sin(phase) / phase;
    };
    Samples response;
    for (int i = -Delay; i <= Delay; ++i)
    {
        const double hamming = 0.54 + 0.46 * std::cos(std::numbers::pi * i / Delay);
        const double lower = band.low > 0.0 ? lowPass(band.low, i) : 0.0;
        response.push_back(static_cast<float>(hamming * (lowPass(band.high, i) - lower)));
    }
    return response;
}

/// A stretch of the background.
Samples Cut(const BackgroundPiece& piece, std::span<const Samples> background, std::size_t count)
{
    Samples stretch;
    stretch.reserve(count);
    std::size_t start = piece.start;
    std::size_t empty = 0; // recordings in a row
    for (std::size_t number = piece.recording; stretch.size() < count && empty < background.size(); ++number)
    {
        const Samples& recording = background[number % background.size()];
        const std::size_t end = std::min(recording.size(), start + (count - stretch.size()));
        empty = recording.empty() ? empty + 1 : 0;
        stretch.insert(stretch.end(), recording.begin() + static_cast<std::ptrdiff_t>(std::min(start, end)),
                       recording.begin() + static_cast<std::ptrdiff_t>(end));
        start = 0;
    }
    stretch.resize(count, 0.0F);
    return stretch;
}

Samples Babble(std::span<const BackgroundPiece> pieces, std::span<const Samples> background, std::size_t count)
{
    Samples sum(count, 0.0F);
    for (const BackgroundPiece& piece : pieces)
    {
        const Samples stretch = Cut(piece, background, count);
        AsArray(&sum) += GainTo(1.0, RootMeanSquare(stretch)) * AsArray(stretch);
    }
    return sum;
}

/// The recording with a pause in it, and slopes at its ends that make no click.
Samples WithPause(const Pause& pause, std::span<const float> recording)
{
    constexpr std::size_t Slope = FrameSize / 2;
    const std::size_t start = std::min(pause.start * FrameSize, recording.size());
    const std::size_t count = pause.frames * FrameSize;
    Samples all(recording.begin(), recording.begin() + static_cast<std::ptrdiff_t>(start));
    all.resize(start + count, 0.0F);
    all.insert(all.end(), recording.begin() + static_cast<std::ptrdiff_t>(start), recording.end());
    for (std::size_t i = 0; i < std::min({Slope, start, recording.size() - start}); ++i)
    {
        const float gain = (static_cast<float>(i) + 0.5F) / static_cast<float>(Slope);
        all[start - 1 - i] *= gain;
        all[start + count + i] *= gain;
    }
    return all;
}

/// The recording with what was heard before it.
Samples WithLead(const Lead& lead, std::span<const float> recording, std::span<const Samples> background)
{
    Samples all(lead.frames * FrameSize, 0.0F);
    if (lead.speech.has_value())
    {
        all = Cut(*lead.speech, background, all.size());
        AsArray(&all) *= GainTo(SpeechLevel(recording) * Amplitude(lead.level), SpeechLevel(all));
    }
    all.insert(all.end(), recording.begin(), recording.end());
    return all;
}

Samples ColouredNoise(double colour, uint64_t seed, std::size_t count)
{
    RandomStream random(seed);
    Samples noise(count);
    double value = 0.0;
    for (float& sample : noise)
    {
        value = colour * value + (2.0 * random.Uniform() - 1.0);
        sample = static_cast<float>(value);
    }
    return noise;
}

/// @param speechStart  first sample of what the noise is set against
void AddNoise(const NoisePlan& plan, std::span<const Samples> background, std::size_t speechStart, Samples* samples)
{
    const Samples noise = plan.babble.empty() ? ColouredNoise(plan.colour, plan.seed, samples->size())
                                              : Babble(plan.babble, background, samples->size());
    const double wanted = SpeechLevel(std::span(*samples).subspan(speechStart)) / Amplitude(plan.signalToNoise);
    const auto gain = GainTo(wanted, RootMeanSquare(noise));
    const auto begin = static_cast<Eigen::Index>(plan.quiet > 0 ? std::min(speechStart + plan.quiet, samples->size()) : 0);
    const Eigen::Index count = static_cast<Eigen::Index>(samples->size()) - begin;
    AsArray(samples).tail(count) += gain * AsArray(noise).tail(count);
}

void SetLevel(double level, std::size_t speechStart, Samples* samples)
{
    const float gain = GainTo(Amplitude(level), SpeechLevel(std::span(*samples).subspan(speechStart)));
    AsArray(samples) = (gain * AsArray(samples)).max(-1.0F).min(1.0F);
}

} // namespace

AugmentationPlan DrawPlan(const AugmentationRanges& ranges, std::span<const std::vector<float>> background, RandomStream* random)
{
    AugmentationPlan plan;
    if (Chance(ranges.leadChance, random))
    {
        plan.lead = DrawLead(ranges, background, random);
    }
    if (Chance(ranges.tempoChance, random))
    {
        plan.speed = Draw(ranges.tempo, random);
    }
    plan.warp = plan.speed / Draw(ranges.formant, random);
    if (Chance(ranges.tiltChance, random))
    {
        plan.tilt = Draw(ranges.tilt, random);
    }
    if (Chance(ranges.bandChance, random))
    {
        Band& band = plan.band.emplace();
        band.high = Draw(ranges.upperEdge, random);
        if (Chance(ranges.lowerEdgeChance, random))
        {
            band.low = Draw(ranges.lowerEdge, random);
        }
    }
    if (Chance(ranges.roomChance, random))
    {
        Room& room = plan.room.emplace();
        room.reverberationTime = Draw(ranges.reverberationTime, random);
        room.directToReverberant = Draw(ranges.directToReverberant, random);
        room.seed = random->Bits();
    }
    if (Chance(ranges.noiseChance, random))
    {
        plan.noise = DrawNoise(ranges, background, random);
    }
    plan.offset = static_cast<std::size_t>(random->Integer(0, static_cast<int64_t>(FrameSize) - 1));
    plan.level = Draw(ranges.level, random);
    return plan;
}

std::size_t LeadSamples(const AugmentationPlan& plan)
{
    return plan.lead.has_value() ? plan.lead->frames * FrameSize : 0;
}

std::vector<float> MakeCopy(const AugmentationPlan& plan, std::span<const float> recording,
                            std::span<const std::vector<float>> background)
{
    Samples copy = plan.pause.has_value() ? WithPause(*plan.pause, recording) : Samples(recording.begin(), recording.end());
    if (plan.lead.has_value())
    {
        copy = WithLead(*plan.lead, copy, background);
    }
    if (plan.speed != 1.0)
    {
        copy = ChangeSpeed(copy, plan.speed);
    }
    const auto speechStart = std::min(copy.size(), static_cast<std::size_t>(static_cast<double>(LeadSamples(plan)) / plan.speed));
    Tilt(plan.tilt, &copy);
    if (plan.band.has_value())
    {
        const Samples response = BandResponse(*plan.band);
        copy = FilterSignal(copy, response, response.size() / 2);
    }
    if (plan.room.has_value())
    {
        copy = FilterSignal(copy, RoomResponse(*plan.room));
    }
    if (plan.noise.has_value())
    {
        AddNoise(*plan.noise, background, speechStart, &copy);
    }
    SetLevel(plan.level, speechStart, &copy);
    copy.erase(copy.begin(), copy.begin() + static_cast<std::ptrdiff_t>(std::min(plan.offset, copy.size())));
    return copy;
}

} // namespace velox::engine
