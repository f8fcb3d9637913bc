#pragma once

#include <cstdint>

/// The detection thresholds of one language. A "Q8" field holds the decimal number of its threshold file times 256, rounded
/// half away from zero.
struct VELOX_WOV_DETECTION_PARAMETERS
{
    int32_t preDefinedKpdSensitivity;  ///< Q8, for the language's predefined key phrase
    int32_t userDefinedKpdSensitivity; ///< Q8, for a user's own model
    int32_t qualityThreshold;          ///< least quality of an enrollment recording, the attribute's value unscaled
};

static_assert(sizeof(VELOX_WOV_DETECTION_PARAMETERS) == 12, "the record crosses the library boundary by value");
