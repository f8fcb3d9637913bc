#include "console/doctor/EngineCheck.h"

#include "console/text/StatusText.h"
#include "console/text/Wording.h"

#include <fmt/format.h>

namespace velox::console
{

namespace
{

Finding DllFinding(const DllFacts& dll, Tone tone, std::string message, std::string effect = {}, std::string fix = {})
{
    return {tone, dll.path.empty() ? dll.name : dll.path, 0, std::move(message), std::move(effect), std::move(fix)};
}

Finding CheckDll(const DllFacts& dll, std::string_view what)
{
    if (dll.loaded)
    {
        const std::string version = dll.version.empty() ? "without a version" : "version " + dll.version;
        return DllFinding(dll, Tone::Good, fmt::format("The {} was loaded, {}.", what, version));
    }
    Finding finding = DllFinding(dll, Tone::Bad, {}, "Without it the library does not load.");
    finding.failures = EveryOperation();
    finding.message = dll.path.empty() ? fmt::format("The {} was not found.", what)
                                       : fmt::format("The {} cannot be loaded: {}", what, dll.loadError);
    finding.fix = dll.path.empty()
                      ? fmt::format("Put {} into the folder of the program, or into one that the PATH names.", dll.name)
                      : "Use the 64-bit file, and put the DLLs that it needs beside it.";
    return finding;
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

Finding CheckFrameSize(const EngineFacts& facts)
{
    constexpr double SamplesPerMillisecond = 16.0;
    const FrameSizeFacts& frame = facts.frameSize;
    const std::string fault = FrameSizeFault(frame);
    if (fault.empty())
    {
        return DllFinding(facts.engine, Tone::Good,
                          fmt::format("The engine takes frames of {} samples ({:g} ms).", frame.samples,
                                      frame.samples / SamplesPerMillisecond));
    }
    const bool zero = frame.status == 0 && frame.count == 1 && frame.samples == 0;
    return DllFinding(facts.engine, Tone::Bad, fault,
                      zero ? "No recording gets to the engine."
                           : "The library goes on with 150 samples; verification and training may not work.",
                      "Use an engine that keeps to docs/engine-contract.md; this one may be of another version.");
}

} // namespace

Findings CheckEngine(const EngineFacts& facts)
{
    Findings findings{CheckDll(facts.engine, "keyword engine")};
    if (facts.engine.loaded && !facts.missingFunctions.empty())
    {
        findings.push_back(DllFinding(facts.engine, Tone::Bad,
                                      fmt::format("The engine lacks {} of the {} functions: {}.", facts.missingFunctions.size(),
                                                  std::size(EngineFunctions), Joined(facts.missingFunctions)),
                                      "The library does not load with it.", "Use the engine that belongs to this library."));
        findings.back().failures = EveryOperation();
    }
    else if (facts.engine.loaded)
    {
        findings.push_back(DllFinding(facts.engine, Tone::Good, "The engine has all fifteen functions."));
        findings.push_back(CheckFrameSize(facts));
        findings.push_back(CheckDll(facts.library, "library"));
    }
    return findings;
}

} // namespace velox::console
