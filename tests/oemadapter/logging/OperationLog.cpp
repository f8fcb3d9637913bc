#include "oemadapter/logging/OperationLog.h"

#include <gtest/gtest.h>

#include <string>

namespace OperationLogTests
{

class OperationLog : public testing::Test
{
protected:
    velox::oemadapter::OperationLog log;
};

TEST_F(OperationLog, KeepsItsLinesWithTheirLevels)
{
    log.Begin("Method");
    log.Add(1, "first");
    log.Add(5, "second");
    EXPECT_STREQ(log.Method(), "Method");
    EXPECT_EQ(log.Text(), "1 first\r\n5 second\r\n");
    EXPECT_EQ(log.Lines(1), 1U);
    EXPECT_EQ(log.Lines(2), 0U);
    EXPECT_EQ(log.Lines(5), 1U);
}

TEST_F(OperationLog, ForgetsThemWhenACallBegins)
{
    log.Add(1, "first");
    log.Begin("Next");
    EXPECT_EQ(log.Text(), "");
    EXPECT_EQ(log.Lines(1), 0U);
}

TEST_F(OperationLog, KnowsOfAModelThatWasLostOnItsWayIntoTheStream)
{
    log.Add(2, "[TrainModel] Failed to allocate memory for model data.");
    log.Add(4, "[WriteModelToIStream] Entry.");
    EXPECT_FALSE(log.ModelWasLost());
    log.Add(2, std::string(log.MostText - 100, 'x'));
    log.Add(2, "[WriteModelToIStream] Failed to commit data to stream." + std::string(100, ' '));
    EXPECT_TRUE(log.ModelWasLost()) << "kept or not";
    log.Add(1, "[ComputeAndAddUserModelData] Failed.");
    EXPECT_TRUE(log.ModelWasLost()) << "whatever follows";
    log.Begin("Next");
    EXPECT_FALSE(log.ModelWasLost());
}

TEST_F(OperationLog, CountsLinesThatDoNotFit)
{
    const std::string line(1000, 'x');
    for (int i = 0; i < 9; ++i)
    {
        log.Add(2, line);
    }
    EXPECT_EQ(log.Lines(2), 9U);
    EXPECT_EQ(log.Text().size(), 8 * 1004U);
    log.Add(3, "short");
    EXPECT_TRUE(log.Text().ends_with("3 short\r\n"));
}

TEST_F(OperationLog, HoldsExactlyItsLimit)
{
    log.Add(2, std::string(log.MostText - 4, 'x'));
    EXPECT_EQ(log.Text().size(), log.MostText);
    log.Add(2, "");
    EXPECT_EQ(log.Text().size(), log.MostText);
}

TEST_F(OperationLog, LeavesUnknownLevelsOut)
{
    log.Add(6, "six");
    log.Add(0xFFFFFFFF, "many");
    EXPECT_EQ(log.Text(), "");
}

} // namespace OperationLogTests
