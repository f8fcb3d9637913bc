#pragma once

#include "console/listening/Listening.h"
#include "console/report/Report.h"

#include <string>
#include <vector>

namespace velox::console
{

/// What listen was asked for, besides the audio.
struct ListeningSubject
{
    std::string pattern; ///< its file
    std::size_t patternBytes = 0;
    uint16_t language = 0;
    std::vector<Remark> remarks; ///< what is odd about the pattern or the fault
    bool isLive = false;         ///< a microphone was heard, in which nobody need have said the phrase
};

/// A phrase and what came of it, in one line.
/// @param threshold  in the unit of the threshold files
std::string PhraseLine(const HeardPhrase& phrase, double threshold);

/// What came of a run of listen.
Report ListeningReport(const ListeningSubject& subject, Heard heard);

} // namespace velox::console
