#pragma once

#include "evaluation/Trial.h"

#include <string>

namespace velox::evaluation
{

/// Writes what evaluation/compare-pocketsphinx plays to the other recogniser, so that both hear the same: takes of natural
/// voices that speak the phrase's own language, in every condition, and the recordings of people; with the engine's scores in
/// FOLDER/scores.tsv and its processor seconds in FOLDER/seconds.txt.
void WriteComparison(const Language& language, const Judged& judged, const std::string& folder);

} // namespace velox::evaluation
