#include "oemadapter/settings/LanguageRecord.h"

#include "tests/oemadapter/support/RegistryTree.h"

#include <gtest/gtest.h>

namespace LanguageRecordTests
{

using velox::oemadapter::ReadLastLanguage;
using velox::oemadapter::WriteLastLanguage;

class LanguageRecord : public testing::Test
{
protected:
    LanguageRecord()
    {
        RemoveAdapterKeys();
    }
    ~LanguageRecord() override
    {
        RemoveAdapterKeys();
    }
};

TEST_F(LanguageRecord, IsNotThereAtFirst)
{
    EXPECT_EQ(ReadLastLanguage(), std::nullopt);
}

TEST_F(LanguageRecord, TellsWhatWasWrittenLast)
{
    EXPECT_EQ(WriteLastLanguage(1033), ERROR_SUCCESS);
    EXPECT_EQ(ReadLastLanguage(), 1033);
    EXPECT_EQ(WriteLastLanguage(65535), ERROR_SUCCESS);
    EXPECT_EQ(ReadLastLanguage(), 65535);
    EXPECT_EQ(WriteLastLanguage(1040), ERROR_SUCCESS);
    EXPECT_EQ(ReadLastLanguage(), 1040);
    EXPECT_EQ(ReadNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage"), 1040U);
}

TEST_F(LanguageRecord, LanguageZeroAndWhatIsNoLanguageAreNone)
{
    for (const DWORD number : {0U, 65536U})
    {
        WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", number);
        EXPECT_EQ(ReadLastLanguage(), std::nullopt) << number;
    }
    WriteText(HKEY_CURRENT_USER, UserKey, u"LastLanguage", u"1033");
    EXPECT_EQ(ReadLastLanguage(), std::nullopt);
}

TEST_F(LanguageRecord, ReplacesWhatIsNoLanguage)
{
    WriteText(HKEY_CURRENT_USER, UserKey, u"LastLanguage", u"1033");
    EXPECT_EQ(WriteLastLanguage(1033), ERROR_SUCCESS);
    EXPECT_EQ(ReadLastLanguage(), 1033);
}

} // namespace LanguageRecordTests
