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

std::vector<BackgroundPiece> DrawBabble(const AugmentationRanges& ranges, std::span<const Samples> background,
                                        RandomStream* random)
{
    std::vector<BackgroundPiece> pieces(static_cast<std::size_t>(random->Integer(ranges.fewestPieces, ranges.mostPieces)));
    for (BackgroundPiece& piece : pieces)
    {
        piece.recording = static_cast<std::size_t>(random->Integer(0, static_cast<int64_t>(background.size()) - 1));
        const auto length = static_cast<int64_t>(background[piece.recording].size());
        piece.start = static_cast<std::size_t>(random->Integer(0, std::max<int64_t>(length, 1) - 1));
    }
    return pieces;
}

NoisePlan DrawNoise(const AugmentationRanges& ranges, std::span<const Samples> background, RandomStream* random)
{
    NoisePlan noise;
    noise.signalToNoise = Draw(ranges.signalToNoise, random);
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

/// A stretch of a recording that begins anew when its end comes.
Samples Cut(std::span<const float> recording, std::size_t start, std::size_t count)
{
    Samples stretch(count, 0.0F);
    for (std::size_t done = 0; done < count && !recording.empty();)
    {
        const std::span<const float> part = recording.subspan(start, std::min(count - done, recording.size() - start));
        std::copy(part.begin(), part.end(), stretch.begin() + static_cast<std::ptrdiff_t>(done));
        done += part.size();
        start = 0;
    }
    return stretch;
}

Samples Babble(std::span<const BackgroundPiece> pieces, std::span<const Samples> background, std::size_t count)
{
    Samples sum(count, 0.0F);
    for (const BackgroundPiece& piece : pieces)
    {
        const Samples stretch = Cut(background[piece.recording], piece.start, count);
        AsArray(&sum) += GainTo(1.0, RootMeanSquare(stretch)) * AsArray(stretch);
    }
    return sum;
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

void AddNoise(const NoisePlan& plan, std::span<const Samples> background, Samples* samples)
{
    const Samples noise = plan.babble.empty() ? ColouredNoise(plan.colour, plan.seed, samples->size())
                                              : Babble(plan.babble, background, samples->size());
    const double wanted = SpeechLevel(*samples) / Amplitude(plan.signalToNoise);
    AsArray(samples) += GainTo(wanted, RootMeanSquare(noise)) * AsArray(noise);
}

void SetLevel(double level, Samples* samples)
{
    const float gain = GainTo(Amplitude(level), SpeechLevel(*samples));
    AsArray(samples) = (gain * AsArray(samples)).max(-1.0F).min(1.0F);
}

} // namespace

AugmentationPlan DrawPlan(const AugmentationRanges& ranges, std::span<const std::vector<float>> background, RandomStream* random)
{
    AugmentationPlan plan;
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
    plan.level = Draw(ranges.level, random);
    return plan;
}

std::vector<float> MakeCopy(const AugmentationPlan& plan, std::span<const float> recording,
                            std::span<const std::vector<float>> background)
{
    Samples copy = plan.speed == 1.0 ? Samples(recording.begin(), recording.end()) : ChangeSpeed(recording, plan.speed);
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
        AddNoise(*plan.noise, background, &copy);
    }
    SetLevel(plan.level, &copy);
    return copy;
}

} // namespace velox::engine
