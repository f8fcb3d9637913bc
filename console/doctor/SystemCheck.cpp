#include "console/doctor/SystemCheck.h"

#include "console/text/StatusText.h"
#include "console/text/Wording.h"
#include "console/text/Words.h"
#include "firmware/LittleEndian.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace velox::console
{

namespace
{

Subject SubjectOf(const DllFacts& dll, Findings* findings)
{
    return {dll.path.empty() ? dll.name : dll.path, findings};
}

void CheckDll(const DllFacts& dll, std::string_view what, Findings* findings)
{
    const Subject subject = SubjectOf(dll, findings);
    if (dll.loaded)
    {
        const std::string version = dll.version.empty() ? "without a version" : "version " + dll.version;
        subject.Add(Tone::Good, 0, fmt::format("The {} was loaded, {}.", what, version));
        return;
    }
    const bool found = !dll.path.empty();
    subject.Add(Tone::Bad, 0,
                found ? fmt::format("The {} cannot be loaded: {}", what, dll.loadError)
                      : fmt::format("The {} was not found.", what),
                "Without it the library does not load.",
                found ? "Use the 64-bit file, and put the DLLs that it needs beside it."
                      : fmt::format("Put {} into the folder of the program, or into one that the PATH names.", dll.name),
                EveryOperation);
}

/// What is wrong with the engine's answer; empty when nothing is.
std::string FrameSizeFault(const FrameSizeFacts& frame)
{
    return frame.status != 0  ? fmt::format("The engine does not tell its frame size: status {}.", EngineStatusText(frame.status))
           : frame.count != 1 ? fmt::format("The engine has {} frame sizes instead of one.", frame.count)
           : frame.samples < 0  ? fmt::format("The engine's frame size is {}, below 0.", frame.samples)
           : frame.samples == 0 ? "The engine's frame size is 0."
                                : "";
}

void CheckFrameSize(const FrameSizeFacts& frame, const Subject& engine)
{
    constexpr double SamplesPerMillisecond = 16.0;
    const std::string fault = FrameSizeFault(frame);
    if (fault.empty())
    {
        engine.Add(Tone::Good, 0,
                   fmt::format("The engine takes frames of {} samples ({:g} ms).", frame.samples,
                               frame.samples / SamplesPerMillisecond));
        return;
    }
    const bool zero = frame.status == 0 && frame.count == 1 && frame.samples == 0;
    engine.Add(Tone::Bad, 0, fault,
               zero ? "No recording gets to the engine."
                    : "The library goes on with 150 samples; verification and training may not work.",
               "Use an engine that keeps to docs/engine-contract.md; this one may be of another version.");
}

constexpr std::string_view Key = "HKLM\\SOFTWARE\\Velox\\KeywordDetectorAdapter";
constexpr uint32_t TypeDword = 4;
constexpr std::size_t MostBytes = 4;

/// One of the library's values.
struct Setting
{
    std::string_view name;
    int32_t most;                             ///< the largest number that counts; -1: any
    int32_t otherwise;                        ///< the default
    std::array<std::string_view, 6> meanings; ///< by the number; the last that there is counts for all beyond
};

constexpr Setting Settings[]{
    {"LoggerLevel",
     5,
     0,
     {"the library logs nothing", "errors of the operations are logged", "errors and what failed inside them are logged",
      "fallbacks are logged, too", "every operation's beginning and end are logged, too",
      "thresholds, scores and sizes are logged, too"}},
    {"LogToFile", -1, 0, {"the logger writes no file", "the logger writes a file"}},
    {"SDKLoggerLevel", 6, 3, {"the keyword engine logs nothing", "the log level of the keyword engine"}}};

/// "3: fallbacks are logged, too"
std::string Meaning(const Setting& setting, int32_t value)
{
    const auto said = std::ranges::find(setting.meanings, std::string_view());
    const auto last = static_cast<std::size_t>(said - setting.meanings.begin()) - 1;
    return fmt::format("{}: {}", value, setting.meanings[std::min(static_cast<std::size_t>(static_cast<uint32_t>(value)), last)]);
}

/// The number that the library reads: up to four bytes of any type.
std::optional<int32_t> NumberOf(const RegistryValue& value)
{
    std::vector<uint8_t> bytes = value.bytes;
    bytes.resize(MostBytes);
    const auto number = static_cast<int32_t>(firmware::ReadUnsigned<uint32_t>(bytes, 0));
    return value.bytes.size() > MostBytes ? std::nullopt : std::optional(number);
}

void CheckValue(const Setting& setting, const RegistryValue& value, const Subject& subject)
{
    const auto number = NumberOf(value);
    const bool counts = number && (setting.most < 0 || (*number >= 0 && *number <= setting.most));
    const bool rightType = value.type == TypeDword && value.bytes.size() == MostBytes;
    if (counts && rightType)
    {
        subject.Add(Tone::Good, 0, fmt::format("{} is {}.", setting.name, Meaning(setting, *number)));
        return;
    }
    subject.Add(
        Tone::Warning, 0,
        counts   ? fmt::format("{} is not of the type REG_DWORD.", setting.name)
        : number ? fmt::format("{} is {}, but only 0 to {} count.", setting.name, *number, setting.most)
                 : fmt::format("{} is longer than four bytes, so it is not read.", setting.name),
        counts ? fmt::format("The library takes its bytes for the number {}.", Meaning(setting, *number))
               : fmt::format("The default stays in force, {}.", Meaning(setting, setting.otherwise)),
        fmt::format("As administrator: reg add {} /v {} /t REG_DWORD /d {} /f /reg:64", Key, setting.name, setting.otherwise));
}

} // namespace

Findings CheckEngine(const EngineFacts& facts)
{
    Findings findings;
    const Subject engine = SubjectOf(facts.engine, &findings);
    CheckDll(facts.engine, "keyword engine", &findings);
    if (!facts.missingFunctions.empty())
    {
        engine.Add(Tone::Bad, 0,
                   fmt::format("The engine lacks {} of the 15 functions: {}.", facts.missingFunctions.size(),
                               Joined(facts.missingFunctions)),
                   "The library does not load with it.", "Use the engine that belongs to this library.", EveryOperation);
    }
    else if (facts.engine.loaded)
    {
        engine.Add(Tone::Good, 0, "The engine has all fifteen functions.");
        CheckFrameSize(facts.frameSize, engine);
        CheckDll(facts.library, "library", &findings);
    }
    return findings;
}

std::string RegistryText(const RegistryValue& value)
{
    return fmt::format("{}, type {}: {:02X}", value.name, value.type, fmt::join(value.bytes, " "));
}

Findings CheckSettings(const RegistrySettings& settings)
{
    Findings findings;
    const Subject subject{std::string(Key), &findings};
    if (!settings.keyReadable)
    {
        subject.Add(Tone::Good, 0, "The settings key is not there, or may not be read: every default is in force.");
    }
    for (const Setting& setting : Settings)
    {
        const auto found =
            std::ranges::find_if(settings.values, [&](const RegistryValue& own) { return SameLetters(own.name, setting.name); });
        if (found != settings.values.end())
        {
            CheckValue(setting, *found, subject);
            continue;
        }
        subject.Add(Tone::Good, 0, fmt::format("{} is not set, so {}.", setting.name, Meaning(setting, setting.otherwise)));
    }
    for (const RegistryValue& value : settings.values)
    {
        if (std::ranges::none_of(Settings, [&](const Setting& own) { return SameLetters(value.name, own.name); }))
        {
            subject.Add(Tone::Warning, 0, fmt::format("{} is no value that the library knows.", value.name), "It is ignored.",
                        "Correct its name: LoggerLevel, LogToFile or SDKLoggerLevel.");
        }
    }
    for (const std::string& name : settings.valuesOf32Bit)
    {
        subject.Add(Tone::Warning, 0, fmt::format("{} stands in the 32-bit view of the registry.", name),
                    "The library reads the 64-bit view only.", "Write it again with /reg:64.");
    }
    return findings;
}

} // namespace velox::console
