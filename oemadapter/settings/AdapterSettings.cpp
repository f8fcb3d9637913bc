#include "oemadapter/settings/AdapterSettings.h"

#include "oemadapter/settings/ModulePath.h"
#include "oemadapter/settings/RegistryKey.h"

#include <objbase.h>

#include <algorithm>
#include <utility>

namespace velox::oemadapter
{

namespace
{

constexpr const char16_t* SettingsKey = u"SOFTWARE\\Velox\\KeywordDetectorAdapter\\OemAdapter";
constexpr const char16_t* ConfigurationFileName = u"VeloxKwsConfig.xml";
constexpr const char16_t* DefaultLogFile = u"%ProgramData%\\Velox\\VeloxOemAdapter.log";
constexpr std::size_t LongestEventName = 99;
constexpr uint32_t MostUserRecordings = 16;

// Each takes a value into a setting, and says whether it can be used.

bool TakePath(const RegistryValue& value, WideText* path)
{
    WideText text = TextOf(value).value_or(WideText());
    std::ranges::replace(text, u'/', u'\\');
    // A path that is not absolute would depend on the current folder of whoever loads the adapter.
    if (text.size() < 3 || (text.substr(1, 2) != u":\\" && !text.starts_with(u"\\\\")))
    {
        return false;
    }
    *path = std::move(text);
    return true;
}

bool TakeGuid(const RegistryValue& value, GUID* guid)
{
    const std::optional<WideText> text = TextOf(value);
    GUID parsed{};
    if (!text || IIDFromString(Wide(*text), &parsed) != S_OK)
    {
        return false;
    }
    *guid = parsed;
    return true;
}

bool TakeName(const RegistryValue& value, WideText* name)
{
    const std::optional<WideText> text = TextOf(value);
    if (!text || text->size() > LongestEventName)
    {
        return false;
    }
    *name = *text;
    return true;
}

bool TakeUserRecordings(const RegistryValue& value, uint32_t* count)
{
    const std::optional<uint32_t> number = NumberOf(value);
    if (!number || *number < 1 || *number > MostUserRecordings)
    {
        return false;
    }
    *count = *number;
    return true;
}

AdapterSettings Defaults()
{
    AdapterSettings settings;
    const WideText module = ModulePath();
    settings.configurationFile = module.substr(0, module.find_last_of(u'\\') + 1) + ConfigurationFileName;
    settings.logFile = ExpandVariables(DefaultLogFile);
    return settings;
}

/// Reads one value after the other out of the settings key.
class SettingsReader
{
public:
    SettingsReader(const RegistryKey& settingsKey, std::vector<std::string>* foundProblems)
        : key(settingsKey), problems(foundProblems)
    {
    }

    template <typename Setting>
    void Read(const WCHAR* name, bool (*take)(const RegistryValue&, Setting*), Setting* setting) const
    {
        RegistryValue value;
        const LSTATUS status = key.Read(name, &value);
        if (status == ERROR_FILE_NOT_FOUND || (status == ERROR_SUCCESS && take(value, setting)))
        {
            return;
        }
        const WideText wide(reinterpret_cast<const char16_t*>(name));
        problems->push_back("The setting " + std::string(wide.begin(), wide.end()) +
                            (status == ERROR_SUCCESS ? " is of no use" : " cannot be read, error " + std::to_string(status)) +
                            ": its default holds.");
    }

private:
    const RegistryKey& key;
    std::vector<std::string>* problems;
};

} // namespace

AdapterSettings ReadAdapterSettings(std::vector<std::string>* problems)
{
    AdapterSettings settings = Defaults();
    RegistryKey key;
    if (const LSTATUS status = key.Open(HKEY_LOCAL_MACHINE, SettingsKey, KEY_QUERY_VALUE); status != ERROR_SUCCESS)
    {
        if (status != ERROR_FILE_NOT_FOUND)
        {
            problems->push_back("The settings cannot be read, error " + std::to_string(status) + ": their defaults hold.");
        }
        return settings;
    }
    const SettingsReader reader(key, problems);
    reader.Read(L"ConfigurationFile", TakePath, &settings.configurationFile);
    reader.Read(L"LogFile", TakePath, &settings.logFile);
    reader.Read(L"EventId", TakeGuid, &settings.eventId);
    reader.Read(L"EventProviderId", TakeGuid, &settings.eventProviderId);
    reader.Read(L"EventName", TakeName, &settings.eventName);
    reader.Read(L"UserRecordings", TakeUserRecordings, &settings.userRecordings);
    return settings;
}

} // namespace velox::oemadapter
