#include "oemadapter/settings/AdapterSettings.h"

#include "oemadapter/settings/ModulePath.h"
#include "tests/oemadapter/support/RegistryTree.h"

#include <gmock/gmock.h>

namespace AdapterSettingsTests
{

namespace oem = velox::oemadapter;
using testing::IsEmpty;

class AdapterSettings : public testing::Test
{
protected:
    AdapterSettings()
    {
        RemoveAdapterKeys();
    }
    ~AdapterSettings() override
    {
        RemoveAdapterKeys();
    }

    oem::AdapterSettings Read()
    {
        problems.clear();
        return oem::ReadAdapterSettings(&problems);
    }

    std::vector<std::string> problems;
};

TEST_F(AdapterSettings, DefaultsHoldWithoutAKey)
{
    const oem::AdapterSettings settings = Read();
    EXPECT_THAT(problems, IsEmpty());
    const oem::WideText module = oem::ModulePath();
    EXPECT_EQ(settings.configurationFile, module.substr(0, module.find_last_of(u'\\')) + u"\\VeloxKwsConfig.xml");
    EXPECT_TRUE(settings.logFile.ends_with(u"\\Velox\\VeloxOemAdapter.log"));
    EXPECT_EQ(settings.logFile.find(u'%'), oem::WideText::npos);
    EXPECT_EQ(settings.eventName, u"Velox keyword");
    EXPECT_EQ(settings.userRecordings, 3U);
    EXPECT_NE(settings.eventId, settings.eventProviderId);
}

TEST_F(AdapterSettings, ValuesTakeTheDefaultsPlace)
{
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", u"C:/Velox/configuration.xml");
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"LogFile", u"\\\\server\\share\\adapter.log");
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"EventId", u"{01020304-0506-0708-090A-0B0C0D0E0F10}");
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"EventProviderId", u"{11121314-1516-1718-191a-1b1c1d1e1f20}");
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"EventName", u"Good morning, J\u00F8rgen");
    WriteNumber(HKEY_LOCAL_MACHINE, AdapterKey, u"UserRecordings", 5);
    const oem::AdapterSettings settings = Read();
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_EQ(settings.configurationFile, u"C:\\Velox\\configuration.xml");
    EXPECT_EQ(settings.logFile, u"\\\\server\\share\\adapter.log");
    EXPECT_EQ(settings.eventId, (GUID{0x01020304, 0x0506, 0x0708, {0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0x10}}));
    EXPECT_EQ(settings.eventProviderId, (GUID{0x11121314, 0x1516, 0x1718, {0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F, 0x20}}));
    EXPECT_EQ(settings.eventName, u"Good morning, J\u00F8rgen");
    EXPECT_EQ(settings.userRecordings, 5U);
}

TEST_F(AdapterSettings, ExpandsVariablesOfPaths)
{
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"LogFile", u"C:\\%ProgramData%", REG_EXPAND_SZ);
    const oem::WideText logFile = Read().logFile;
    EXPECT_TRUE(logFile.starts_with(u"C:\\"));
    EXPECT_EQ(logFile.find(u'%'), oem::WideText::npos);
}

TEST_F(AdapterSettings, AreOthersWhenAnyValueIs)
{
    const oem::AdapterSettings settings = Read();
    EXPECT_EQ(Read(), settings);
    WriteNumber(HKEY_LOCAL_MACHINE, AdapterKey, u"UserRecordings", 4);
    EXPECT_NE(Read(), settings);
}

struct Value
{
    const char* description;
    const char16_t* name;
    DWORD type;
    std::u16string text; ///< its bytes are the value's
    bool isUsable = false;
};

const std::u16string Guid = u"{01020304-0506-0708-090A-0B0C0D0E0F10}";

const Value Values[] = {
    Value{"relative configuration", u"ConfigurationFile", REG_SZ, u"configuration.xml"},
    Value{"configuration of the current drive", u"ConfigurationFile", REG_SZ, u"\\configuration.xml"},
    Value{"configuration without text", u"ConfigurationFile", REG_SZ, u""},
    Value{"configuration of another type", u"ConfigurationFile", REG_BINARY, u"C:\\configuration.xml"},
    Value{"relative log", u"LogFile", REG_SZ, u"C:log"},
    Value{"number as log", u"LogFile", REG_DWORD, u"12"},
    Value{"event without braces", u"EventId", REG_SZ, Guid.substr(1, 36)},
    Value{"event cut short", u"EventId", REG_SZ, Guid.substr(0, 30)},
    Value{"event of another type", u"EventId", REG_BINARY, Guid},
    Value{"event provider that is none", u"EventProviderId", REG_SZ, u"{velox}"},
    Value{"name of 99 letters", u"EventName", REG_SZ, std::u16string(99, u'x'), true},
    Value{"name of 100 letters", u"EventName", REG_SZ, std::u16string(100, u'x')},
    Value{"name of another type", u"EventName", REG_DWORD, u"12"},
    Value{"no recordings", u"UserRecordings", REG_DWORD, std::u16string(u"\0\0", 2)},
    Value{"one recording", u"UserRecordings", REG_DWORD, std::u16string(u"\x01\0", 2), true},
    Value{"16 recordings", u"UserRecordings", REG_DWORD, std::u16string(u"\x10\0", 2), true},
    Value{"17 recordings", u"UserRecordings", REG_DWORD, std::u16string(u"\x11\0", 2)},
    Value{"65537 recordings", u"UserRecordings", REG_DWORD, std::u16string(u"\x01\x01", 2)},
    Value{"recordings as text", u"UserRecordings", REG_SZ, u"3"},
    Value{"recordings of eight bytes", u"UserRecordings", REG_QWORD, std::u16string(u"\x03\0\0\0", 4)},
};

TEST_F(AdapterSettings, AValueThatIsOfNoUseIsToldAndLeavesTheDefault)
{
    const oem::AdapterSettings defaults = Read();
    for (const Value& value : Values)
    {
        SCOPED_TRACE(value.description);
        RemoveAdapterKeys();
        WriteValue(HKEY_LOCAL_MACHINE, AdapterKey, value.name, value.type,
                   {reinterpret_cast<const char*>(value.text.data()), value.text.size() * sizeof(char16_t)});
        EXPECT_EQ(Read() == defaults, !value.isUsable);
        const std::u16string name = value.name;
        const std::string problem = "The setting " + std::string(name.begin(), name.end()) + " is of no use: its default holds.";
        EXPECT_EQ(problems, value.isUsable ? std::vector<std::string>() : std::vector{problem});
    }
}

TEST_F(AdapterSettings, TheShortestPathIsThatOfADrive)
{
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", u"D:\\");
    EXPECT_EQ(velox::oemadapter::ReadAdapterSettings(&problems).configurationFile, u"D:\\");
    EXPECT_TRUE(problems.empty());
}

} // namespace AdapterSettingsTests
