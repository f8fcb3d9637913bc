#include "console/doctor/EngineCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

using namespace velox::console;

namespace
{

EngineFacts Good()
{
    EngineFacts facts;
    facts.library = {"VeloxHwKwsImpl.dll", "C:\\VeloxHwKwsImpl.dll", "1.0.0.0", true, ""};
    facts.engine = {"VeloxWovSDK.dll", "C:\\VeloxWovSDK.dll", "", true, ""};
    facts.frameSize = {0, 1, 160};
    return facts;
}

} // namespace

TEST(EngineCheck, NothingIsWrongWithAGoodEngine)
{
    for (const Finding& finding : CheckEngine(Good()))
    {
        EXPECT_EQ(finding.tone, Tone::Good) << finding.message;
    }
    EXPECT_EQ(CheckEngine(Good()).size(), 4U);
}

TEST(EngineCheck, EachDefectIsFound)
{
    const struct
    {
        std::string message;
        std::function<void(EngineFacts*)> damage;
        bool everythingFails;
    } cases[]{
        {"The keyword engine was not found.",
         [](EngineFacts* facts) {
             facts->engine = {"VeloxWovSDK.dll", "", "", false, "x"};
         },
         true},
        {"The keyword engine cannot be loaded: it is not a DLL for 64-bit Windows.",
         [](EngineFacts* facts) {
             facts->engine = {"VeloxWovSDK.dll", "C:\\x.dll", "", false, "it is not a DLL for 64-bit Windows."};
         },
         true},
        {"The engine lacks 2 of the 15 functions: VWoVFlush, VWoVInit.",
         [](EngineFacts* facts) {
             facts->missingFunctions = {"VWoVFlush", "VWoVInit"};
         },
         true},
        {"The engine does not tell its frame size: status 112 OutOfMemory",
         [](EngineFacts* facts) { facts->frameSize.status = 112; }, false},
        {"The engine has 2 frame sizes instead of one.", [](EngineFacts* facts) { facts->frameSize.count = 2; }, false},
        {"The engine's frame size is -1, below 0.", [](EngineFacts* facts) { facts->frameSize.samples = -1; }, false},
        {"The engine's frame size is 0.", [](EngineFacts* facts) { facts->frameSize.samples = 0; }, false},
        {"The library was not found.",
         [](EngineFacts* facts) {
             facts->library = {"VeloxHwKwsImpl.dll", "", "", false, ""};
         },
         true},
    };
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.message);
        EngineFacts facts = Good();
        own.damage(&facts);
        int errors = 0;
        for (const Finding& finding : CheckEngine(facts))
        {
            if (finding.tone == Tone::Bad)
            {
                ++errors;
                EXPECT_THAT(finding.message, testing::StartsWith(own.message));
                EXPECT_FALSE(finding.effect.empty());
                EXPECT_FALSE(finding.fix.empty());
                EXPECT_EQ(finding.failures.size(), own.everythingFails ? 5U : 0U);
            }
        }
        EXPECT_EQ(errors, 1);
    }
}
