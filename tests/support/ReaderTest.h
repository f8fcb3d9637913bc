#pragma once

#include "ConfigurationReader.h"
#include "RecordingLogger.h"
#include "TestConfiguration.h"

#include <gtest/gtest.h>

/// A reader of a complete configuration.
class ReaderTest : public testing::Test
{
protected:
    TestConfiguration configuration;
    RecordingLogger logger;
    ConfigurationReader reader{configuration.Path(), &logger};
};
