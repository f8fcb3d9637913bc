#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#ifndef SCRIPTED_ENGINE_API
#ifdef _WIN32
#define SCRIPTED_ENGINE_API __declspec(dllimport)
#else
#define SCRIPTED_ENGINE_API
#endif
#endif

/// One call of the engine, as the tests compare it.
struct EngineCall
{
    std::string function;
    std::string text;               ///< with its arguments, for example "VWoVSetAttribute(19, \"memory=160k\")"
    std::vector<int16_t> samples;   ///< of VWoVFeedAudioFrame
    const void* blob = nullptr;     ///< of VWoVSetBinAttribute and VWoVSetModel
    std::optional<uint32_t> status; ///< what was returned; none when an exception left the call
};

/// What the engine finds in a fed frame, or in what a flush step processed.
struct EngineStep
{
    std::vector<float> scores = {0.0F};
    int32_t vadFlag = 0;
    int32_t vadQuality = 100;
};

/// Ways of breaking the engine's contract.
enum class EngineBreach
{
    None,
    ZeroHandle,           ///< sessions are created with the handle 0
    NegativeFrameSize,    ///< -1
    NoFrameSize,          ///< the frame size has no value
    TwoFrameSizes,        ///< the frame size has two values
    ScoreCountBeyondRoom, ///< one score more is reported than there was room for
    ScoresNeverFit,       ///< whatever the room, it is too small for the scores
    CountZeroed,          ///< reading scores or an integer output leaves a count of 0
    NullPhraseModel,
    ShortLpeData,   ///< half of the announced bytes are written
    ChangedLpeSize, ///< the second call doubles the announced size
};

/// A keyword engine that keeps what was called and answers as it is told. Its calls count as FallibleCall::Engine, natively.
///
/// In texts a buffer is "null" or "buffer", followed by the count on entry; a result that the engine writes is left out:
///
///     VWoVInitSession()            VWoVSetModel(1, "keyphras")     VWoVGetScores(1, null, 0)     VWoVGetScores(1, buffer, 2)
///     VWoVGetIntOutput(1, 5, null, 0)    VWoVFeedAudioFrame(1, 150)    VWoVPrepareLpeData(1, buffer, 24)
struct ScriptedEngine
{
    /// Status of a call that a FaultPlan makes fail.
    static constexpr uint32_t InjectedFault = 77;
    /// Status of a call for a session that is not open. Destroying one succeeds.
    static constexpr uint32_t UnknownSession = 88;

    /// The n-th call of a function from now on, counted from 1, does nothing and returns `status`. VWoVDestroySession destroys
    /// all the same.
    void Answer(const std::string& function, uint64_t n, uint32_t status)
    {
        answers[function][callCounts[function] + n] = status;
    }

    /// Forgets the calls, the sessions and the script. Handles start at 1 again.
    void Reset()
    {
        *this = ScriptedEngine{};
    }

    /// The calls' texts since the last time; the calls are forgotten then.
    std::vector<std::string> Take()
    {
        std::vector<std::string> texts;
        for (const EngineCall& call : calls)
        {
            texts.push_back(call.text);
        }
        calls.clear();
        return texts;
    }

    /// Times that a session was destroyed.
    int Destroys(uint32_t session) const
    {
        const auto found = destroys.find(session);
        return found == destroys.end() ? 0 : found->second;
    }

    // What was called.
    std::vector<EngineCall> calls;
    bool keepCalls = true; ///< false for long recordings

    /// Called before a call is answered, also one that is to fail. May throw; the call then does nothing, but a session that was
    /// to be destroyed is. Leaves `calls` alone.
    std::function<void(const EngineCall&)> onCall;

    // The script.
    EngineBreach breach = EngineBreach::None;
    int32_t frameSize = 150;
    uint32_t scoreCount = 1;       ///< reported before the first frame
    std::vector<EngineStep> steps; ///< of the session's first frames and flush steps, in their order
    EngineStep laterStep;          ///< of all that follow
    uint32_t flushSteps = 0;       ///< steps after the last frame until nothing is left
    uint32_t phraseModelSize = 32; ///< the length that the phrase model holds
    std::string lpeData = "VWOV lpe data";
    std::size_t blobTextLength = 8; ///< bytes of a blob that are read for the text; no blob may be shorter

    // The engine's own bookkeeping.
    std::set<uint32_t> openSessions;
    uint32_t sessionsCreated = 0;
    std::map<uint32_t, int> destroys;
    uint64_t stepsTaken = 0;          ///< frames fed and flush steps done since a session was created last
    uint32_t flushStepsTaken = 0;     ///< since the last frame
    std::vector<uint8_t> phraseModel; ///< what VWoVFinalizeEnrollment hands out: "phrase", zeros, the length
    uint8_t* lpeTarget = nullptr;     ///< where the LPE data were written last
    std::map<std::string, uint64_t, std::less<>> callCounts;
    std::map<std::string, std::map<uint64_t, uint32_t>, std::less<>> answers;
};

/// The engine that all fifteen functions work on: the process has one, or, where the program links that instead, each thread.
SCRIPTED_ENGINE_API ScriptedEngine& GetScriptedEngine();
