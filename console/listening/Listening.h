#pragma once

#include "firmware/DspSimulator.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velox::console
{

/// What the library makes of a result block.
struct ParsedBlock
{
    int32_t result = 0;     ///< HRESULT; what follows it is meaningful only when it is 0
    uint32_t keywordId = 0; ///< 0: no match
    uint16_t language = 0;  ///< of the adapter's last arming
    bool isUserMatch = false;
    uint64_t keywordStart = 0; ///< performance counter
    uint64_t keywordEnd = 0;
    std::string explanation; ///< why the library refused the block; else empty
};

using BlockParser = std::function<ParsedBlock(std::span<const uint8_t>)>;

/// Called with the share of the audio that was heard.
using ListeningProgress = std::function<void(double)>;

/// A detection: what the simulator heard, what it reported, and what the library made of it.
struct HeardDetection
{
    firmware::Peak peak;
    std::vector<uint8_t> block;
    ParsedBlock parsed;

    /// Whether the library told the host of the keyword.
    bool Told() const
    {
        return parsed.result == 0 && parsed.keywordId != 0;
    }
};

/// How the simulator is driven.
struct ListeningSetup
{
    std::vector<uint8_t> pattern;
    std::vector<uint8_t> newerPattern; ///< set after the first one, for the stale fault; empty for none
    firmware::DetectorId detector{};
    firmware::PerformanceCounter counter;
    firmware::Fault fault = firmware::Fault::None;
    std::size_t blockSamples = engine::FrameSize;
};

/// What came of one piece of audio.
struct Heard
{
    double seconds = 0.0;
    uint32_t threshold = 0; ///< Q8, in the simulator
    bool userModel = false; ///< in the simulator
    std::vector<HeardDetection> detections;
    std::vector<firmware::Peak> nearMisses;
    std::optional<uint16_t> highestSilent; ///< highest score that did not fire, Q8
    std::optional<double> deafFrom;        ///< second of a reset, after which nothing was heard
};

/// A peak this much under the threshold is a near miss: a threshold that it passes gives about seven times as many false alarms.
inline constexpr float NearMissMargin = 20.0F;

/// Whether a peak that did not pass was close: its score, or the phrase's alone.
bool IsNearMiss(const firmware::Peak& peak, uint32_t threshold);

/// Listens from the beginning of the audio to its end, and arms again after each detection, as the system does.
/// @throws CommandFailure BadInput when the simulator refuses the pattern
Heard HearRecording(const ListeningSetup& setup, std::span<const float> samples, const BlockParser& parse,
                    const ListeningProgress& progress);

} // namespace velox::console
