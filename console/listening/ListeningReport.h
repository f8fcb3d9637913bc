#pragma once

#include "console/listening/HeardFile.h"
#include "console/report/Outcome.h"
#include "console/text/Style.h"

#include <string>
#include <vector>

namespace velox::console
{

/// What came of a run of listen, for people and for machines.
Outcome ListeningOutcome(const ListeningSubject& subject, const std::vector<HeardFile>& files, const Style& style);

/// What the host learned of a detection.
std::string DetectionMeaning(const HeardDetection& detection);

/// Why a peak that was close did not fire.
std::string NearMissReason(const firmware::Peak& miss, uint32_t threshold);

/// All files together, in two sentences.
std::string ListeningStatistics(const std::vector<HeardFile>& files);

/// A Q8 score in the unit of the threshold files.
double ScoreOf(uint32_t q8);

/// Place in a recording: "0:07.25", "1:02:03.40".
std::string ClockText(double seconds);

} // namespace velox::console
