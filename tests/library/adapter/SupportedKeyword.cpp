#include "library/adapter/SupportedKeyword.h"

#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace SupportedKeywordTests
{

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr SelectorLines Lines{
    .languageCheckFailed = "[Operation] Failed to check if language is supported.",
    .notSupportedFormat = "[Operation] Expected keyword ID: %d, actual keyword ID: %d. Language ID: %d.",
};

class SupportedKeyword : public ReaderTest
{
protected:
    HRESULT Check(uint32_t keywordId, uint16_t languageId)
    {
        return CheckSelector({.keywordId = keywordId, .languageId = languageId}, &reader, Lines, &logger);
    }
};

TEST_F(SupportedKeyword, TheOneKeywordInAConfiguredLanguagePasses)
{
    EXPECT_EQ(Check(1, 1040), S_OK);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(SupportedKeyword, AnotherKeywordIsNamed)
{
    EXPECT_EQ(Check(2, 1040), E_INVALIDARG);
    EXPECT_THAT(logger.lines,
                ElementsAre(LogFormat(1, 0, "[Operation] Expected keyword ID: 1, actual keyword ID: 2. Language ID: 1040.")));
}

TEST_F(SupportedKeyword, LanguageThatIsNotConfiguredIsReportedWithEqualKeywordsKept)
{
    EXPECT_EQ(Check(1, 1031), E_INVALIDARG);
    EXPECT_THAT(logger.lines,
                ElementsAre(LogFormat(1, 0, "[Operation] Expected keyword ID: 1, actual keyword ID: 1. Language ID: 1031.")));
}

TEST_F(SupportedKeyword, UnreadableConfigurationComesBeforeTheKeyword)
{
    std::filesystem::remove(configuration.Path());
    EXPECT_EQ(Check(2, 1040), E_FAIL);
    EXPECT_EQ(logger.lines.back(), Log(1, 0, Lines.languageCheckFailed));
}

} // namespace SupportedKeywordTests
