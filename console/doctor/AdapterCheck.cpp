#include "console/doctor/AdapterCheck.h"

#include "console/text/Utf8Path.h"

#include <fmt/format.h>

namespace velox::console
{

namespace
{

constexpr uint16_t MachineAmd64 = 0x8664;
constexpr std::string_view Register = "As administrator: regsvr32 VeloxOemAdapter.dll, in the folder that it lies in.";
constexpr std::string_view NoDetector = "Windows finds no keyword detector.";

/// @return whether it can be created at all
bool CheckModule(const AdapterFacts& facts, const Subject& module)
{
    if (!facts.isModuleThere)
    {
        module.Add(Tone::Bad, 0, "The OEM adapter that is registered is not there.", NoDetector, Register);
        return false;
    }
    if (facts.machine != MachineAmd64)
    {
        module.Add(Tone::Bad, 0, "The OEM adapter that is registered is no module for 64-bit Windows.", NoDetector,
                   "Register the 64-bit file.");
        return false;
    }
    return true;
}

void CheckConfigurationOf(const AdapterFacts& facts, const std::filesystem::path& configuration, const Subject& module)
{
    const AdapterClass& adapter = *facts.registered;
    const std::string file = Utf8(adapter.configuration);
    if (!facts.isConfigurationThere)
    {
        module.Add(Tone::Bad, 0, fmt::format("The OEM adapter's configuration file {} is not there.", file),
                   "Every call of Windows fails.",
                   adapter.isConfigurationNamed ? "Correct its setting ConfigurationFile."
                                                : "Put it there, or name another in the setting ConfigurationFile.");
    }
    else if (std::error_code ignored; !std::filesystem::equivalent(adapter.configuration, configuration, ignored))
    {
        module.Add(Tone::Note, 0, fmt::format("The OEM adapter works with another configuration file, {}.", file));
    }
}

void CheckAnnounced(const AdapterFacts& facts, const Subject& module)
{
    if (!facts.byAdapter.failure.empty())
    {
        module.Add(Tone::Bad, 0, facts.byAdapter.failure, NoDetector,
                   "The DLLs that it needs lie beside it; its own log file tells more.");
    }
    else if (facts.byAdapter != facts.byLibrary)
    {
        module.Add(Tone::Bad, 0, "The OEM adapter announces something else than the library does with its configuration file.",
                   "Windows trains and arms what the library does not know.",
                   "Put the library that belongs to it beside it; end what has loaded it, so that it reads its settings again.");
    }
    else
    {
        module.Add(Tone::Good, 0, "The OEM adapter is registered, can be created, and announces what the library does.");
    }
}

} // namespace

Findings CheckAdapter(const AdapterFacts& facts, const std::filesystem::path& configuration)
{
    Findings findings;
    if (!facts.registered)
    {
        Subject{"", &findings}.Add(Tone::Note, 0, "No OEM adapter is registered.",
                                   "The console does without; Windows finds no keyword detector.", Register);
        return findings;
    }
    const Subject module{Utf8(facts.registered->module), &findings};
    if (!CheckModule(facts, module))
    {
        return findings;
    }
    if (facts.registered->threadingModel != "Both")
    {
        module.Add(Tone::Warning, 0,
                   fmt::format("The OEM adapter's threading model is \"{}\", not \"Both\".", facts.registered->threadingModel),
                   "Calls from some threads go through a proxy, or fail.", Register);
    }
    for (const std::string& problem : facts.settingProblems)
    {
        module.Add(Tone::Warning, 0, problem, "", "docs/oem-adapter.md lists the settings.");
    }
    CheckConfigurationOf(facts, configuration, module);
    if (facts.isConfigurationThere)
    {
        CheckAnnounced(facts, module);
    }
    return findings;
}

} // namespace velox::console
