#pragma once

#include "engine/base/WorkerPool.h"
#include "engine/models/Population.h"
#include "engine/training/LanguageTrainer.h"
#include "evaluation/Corpus.h"
#include "evaluation/CurveChart.h"
#include "evaluation/Report.h"

namespace velox::evaluation
{

/// What one phrase is judged on: recordings of voices that the training never saw.
struct Judged
{
    std::string phrase;
    uint64_t seed = 1; ///< of the run: other noise in every one
    std::vector<Clip> takes;
    std::vector<Clip> near;
    std::vector<Clip> otherTakes; ///< of the other phrases
    std::vector<Clip> background;
    std::vector<std::vector<float>> talkers; ///< for babble
};

/// A trained language with its models read back from their bytes, as a product would.
struct Language
{
    engine::LanguageModels blobs;
    engine::PhraseModel firmware;
    engine::PhraseModel keyphrase;
    engine::AcousticModel acoustic;
    engine::Population population;
    double trainingSeconds = 0.0;
};

Language Train(const std::vector<Clip>& takes, const std::vector<Clip>& background, const engine::LanguageOptions& options);

/// Misses, false alarms and near phrases of the predefined model, and the curves.
void TryPredefined(const Language& language, const Judged& judged, engine::WorkerPool* pool, Report* report,
                   std::vector<Curve>* curves);

/// Takes that a user is enrolled with.
inline constexpr std::size_t EnrollmentTakes = 3;

/// Enrolls voices with a few takes each and judges their models.
void TryUsers(const Language& language, const Judged& judged, engine::WorkerPool* pool, Report* report);

/// Single takes against the key-phrase model.
void TryTakes(const Language& language, const Judged& judged, engine::WorkerPool* pool, Report* report);

/// Offsets within a frame, reported places, speed.
void TryStream(const Language& language, const Judged& judged, Report* report);

/// People who said the same words several times: a language is learned from a few takes of one of them, who is then enrolled with
/// them. Every take that is judged is noted.
/// @param people  takes of the set "people"; a person is a voice
void TryPeople(const std::vector<Clip>& people, const std::vector<Clip>& trainingBackground, const std::vector<Clip>& background,
               int threads, Report* report);

} // namespace velox::evaluation
