#pragma once

#include "console/hosting/Detector.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velox::console
{

/// What the library's adapter was armed with, so that it parses as the host's would that built the pattern.
struct PatternOrigin
{
    uint16_t language = 0;
    std::vector<uint8_t> pattern; ///< that the library builds now
    std::string difference;       ///< from the pattern asked for, in sentences; empty when they are the same
};

/// The least score that fires, as the block says that arms the firmware.
double ThresholdOf(std::span<const uint8_t> pattern);

/// Arms the adapter for the language whose pattern a given one is, byte for byte.
///
/// @param language  to take whatever the pattern is; else the configured ones are tried in their order, and a single one is taken
/// @throws CommandFailure when no pattern can be built, or it is none of several languages'
PatternOrigin FindPatternOrigin(Detector* detector, IStream* userModel, std::optional<uint16_t> language,
                                std::span<const uint8_t> pattern);

} // namespace velox::console
