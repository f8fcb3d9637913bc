#include "evaluation/Trial.h"

#include <chrono>
#include <stdexcept>

namespace velox::evaluation
{

namespace
{

/// Natural voices are fewer than the formant synthesiser's many siblings.
constexpr float NaturalWeight = 2.0F;

void Check(engine::Status status)
{
    if (status != engine::Status::Success)
    {
        throw std::runtime_error("a model of the training cannot be read back");
    }
}

} // namespace

Language Train(const std::vector<Clip>& takes, const std::vector<Clip>& background, const engine::LanguageOptions& options)
{
    engine::LanguageMaterial material;
    for (const Clip& take : takes)
    {
        const float weight = take.entry.kind.starts_with("formant") ? 1.0F : NaturalWeight;
        material.takes.push_back({take.samples, take.entry.path, take.entry.voice, weight});
    }
    for (const Clip& recording : background)
    {
        material.background.push_back(recording.samples);
    }

    Language language;
    const auto start = std::chrono::steady_clock::now();
    language.blobs = engine::TrainLanguage(material, options).value();
    language.trainingSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    Check(engine::ReadPhraseModel(language.blobs.firmwareModel.data(), &language.firmware));
    Check(engine::ReadPhraseModel(language.blobs.keyphraseModel.data(), &language.keyphrase));
    Check(engine::ReadAcousticModel(language.blobs.acousticModel.data(), &language.acoustic));
    Check(engine::ReadPopulation(language.blobs.znormPopulation.data(), &language.population));
    return language;
}

} // namespace velox::evaluation
