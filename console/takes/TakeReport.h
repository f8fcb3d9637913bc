#pragma once

#include "console/audio/AudioFile.h"
#include "console/hosting/LoggedLine.h"
#include "console/report/Report.h"
#include "console/text/CommandFailure.h"
#include "engine/enrollment/TakeReview.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velox::console
{

/// All that is known of one take.
struct Take
{
    std::string file;
    bool accepted = false; ///< by the library
    bool readable = true;
    std::vector<Remark> remarks{}; ///< why it was refused; of an accepted take what is noteworthy
    Audio audio{};
    engine::TakeReview review{};       ///< empty when the file could not be read
    std::optional<double> score{};     ///< of the detection, as the library logged it
    std::optional<int> quality{};      ///< likewise, in the unit of qualityThreshold
    std::optional<double> threshold{}; ///< the language's predefined one
    std::optional<float> likeness{};   ///< to the other takes: engine::RatiosToOthers
};

/// What a verdict is made from.
struct TakeEvidence
{
    bool accepted = false;               ///< by the library
    std::span<const LoggedLine> lines{}; ///< that the library logged
    std::optional<double> threshold{};
    std::optional<int> qualityThreshold{};
};

/// Says of a take why it was refused, in the order: its quality, its own faults, the engine, the score.
Take MakeTake(const std::string& file, Audio audio, engine::TakeReview review, const TakeEvidence& evidence);

/// A take whose file cannot be read.
Take UnreadableTake(const std::string& file, const CommandFailure& failure);

/// What a review found fault with; nothing when it found none.
/// @param seconds  length of the recording
std::optional<Remark> WhyUseless(const engine::TakeReview& review, double seconds);

/// Why a file could not be read, without its name.
Remark UnreadableRemark(const std::string& file, const CommandFailure& failure);

/// A report of the takes; its verdict tells how many were accepted, and which are to be recorded again: "2 of 3 takes are
/// accepted. Record again: b.wav." Its exit code is Success when all were accepted, BadInput when a file could not be read, else
/// Refused.
Report VerificationReport(uint16_t language, std::span<const Take> takes);

/// The report of a command that failed after it had this to show.
Report Failed(Report report, const CommandFailure& failure);

} // namespace velox::console
