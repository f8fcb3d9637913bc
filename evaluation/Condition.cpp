#include "evaluation/Condition.h"

#include "engine/base/AudioFormat.h"
#include "engine/base/RandomStream.h"
#include "engine/enrollment/Room.h"
#include "engine/sound/FastConvolution.h"
#include "evaluation/TimeStretch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace velox::evaluation
{

namespace
{

constexpr std::size_t Silence = engine::SampleRate / 2;
constexpr std::size_t Talkers = 6; // in a babble
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
    for (std::size_t i = 0; i < Talkers; ++i)
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

/// Adds noise under a clip and the silence around it, so many dB below the clip itself.
std::vector<float> AddNoise(std::span<const float> clip, std::vector<float> noise, double decibels)
{
    std::vector<float> mixed = WithSilence(clip);
    const float gain = Rms(clip) / Rms(noise) * static_cast<float>(std::pow(10.0, -decibels / 20.0));
    std::transform(mixed.begin(), mixed.end(), noise.begin(), mixed.begin(),
                   [gain](float a, float b) { return std::clamp(a + gain * b, -1.0F, 1.0F); });
    return mixed;
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

} // namespace

std::vector<float> WithSilence(std::span<const float> clip)
{
    std::vector<float> padded(Silence, 0.0F);
    padded.insert(padded.end(), clip.begin(), clip.end());
    padded.resize(padded.size() + Silence, 0.0F);
    return padded;
}

std::vector<Condition> PlaceConditions(const std::vector<std::vector<float>>& talkers)
{
    std::vector<Condition> conditions;
    conditions.push_back({"clean", [](std::span<const float> clip, uint64_t) {
                              return WithSilence(clip);
                          }});
    for (const int decibels : {20, 10, 5})
    {
        const auto suffix = " " + std::to_string(decibels) + " dB";
        conditions.push_back({"babble" + suffix, [&talkers, decibels](std::span<const float> clip, uint64_t number) {
                                  engine::RandomStream random(number);
                                  return AddNoise(clip, Babble(talkers, clip.size() + 2 * Silence, &random), decibels);
                              }});
        conditions.push_back({"pink" + suffix, [decibels](std::span<const float> clip, uint64_t number) {
                                  engine::RandomStream random(number);
                                  return AddNoise(clip, Pink(clip.size() + 2 * Silence, &random), decibels);
                              }});
        conditions.push_back({"white" + suffix, [decibels](std::span<const float> clip, uint64_t number) {
                                  engine::RandomStream random(number);
                                  return AddNoise(clip, White(clip.size() + 2 * Silence, &random), decibels);
                              }});
    }
    conditions.push_back({"room", [](std::span<const float> clip, uint64_t number) {
                              const std::vector<float> response = engine::RoomResponse({ReverberationTime, 0.0, number});
                              const std::vector<float> heard = engine::FilterSignal(WithSilence(clip), response);
                              return Scale(heard, 0.5F / Peak(heard));
                          }});
    return conditions;
}

std::vector<Condition> UserConditions(const std::vector<std::vector<float>>& talkers)
{
    std::vector<Condition> conditions;
    conditions.push_back({"telephone", [](std::span<const float> clip, uint64_t) {
                              const std::vector<float> response = BandPass(300.0, 3400.0);
                              return WithSilence(engine::FilterSignal(clip, response, response.size() / 2));
                          }});
    for (const double tempo : {0.8, 1.3})
    {
        conditions.push_back({tempo < 1.0 ? "tempo 0.8" : "tempo 1.3", [tempo](std::span<const float> clip, uint64_t) {
                                  return WithSilence(ChangeTempo(clip, tempo));
                              }});
    }
    // Louder only as far as the format allows: a clipped recording would be another condition.
    conditions.push_back({"level +20 dB", [](std::span<const float> clip, uint64_t) {
                              return WithSilence(Scale(clip, std::min(10.0F, 0.99F / Peak(clip))));
                          }});
    conditions.push_back({"level -20 dB", [](std::span<const float> clip, uint64_t) {
                              return WithSilence(Scale(clip, 0.1F));
                          }});
    conditions.push_back({"after speech", [&talkers](std::span<const float> clip, uint64_t number) {
                              const std::vector<float>& talker = talkers[number % talkers.size()];
                              const std::size_t length = std::min(talker.size(), 3 * engine::SampleRate);
                              std::vector<float> samples = Scale(std::span(talker).first(length), Rms(clip) / Rms(talker));
                              const std::vector<float> phrase = WithSilence(clip);
                              samples.insert(samples.end(), phrase.begin() + Silence / 2, phrase.end());
                              return samples;
                          }});
    return conditions;
}

} // namespace velox::evaluation
