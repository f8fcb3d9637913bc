#pragma once

#include "console/pages/Report.h"

namespace velox::console
{

/// The pictures of one recording over one axis of time: places, sound, quality and score. Text stands beside the drawings, not in
/// them, so that it keeps its size at every width. Empty when the recording has no length.
///
/// @param number  of the recording, for identifiers that are unique in the page
std::string RecordingFigure(const ReportRecording& recording, std::size_t number);

/// "0.52 s to 1.80 s", from a minute on "1:02.5 to 1:04.0".
std::string PlaceText(double begin, double end);

/// What a mark is called: "Speech".
std::string MarkName(ReportMark::Kind kind);

} // namespace velox::console
