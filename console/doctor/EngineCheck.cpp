#include "console/doctor/EngineCheck.h"

#include "console/text/StatusText.h"
#include "console/text/Wording.h"

#include <fmt/format.h>

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

} // namespace

Findings CheckEngine(const EngineFacts& facts)
{
    Findings findings;
    const Subject engine = SubjectOf(facts.engine, &findings);
    CheckDll(facts.engine, "keyword engine", &findings);
    if (!facts.missingFunctions.empty())
    {
        engine.Add(Tone::Bad, 0,
                   fmt::format("The engine lacks {} of the {} functions: {}.", facts.missingFunctions.size(),
                               std::size(EngineFunctions), Joined(facts.missingFunctions)),
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

} // namespace velox::console
