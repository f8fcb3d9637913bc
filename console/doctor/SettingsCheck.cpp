#include "console/doctor/SettingsCheck.h"

#include "console/text/Words.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

namespace velox::console
{

namespace
{

constexpr std::string_view Key = "HKLM\\SOFTWARE\\Velox\\KeywordDetectorAdapter";
constexpr uint32_t TypeDword = 4;
constexpr std::size_t MostBytes = 4;

/// One of the library's values.
struct Setting
{
    std::string_view name;
    int32_t most;      ///< the largest number that counts; -1: any
    int32_t otherwise; ///< the default
    std::string_view (*meaning)(int32_t value);
};

std::string_view LoggerLevelMeaning(int32_t value)
{
    constexpr std::string_view Meanings[]{"the library logs nothing",
                                          "errors of the operations are logged",
                                          "errors and what failed inside them are logged",
                                          "fallbacks are logged, too",
                                          "every operation's beginning and end are logged, too",
                                          "thresholds, scores and sizes are logged, too"};
    return Meanings[value];
}

std::string_view LogToFileMeaning(int32_t value)
{
    return value == 0 ? "the logger writes no file" : "the logger writes a file";
}

std::string_view EngineLevelMeaning(int32_t value)
{
    return value == 0 ? "the keyword engine logs nothing" : "the log level of the keyword engine";
}

constexpr Setting Settings[]{{"LoggerLevel", 5, 0, LoggerLevelMeaning},
                             {"LogToFile", -1, 0, LogToFileMeaning},
                             {"SDKLoggerLevel", 6, 3, EngineLevelMeaning}};

/// The number that the library reads: up to four bytes of any type.
std::optional<int32_t> NumberOf(const RegistryValue& value)
{
    if (value.bytes.size() > MostBytes)
    {
        return std::nullopt;
    }
    uint32_t number = 0;
    for (std::size_t i = 0; i < value.bytes.size(); ++i)
    {
        number |= uint32_t{value.bytes[i]} << (8 * i);
    }
    return static_cast<int32_t>(number);
}

Finding SettingsFinding(Tone tone, std::string message, std::string effect = {}, std::string fix = {})
{
    return {tone, std::string(Key), 0, std::move(message), std::move(effect), std::move(fix)};
}

std::string SetCommand(const Setting& setting)
{
    return fmt::format("As administrator: reg add {} /v {} /t REG_DWORD /d {} /f /reg:64", Key, setting.name, setting.otherwise);
}

Finding CheckValue(const Setting& setting, const RegistryValue& value)
{
    const std::string usual =
        fmt::format("The default {} stays in force: {}.", setting.otherwise, setting.meaning(setting.otherwise));
    const auto number = NumberOf(value);
    if (!number)
    {
        return SettingsFinding(Tone::Warning, fmt::format("{} is longer than four bytes, so it is not read.", setting.name),
                               usual, SetCommand(setting));
    }
    if (setting.most >= 0 && (*number < 0 || *number > setting.most))
    {
        return SettingsFinding(Tone::Warning,
                               fmt::format("{} is {}, but only 0 to {} count.", setting.name, *number, setting.most), usual,
                               SetCommand(setting));
    }
    if (value.type != TypeDword || value.bytes.size() != MostBytes)
    {
        return SettingsFinding(
            Tone::Warning, fmt::format("{} is not of the type REG_DWORD.", setting.name),
            fmt::format("The library takes its bytes for the number {}: {}.", *number, setting.meaning(*number)),
            SetCommand(setting));
    }
    return SettingsFinding(Tone::Good, fmt::format("{} is {}: {}.", setting.name, *number, setting.meaning(*number)));
}

Finding CheckSetting(const Setting& setting, const RegistrySettings& settings)
{
    const auto found =
        std::ranges::find_if(settings.values, [&](const RegistryValue& value) { return SameLetters(value.name, setting.name); });
    return found == settings.values.end()
               ? SettingsFinding(Tone::Good, fmt::format("{} is not set, so {}: {}.", setting.name, setting.otherwise,
                                                         setting.meaning(setting.otherwise)))
               : CheckValue(setting, *found);
}

} // namespace

std::string RegistryText(const RegistryValue& value)
{
    return fmt::format("{}, type {}: {:02X}", value.name, value.type, fmt::join(value.bytes, " "));
}

Findings CheckSettings(const RegistrySettings& settings)
{
    Findings findings;
    if (!settings.keyReadable)
    {
        findings.push_back(
            SettingsFinding(Tone::Good, "The settings key is not there, or may not be read: every default is in force."));
    }
    for (const Setting& setting : Settings)
    {
        findings.push_back(CheckSetting(setting, settings));
    }
    for (const RegistryValue& value : settings.values)
    {
        if (std::ranges::none_of(Settings, [&](const Setting& own) { return SameLetters(value.name, own.name); }))
        {
            findings.push_back(SettingsFinding(Tone::Warning, fmt::format("{} is no value that the library knows.", value.name),
                                               "It is ignored.", "Correct its name: LoggerLevel, LogToFile or SDKLoggerLevel."));
        }
    }
    for (const std::string& name : settings.valuesOf32Bit)
    {
        findings.push_back(SettingsFinding(Tone::Warning, fmt::format("{} stands in the 32-bit view of the registry.", name),
                                           "The library reads the 64-bit view only.", "Write it again with /reg:64."));
    }
    return findings;
}

} // namespace velox::console
