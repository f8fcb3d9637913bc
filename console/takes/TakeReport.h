#pragma once

#include "console/audio/AudioFile.h"
#include "console/hosting/LoggedLine.h"
#include "console/takes/Remark.h"
#include "console/text/CommandFailure.h"
#include "engine/enrollment/TakeReview.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velox::console
{

class Style;

/// What the library logged about a take.
struct LoggedFigures
{
    std::optional<double> score; ///< of the detection, in the unit of the threshold files
    std::optional<int> quality;  ///< in the unit of qualityThreshold
};

/// All that is known of one take.
struct TakeReport
{
    std::string file;
    bool accepted = false;
    std::vector<TakeRemark> remarks; ///< why it was refused; of an accepted take what is noteworthy
    Audio audio;
    engine::TakeReview review; ///< empty when the file could not be read
    LoggedFigures logged;
    std::optional<double> threshold; ///< the language's predefined one
    bool readable = true;
};

/// What a verdict is made from.
struct TakeEvidence
{
    bool accepted = false;             ///< by the library
    std::span<const LoggedLine> lines; ///< that the library logged
    std::optional<double> threshold;
    std::optional<int> qualityThreshold;
    bool phraseKnown = false; ///< the review was made with the phrase's model
};

/// Says why a take was refused, in the order: the take's own faults, the phrase, the quality, the engine.
TakeReport ReportTake(const std::string& file, Audio audio, engine::TakeReview review, const TakeEvidence& evidence);

/// A take whose file cannot be read.
TakeReport ReportUnreadable(const std::string& file, const CommandFailure& failure);

/// Lines for people, with the take's number before them.
std::string TakeText(const TakeReport& report, std::size_t number, const Style& style);

/// An element of the document's results.
nlohmann::ordered_json TakeJson(const TakeReport& report);

} // namespace velox::console
