#pragma once

#include "engine/models/SpeakerModel.h"
#include "engine/training/PhrasePlaces.h"

namespace velox::engine
{

/// How everybody's states sound, from the clean takes and their copies.
GenericSpeakers TrainGenericPart(const PhrasePlaces& places, std::size_t states, uint64_t seed);

} // namespace velox::engine
