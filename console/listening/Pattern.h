#pragma once

#include "console/report/Report.h"
#include "firmware/DetectorId.h"
#include "firmware/PatternRefusal.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velox::console
{

// The block that arms the firmware.

/// @throws CommandFailure BadInput, also for a file of another kind, with what it is; a damaged block is the DSP's to refuse
std::vector<uint8_t> ReadPattern(const std::string& file);

/// The least score that fires.
/// @param pattern  holds a whole head, as do those below
double ThresholdOf(std::span<const uint8_t> pattern);

/// For which it was built.
firmware::DetectorId DetectorOf(std::span<const uint8_t> pattern);

/// Place and reason, as one text.
std::string RefusalText(firmware::PatternRefusal refusal);

/// Whether the simulated DSP would refuse it. Of another engine's models it says nothing.
std::optional<Remark> SimulatorWarning(std::span<const uint8_t> pattern);

/// What the library's adapter was armed with, so that it parses as the host's would that built the pattern.
struct PatternOrigin
{
    uint16_t language = 0;
    std::vector<uint8_t> pattern; ///< that the library builds now
    std::string difference;       ///< from the pattern asked for, as a remark's text; empty when they are the same
    std::string equals;           ///< the languages whose patterns are the same, of which the first was taken; empty for one
};

/// Arms the adapter for the language whose pattern a given one is, byte for byte. With equal thresholds a user's pattern is that
/// of several.
///
/// @param languages  tried in their order; a single one is taken whatever the pattern is
/// @param build      builds a language's pattern; throws CommandFailure
/// @throws CommandFailure when no pattern can be built, or it is none of several languages'
PatternOrigin FindPatternOrigin(std::span<const uint16_t> languages, const std::function<std::vector<uint8_t>(uint16_t)>& build,
                                std::span<const uint8_t> pattern);

} // namespace velox::console
