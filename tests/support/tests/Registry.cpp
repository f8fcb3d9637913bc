// The same questions to the real registry and to its double.
#include "tests/support/Registry.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <array>

namespace RegistryTests
{

constexpr const wchar_t* SettingsKey = L"SOFTWARE\\Velox\\KeywordDetectorAdapter";
constexpr REGSAM Access = KEY_QUERY_VALUE | KEY_WOW64_64KEY;

class Registry : public testing::Test
{
protected:
    Registry()
    {
        RemoveSettingsKey();
    }
    ~Registry() override
    {
        RemoveSettingsKey();
    }

    LSTATUS Open(const wchar_t* subkey)
    {
        return RegOpenKeyExW(HKEY_LOCAL_MACHINE, subkey, 0, Access, &key);
    }

    HKEY key = nullptr;
};

TEST_F(Registry, AMissingKeyIsNotFound)
{
    EXPECT_EQ(Open(SettingsKey), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, ARemovedKeyIsNotFoundAndMayBeRemovedAgain)
{
    WriteSettingsDword(L"LoggerLevel", 3);
    RemoveSettingsKey();
    RemoveSettingsKey();
    EXPECT_EQ(Open(SettingsKey), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, AnotherKeyIsNotFound)
{
    WriteSettingsDword(L"LoggerLevel", 3);
    EXPECT_EQ(Open(L"SOFTWARE\\Velox\\KeywordDetectorAdapters"), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, ReadsADword)
{
    WriteSettingsDword(L"LoggerLevel", 0x01020304);
    ASSERT_EQ(Open(SettingsKey), ERROR_SUCCESS);
    DWORD type = 0;
    DWORD value = 0;
    DWORD size = sizeof(value);
    EXPECT_EQ(RegQueryValueExW(key, L"LoggerLevel", nullptr, &type, reinterpret_cast<BYTE*>(&value), &size), ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<DWORD>(REG_DWORD));
    EXPECT_EQ(value, 0x01020304U);
    EXPECT_EQ(size, 4U);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(Registry, TakesTheLastValueWrittenWhateverTheCaseOfItsName)
{
    WriteSettingsDword(L"LoggerLevel", 1);
    WriteSettingsDword(L"LOGGERLEVEL", 2);
    ASSERT_EQ(Open(L"software\\VELOX\\KeywordDetectorAdapter"), ERROR_SUCCESS);
    DWORD value = 0;
    DWORD size = sizeof(value);
    EXPECT_EQ(RegQueryValueExW(key, L"loggerlevel", nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size), ERROR_SUCCESS);
    EXPECT_EQ(value, 2U);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(Registry, TooSmallABufferIsNotWritten)
{
    WriteSettingsQword(L"LoggerLevel", 1);
    ASSERT_EQ(Open(SettingsKey), ERROR_SUCCESS);
    std::array<DWORD, 2> value{4711, 4712};
    DWORD size = sizeof(DWORD);
    EXPECT_EQ(RegQueryValueExW(key, L"LoggerLevel", nullptr, nullptr, reinterpret_cast<BYTE*>(value.data()), &size),
              ERROR_MORE_DATA);
    EXPECT_EQ(size, 8U);
    EXPECT_EQ(value[1], 4712U);
    size = sizeof(value);
    EXPECT_EQ(RegQueryValueExW(key, L"LoggerLevel", nullptr, nullptr, reinterpret_cast<BYTE*>(value.data()), &size),
              ERROR_SUCCESS);
    EXPECT_EQ(value[0], 1U);
    EXPECT_EQ(value[1], 0U);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(Registry, GivesTheSizeWithoutABuffer)
{
    WriteSettingsQword(L"LoggerLevel", 1);
    ASSERT_EQ(Open(SettingsKey), ERROR_SUCCESS);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExW(key, L"LoggerLevel", nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 8U);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(Registry, AMissingValueIsNotFound)
{
    WriteSettingsDword(L"LoggerLevel", 1);
    ASSERT_EQ(Open(SettingsKey), ERROR_SUCCESS);
    DWORD value = 4711;
    DWORD size = sizeof(value);
    EXPECT_EQ(RegQueryValueExW(key, L"LogToFile", nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size),
              ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(value, 4711U);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(Registry, AClosedKeyIsInvalid)
{
    WriteSettingsDword(L"LoggerLevel", 1);
    ASSERT_EQ(Open(SettingsKey), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(key, L"LoggerLevel", nullptr, nullptr, nullptr, nullptr), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
}

} // namespace RegistryTests
