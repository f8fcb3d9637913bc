#pragma once

#include "library/configuration/ConfigurationReader.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TestConfiguration.h"

#include <gtest/gtest.h>

/// What happens to a configuration, and the line of it.
struct ConfigurationDamage
{
    const char* description;
    void (*inflict)(const TestConfiguration& configuration);
    LogLine line;
};

/// A reader of a complete configuration.
class ReaderTest : public testing::Test
{
protected:
    TestConfiguration configuration;
    RecordingLogger logger;
    ConfigurationReader reader{configuration.Path(), &logger};
};
