#pragma once

#include "console/listening/HeardFile.h"
#include "console/text/Outcome.h"

namespace velox::console
{

/// The page that shows the same as a run's outcome, with the recordings' shapes.
/// @param outcome  ListeningOutcome's for the same files
Report ListeningPage(const ListeningSubject& subject, const std::vector<HeardFile>& files, const Outcome& outcome);

} // namespace velox::console
