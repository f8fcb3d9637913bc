#pragma once

#include "engine/models/PhraseModel.h"

namespace velox::engine
{

/// What an enrollment starts from: the phrase as anybody says it, and how anybody's states sound.
struct AcousticModel
{
    PhraseModel phrase; ///< without a speaker part
    GenericSpeakers generic;
};

std::vector<uint8_t> WriteAcousticModel(const AcousticModel& model);

/// @param blob   at least as many bytes as its header says
/// @param model  written only on success
Status ReadAcousticModel(const uint8_t* blob, AcousticModel* model);

} // namespace velox::engine
