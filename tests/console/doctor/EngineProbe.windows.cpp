#include "console/doctor/EngineCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velox::console;

TEST(EngineProbe, StandInBesideTheProgramIsFoundAndAsked)
{
    const EngineFacts facts = ProbeEngine();
    EXPECT_TRUE(facts.engine.loaded) << facts.engine.loadError;
    EXPECT_THAT(facts.engine.path, testing::EndsWith("\\VeloxWovSDK.dll"));
    EXPECT_THAT(facts.missingFunctions, testing::IsEmpty());
    EXPECT_EQ(facts.frameSize.status, 0U);
    EXPECT_EQ(facts.frameSize.count, 1U);
    EXPECT_EQ(facts.frameSize.samples, 160);
}

TEST(EngineProbe, LibraryIsFoundWithItsVersion)
{
    const EngineFacts facts = ProbeEngine();
    EXPECT_TRUE(facts.library.loaded) << facts.library.loadError;
    EXPECT_THAT(facts.library.version, testing::MatchesRegex("\\d+\\.\\d+\\.\\d+\\.\\d+"));
}
