#pragma once

#include "engine/listening/PhraseDetector.h"
#include "firmware/DspPattern.h"
#include "firmware/Fault.h"
#include "firmware/PerformanceCounter.h"
#include "firmware/ResultBlock.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace velox::firmware
{

/// A peak of the phrase's score, as the firmware's debugging port would tell it.
struct Peak
{
    engine::Detection detection; ///< its samples count from the simulator's first one
    uint16_t score = 0;          ///< Q8, as it is compared and reported
    bool passed = false;         ///< the threshold
};

/// Called for every peak that was judged, whether it passed the threshold or not, before it is reported.
using PeakObserver = std::function<void(const Peak&)>;

/// Plays the firmware: takes an arming pattern, listens, fires, and reports with a block. As in the hardware, a new pattern and a
/// detection disarm it, and without a pattern arming has no effect. docs/simulator.md describes it.
///
/// Time is the audio's: everything that is heard counts, armed or not.
class DspSimulator
{
public:
    explicit DspSimulator(const DetectorId& detector, PerformanceCounter counter = {}, PeakObserver observer = {});
    DspSimulator(const DspSimulator&) = delete;
    DspSimulator& operator=(const DspSimulator&) = delete;
    ~DspSimulator() = default;

    /// Disarms and takes a pattern. A pattern that is refused leaves none: the one before is gone.
    ///
    /// @param block  as BuildArmingPatternData returns it; copied
    /// @return nothing when it is accepted
    std::optional<PatternRefusal> SetPattern(std::span<const uint8_t> block);

    /// Starts to listen, as if nothing had been heard before.
    ///
    /// @return false without a pattern: it stays disarmed
    bool Arm();

    void Disarm();

    /// As when the hardware loses its state: neither pattern nor arming is left.
    void Reset();

    bool HasPattern() const
    {
        return pattern != nullptr;
    }
    bool IsArmed() const
    {
        return listener.has_value();
    }
    /// Q8; 0 without a pattern.
    uint32_t Threshold() const
    {
        return pattern ? pattern->threshold : 0;
    }
    /// Whether the pattern holds a user's own model.
    bool HasUserModel() const
    {
        return pattern && pattern->model.speaker.has_value();
    }

    /// @param newFault  holds until the next call
    void SetFault(Fault newFault)
    {
        fault = newFault;
    }

    /// Hears audio up to its end or up to a detection, which disarms. Blocks may have any length: the same audio gives the same
    /// detections. Allocates nothing.
    ///
    /// @param audio  mono samples at 16 kHz; what lies beyond [-1, 1] is clipped, what is no number is silence. What was heard is
    ///     taken off its front, so that after a detection the rest is left
    /// @return the block of a detection
    std::optional<ResultBlock> Hear(std::span<const float>* audio);

    /// Samples that may pass from a keyword's end to its report, while armed; else 0. Where audio ends, silence of this length
    /// lets the last keyword be reported.
    int64_t Latency() const;

    /// The search's score of the last frame, in the unit of the threshold files: how near what is heard just now is to the
    /// phrase. Nothing while disarmed.
    std::optional<float> CurrentScore() const
    {
        return listener ? listener->FirstStageScore() : std::nullopt;
    }

    /// Samples heard so far.
    int64_t SamplesHeard() const
    {
        return heard;
    }

private:
    bool FillFrame(std::span<const float>* audio);
    void Skip(std::span<const float>* audio);
    std::optional<ResultBlock> Judge(engine::Detection detection);

    DetectorId detectorId;
    PerformanceCounter counter;
    PeakObserver observer;
    Fault fault = Fault::None;
    std::unique_ptr<DspPattern> pattern;
    std::optional<engine::PhraseDetector> listener; ///< while armed; looks at the pattern's model
    int64_t heard = 0;
    int64_t armedAt = 0;
    std::array<float, engine::FrameSize> frame{};
    std::size_t filled = 0;
};

} // namespace velox::firmware
