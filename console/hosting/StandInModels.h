#pragma once

#include "console/hosting/ConfigurationFile.h"
#include "engine/models/Population.h"

#include <filesystem>
#include <memory>
#include <span>

namespace velox::console
{

/// A language's models as far as the stand-in engine can read them; null for those of another engine. With them the console can
/// tell more of a take than the library does.
struct StandInModels
{
    std::unique_ptr<engine::PhraseModel> phrase; ///< what a take is verified with
    std::unique_ptr<engine::AcousticModel> acoustic;
    std::unique_ptr<engine::Population> population;
};

StandInModels ReadStandInModels(const ConfiguredLanguage& language);

/// Whether the length is the one that the header says: the engine believes the header.
bool IsWholeModel(std::span<const uint8_t> bytes);

// Each reads a model with the engine's own reader, once IsWholeModel holds; MalformedBlob when it does not. A phrase model may be
// of either kind: what an enrollment ends with has a firmware model inside.
engine::Status ReadModel(std::span<const uint8_t> bytes, engine::PhraseModel* model);
engine::Status ReadModel(std::span<const uint8_t> bytes, engine::AcousticModel* model);
engine::Status ReadModel(std::span<const uint8_t> bytes, engine::Population* model);

} // namespace velox::console
