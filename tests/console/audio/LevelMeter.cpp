#include "console/audio/LevelMeter.h"

#include <gtest/gtest.h>

#include <vector>

namespace LevelMeterTests
{

using velox::console::LevelMeter;

TEST(LevelMeter, ShowsDecibelsAndABar)
{
    struct Case
    {
        float amplitude;
        const char* text;
    };
    for (const Case& one : {Case{1.0F, "  0 dB [####################]"},
                            {0.1F, "-20 dB [#############       ]"},
                            {0.001F, "-60 dB [                    ]"},
                            {0.0F, "-60 dB [                    ]"},
                            {3.0F, "  0 dB [####################]"}})
    {
        LevelMeter meter;
        meter.Hear(std::vector<float>(100, one.amplitude));
        EXPECT_EQ(meter.Text(), one.text);
    }
}

TEST(LevelMeter, TellsOfWhatCameSinceTheLastTime)
{
    LevelMeter meter;
    meter.Hear(std::vector<float>(100, 0.5F));
    meter.Hear(std::vector<float>(300, 0.0F));
    EXPECT_EQ(meter.Text(), "-12 dB [################    ]") << "a quarter of the power of 0.5";
    meter.Hear(std::vector<float>(100, 0.01F));
    EXPECT_EQ(meter.Text(), "-40 dB [#######             ]");
    EXPECT_EQ(meter.Text(), "-60 dB [                    ]") << "nothing came";
}

} // namespace LevelMeterTests
