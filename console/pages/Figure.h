#pragma once

#include "console/report/Picture.h"

#include <string>

namespace velox::console
{

/// The pictures of one recording over one axis of time: places, sound, quality and score. Text stands beside the drawings, not in
/// them, so that it keeps its size at every width. Empty when the recording has no length.
/// @param id  unique in the page, for identifiers
std::string Figure(const Picture& picture, const std::string& id);

/// A curve with its interval as a band.
std::string ChartFigure(const Chart& chart);

/// What a mark is called: "Speech".
std::string MarkName(Mark::Kind kind);

} // namespace velox::console
