#include "tests/engine/support/TinyLanguage.h"

#include "engine/listening/Decoder.h"
#include "engine/sound/Cepstrum.h"
#include "tests/engine/support/Signals.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace TinyLanguage
{

namespace
{

using namespace velox::engine;

/// Mel channels of the phrase's tones, and of four others.
constexpr std::array<std::size_t, 2 * States> Channels{6, 14, 22, 30, 10, 18, 26, 34};
using Tones = std::vector<std::size_t>;
const Tones PhraseTones{0, 1, 2, 3};

constexpr std::size_t HalfSecond = SampleRate / 2;
constexpr std::size_t QuarterSecond = SampleRate / 4;
constexpr std::size_t RampSamples = 320;
/// Normalised level of a channel that separates tone from noise.
constexpr float Middle = 4.5F;
constexpr float Variance = 50.0F;

Network ToneNetwork()
{
    constexpr auto Inputs = static_cast<Eigen::Index>(MelChannels);
    constexpr auto Outputs = static_cast<Eigen::Index>(States) + 1;
    NetworkLayer layer{3, 2, Eigen::MatrixXf::Zero(Outputs, 3 * Inputs), Eigen::VectorXf::Constant(Outputs, -Middle)};
    for (std::size_t s = 0; s < States; ++s)
    {
        layer.weights(static_cast<Eigen::Index>(s), Inputs + static_cast<Eigen::Index>(Channels[s])) = 1.0F; // the middle tap
    }
    layer.bias(static_cast<Eigen::Index>(States)) = 0.0F;
    return {{layer}};
}

GaussianMixture Wide(float mean)
{
    return {Eigen::VectorXf::Ones(1), Eigen::MatrixXf::Constant(CepstralFrameSize, 1, mean),
            Eigen::MatrixXf::Constant(CepstralFrameSize, 1, Variance)};
}

} // namespace

PhraseModel Phrase()
{
    PhraseModel model;
    for (std::size_t i = 0; i < MelChannels; ++i)
    {
        model.statistics.startShape[i] = (static_cast<float>(i) - 19.5F) / 6.0F; // about the noise's shape
    }
    model.statistics.mean.fill(0.0F);
    model.statistics.deviation.fill(1.0F);
    model.network = ToneNetwork();
    model.states.meanDuration.assign(States, static_cast<float>(ToneFrames));
    model.states.logPrior.assign(States, std::log(0.5F / States));
    model.states.logPrior.push_back(std::log(0.5F));
    model.searchTail = {-2.0F, 0.48F};
    // The search's score, less half of what the lowest state's mean lacks.
    model.judge = {Eigen::VectorXf::Zero(PhraseModel::PathFeatures), -0.5F * Decoder::MostRatio};
    model.judge.weights[PhraseModel::PathFeatures - 1] = 1.0F;
    model.judge.weights[0] = 0.5F;
    model.tail = model.searchTail;
    return model;
}

PhraseModel UserPhrase()
{
    PhraseModel model = Phrase();
    const std::vector<GaussianMixture> mixtures(States, Wide(0.0F));
    model.speaker = SpeakerModel{mixtures, mixtures, -2.0F};
    return model;
}

AcousticModel Acoustic()
{
    return {Phrase(), {std::vector<GaussianMixture>(States, Wide(0.0F))}};
}

Population Background()
{
    Population population;
    population.hours = 0.5;
    for (int i = 0; i < 20; ++i)
    {
        Population::Place peak;
        peak.factors = -3.0F - 0.1F * static_cast<float>(i);
        peak.counts.assign(States, 5);
        peak.features.assign(States * 5, MelFrame{});
        population.peaks.push_back(std::move(peak));
    }
    const Voice talker{0.2, 0.4, 3700.0};
    population.talkers = {Say(Tones{4, 6, 5, 7}, 0, 0, talker, 21), Say(Tones{7, 4, 6, 5}, 0, 0, talker, 22)};
    return population;
}

std::vector<float> Say(std::span<const std::size_t> tones, std::size_t before, std::size_t after, const Voice& voice,
                       uint64_t seed)
{
    static const MelFilterbank filterbank;
    std::vector<float> samples = Signals::Noise(NoiseAmplitude, before + tones.size() * ToneSamples + after, seed);
    const auto add = [&](std::size_t start, double frequency, double amplitude) {
        std::vector<float> tone = Signals::Sine(frequency, amplitude, ToneSamples);
        for (std::size_t i = 0; i < RampSamples; ++i)
        {
            const float gain = static_cast<float>(i) / RampSamples; // a click would sound like every tone
            tone[i] *= gain;
            tone[ToneSamples - 1 - i] *= gain;
        }
        const auto at = samples.begin() + static_cast<std::ptrdiff_t>(start);
        std::transform(tone.begin(), tone.end(), at, at, std::plus<>());
    };
    for (std::size_t i = 0; i < tones.size(); ++i)
    {
        const std::size_t start = before + i * ToneSamples;
        add(start, filterbank.CentreFrequency(Channels[tones[i]]), voice.amplitude);
        if (voice.second > 0.0)
        {
            add(start, voice.frequency, voice.amplitude * voice.second);
        }
    }
    return samples;
}

std::vector<float> SayPhrase(const Voice& voice, uint64_t seed)
{
    return Say(PhraseTones, HalfSecond, HalfSecond, voice, seed);
}

std::vector<float> Whisper()
{
    std::vector<float> samples = Signals::Noise(0.0002, 2 * SampleRate, 1);
    const std::vector<float> sound = Signals::Noise(0.004, SampleRate, 2);
    std::copy(sound.begin(), sound.end(), samples.begin() + HalfSecond);
    return samples;
}

LanguageMaterial Material()
{
    LanguageMaterial material;
    for (uint64_t voice = 0; voice < 4; ++voice)
    {
        const Voice sound{0.1 + 0.05 * static_cast<double>(voice), 0.2, 3000.0 + 400.0 * static_cast<double>(voice)};
        for (uint64_t take = 0; take < 2; ++take)
        {
            material.takes.push_back({Say(PhraseTones, QuarterSecond, QuarterSecond, sound, 10 * voice + take),
                                      "take " + std::to_string(take), "voice " + std::to_string(voice), 1.0F});
        }
    }
    RandomStream random(11);
    for (uint64_t recording = 0; recording < 7; ++recording)
    {
        std::vector<float> samples;
        while (samples.size() < 10 * SampleRate)
        {
            Tones tones;
            for (int i = 0; i < 4; ++i)
            {
                tones.push_back(static_cast<std::size_t>(random.Integer(0, 7)));
            }
            if (tones == PhraseTones)
            {
                continue;
            }
            const auto said = Say(tones, QuarterSecond, QuarterSecond, {0.2, 0.2, 3500.0}, random.Bits());
            samples.insert(samples.end(), said.begin(), said.end());
        }
        material.background.push_back(std::move(samples));
    }
    return material;
}

LanguageOptions QuickTraining()
{
    LanguageOptions options;
    options.copies = 1;
    options.backgroundCopies = 0;
    options.batches = 80;
    options.batchSize = 8;
    return options;
}

std::vector<int16_t> ToPcm(std::span<const float> samples)
{
    std::vector<int16_t> pcm(samples.size());
    std::transform(samples.begin(), samples.end(), pcm.begin(),
                   [](float sample) { return static_cast<int16_t>(std::lround(32767.0F * sample)); });
    return pcm;
}

} // namespace TinyLanguage
