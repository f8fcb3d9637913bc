#include "console/doctor/AdapterCheck.h"

#include "console/hosting/Detector.h"
#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "oemadapter/settings/AdapterSettings.h"

#include <windows.h>

#include <fstream>

namespace velox::console
{

namespace
{

/// @return 0 for a file that is no program
uint16_t MachineOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    IMAGE_DOS_HEADER begin{};
    stream.read(reinterpret_cast<char*>(&begin), sizeof(begin));
    stream.seekg(begin.e_lfanew);
    struct
    {
        DWORD signature;
        IMAGE_FILE_HEADER header;
    } program{};
    stream.read(reinterpret_cast<char*>(&program), sizeof(program));
    return stream && begin.e_magic == IMAGE_DOS_SIGNATURE && program.signature == IMAGE_NT_SIGNATURE ? program.header.Machine : 0;
}

AnnouncedFacts Ask(const DetectorOptions& options)
{
    try
    {
        const CapabilitiesAnswer answer = Detector(options, {}).GetCapabilities();
        answer.Require("Asking for the capabilities");
        return {"", answer.keywordIds, answer.languages, answer.supportsUserModels};
    }
    catch (const CommandFailure& failure)
    {
        return {failure.what()};
    }
}

} // namespace

AdapterFacts ProbeAdapter(const std::string& detectorId)
{
    AdapterFacts facts;
    facts.registered = FindAdapterClass(detectorId);
    if (!facts.registered)
    {
        return facts;
    }
    oemadapter::ReadAdapterSettings(&facts.settingProblems);
    std::error_code ignored;
    facts.isModuleThere = std::filesystem::is_regular_file(facts.registered->module, ignored);
    facts.machine = facts.isModuleThere ? MachineOf(facts.registered->module) : uint16_t{0};
    facts.isConfigurationThere = std::filesystem::is_regular_file(facts.registered->configuration, ignored);
    if (facts.isModuleThere && facts.isConfigurationThere)
    {
        const std::string configuration = Utf8(facts.registered->configuration);
        facts.byAdapter = Ask({configuration, detectorId, ThroughAdapter});
        facts.byLibrary = Ask({configuration, detectorId});
    }
    return facts;
}

} // namespace velox::console
