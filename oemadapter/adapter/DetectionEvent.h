#pragma once

#include "oemadapter/detector/Detector.h"
#include "oemadapter/windows/EventDetectorOemAdapter.h"

#include <cstdint>

namespace velox::oemadapter
{

/// The one event that is detected, as the settings name it. Its model counts as valid always: whether a user's model in a stream
/// is one is not known here, and FALSE would ask every user to train again.
DETECTIONEVENT MakeEvent(const AdapterSettings& settings);

/// Whether the event is that of the settings.
bool IsOurs(const DETECTIONEVENT& event, const AdapterSettings& settings);

/// The selector of what was detected: the language and, as the model's validity, the user match of the library; user and armed
/// state from the last arming.
DETECTIONEVENTSELECTOR MakeSelector(const Detection& detection, const DetectorContents& inside);

/// Accept, and how sure the firmware is; Reject for another keyword.
/// @param result  a block that the library has parsed
EVENTACTION MakeAction(const Detection& detection, const DetectionResult& result);

/// Error, and its code.
EVENTACTION MakeErrorAction(HRESULT code);

} // namespace velox::oemadapter
