#include "console/hosting/LoggedLine.h"

#include <gtest/gtest.h>

namespace LoggedLineTests
{

using namespace velox::console;

TEST(LoggedLine, ShowsLevelSourceAndMessage)
{
    EXPECT_EQ(LogText({4, 0, "[GetCapabilities] Entry."}), "information  adapter    [GetCapabilities] Entry.");
    EXPECT_EQ(LogText({9, 1, "x"}), "9            internals  x");
}

TEST(LoggedLine, SaysWhatCodesMean)
{
    EXPECT_EQ(LogText({1, 1, "Failed.", static_cast<int32_t>(0x80070057)}),
              "error        internals  Failed. Result: 0x80070057 E_INVALIDARG");
    EXPECT_EQ(LogText({2, 1, "Refused.", std::nullopt, 121}),
              "failure      internals  Refused. Engine status: 121 TooQuiet: The utterance is too quiet.");
}

} // namespace LoggedLineTests
