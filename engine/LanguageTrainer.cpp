#include "LanguageTrainer.h"

#include "Alignment.h"
#include "Augmentation.h"
#include "Cepstrum.h"
#include "Endpointing.h"
#include "FeatureStream.h"
#include "PhraseDetector.h"
#include "PhraseSearch.h"
#include "TakeDamage.h"
#include "WorkerPool.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <stdexcept>

namespace velox::engine
{

namespace
{

constexpr double SilenceSeconds = 0.3; // put around every take
constexpr std::size_t AlignmentComponents = 128;
constexpr Eigen::Index SpeakerComponents = 10;
constexpr std::size_t FewVoices = 20;
constexpr double FewBackgroundHours = 0.5;
constexpr double LeastBackgroundHours = 1.0 / 60.0;
/// How much lower, in the decoder's score, the background scores that the network learned from: 0.2 to 0.4 were measured.
constexpr float UnheardShift = 0.3F;
/// Share of the training's takes that the near-phrase check may refuse. A milder cut lets background through: it cost more misses
/// at an equal rate of false alarms than the takes of unheard voices that this one refuses.
constexpr double NearCheckLoss = 0.003;
constexpr int DamagedPerTake = 6;

// Shares of the whole work, for the progress.
constexpr double CopiesDone = 0.1;
constexpr double NetworkDone = 0.8;

/// A usable take with silence around it, and where in it the phrase lies.
struct PreparedTake
{
    std::vector<float> samples;
    std::vector<MelFrame> logMel;
    std::size_t begin = 0; ///< first frame of the phrase
    std::size_t end = 0;   ///< one past its last frame
    float weight = 1.0F;

    std::vector<MelFrame> PhraseLogMel() const
    {
        return {logMel.begin() + static_cast<std::ptrdiff_t>(begin), logMel.begin() + static_cast<std::ptrdiff_t>(end)};
    }
    std::span<const float> PhraseSamples() const
    {
        const std::size_t first = begin * FrameSize;
        return std::span(samples).subspan(first, std::min(samples.size(), end * FrameSize + WindowSize) - first);
    }
};

std::vector<MelFrame> LogMelOf(std::span<const float> samples)
{
    FrontEnd frontEnd;
    std::vector<MelFrame> frames;
    MelFrame frame;
    for (std::size_t start = 0; start + FrameSize <= samples.size(); start += FrameSize)
    {
        if (frontEnd.Push(samples.data() + start, &frame))
        {
            frames.push_back(frame);
        }
    }
    return frames;
}

std::vector<float> Pad(std::span<const float> samples)
{
    const auto silence = static_cast<std::size_t>(SilenceSeconds * SampleRate);
    std::vector<float> padded(silence, 0.0F);
    padded.insert(padded.end(), samples.begin(), samples.end());
    padded.resize(padded.size() + silence, 0.0F);
    return padded;
}

std::string_view FaultText(TakeFault fault)
{
    switch (fault)
    {
    case TakeFault::NoSpeech:
        return "there is no speech in it";
    case TakeFault::TooQuiet:
        return "it is too quiet";
    case TakeFault::Clipped:
        return "it is clipped";
    case TakeFault::CutAtStart:
        return "it starts in the middle of speech";
    case TakeFault::CutAtEnd:
        return "it ends in the middle of speech";
    case TakeFault::TwoPhrases:
        return "the phrase is in it twice";
    case TakeFault::None:
        break;
    }
    return "";
}

/// Cuts the takes to their speech. A take that starts or ends within speech is cut tightly, as training folders often are: the
/// silence put around it makes it usable.
std::vector<PreparedTake> PrepareTakes(const std::vector<PhraseTake>& takes, std::vector<std::string>* warnings)
{
    std::vector<PreparedTake> prepared;
    for (const PhraseTake& take : takes)
    {
        PreparedTake one;
        one.samples = Pad(take.samples);
        one.logMel = LogMelOf(one.samples);
        one.weight = take.weight;
        const Endpoints endpoints = FindEndpoints(one.logMel, one.samples);
        if (endpoints.fault != TakeFault::None && endpoints.fault != TakeFault::CutAtStart &&
            endpoints.fault != TakeFault::CutAtEnd)
        {
            warnings->push_back(take.name + " is left out: " + std::string(FaultText(endpoints.fault)) + ".");
            continue;
        }
        one.begin = endpoints.begin;
        one.end = endpoints.end;
        prepared.push_back(std::move(one));
    }
    return prepared;
}

double HoursOf(const std::vector<std::vector<float>>& recordings)
{
    std::size_t samples = 0;
    for (const auto& recording : recordings)
    {
        samples += recording.size();
    }
    return static_cast<double>(samples) / SampleRate / 3600.0;
}

void WarnOfLittleMaterial(const LanguageMaterial& material, std::vector<std::string>* warnings)
{
    std::set<std::string> voices;
    for (const PhraseTake& take : material.takes)
    {
        voices.insert(take.voice);
    }
    if (voices.size() < FewVoices)
    {
        warnings->push_back("Only " + std::to_string(voices.size()) +
                            " voices say the phrase: expect three times the misses of twenty voices or more.");
    }
    if (const double hours = HoursOf(material.background); hours < FewBackgroundHours)
    {
        warnings->push_back("Only " + std::to_string(std::lround(hours * 60.0)) +
                            " minutes of background: the rate of false alarms may be several times what was asked for.");
    }
}

/// Mean of the louder half of the frames.
MelFrame LouderHalfMean(std::vector<MelFrame> frames)
{
    const auto half = frames.begin() + static_cast<std::ptrdiff_t>(frames.size() / 2);
    std::nth_element(frames.begin(), half, frames.end(),
                     [](const MelFrame& a, const MelFrame& b) { return MeanLevel(a) > MeanLevel(b); });
    MelFrame mean{};
    const auto count = static_cast<float>(std::max<std::ptrdiff_t>(1, half - frames.begin()));
    for (auto frame = frames.begin(); frame != half; ++frame)
    {
        for (std::size_t i = 0; i < MelChannels; ++i)
        {
            mean[i] += (*frame)[i] / count;
        }
    }
    return mean;
}

/// Where the running mean starts, and mean and deviation of what is left when it is taken off.
FeatureStatistics MeasureStatistics(const LanguageMaterial& material, const std::vector<PreparedTake>& takes)
{
    std::vector<MelFrame> logMel;
    for (const auto& recording : material.background)
    {
        const std::vector<MelFrame> frames = LogMelOf(recording);
        logMel.insert(logMel.end(), frames.begin(), frames.end());
    }
    FeatureStatistics statistics;
    statistics.startMean = LouderHalfMean(std::move(logMel));
    statistics.deviation.fill(1.0F);

    std::array<double, MelChannels> sum{};
    std::array<double, MelChannels> squares{};
    double count = 0.0;
    const auto add = [&](std::span<const float> recording) {
        for (const MelFrame& feature : AnalyseRecording(statistics, recording, 1.0))
        {
            for (std::size_t i = 0; i < MelChannels; ++i)
            {
                const auto value = static_cast<double>(feature[i]);
                sum[i] += value;
                squares[i] += value * value;
            }
            ++count;
        }
    };
    for (const auto& recording : material.background)
    {
        add(recording);
    }
    for (const PreparedTake& take : takes)
    {
        add(take.PhraseSamples());
    }
    FeatureStatistics measured = statistics;
    for (std::size_t i = 0; i < MelChannels; ++i)
    {
        const double mean = sum[i] / count;
        measured.mean[i] = static_cast<float>(mean);
        measured.deviation[i] = static_cast<float>(std::sqrt(std::max(1e-4, squares[i] / count - mean * mean)));
    }
    return measured;
}

/// Cepstra of takes and background, for the mixture that the alignment adapts.
GaussianMixture TrainAlignmentMixture(const std::vector<PreparedTake>& takes, uint64_t seed)
{
    std::vector<Eigen::MatrixXf> parts;
    Eigen::Index frames = 0;
    for (const PreparedTake& take : takes)
    {
        parts.push_back(UtteranceCepstra(take.PhraseLogMel()));
        frames += parts.back().cols();
    }
    Eigen::MatrixXf all(CepstralFrameSize, frames);
    Eigen::Index next = 0;
    for (const Eigen::MatrixXf& part : parts)
    {
        all.middleCols(next, part.cols()) = part;
        next += part.cols();
    }
    MixtureTraining training;
    training.components = std::min<Eigen::Index>(AlignmentComponents, std::max<Eigen::Index>(1, frames / 20));
    training.seed = seed;
    return TrainMixture(all, training);
}

Eigen::MatrixXf ToMatrix(std::span<const MelFrame> features)
{
    Eigen::MatrixXf matrix(MelChannels, static_cast<Eigen::Index>(features.size()));
    for (std::size_t i = 0; i < features.size(); ++i)
    {
        matrix.col(static_cast<Eigen::Index>(i)) = Eigen::Map<const Eigen::VectorXf>(features[i].data(), MelChannels);
    }
    return matrix;
}

/// The labels of a whole prepared take: background around the phrase.
std::vector<int> TakeLabels(const PreparedTake& take, const std::vector<int>& phraseLabels, int background)
{
    std::vector<int> labels(take.logMel.size(), background);
    std::copy(phraseLabels.begin(), phraseLabels.end(), labels.begin() + static_cast<std::ptrdiff_t>(take.begin));
    return labels;
}

/// The background as a listener hears it: short recordings are joined, since a block of the tail is longer than some.
std::vector<std::vector<float>> Streams(const std::vector<std::vector<float>>& background)
{
    constexpr std::size_t StreamSamples = 30 * SampleRate;
    std::vector<std::vector<float>> streams;
    for (const std::vector<float>& recording : background)
    {
        if (streams.empty() || streams.back().size() >= StreamSamples)
        {
            streams.emplace_back();
        }
        streams.back().insert(streams.back().end(), recording.begin(), recording.end());
    }
    return streams;
}

/// Examples side by side.
Eigen::MatrixXf FeaturesOf(const std::vector<NearPhraseCheck::Description>& examples)
{
    Eigen::MatrixXf features(NearPhraseCheck::Features, static_cast<Eigen::Index>(examples.size()));
    for (std::size_t i = 0; i < examples.size(); ++i)
    {
        features.col(static_cast<Eigen::Index>(i)) = examples[i];
    }
    return features;
}

/// The log odds that NearCheckLoss of the takes stay below.
float CutOf(const LogisticRegression& classifier, const std::vector<NearPhraseCheck::Description>& good)
{
    std::vector<float> odds;
    for (const NearPhraseCheck::Description& description : good)
    {
        odds.push_back(classifier.LogOdds(description));
    }
    const auto rank = static_cast<std::ptrdiff_t>(NearCheckLoss * static_cast<double>(odds.size()));
    std::nth_element(odds.begin(), odds.begin() + rank, odds.end());
    return odds[static_cast<std::size_t>(rank)];
}

/// A noisy copy and how it was made.
struct Copy
{
    std::vector<float> samples;
    AugmentationPlan plan;
};

class Trainer
{
public:
    Trainer(const LanguageMaterial& trainingMaterial, const LanguageOptions& trainingOptions)
        : material(trainingMaterial), options(trainingOptions), pool(trainingOptions.threads)
    {
    }

    std::optional<LanguageModels> Run();

private:
    bool Report(double share) const
    {
        return options.progress(share);
    }

    void Align();
    void MakeTrainingSequences();
    std::optional<Network> Train();
    void MeasureTail();
    void TrainNearCheck();
    void TrainGenericSpeakerPart();
    void CollectPopulation();
    PhraseFrames FramesOf(const PhrasePlace& place, float share) const;

    const LanguageMaterial& material;
    const LanguageOptions& options;
    WorkerPool pool;

    LanguageModels models;
    std::vector<PreparedTake> takes;
    PhraseAlignment alignment;
    std::vector<Copy> copies; ///< of the takes, all of the first, then all of the second, and so on
    std::vector<TrainingSequence> sequences;
    AcousticModel acoustic;
    std::vector<PhrasePlace> takePlaces; ///< the phrase in the clean takes
    std::vector<PhrasePlace> copyPlaces; ///< and in the noisy copies
    std::vector<PhrasePlace> backgroundPeaks;
    Population population;
};

std::optional<LanguageModels> Trainer::Run()
{
    WarnOfLittleMaterial(material, &models.warnings);
    takes = PrepareTakes(material.takes, &models.warnings);
    models.backgroundHours = HoursOf(material.background);
    if (takes.size() < 2)
    {
        throw std::invalid_argument("fewer than two takes of the phrase can be used");
    }
    if (models.backgroundHours < LeastBackgroundHours)
    {
        throw std::invalid_argument("there is less than a minute of background");
    }

    acoustic.phrase.statistics = MeasureStatistics(material, takes);
    Align();
    MakeTrainingSequences();
    if (!Report(CopiesDone))
    {
        return std::nullopt;
    }
    std::optional<Network> network = Train();
    if (!network)
    {
        return std::nullopt;
    }
    acoustic.phrase.network = std::move(*network);
    sequences.clear();

    MeasureTail();
    TrainNearCheck();
    TrainGenericSpeakerPart();
    CollectPopulation();
    if (!Report(1.0))
    {
        return std::nullopt;
    }

    PhraseModel lenient = acoustic.phrase;
    lenient.tail.start -= TakeLeniency();
    models.acousticModel = WriteAcousticModel(acoustic);
    models.znormPopulation = WritePopulation(population);
    models.keyphraseModel = WritePhraseModel(lenient);
    models.firmwareModel = WritePhraseModel(acoustic.phrase);
    models.preDefinedThreshold = static_cast<double>(ScoreScale::FromAlarmsPerHour(options.falseAlarmsPerHour));
    models.userDefinedThreshold = models.preDefinedThreshold;
    return std::move(models);
}

/// Finds which frame of each take belongs to which state, and what the decoder knows of the states.
void Trainer::Align()
{
    std::vector<std::vector<MelFrame>> phrases;
    std::vector<std::size_t> lengths;
    for (const PreparedTake& take : takes)
    {
        phrases.push_back(take.PhraseLogMel());
        lengths.push_back(phrases.back().size());
    }
    const auto found = AlignTakes(phrases, StateCount(lengths), TrainAlignmentMixture(takes, options.seed));
    if (!found)
    {
        throw std::invalid_argument("every take of the phrase is too short");
    }
    alignment = *found;
    for (const float share : alignment.shares)
    {
        acoustic.phrase.states.logPrior.push_back(std::log(0.5F * std::max(share, 1e-3F)));
    }
    acoustic.phrase.states.logPrior.push_back(std::log(0.5F));
    acoustic.phrase.states.meanDuration = alignment.meanDurations;
}

/// Makes the noisy copies and the features that the network learns from. Every copy has a random stream of its own, so that the
/// work can be shared out.
void Trainer::MakeTrainingSequences()
{
    const FeatureStatistics& statistics = acoustic.phrase.statistics;
    const auto background = static_cast<int>(alignment.states);
    const auto takeCopies = static_cast<std::size_t>(options.copies);
    copies.resize(takes.size() * takeCopies);
    std::vector<TrainingSequence> takeSequences(copies.size() + takes.size());
    const auto makeCopies = [&](int part) {
        const auto number = static_cast<std::size_t>(part);
        const PreparedTake& take = takes[number];
        if (alignment.labels[number].empty())
        {
            return;
        }
        const std::vector<int> labels = TakeLabels(take, alignment.labels[number], background);
        const auto add = [&](std::size_t slot, std::span<const float> samples, double speed, double warp) {
            const std::vector<MelFrame> features = AnalyseRecording(statistics, samples, warp);
            takeSequences[slot] = {ToMatrix(features), CarryLabels(labels, speed, features.size()), take.weight, true};
        };
        add(copies.size() + number, take.samples, 1.0, 1.0);
        for (std::size_t i = 0; i < takeCopies; ++i)
        {
            const std::size_t slot = number * takeCopies + i;
            RandomStream random(options.seed * 1000003U + slot);
            Copy& copy = copies[slot];
            copy.plan = DrawPlan(TrainingRanges, material.background, &random);
            copy.samples = MakeCopy(copy.plan, take.samples, material.background);
            add(slot, copy.samples, copy.plan.speed, copy.plan.warp);
        }
    };
    pool.Run(static_cast<int>(takes.size()), makeCopies);

    const std::size_t perRecording = static_cast<std::size_t>(options.backgroundCopies) + 1;
    std::vector<TrainingSequence> backgroundSequences(material.background.size() * perRecording);
    pool.Run(static_cast<int>(backgroundSequences.size()), [&](int part) {
        const auto slot = static_cast<std::size_t>(part);
        const std::vector<float>& recording = material.background[slot / perRecording];
        AugmentationPlan plan;
        std::vector<float> samples = recording;
        if (slot % perRecording != 0)
        {
            RandomStream random(options.seed * 7000003U + slot);
            plan = DrawPlan(TrainingRanges, material.background, &random);
            samples = MakeCopy(plan, recording, material.background);
        }
        const std::vector<MelFrame> features = AnalyseRecording(statistics, samples, plan.warp);
        const auto weight = static_cast<float>(features.size());
        backgroundSequences[slot] = {ToMatrix(features), std::vector<int>(features.size(), background), weight, false};
    });

    for (auto* made : {&takeSequences, &backgroundSequences})
    {
        for (TrainingSequence& sequence : *made)
        {
            if (sequence.Frames() > 0)
            {
                sequences.push_back(std::move(sequence));
            }
        }
    }
}

std::optional<Network> Trainer::Train()
{
    NetworkTrainerOptions training;
    training.states = static_cast<int>(alignment.states);
    training.batches = options.batches;
    training.seed = options.seed;
    training.threads = options.threads;
    return TrainNetwork(sequences, training,
                        [&](double share) { return Report(CopiesDone + (NetworkDone - CopiesDone) * share); });
}

/// Scores the background that nobody says the phrase in, and finds where its tail starts.
void Trainer::MeasureTail()
{
    const std::vector<std::vector<float>> streams = Streams(material.background);
    std::vector<std::vector<PhrasePlace>> found(streams.size());
    pool.Run(static_cast<int>(found.size()), [&](int part) {
        const auto number = static_cast<std::size_t>(part);
        found[number] = FindPeaks(acoustic.phrase, streams[number], BackgroundTail::BlockSeconds);
    });
    std::vector<float> maxima;
    for (auto& peaks : found)
    {
        for (PhrasePlace& peak : peaks)
        {
            maxima.push_back(peak.score);
            backgroundPeaks.push_back(std::move(peak));
        }
    }
    acoustic.phrase.tail = BackgroundTail::Fit(maxima);
    acoustic.phrase.tail.start += UnheardShift;
}

/// Teaches the second stage what damaged takes look like, and sets its cut so that next to no take of the training is refused.
void Trainer::TrainNearCheck()
{
    takePlaces.resize(takes.size());
    copyPlaces.resize(copies.size());
    std::vector<std::vector<PhrasePlace>> damaged(takes.size());
    const auto takeCopies = static_cast<std::size_t>(options.copies);
    pool.Run(static_cast<int>(takes.size()), [&](int part) {
        const auto number = static_cast<std::size_t>(part);
        if (alignment.labels[number].empty())
        {
            return;
        }
        takePlaces[number] = FindPhrase(acoustic.phrase, takes[number].samples).value_or(PhrasePlace{});
        for (std::size_t slot = number * takeCopies; slot < (number + 1) * takeCopies; ++slot)
        {
            copyPlaces[slot] = FindPhrase(acoustic.phrase, copies[slot].samples, copies[slot].plan.warp).value_or(PhrasePlace{});
        }
        RandomStream random(options.seed * 9000011U + number);
        for (int i = 0; i < DamagedPerTake; ++i)
        {
            const std::vector<float> near = Pad(DamageTake(takes[number].PhraseSamples(), material.background, &random));
            if (auto place = FindPhrase(acoustic.phrase, near))
            {
                damaged[number].push_back(std::move(*place));
            }
        }
    });

    std::vector<NearPhraseCheck::Description> good;
    std::vector<NearPhraseCheck::Description> near;
    const auto add = [&](const std::vector<PhrasePlace>& places, std::vector<NearPhraseCheck::Description>* examples) {
        for (const PhrasePlace& place : places)
        {
            // Only what the first stage would let through is worth learning from.
            if (!place.features.empty() && place.score > acoustic.phrase.tail.start)
            {
                examples->push_back(NearPhraseCheck::Describe(place.path, acoustic.phrase.states));
            }
        }
    };
    add(takePlaces, &good);
    add(copyPlaces, &good);
    for (const auto& places : damaged)
    {
        add(places, &near);
    }

    NearPhraseCheck& check = acoustic.phrase.nearCheck;
    check.classifier.weights = Eigen::VectorXf::Zero(NearPhraseCheck::Features);
    check.cut = -1.0F; // without examples everything passes
    if (!good.empty() && !near.empty())
    {
        check.classifier = FitLogisticRegression(FeaturesOf(good), FeaturesOf(near));
        check.cut = CutOf(check.classifier, good);
    }
}

PhraseFrames Trainer::FramesOf(const PhrasePlace& place, float share) const
{
    return {SpeakerFrames(place.features), place.path.counts, share};
}

/// How everybody's states sound, from the clean takes and their copies.
void Trainer::TrainGenericSpeakerPart()
{
    std::vector<PhraseFrames> frames;
    for (const PhrasePlace& place : takePlaces)
    {
        if (!place.features.empty())
        {
            frames.push_back(FramesOf(place, 1.0F));
        }
    }
    for (const PhrasePlace& place : copyPlaces)
    {
        if (!place.features.empty())
        {
            frames.push_back(FramesOf(place, SpeakerModel::CopyShare));
        }
    }
    Eigen::Index count = 0;
    for (const PhraseFrames& one : frames)
    {
        count += one.frames.cols();
    }
    Eigen::MatrixXf all(CepstralFrameSize, count);
    Eigen::Index next = 0;
    for (const PhraseFrames& one : frames)
    {
        all.middleCols(next, one.frames.cols()) = one.frames;
        next += one.frames.cols();
    }
    MixtureTraining training;
    training.components = SpeakerComponents;
    training.seed = options.seed;
    acoustic.generic = TrainGenericSpeakers(TrainMixture(all, training), frames, alignment.states);
}

void Trainer::CollectPopulation()
{
    const std::size_t kept = std::min(Population::MostPeaks, backgroundPeaks.size());
    std::partial_sort(backgroundPeaks.begin(), backgroundPeaks.begin() + static_cast<std::ptrdiff_t>(kept), backgroundPeaks.end(),
                      [](const PhrasePlace& a, const PhrasePlace& b) { return a.score > b.score; });
    population.hours = models.backgroundHours;
    for (std::size_t i = 0; i < kept; ++i)
    {
        population.peaks.push_back(
            {backgroundPeaks[i].score, backgroundPeaks[i].path.counts, std::move(backgroundPeaks[i].features)});
    }
}

} // namespace

std::optional<LanguageModels> TrainLanguage(const LanguageMaterial& material, const LanguageOptions& options)
{
    return Trainer(material, options).Run();
}

float TakeLeniency()
{
    return BackgroundTail::Slope * std::log(10.0F);
}

} // namespace velox::engine
