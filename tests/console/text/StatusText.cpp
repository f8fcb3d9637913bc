#include "console/text/StatusText.h"

#include <gtest/gtest.h>

namespace StatusTextTests
{

using namespace velox::console;

TEST(StatusText, ResultsShowTheirNumberAndName)
{
    EXPECT_EQ(ResultText(0), "0x00000000 S_OK");
    EXPECT_EQ(ResultText(static_cast<int32_t>(0x80004005)), "0x80004005 E_FAIL");
    EXPECT_EQ(ResultText(static_cast<int32_t>(0x80070057)), "0x80070057 E_INVALIDARG");
}

TEST(StatusText, ResultWithoutANameShowsItsNumber)
{
    EXPECT_EQ(ResultText(static_cast<int32_t>(0x81234567)), "0x81234567");
}

TEST(StatusText, EngineStatusesShowNumberNameAndSentence)
{
    EXPECT_EQ(EngineStatusText(121), "121 TooQuiet: The utterance is too quiet.");
    EXPECT_EQ(EngineStatusText(0xFFFFFFFF), "4294967295 NothingLeft: Nothing is left to flush, or no score has come out yet.");
}

TEST(StatusText, EngineStatusOfAnotherEngineSaysSo)
{
    EXPECT_EQ(EngineStatusText(999), "999 (not a status of the stand-in engine)");
}

} // namespace StatusTextTests
