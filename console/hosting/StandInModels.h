#pragma once

#include "console/hosting/ConfigurationFile.h"
#include "engine/models/AcousticModel.h"

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

/// Reads a phrase model whose length is the one that its header says: the engine believes the header.
/// @return whether it could be read
bool ReadWholePhraseModel(std::span<const uint8_t> bytes, engine::PhraseModel* model);

} // namespace velox::console
