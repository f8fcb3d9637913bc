#include "console/hosting/EngineOutput.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace EngineOutputOnRealTests
{

using velox::console::EngineOutput;
using Lines = std::vector<std::string>;

TEST(EngineOutput, LinesOfTheStreamAreTakenWhole)
{
    EngineOutput output;
    output.Begin();
    std::fprintf(stderr, "take heard\nsecond\r\nthird is not");
    EXPECT_EQ(output.TakeLines(), (Lines{"take heard", "second"}));
    EXPECT_EQ(output.TakeLines(), Lines());
    std::fprintf(stderr, " whole\n");
    EXPECT_EQ(output.TakeLines(), Lines{"third is not whole"});
    output.End();
}

TEST(EngineOutput, AfterTheEndTheStreamIsAsItWas)
{
    EngineOutput watcher;
    watcher.Begin();
    {
        EngineOutput output;
        output.Begin();
        std::fprintf(stderr, "taken\n");
        output.Show("shown");
        output.End();
        std::fprintf(stderr, "after\n");
    }
    EXPECT_EQ(watcher.TakeLines(), (Lines{"shown", "after"}));
    watcher.End();
}

} // namespace EngineOutputOnRealTests
