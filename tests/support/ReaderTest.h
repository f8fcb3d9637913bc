#pragma once

#include "library/configuration/ConfigurationReader.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TestConfiguration.h"

#include <gtest/gtest.h>

/// A reader of a complete configuration.
class ReaderTest : public testing::Test
{
protected:
    TestConfiguration configuration;
    RecordingLogger logger;
    ConfigurationReader reader{configuration.Path(), &logger};
};
