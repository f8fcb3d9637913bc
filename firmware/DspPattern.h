#pragma once

#include "engine/models/PhraseModel.h"
#include "firmware/DetectorId.h"
#include "firmware/PatternRefusal.h"

#include <cstdint>
#include <optional>
#include <span>

namespace velox::firmware
{

/// What the firmware keeps of an arming pattern (docs/firmware-blocks.md).
struct DspPattern
{
    engine::PhraseModel model;
    uint32_t threshold = 0; ///< Q8: 256 is a score of 1
};

/// Checks a block and takes it apart.
///
/// @param block     exactly as BuildArmingPatternData returns it
/// @param detector  for which it must have been built
/// @param pattern   written only when the block is accepted
/// @return nothing when it is accepted
std::optional<PatternRefusal> ReadPattern(std::span<const uint8_t> block, const DetectorId& detector, DspPattern* pattern);

} // namespace velox::firmware
