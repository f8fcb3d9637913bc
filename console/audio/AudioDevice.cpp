#include "console/audio/AudioDevice.h"

#include "console/text/CommandFailure.h"
#include "console/text/Wording.h"
#include "console/text/Words.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

bool Holds(std::string_view text, std::string_view part)
{
    const auto same = [](const char& one, const char& other) {
        return SameLetters({&one, 1}, {&other, 1});
    };
    return part.empty() || std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

void RequireAny(std::span<const AudioDevice> devices)
{
    if (devices.empty())
    {
        throw CommandFailure(ExitCode::BadInput, "There is no microphone.",
                             "Plug one in, or switch one on in the system's sound and privacy settings.");
    }
}

} // namespace

const AudioDevice& ChooseDevice(std::span<const AudioDevice> devices, const std::string& name)
{
    RequireAny(devices);
    const auto chosen = std::ranges::find_if(
        devices, [&](const AudioDevice& device) { return name.empty() ? device.isDefault : Holds(device.name, name); });
    if (chosen != devices.end())
    {
        return *chosen;
    }
    if (name.empty())
    {
        return devices.front();
    }
    std::vector<std::string> names;
    std::ranges::transform(devices, std::back_inserter(names), &AudioDevice::name);
    throw CommandFailure(ExitCode::BadInput, fmt::format("No microphone has \"{}\" in its name.", name),
                         "There are: " + Joined(names) + ".");
}

Report DeviceReport(std::span<const AudioDevice> devices)
{
    RequireAny(devices);
    Entry table{"Microphones"};
    for (const AudioDevice& device : devices)
    {
        Entry entry{device.name, device.isDefault ? "default" : ""};
        entry.facts = {{"host", device.host, "host", device.host},
                       {"samplesPerSecond", device.rate, "rate", fmt::format("{} Hz", device.rate)},
                       {"channels", device.channels, "channels", fmt::format("{}", device.channels)},
                       {"isDefault", device.isDefault}};
        table.parts.push_back(std::move(entry));
    }
    Report report;
    report.results.push_back(std::move(table));
    report.verdict =
        fmt::format("{}; without a name \"{}\" is heard.", Counted(devices.size(), "microphone"), ChooseDevice(devices, "").name);
    return report;
}

} // namespace velox::console
