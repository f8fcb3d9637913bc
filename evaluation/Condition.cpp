#include "evaluation/Condition.h"

#include "engine/base/AudioFormat.h"
#include "engine/base/RandomStream.h"
#include "engine/sound/FastConvolution.h"
#include "evaluation/Format.h"
#include "evaluation/ImageRoom.h"
#include "evaluation/TimeStretch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <tuple>
#include <utility>

namespace velox::evaluation
{

namespace
{

constexpr std::size_t Silence = engine::SampleRate / 2;
constexpr std::size_t LongBefore = 3 * engine::SampleRate;
constexpr int QuietRoom = 45;             // dB below the clip
constexpr std::size_t BabblingPeople = 6; // at once
constexpr double ReverberationTime = 0.45;

float Rms(std::span<const float> samples)
{
    double sum = 1e-12;
    for (const float sample : samples)
    {
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return static_cast<float>(std::sqrt(sum / static_cast<double>(std::max<std::size_t>(1, samples.size()))));
}

std::vector<float> White(std::size_t length, engine::RandomStream* random)
{
    std::vector<float> noise(length);
    std::generate(noise.begin(), noise.end(), [&] { return static_cast<float>(random->Normal()); });
    return noise;
}

/// White noise through three poles and zeros that together fall by 3 dB an octave (Kellet's "economy" filter).
std::vector<float> Pink(std::size_t length, engine::RandomStream* random)
{
    std::vector<float> noise = White(length, random);
    std::array<float, 3> state{};
    for (float& sample : noise)
    {
        const float white = sample;
        state[0] = 0.99765F * state[0] + 0.0990460F * white;
        state[1] = 0.96300F * state[1] + 0.2965164F * white;
        state[2] = 0.57000F * state[2] + 1.0526913F * white;
        sample = state[0] + state[1] + state[2] + 0.1848F * white;
    }
    return noise;
}

/// Several people at once, each as loud as the others.
std::vector<float> Babble(const std::vector<std::vector<float>>& talkers, std::size_t length, engine::RandomStream* random)
{
    std::vector<float> noise(length, 0.0F);
    for (std::size_t i = 0; i < BabblingPeople; ++i)
    {
        const auto& talker = talkers[static_cast<std::size_t>(random->Integer(0, static_cast<int64_t>(talkers.size()) - 1))];
        const auto start = static_cast<std::size_t>(random->Integer(0, static_cast<int64_t>(talker.size()) - 1));
        const float gain = 1.0F / Rms(talker);
        for (std::size_t n = 0; n < length; ++n)
        {
            noise[n] += gain * talker[(start + n) % talker.size()];
        }
    }
    return noise;
}

/// Silence before and behind a clip.
std::vector<float> Padded(std::span<const float> clip, std::size_t before)
{
    std::vector<float> padded(before, 0.0F);
    padded.insert(padded.end(), clip.begin(), clip.end());
    padded.resize(padded.size() + Silence, 0.0F);
    return padded;
}

/// Adds noise from the sample `first` on, so many dB below the clip itself.
/// @param padded  the clip with silence around it
std::vector<float> AddNoise(std::span<const float> clip, std::vector<float> padded, const std::vector<float>& noise,
                            double decibels, std::size_t first)
{
    const float gain = Rms(clip) / Rms(noise) * static_cast<float>(std::pow(10.0, -decibels / 20.0));
    for (std::size_t n = first; n < padded.size(); ++n)
    {
        padded[n] = std::clamp(padded[n] + gain * noise[n], -1.0F, 1.0F);
    }
    return padded;
}

/// Response of a band-pass (windowed sinc, Hamming).
std::vector<float> BandPass(double low, double high)
{
    constexpr int Half = 200;
    std::vector<float> response;
    for (int n = -Half; n <= Half; ++n)
    {
        const auto part = [n](double hertz) {
            const double share = 2.0 * hertz / engine::SampleRate;
            return n == 0 ? share : std::sin(std::numbers::pi * share * n) / (std::numbers::pi * n);
        };
        const double window = 0.54 + 0.46 * std::cos(std::numbers::pi * n / Half);
        response.push_back(static_cast<float>(window * (part(high) - part(low))));
    }
    return response;
}

std::vector<float> Scale(std::span<const float> clip, float gain)
{
    std::vector<float> scaled(clip.begin(), clip.end());
    std::transform(scaled.begin(), scaled.end(), scaled.begin(),
                   [gain](float sample) { return std::clamp(gain * sample, -1.0F, 1.0F); });
    return scaled;
}

float Peak(std::span<const float> clip)
{
    float peak = 1e-6F;
    for (const float sample : clip)
    {
        peak = std::max(peak, std::abs(sample));
    }
    return peak;
}

using Talkers = std::vector<std::vector<float>>;
using Noise = std::function<std::vector<float>(std::size_t length, engine::RandomStream* random)>;

std::vector<std::pair<std::string, Noise>> Noises(const Talkers& talkers)
{
    return {{"babble",
             [&talkers](std::size_t length, engine::RandomStream* random) {
                 return Babble(talkers, length, random);
             }},
            {"pink", Pink},
            {"white", White}};
}

/// @param before  silence before the clip, in samples
/// @param first   sample with which the noise begins
Condition NoiseCondition(const std::string& name, const Noise& noise, int decibels, std::size_t before, std::size_t first)
{
    return {name, [noise, decibels, before, first](std::span<const float> clip, uint64_t seed) {
                engine::RandomStream random(seed);
                const std::size_t length = before + clip.size() + Silence;
                return AddNoise(clip, Padded(clip, before), noise(length, &random), decibels, first);
            }};
}

void AddNoises(const Talkers& talkers, std::vector<Condition>* conditions)
{
    for (const auto& [kind, noise] : Noises(talkers))
    {
        for (const int decibels : {20, 10, 5})
        {
            const std::string name = kind + " " + std::to_string(decibels) + " dB";
            conditions->push_back(NoiseCondition(name, noise, decibels, Silence, 0));
            if (decibels == 10)
            {
                const Goal predefined = kind == "white" ? Goal() : Goal{8.0};
                conditions->back().predefined = predefined;
                conditions->back().user = {3.0};
                conditions->push_back(NoiseCondition(name + " that begins with the take", noise, decibels, Silence, Silence));
                conditions->push_back(NoiseCondition(name + " that was there before", noise, decibels, LongBefore, 0));
            }
        }
    }
}

/// A microphone louder or lower; louder only as far as the format allows: a clipped recording would be another condition.
std::vector<float> AtLevel(std::span<const float> clip, int decibels)
{
    return Scale(clip, std::min(static_cast<float>(std::pow(10.0, decibels / 20.0)), 0.99F / Peak(clip)));
}

void AddLevelsAndTempos(std::vector<Condition>* conditions)
{
    for (const int decibels : {-20, -10, 10})
    {
        conditions->push_back({"level " + std::to_string(decibels) + " dB",
                               [decibels](std::span<const float> clip, uint64_t) { return WithSilence(AtLevel(clip, decibels)); },
                               {},
                               {1.0}});
    }
    for (const double tempo : {0.75, 0.8, 0.9, 1.1, 1.2, 1.3, 1.35})
    {
        const Goal predefined = tempo == 0.8 || tempo == 1.3 ? Goal{8.0} : Goal();
        conditions->push_back({"tempo " + Short(tempo),
                               [tempo](std::span<const float> clip, uint64_t) { return WithSilence(ChangeTempo(clip, tempo)); },
                               predefined, predefined.IsSet() ? Goal{3.0} : Goal()});
    }
}

void AddBands(std::vector<Condition>* conditions)
{
    for (const auto& [name, low, high] : {std::tuple{"telephone", 300.0, 3400.0}, std::tuple{"low-pass 4 kHz", 0.0, 4000.0}})
    {
        const std::vector<float> response = BandPass(low, high);
        conditions->push_back({name,
                               [response](std::span<const float> clip, uint64_t) {
                                   return WithSilence(engine::FilterSignal(clip, response, response.size() / 2));
                               },
                               {5.0}});
    }
}

/// A take after digital silence, after the hiss of a quiet room, after other speech.
void AddBefore(const Talkers& talkers, std::vector<Condition>* conditions)
{
    conditions->push_back({"after zeros", [](std::span<const float> clip, uint64_t) {
                               return Padded(clip, LongBefore);
                           }});
    conditions->push_back(NoiseCondition("after silence", White, QuietRoom, LongBefore, 0));
    conditions->push_back({"after speech", [&talkers](std::span<const float> clip, uint64_t noise) {
                               const std::vector<float>& talker = talkers[noise % talkers.size()];
                               const std::size_t length = std::min(talker.size(), LongBefore);
                               std::vector<float> samples = Scale(std::span(talker).first(length), Rms(clip) / Rms(talker));
                               const std::vector<float> phrase = Padded(clip, Silence / 2);
                               samples.insert(samples.end(), phrase.begin(), phrase.end());
                               return samples;
                           }});
}

} // namespace

std::vector<float> WithSilence(std::span<const float> clip)
{
    return Padded(clip, Silence);
}

Condition CleanCondition()
{
    return {"clean", [](std::span<const float> clip, uint64_t) { return WithSilence(clip); }, {3.0}, {1.0}};
}

std::vector<Condition> Conditions(const Talkers& talkers)
{
    std::vector<Condition> conditions = {CleanCondition()};
    AddNoises(talkers, &conditions);
    conditions.push_back({"room",
                          [](std::span<const float> clip, uint64_t noise) {
                              const std::vector<float> response = ImageRoomResponse(ReverberationTime, noise);
                              const std::vector<float> heard = engine::FilterSignal(WithSilence(clip), response);
                              return Scale(heard, 0.5F / Peak(heard));
                          },
                          {8.0},
                          {3.0}});
    AddLevelsAndTempos(&conditions);
    AddBands(&conditions);
    AddBefore(talkers, &conditions);
    return conditions;
}

} // namespace velox::evaluation
