#include "console/doctor/SystemCheck.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace SystemProbeOnRealTests
{

using namespace velox::console;

constexpr const wchar_t* Key = L"SOFTWARE\\Velox\\KeywordDetectorAdapter";

/// Without a settings key at first and in the end.
class SystemProbe : public testing::Test
{
protected:
    SystemProbe()
    {
        Remove();
    }
    ~SystemProbe() override
    {
        Remove();
    }

    static void Remove()
    {
        RegDeleteKeyExW(HKEY_LOCAL_MACHINE, Key, KEY_WOW64_64KEY, 0);
        RegDeleteKeyExW(HKEY_LOCAL_MACHINE, Key, KEY_WOW64_32KEY, 0);
    }

    static void Write(const wchar_t* name, DWORD type, const void* data, DWORD size, REGSAM view = KEY_WOW64_64KEY)
    {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, Key, 0, nullptr, 0, KEY_SET_VALUE | view, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        EXPECT_EQ(RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), size), ERROR_SUCCESS);
        RegCloseKey(key);
    }
};

TEST_F(SystemProbe, AbsentKeyIsSaidToBeAbsent)
{
    const RegistrySettings settings = ReadSettingsKey();
    EXPECT_FALSE(settings.keyReadable);
    EXPECT_TRUE(settings.values.empty());
}

TEST_F(SystemProbe, ValuesHaveNameTypeAndBytes)
{
    const uint32_t level = 4;
    Write(L"LoggerLevel", REG_DWORD, &level, sizeof(level));
    const RegistrySettings settings = ReadSettingsKey();
    EXPECT_TRUE(settings.keyReadable);
    ASSERT_EQ(settings.values.size(), 1U);
    EXPECT_EQ(settings.values[0].name, "LoggerLevel");
    EXPECT_EQ(settings.values[0].type, static_cast<uint32_t>(REG_DWORD));
    EXPECT_EQ(settings.values[0].bytes, (std::vector<uint8_t>{4, 0, 0, 0}));
}

TEST_F(SystemProbe, LongValueStaysLongerThanTheLibraryReads)
{
    const std::vector<uint8_t> bytes(1000, 1);
    Write(L"LogToFile", REG_BINARY, bytes.data(), static_cast<DWORD>(bytes.size()));
    ASSERT_EQ(ReadSettingsKey().values.size(), 1U);
    EXPECT_GT(ReadSettingsKey().values[0].bytes.size(), sizeof(uint32_t));
}

TEST_F(SystemProbe, ValuesOfThe32BitViewAreNamedApart)
{
    const uint32_t level = 5;
    Write(L"LoggerLevel", REG_DWORD, &level, sizeof(level), KEY_WOW64_32KEY);
    const RegistrySettings settings = ReadSettingsKey();
    EXPECT_TRUE(settings.values.empty());
    ASSERT_EQ(settings.valuesOf32Bit.size(), 1U);
    EXPECT_EQ(settings.valuesOf32Bit[0], "LoggerLevel");
}

TEST_F(SystemProbe, StandInBesideTheProgramIsFoundAndAsked)
{
    const EngineFacts facts = ProbeEngine();
    EXPECT_TRUE(facts.engine.loaded) << facts.engine.loadError;
    EXPECT_THAT(facts.engine.path, testing::EndsWith("\\VeloxWovSDK.dll"));
    EXPECT_THAT(facts.missingFunctions, testing::IsEmpty());
    EXPECT_EQ(facts.frameSize.status, 0U);
    EXPECT_EQ(facts.frameSize.count, 1U);
    EXPECT_EQ(facts.frameSize.samples, 160);
}

TEST_F(SystemProbe, LibraryIsFoundWithItsVersion)
{
    const EngineFacts facts = ProbeEngine();
    EXPECT_TRUE(facts.library.loaded) << facts.library.loadError;
    EXPECT_THAT(facts.library.version, testing::MatchesRegex("\\d+\\.\\d+\\.\\d+\\.\\d+"));
}

} // namespace SystemProbeOnRealTests
