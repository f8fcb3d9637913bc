#include "oemadapter/settings/RegistryKey.h"

#include "tests/oemadapter/support/LiveObjects.h"
#include "tests/oemadapter/support/RegistryTree.h"

#include <gmock/gmock.h>

namespace RegistryKeyTests
{

namespace oem = velox::oemadapter;

const std::u16string Path = AdapterKey;

class RegistryKey : public testing::Test
{
protected:
    RegistryKey()
    {
        RemoveAdapterKeys();
    }
    ~RegistryKey() override
    {
        key = {};
        EXPECT_EQ(LivePlatformObjects(), before);
        RemoveAdapterKeys();
    }

    void OpenForReading()
    {
        ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, Path, KEY_QUERY_VALUE), ERROR_SUCCESS);
    }

    std::size_t before = LivePlatformObjects();
    oem::RegistryKey key;
    oem::RegistryValue value{REG_NONE, {4, 7, 1, 1}};
};

oem::RegistryValue Bytes(DWORD type, std::string_view bytes)
{
    return {type, {bytes.begin(), bytes.end()}};
}

TEST_F(RegistryKey, AMissingKeyIsNotFound)
{
    EXPECT_EQ(key.Open(HKEY_LOCAL_MACHINE, Path, KEY_QUERY_VALUE), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryKey, ReadsAValueAsItStands)
{
    WriteValue(HKEY_LOCAL_MACHINE, Path, u"Some", REG_BINARY, "abc");
    OpenForReading();
    EXPECT_EQ(key.Read(L"Some", &value), ERROR_SUCCESS);
    EXPECT_EQ(value.type, static_cast<DWORD>(REG_BINARY));
    EXPECT_THAT(value.bytes, testing::ElementsAre('a', 'b', 'c'));
}

TEST_F(RegistryKey, ReadsALongValue)
{
    const std::string bytes(5000, 'x');
    WriteValue(HKEY_LOCAL_MACHINE, Path, u"Some", REG_BINARY, bytes);
    OpenForReading();
    EXPECT_EQ(key.Read(L"Some", &value), ERROR_SUCCESS);
    EXPECT_EQ(std::string(value.bytes.begin(), value.bytes.end()), bytes);
}

TEST_F(RegistryKey, ReadsAnEmptyValue)
{
    WriteValue(HKEY_LOCAL_MACHINE, Path, u"Some", REG_SZ, "");
    OpenForReading();
    EXPECT_EQ(key.Read(L"Some", &value), ERROR_SUCCESS);
    EXPECT_TRUE(value.bytes.empty());
}

TEST_F(RegistryKey, AMissingValueIsLeftAlone)
{
    WriteNumber(HKEY_LOCAL_MACHINE, Path, u"Some", 1);
    OpenForReading();
    EXPECT_EQ(key.Read(L"Other", &value), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(value.bytes.size(), 4U);
}

TEST_F(RegistryKey, MakesAKeyOfTheUserWritesAndRemovesItsValues)
{
    ASSERT_EQ(key.Make(HKEY_CURRENT_USER, UserKey, KEY_SET_VALUE | KEY_QUERY_VALUE), ERROR_SUCCESS);
    EXPECT_TRUE(key.IsEmpty());
    EXPECT_EQ(key.Write(L"Number", oem::NumberValue(1033)), ERROR_SUCCESS);
    EXPECT_EQ(key.Write(nullptr, oem::TextValue(u"default")), ERROR_SUCCESS);
    EXPECT_EQ(ReadNumber(HKEY_CURRENT_USER, UserKey, u"Number"), 1033U);
    EXPECT_EQ(ReadText(HKEY_CURRENT_USER, UserKey, u""), u"default");
    EXPECT_FALSE(key.IsEmpty());
    EXPECT_EQ(key.Remove(L"Number"), ERROR_SUCCESS);
    EXPECT_EQ(key.Remove(L"Number"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(key.Remove(nullptr), ERROR_SUCCESS);
    EXPECT_TRUE(key.IsEmpty());
}

TEST_F(RegistryKey, ASubkeyMakesAKeyNotEmpty)
{
    WriteNumber(HKEY_LOCAL_MACHINE, Path, u"Some", 1);
    ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Velox\\KeywordDetectorAdapter", KEY_QUERY_VALUE), ERROR_SUCCESS);
    EXPECT_FALSE(key.IsEmpty());
}

TEST_F(RegistryKey, TextEndsAtItsFirstZeroOrWhereItEnds)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(oem::TextOf(oem::TextValue(u"some")), u"some");
    EXPECT_EQ(oem::TextOf(Bytes(REG_SZ, "a\0b\0"sv)), u"ab");
    EXPECT_EQ(oem::TextOf(Bytes(REG_SZ, "a\0\0\0b\0"sv)), u"a");
    EXPECT_EQ(oem::TextOf(Bytes(REG_SZ, "a\0b"sv)), u"a");
    EXPECT_EQ(oem::TextOf(Bytes(REG_SZ, "")), u"");
}

TEST_F(RegistryKey, TextHasTheTypeOfText)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(oem::TextOf(Bytes(REG_BINARY, "a\0"sv)), std::nullopt);
    EXPECT_EQ(oem::TextOf(Bytes(REG_MULTI_SZ, "a\0\0\0"sv)), std::nullopt);
}

TEST_F(RegistryKey, VariablesAreExpandedWhereTheTypeAsksForIt)
{
    oem::RegistryValue text = oem::TextValue(u"%ProgramData%\\log");
    EXPECT_EQ(oem::TextOf(text), u"%ProgramData%\\log");
    text.type = REG_EXPAND_SZ;
    const std::optional<oem::WideText> expanded = oem::TextOf(text);
    ASSERT_TRUE(expanded);
    EXPECT_EQ(expanded->find(u'%'), oem::WideText::npos);
    EXPECT_TRUE(expanded->ends_with(u"\\log"));
}

TEST_F(RegistryKey, UnknownVariablesStay)
{
    EXPECT_EQ(oem::ExpandVariables(u"%NoSuchVelox%\\log"), u"%NoSuchVelox%\\log");
    EXPECT_EQ(oem::ExpandVariables(u""), u"");
}

TEST_F(RegistryKey, NumberHasTypeAndLengthOfOne)
{
    EXPECT_EQ(oem::NumberOf(oem::NumberValue(0x01020304)), 0x01020304U);
    EXPECT_EQ(oem::NumberOf(Bytes(REG_DWORD, "abc")), std::nullopt);
    EXPECT_EQ(oem::NumberOf(Bytes(REG_QWORD, "abcdefgh")), std::nullopt);
    EXPECT_EQ(oem::NumberOf(Bytes(REG_BINARY, "abcd")), std::nullopt);
}

} // namespace RegistryKeyTests
