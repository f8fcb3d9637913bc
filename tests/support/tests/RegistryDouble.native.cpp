#include "tests/support/RegistryDouble.h"

#include "tests/support/FaultInjector.h"
#include "tests/support/Registry.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace RegistryDoubleFaultsTests
{

constexpr const wchar_t* SettingsKey = L"SOFTWARE\\Velox\\KeywordDetectorAdapter";
constexpr REGSAM Access = KEY_QUERY_VALUE | KEY_WOW64_64KEY;

class RegistryDouble : public testing::Test
{
protected:
    RegistryDouble()
    {
        WriteSettingsDword(L"LoggerLevel", 5);
    }
    ~RegistryDouble() override
    {
        RemoveSettingsKey();
    }

    LSTATUS Open()
    {
        return RegOpenKeyExW(HKEY_LOCAL_MACHINE, SettingsKey, 0, Access, &key);
    }

    HKEY key = nullptr;
};

TEST_F(RegistryDouble, CountsTheOpenKeys)
{
    EXPECT_EQ(Open(), ERROR_SUCCESS);
    HKEY first = key;
    EXPECT_EQ(Open(), ERROR_SUCCESS);
    EXPECT_NE(key, first);
    EXPECT_EQ(OpenRegistryKeys(), 2U);
    EXPECT_EQ(RegCloseKey(first), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(OpenRegistryKeys(), 0U);
}

TEST_F(RegistryDouble, CountsTheClosesOfWhatIsNotOpen)
{
    const std::size_t before = UnknownRegistryKeysClosed();
    EXPECT_EQ(Open(), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(UnknownRegistryKeysClosed(), before);
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(UnknownRegistryKeysClosed(), before + 1);
}

TEST_F(RegistryDouble, FindsTheKeyOnlyInItsPlaceAndWithTheRightAccess)
{
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, SettingsKey, 0, Access, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, SettingsKey, 0, KEY_QUERY_VALUE, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, SettingsKey, 0, KEY_ALL_ACCESS, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, SettingsKey, 1, Access, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(OpenRegistryKeys(), 0U);
}

TEST_F(RegistryDouble, RefusesWrongArguments)
{
    ASSERT_EQ(Open(), ERROR_SUCCESS);
    DWORD value = 0;
    DWORD size = sizeof(value);
    auto* bytes = reinterpret_cast<BYTE*>(&value);
    EXPECT_EQ(RegQueryValueExW(key, L"LoggerLevel", &size, nullptr, bytes, &size), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegQueryValueExW(key, L"LoggerLevel", nullptr, nullptr, bytes, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(RegistryDouble, FailsAsThePlanSays)
{
    {
        const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryOpen);
        EXPECT_EQ(Open(), ERROR_ACCESS_DENIED);
    }
    ASSERT_EQ(Open(), ERROR_SUCCESS);
    DWORD value = 4711;
    DWORD size = sizeof(value);
    {
        const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryQuery);
        EXPECT_EQ(RegQueryValueExW(key, L"LoggerLevel", nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size),
                  ERROR_ACCESS_DENIED);
        EXPECT_EQ(value, 4711U);
    }
    {
        const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryClose);
        EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    }
    EXPECT_EQ(OpenRegistryKeys(), 0U);
}

} // namespace RegistryDoubleFaultsTests
