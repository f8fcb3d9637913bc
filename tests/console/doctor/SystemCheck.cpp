#include "console/doctor/SystemCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace SystemCheckTests
{

using namespace velox::console;

EngineFacts Good()
{
    EngineFacts facts;
    facts.library = {"VeloxHwKwsImpl.dll", "C:\\VeloxHwKwsImpl.dll", "1.0.0.0", true, ""};
    facts.engine = {"VeloxWovSDK.dll", "C:\\VeloxWovSDK.dll", "", true, ""};
    facts.frameSize = {0, 1, 160};
    return facts;
}

constexpr uint32_t Dword = 4;
constexpr uint32_t Text = 1;

RegistrySettings With(RegistryValue value)
{
    return {true, {std::move(value)}, {}};
}

/// What is said of a value, or of its absence.
Finding FindingOf(const RegistrySettings& settings, std::string_view name)
{
    const Findings findings = CheckSettings(settings);
    const auto found =
        std::find_if(findings.begin(), findings.end(), [&](const Finding& finding) { return finding.message.starts_with(name); });
    return found == findings.end() ? Finding{Tone::Bad, {}, 0, "nothing is said"} : *found;
}

TEST(SystemCheck, NothingIsWrongWithAGoodEngine)
{
    for (const Finding& finding : CheckEngine(Good()))
    {
        EXPECT_EQ(finding.tone, Tone::Good) << finding.message;
    }
    EXPECT_EQ(CheckEngine(Good()).size(), 4U);
}

TEST(SystemCheck, EachDefectOfTheEngineIsFound)
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

TEST(SystemCheck, AbsentKeyIsGood)
{
    for (const Finding& finding : CheckSettings({}))
    {
        EXPECT_EQ(finding.tone, Tone::Good) << finding.message;
    }
    EXPECT_EQ(FindingOf({}, "SDKLoggerLevel").message, "SDKLoggerLevel is not set, so 3: the log level of the keyword engine.");
}

TEST(SystemCheck, EveryValueIsTakenAsTheLibraryTakesIt)
{
    const struct
    {
        RegistryValue value;
        Tone tone;
        std::string said;
    } cases[]{
        {{"LoggerLevel", Dword, {4, 0, 0, 0}}, Tone::Good, "LoggerLevel is 4: every operation's beginning and end"},
        {{"loggerlevel", Dword, {2, 0, 0, 0}}, Tone::Good, "LoggerLevel is 2"},
        {{"LoggerLevel", Dword, {6, 0, 0, 0}}, Tone::Warning, "LoggerLevel is 6, but only 0 to 5 count."},
        {{"LoggerLevel", Dword, {0xFF, 0xFF, 0xFF, 0xFF}}, Tone::Warning, "LoggerLevel is -1, but only 0 to 5 count."},
        {{"SDKLoggerLevel", Dword, {6, 0, 0, 0}}, Tone::Good, "SDKLoggerLevel is 6"},
        {{"LogToFile", Dword, {0, 1, 0, 0}}, Tone::Good, "LogToFile is 256: the logger writes a file."},
        {{"LogToFile", Text, {'1', 0, 0, 0}}, Tone::Warning, "LogToFile is not of the type REG_DWORD."},
        {{"LoggerLevel", 3, {5}}, Tone::Warning, "LoggerLevel is not of the type REG_DWORD."},
        {{"LoggerLevel", 11, {5, 0, 0, 0, 0, 0, 0, 0}}, Tone::Warning, "LoggerLevel is longer than four bytes"},
        {{"LogLevel", Dword, {5, 0, 0, 0}}, Tone::Warning, "LogLevel is no value that the library knows."},
    };
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.said);
        const Finding finding = FindingOf(With(own.value), own.said.substr(0, own.said.find(' ')));
        EXPECT_EQ(finding.tone, own.tone);
        EXPECT_THAT(finding.message, testing::StartsWith(own.said));
        EXPECT_EQ(finding.fix.empty(), own.tone == Tone::Good);
    }
}

TEST(SystemCheck, BytesOfAnotherTypeAreShownAsTheNumberThatTheyBecome)
{
    EXPECT_EQ(FindingOf(With({"LogToFile", Text, {'1', 0, 0, 0}}), "LogToFile").effect,
              "The library takes its bytes for the number 49: the logger writes a file.");
}

TEST(SystemCheck, ValuesOfThe32BitViewAreWarnedOf)
{
    const Findings findings = CheckSettings({false, {}, {"LoggerLevel"}});
    EXPECT_EQ(findings.back().tone, Tone::Warning);
    EXPECT_THAT(findings.back().message, testing::HasSubstr("32-bit view"));
}

TEST(SystemCheck, ValueIsShownAsItStands)
{
    EXPECT_EQ(RegistryText({"LoggerLevel", Dword, {4, 0, 0, 255}}), "LoggerLevel, type 4: 04 00 00 FF");
}

} // namespace SystemCheckTests
