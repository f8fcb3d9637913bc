#include "console/doctor/EngineCheck.h"

#include "console/text/StatusText.h"

#include <fmt/format.h>

namespace velox::console
{

namespace
{

/// What the library goes on with when the engine does not tell.
constexpr int32_t DefaultFrameSize = 150;

Finding Make(const DllFacts& dll, Severity severity, std::string message, std::string effect = {}, std::string fix = {})
{
    return {severity, dll.path.empty() ? dll.name : dll.path, 0, std::move(message), std::move(effect), std::move(fix), {}};
}

/// @return whether it was loaded
bool CheckDll(const DllFacts& dll, std::string_view what, Findings* findings)
{
    if (dll.loaded)
    {
        findings->push_back(Make(
            dll, Severity::Good,
            fmt::format("The {} was loaded{}.", what, dll.version.empty() ? ", without a version" : ", version " + dll.version)));
        return true;
    }
    Finding finding =
        dll.path.empty()
            ? Make(dll, Severity::Error, fmt::format("The {} was not found.", what), "Without it the library does not load.",
                   fmt::format("Put {} into the folder of the program, or into one that the PATH names.", dll.name))
            : Make(dll, Severity::Error, fmt::format("The {} cannot be loaded: {}", what, dll.loadError),
                   "Without it the library does not load.", "Use the 64-bit file, and put the DLLs that it needs beside it.");
    finding.failures = EveryOperation();
    findings->push_back(std::move(finding));
    return false;
}

Finding CheckFrameSize(const EngineFacts& facts)
{
    const FrameSizeFacts& frame = facts.frameSize;
    const std::string goesOn =
        fmt::format("The library goes on with {} samples; verification and training may not work.", DefaultFrameSize);
    const std::string fix = "Use an engine that keeps to docs/engine-contract.md; this one may be of another version.";
    if (frame.status != 0)
    {
        return Make(facts.engine, Severity::Error,
                    fmt::format("The engine does not tell its frame size: status {}.", EngineStatusText(frame.status)), goesOn,
                    fix);
    }
    if (frame.count != 1 || frame.samples < 0)
    {
        return Make(facts.engine, Severity::Error,
                    frame.count != 1 ? fmt::format("The engine has {} frame sizes instead of one.", frame.count)
                                     : fmt::format("The engine's frame size is {}, below 0.", frame.samples),
                    goesOn, fix);
    }
    if (frame.samples == 0)
    {
        return Make(facts.engine, Severity::Error, "The engine's frame size is 0.", "No recording gets to the engine.", fix);
    }
    constexpr double SamplesPerMillisecond = 16.0;
    return Make(
        facts.engine, Severity::Good,
        fmt::format("The engine takes frames of {} samples ({:g} ms).", frame.samples, frame.samples / SamplesPerMillisecond));
}

} // namespace

Findings CheckEngine(const EngineFacts& facts)
{
    Findings findings;
    const bool engineLoaded = CheckDll(facts.engine, "keyword engine", &findings);
    if (engineLoaded && !facts.missingFunctions.empty())
    {
        Finding finding = Make(facts.engine, Severity::Error,
                               fmt::format("The engine lacks {} of the {} functions: {}.", facts.missingFunctions.size(),
                                           EngineFunctions.size(), fmt::join(facts.missingFunctions, ", ")),
                               "The library does not load with it.", "Use the engine that belongs to this library.");
        finding.failures = EveryOperation();
        findings.push_back(std::move(finding));
    }
    else if (engineLoaded)
    {
        findings.push_back(Make(facts.engine, Severity::Good, "The engine has all fifteen functions."));
        findings.push_back(CheckFrameSize(facts));
        CheckDll(facts.library, "library", &findings);
    }
    return findings;
}

} // namespace velox::console
