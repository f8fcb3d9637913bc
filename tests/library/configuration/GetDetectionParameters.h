#pragma once

#include "tests/library/configuration/Lines.h"
#include "tests/support/ReaderTest.h"

/// A record to fill; a field that was left alone holds 4711.
class DetectionParametersTest : public ReaderTest
{
protected:
    void ExpectFields(int32_t quality, int32_t predefined, int32_t userDefined) const
    {
        EXPECT_EQ(parameters.qualityThreshold, quality);
        EXPECT_EQ(parameters.preDefinedKpdSensitivity, predefined);
        EXPECT_EQ(parameters.userDefinedKpdSensitivity, userDefined);
    }

    VELOX_WOV_DETECTION_PARAMETERS parameters{4711, 4711, 4711};
};
