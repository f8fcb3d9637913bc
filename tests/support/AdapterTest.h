#pragma once

#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TestConfiguration.h"

#include <gtest/gtest.h>

/// The detector that the tests' adapters are created for; its bytes in memory are A0 to AF in order.
inline constexpr GUID DetectorId{0xA3A2A1A0, 0xA5A4, 0xA7A6, {0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF}};

/// An adapter on a configuration of its own. What its constructor logged is forgotten.
class AdapterTest : public testing::Test
{
protected:
    AdapterTest()
    {
        logger.Take();
    }

    TestConfiguration configuration;
    RecordingLogger logger;
    VeloxKeywordDetectorAdapterImpl adapter{&logger, configuration.Path(), "1.2.3", DetectorId};
};
