#include "engine/training/LanguageTrainer.h"

#include "engine/training/BackgroundPeaks.h"
#include "engine/training/Calibration.h"
#include "engine/training/FeatureMeasurement.h"
#include "engine/training/JudgeTraining.h"
#include "engine/training/NetworkTrainer.h"
#include "engine/training/PopulationTraining.h"
#include "engine/training/SpeakerTraining.h"
#include "engine/training/TakeAlignment.h"
#include "engine/training/TrainingMaterial.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <stdexcept>

namespace velox::engine
{

namespace
{

constexpr std::size_t FewVoices = 20;
constexpr double FewBackgroundHours = 0.5;
constexpr double LeastBackgroundHours = 1.0 / 60.0;

// Shares of the whole work, for the progress.
constexpr double CopiesDone = 0.1;
constexpr double HalvesDone = 0.4;
constexpr double NetworkDone = 0.9;
/// The network that learns from all of the material takes so many times the steps of one that learns from a half.
constexpr int HalvesShare = 3;

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

/// One training of the language's network.
struct NetworkPart
{
    int leftOut; ///< half of the material
    int batches;
    double begin; ///< share of the whole work that is done before
    double end;
};

/// @return nothing when it was cancelled
std::optional<Network> LearnNetwork(const std::vector<TrainingSequence>& sequences, std::size_t states, const NetworkPart& part,
                                    const LanguageOptions& options)
{
    NetworkTrainerOptions training;
    training.states = static_cast<int>(states);
    training.batches = part.batches;
    training.batchSize = options.batchSize;
    training.leftOut = part.leftOut;
    training.seed = options.seed;
    training.threads = options.threads;
    return TrainNetwork(sequences, training,
                        [&](double share) { return options.progress(part.begin + (part.end - part.begin) * share); });
}

/// Lets a network learn from each half of the material and search the other.
/// @param phrase  all but its network
/// @return nothing when it was cancelled
std::optional<HeldOutPlaces> SearchHalves(PhraseModel phrase, const std::vector<TrainingSequence>& sequences,
                                          const SearchedMaterial& material, const LanguageOptions& options, WorkerPool* pool)
{
    HeldOutPlaces places;
    constexpr double Share = (HalvesDone - CopiesDone) / Folds::Count;
    for (int fold = 0; fold < Folds::Count; ++fold)
    {
        const double begin = CopiesDone + Share * fold;
        const NetworkPart half{fold, (options.batches + HalvesShare - 1) / HalvesShare, begin, begin + Share};
        std::optional<Network> network = LearnNetwork(sequences, phrase.states.States(), half, options);
        if (!network)
        {
            return std::nullopt;
        }
        phrase.network = std::move(*network);
        SearchHeldOut(phrase, fold, material, pool, &places);
    }
    return places;
}

/// The same as a model for single takes.
PhraseModel MadeLenient(PhraseModel model)
{
    const auto factors = static_cast<float>(std::log(TakeLeniency));
    model.searchTail.start -= factors * model.searchTail.slope;
    model.tail.start -= factors * model.tail.slope;
    return model;
}

/// Puts the models into bytes.
void WriteModels(const AcousticModel& acoustic, const Population& population, const LanguageOptions& options,
                 LanguageModels* models)
{
    models->acousticModel = WriteAcousticModel(acoustic);
    models->znormPopulation = WritePopulation(population);
    models->keyphraseModel = WritePhraseModel(MadeLenient(acoustic.phrase));
    models->firmwareModel = WritePhraseModel(acoustic.phrase);
    models->preDefinedThreshold = static_cast<double>(ScoreScale::FromAlarmsPerHour(options.falseAlarmsPerHour));
    models->userDefinedThreshold = models->preDefinedThreshold;
}

} // namespace

std::optional<LanguageModels> TrainLanguage(const LanguageMaterial& material, const LanguageOptions& options)
{
    LanguageModels models;
    WarnOfLittleMaterial(material, &models.warnings);
    const std::vector<PreparedTake> takes = PrepareTakes(material.takes, &models.warnings);
    models.backgroundHours = HoursOf(material.background);
    if (takes.size() < 2)
    {
        throw std::invalid_argument("fewer than two takes of the phrase can be used");
    }
    if (models.backgroundHours < LeastBackgroundHours)
    {
        throw std::invalid_argument("there is less than a minute of background");
    }

    WorkerPool pool(options.threads);
    AcousticModel acoustic;
    PhraseModel& phrase = acoustic.phrase;
    phrase.statistics = MeasureStatistics(material.background, takes);
    const PhraseAlignment alignment = AlignPreparedTakes(takes, options.seed);
    phrase.states = StatesOf(alignment);
    const Folds folds = Folds::Of(takes, material.background);
    TrainingMaterial training =
        MakeTrainingMaterial(takes, alignment, phrase.statistics, material.background, folds, options, &pool);
    const SearchedMaterial searched{takes, alignment, training.plans, material.background, folds, options.seed};
    if (!options.progress(CopiesDone))
    {
        return std::nullopt;
    }
    const std::optional<HeldOutPlaces> heldOut = SearchHalves(phrase, training.sequences, searched, options, &pool);
    if (!heldOut)
    {
        return std::nullopt;
    }
    phrase.judge = TrainJudge(*heldOut);
    std::optional<Network> network =
        LearnNetwork(training.sequences, alignment.states, {Folds::None, options.batches, HalvesDone, NetworkDone}, options);
    if (!network)
    {
        return std::nullopt;
    }
    phrase.network = std::move(*network);
    training.sequences.clear();

    std::vector<PhrasePlace> peaks = FindBackgroundPeaks(
        phrase, std::vector<std::span<const float>>(material.background.begin(), material.background.end()), &pool);
    CalibrateTails(peaks, &phrase);
    const std::vector<float> factors = JudgeHeldOutTakes(*heldOut, phrase);
    std::ranges::transform(factors, std::back_inserter(models.heldOutScores), ScoreScale::FromFactors);
    acoustic.generic = TrainGenericPart(heldOut->phrases, alignment.states, options.seed);
    const Population population = MakePopulation(
        phrase, {std::move(peaks), models.backgroundHours, takes, heldOut->phrases.takes, factors, material.background});
    if (!options.progress(1.0))
    {
        return std::nullopt;
    }
    WriteModels(acoustic, population, options, &models);
    return models;
}

} // namespace velox::engine
