#include "engine/training/LanguageTrainer.h"

#include "engine/training/BackgroundPeaks.h"
#include "engine/training/FeatureMeasurement.h"
#include "engine/training/NearCheckTraining.h"
#include "engine/training/NetworkTrainer.h"
#include "engine/training/SpeakerTraining.h"
#include "engine/training/TakeAlignment.h"
#include "engine/training/TrainingMaterial.h"

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
constexpr double NetworkDone = 0.8;

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

std::optional<Network> LearnNetwork(const std::vector<TrainingSequence>& sequences, std::size_t states,
                                    const LanguageOptions& options)
{
    NetworkTrainerOptions training;
    training.states = static_cast<int>(states);
    training.batches = options.batches;
    training.batchSize = options.batchSize;
    training.seed = options.seed;
    training.threads = options.threads;
    return TrainNetwork(sequences, training,
                        [&](double share) { return options.progress(CopiesDone + (NetworkDone - CopiesDone) * share); });
}

/// Puts the models into bytes.
void WriteModels(const AcousticModel& acoustic, const Population& population, const LanguageOptions& options,
                 LanguageModels* models)
{
    PhraseModel lenient = acoustic.phrase;
    lenient.tail.start -= TakeLeniency();
    models->acousticModel = WriteAcousticModel(acoustic);
    models->znormPopulation = WritePopulation(population);
    models->keyphraseModel = WritePhraseModel(lenient);
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
    TrainingMaterial training = MakeTrainingMaterial(takes, alignment, phrase.statistics, material.background, options, &pool);
    if (!options.progress(CopiesDone))
    {
        return std::nullopt;
    }
    std::optional<Network> network = LearnNetwork(training.sequences, alignment.states, options);
    if (!network)
    {
        return std::nullopt;
    }
    phrase.network = std::move(*network);
    training.sequences.clear();

    std::vector<PhrasePlace> peaks = FindBackgroundPeaks(phrase, material.background, &pool);
    phrase.tail = MeasureTail(peaks);
    const PhrasePlaces places =
        FindPhrasePlaces(phrase, takes, alignment, training.plans, material.background, options.seed, &pool);
    phrase.nearCheck = TrainNearCheck(phrase, places);
    acoustic.generic = TrainGenericPart(places, alignment.states, options.seed);
    const Population population = MakePopulation(std::move(peaks), models.backgroundHours);
    if (!options.progress(1.0))
    {
        return std::nullopt;
    }
    WriteModels(acoustic, population, options, &models);
    return models;
}

float TakeLeniency()
{
    return BackgroundTail::Slope * std::log(4.0F);
}

} // namespace velox::engine
