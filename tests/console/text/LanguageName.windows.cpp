#include "console/text/LanguageName.h"

#include "console/text/CommandFailure.h"

#include <gtest/gtest.h>

namespace LanguageNameOnRealTests
{

using namespace velox::console;

TEST(LanguageName, NumbersAndNamesMeanTheSame)
{
    for (const char* text : {"1033", "0x409", "0X0409", "en-US", "EN-us", "en_US"})
    {
        SCOPED_TRACE(text);
        EXPECT_EQ(ParseLanguage(text), 1033);
    }
    EXPECT_EQ(ParseLanguage("de-AT"), 3079);
    EXPECT_EQ(ParseLanguage("zh-HK"), 3076);
    EXPECT_EQ(ParseLanguage("es-US"), 21514);
    EXPECT_EQ(ParseLanguage("1234"), 1234) << "a number needs no name";
}

TEST(LanguageName, RefusesWhatIsNoLanguage)
{
    for (const char* text : {"", "0", "english", "0x", "1033x", "65536", "-1", "0x10409", "qq-QQ"})
    {
        SCOPED_TRACE(text);
        try
        {
            ParseLanguage(text);
            ADD_FAILURE() << "it was taken";
        }
        catch (const CommandFailure& failure)
        {
            EXPECT_EQ(failure.exitCode, ExitCode::Usage);
        }
    }
}

TEST(LanguageName, TextsShowTheNameWhereThereIsOne)
{
    EXPECT_EQ(LanguageText(1033), "1033 (en-US)");
    EXPECT_EQ(LanguageText(1234), "1234");
}

TEST(LanguageName, IsWhatWindowsCallsTheLanguage)
{
    EXPECT_EQ(LanguageName(1033), "en-US");
    EXPECT_EQ(LanguageDisplayName(1033), "English (United States)");
    EXPECT_EQ(LanguageDisplayName(1040), "Italian (Italy)");
}

TEST(LanguageName, NumbersWithoutALanguageHaveNone)
{
    constexpr uint16_t NoLanguages[]{0, 0x0C00, 0x1000, 0x1400, 65001};
    for (const uint16_t language : NoLanguages)
    {
        EXPECT_EQ(LanguageName(language), "") << language;
        EXPECT_EQ(LanguageDisplayName(language), "") << language;
    }
}

} // namespace LanguageNameOnRealTests
