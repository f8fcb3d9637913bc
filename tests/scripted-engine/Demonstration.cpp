#define SCRIPTED_ENGINE_API __declspec(dllexport)
#include "tests/scripted-engine/ScriptedEngine.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

// The script of the demo, taken when the environment variable VELOX_SCRIPTED_ENGINE is set: "levels", or "levels,trace" to
// print every call as well. The engine then takes loudness for the key phrase: a frame's score is its loudest sample, from 0
// to 1, and its quality the same in percent; faint frames count as no voice. It knows no words.

namespace
{

constexpr int32_t TenMilliseconds = 160;
constexpr float FullScale = 32767.0F;
constexpr float FaintestVoice = 0.1F;

float Loudness(const std::vector<int16_t>& samples)
{
    int32_t loudest = 0;
    for (const int16_t sample : samples)
    {
        loudest = std::max(loudest, std::abs(int32_t{sample}));
    }
    return static_cast<float>(loudest) / FullScale;
}

/// Prints calls and lets the answers follow from what is fed.
class Demonstration
{
public:
    explicit Demonstration(bool printsCalls) : trace(printsCalls)
    {
    }

    void operator()(const EngineCall& call)
    {
        Print(call.text);
        if (call.function == "VWoVFeedAudioFrame")
        {
            Hear(Loudness(call.samples));
        }
        else if (call.function == "VWoVStartEnrollmentUtterance")
        {
            ++utterances;
        }
        else if (call.function == "VWoVFinalizeEnrollment")
        {
            GetScriptedEngine().lpeData =
                "VWOV model of the scripted engine, made from " + std::to_string(utterances) + " utterances";
        }
    }

private:
    void Hear(float loudness) const
    {
        const auto percent = static_cast<int32_t>(100.0F * loudness);
        const bool isVoice = loudness >= FaintestVoice;
        GetScriptedEngine().laterStep = {.scores = {loudness}, .vadFlag = isVoice ? 0 : 1, .vadQuality = percent};
        Print("  the score is " + std::to_string(loudness) +
              (isVoice ? ", the quality " + std::to_string(percent) : ", no voice"));
    }

    void Print(const std::string& line) const
    {
        if (trace)
        {
            std::printf("    > %s\n", line.c_str());
            std::fflush(stdout);
        }
    }

    bool trace;
    int utterances = 0;
};

/// Sets the engine up while the library is being loaded.
bool Prepare()
{
    const char* script = std::getenv("VELOX_SCRIPTED_ENGINE");
    if (script == nullptr)
    {
        return false;
    }
    std::puts("VeloxWovSDK.dll: the scripted engine of the tests, not a keyword engine. It takes loudness for the key phrase.");
    std::fflush(stdout);
    ScriptedEngine& engine = GetScriptedEngine();
    engine.keepCalls = false;
    engine.frameSize = TenMilliseconds;
    engine.onCall = Demonstration(std::string_view(script).find("trace") != std::string_view::npos);
    return true;
}

[[maybe_unused]] const bool isPrepared = Prepare();

} // namespace
