#ifdef _WIN32
#define SCRIPTED_ENGINE_API __declspec(dllexport)
#endif
#include "tests/scripted-engine/ScriptedEngine.h"

#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/support/FaultInjector.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

// The closed engine's own numbers: what is read from the library's header here must not move with it.
static_assert(EngineStatus::Success == 0 && EngineStatus::BufferTooSmall == 2 && EngineStatus::NothingLeft == 0xFFFFFFFF);
static_assert(EngineAttribute::LogLevel == 13 && EngineAttribute::FirmwareConstraints == 19);
static_assert(EngineBinAttribute::AcousticModel == 1 && EngineBinAttribute::ZnormPopulation == 2);
static_assert(EngineComponent::Vad == 2 && EngineComponent::Kpd == 4);
static_assert(EngineOutput::VadFlag == 2 && EngineOutput::FrameSize == 5 && EngineOutput::VadQuality == 6);
static_assert(PhraseModelSizeOffset == 8);

namespace
{

// Arguments, each of which adds its text, and what else the call is to keep.

struct Blob
{
    const uint8_t* bytes;
};

struct Frame
{
    const int16_t* samples;
    uint32_t count;
};

struct Buffer
{
    const void* memory;
    uint32_t room;
};

void AddQuoted(EngineCall& call, const std::string& text)
{
    call.text += '"';
    call.text += text;
    call.text += '"';
}

void Add(EngineCall& call, uint32_t number)
{
    call.text += std::to_string(number);
}

void Add(EngineCall& call, const char* text)
{
    if (text == nullptr)
    {
        call.text += "null";
        return;
    }
    AddQuoted(call, text);
}

void Add(EngineCall& call, Blob blob)
{
    call.blob = blob.bytes;
    if (blob.bytes == nullptr)
    {
        call.text += "null";
        return;
    }
    const uint8_t* end = blob.bytes + GetScriptedEngine().blobTextLength;
    const uint8_t* textEnd = std::find_if_not(blob.bytes, end, [](uint8_t byte) { return std::isprint(byte) != 0; });
    AddQuoted(call, {blob.bytes, textEnd});
}

void Add(EngineCall& call, Frame frame)
{
    call.samples.assign(frame.samples, frame.samples + frame.count);
    Add(call, frame.count);
}

void Add(EngineCall& call, Buffer buffer)
{
    call.text += buffer.memory == nullptr ? "null, " : "buffer, ";
    Add(call, buffer.room);
}

template <typename... Arguments>
EngineCall Describe(const char* function, const Arguments&... arguments)
{
    EngineCall call;
    call.function = function;
    call.text = call.function + "(";
    [[maybe_unused]] const char* separator = "";
    ((call.text += separator, Add(call, arguments), separator = ", "), ...);
    call.text += ")";
    return call;
}

/// Destroys a session when it leaves, whatever became of the call.
class SessionEnd
{
public:
    explicit SessionEnd(uint32_t endingSession) : session(endingSession)
    {
    }
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;
    ~SessionEnd()
    {
        const FaultPause pause;
        GetScriptedEngine().openSessions.erase(session);
        ++GetScriptedEngine().destroys[session];
    }

private:
    uint32_t session;
};

/// The status that the script holds for this call.
std::optional<uint32_t> ScriptedAnswer(const char* function)
{
    ScriptedEngine& engine = GetScriptedEngine();
    auto count = engine.callCounts.find(std::string_view(function));
    if (count == engine.callCounts.end())
    {
        count = engine.callCounts.emplace(function, 0).first;
    }
    ++count->second;

    const auto answers = engine.answers.find(std::string_view(function));
    if (answers == engine.answers.end())
    {
        return std::nullopt;
    }
    const auto answer = answers->second.find(count->second);
    return answer == answers->second.end() ? std::nullopt : std::optional(answer->second);
}

/// Keeps the call and answers it: with the script's status, or with what the action does.
template <typename Action, typename... Arguments>
uint32_t Answer(const char* function, const Action& action, const Arguments&... arguments)
{
    const bool fails = FaultPlan::ShouldFail(FallibleCall::Engine);
    const FaultPause pause;
    ScriptedEngine& engine = GetScriptedEngine();
    const std::optional<uint32_t> answer = ScriptedAnswer(function);
    if (engine.keepCalls)
    {
        engine.calls.push_back(Describe(function, arguments...));
    }
    if (engine.onCall)
    {
        engine.onCall(engine.keepCalls ? engine.calls.back() : Describe(function, arguments...));
    }
    const uint32_t status = fails ? ScriptedEngine::InjectedFault : answer ? *answer : action(engine);
    if (engine.keepCalls)
    {
        engine.calls.back().status = status;
    }
    return status;
}

/// The same for a function of an open session.
template <typename Action, typename... Arguments>
uint32_t AnswerInSession(const char* function, uint32_t session, const Action& action, const Arguments&... arguments)
{
    return Answer(
        function,
        [&](ScriptedEngine& engine) {
            return engine.openSessions.contains(session) ? action(engine) : ScriptedEngine::UnknownSession;
        },
        session, arguments...);
}

uint32_t Nothing(ScriptedEngine& /*engine*/)
{
    return EngineStatus::Success;
}

const EngineStep& CurrentStep(const ScriptedEngine& engine)
{
    return 0 < engine.stepsTaken && engine.stepsTaken <= engine.steps.size() ? engine.steps[engine.stepsTaken - 1]
                                                                             : engine.laterStep;
}

/// The values of an integer output; an array, so that reading one allocates nothing.
struct IntValues
{
    uint32_t count;
    std::array<int32_t, 2> values;
};

IntValues FrameSize(const ScriptedEngine& engine)
{
    switch (engine.breach)
    {
    case EngineBreach::NegativeFrameSize:
        return {1, {-1}};
    case EngineBreach::NoFrameSize:
        return {0, {}};
    case EngineBreach::TwoFrameSizes:
        return {2, {engine.frameSize, engine.frameSize}};
    default:
        return {1, {engine.frameSize}};
    }
}

IntValues IntOutput(const ScriptedEngine& engine, uint32_t outputId)
{
    switch (outputId)
    {
    case EngineOutput::FrameSize:
        return FrameSize(engine);
    case EngineOutput::VadFlag:
        return {1, {CurrentStep(engine).vadFlag}};
    case EngineOutput::VadQuality:
        return {1, {CurrentStep(engine).vadQuality}};
    default:
        return {0, {}};
    }
}

uint32_t ReadScores(const ScriptedEngine& engine, float* scores, uint32_t* count)
{
    const std::vector<float>& found = CurrentStep(engine).scores;
    const auto foundCount = static_cast<uint32_t>(found.size());
    const uint32_t room = *count;
    if (foundCount > room || engine.breach == EngineBreach::ScoresNeverFit)
    {
        *count = foundCount;
        return EngineStatus::BufferTooSmall;
    }
    std::copy(found.begin(), found.end(), scores);
    *count = engine.breach == EngineBreach::ScoreCountBeyondRoom ? room + 1
             : engine.breach == EngineBreach::CountZeroed        ? 0
                                                                 : foundCount;
    return EngineStatus::Success;
}

void MakePhraseModel(ScriptedEngine& engine)
{
    constexpr std::string_view Text = "phrase";
    engine.phraseModel.assign(PhraseModelSizeOffset + sizeof(uint32_t), 0);
    std::copy(Text.begin(), Text.end(), engine.phraseModel.begin());
    std::memcpy(engine.phraseModel.data() + PhraseModelSizeOffset, &engine.phraseModelSize, sizeof(uint32_t));
}

} // namespace

uint32_t VWoVSetAttribute(uint32_t attributeId, const char* value)
{
    return Answer("VWoVSetAttribute", Nothing, attributeId, value);
}

uint32_t VWoVSetBinAttribute(uint32_t attributeId, const uint8_t* blob)
{
    return Answer("VWoVSetBinAttribute", Nothing, attributeId, Blob{blob});
}

uint32_t VWoVInitSession(uint32_t* session)
{
    return Answer("VWoVInitSession", [&](ScriptedEngine& engine) {
        ++engine.sessionsCreated;
        *session = engine.breach == EngineBreach::ZeroHandle ? 0 : engine.sessionsCreated;
        engine.openSessions.insert(*session);
        engine.stepsTaken = 0;
        engine.flushStepsTaken = 0;
        return EngineStatus::Success;
    });
}

uint32_t VWoVInit(uint32_t session, uint32_t component)
{
    return AnswerInSession("VWoVInit", session, Nothing, component);
}

uint32_t VWoVSetModel(uint32_t session, const uint8_t* keyphraseModel)
{
    return AnswerInSession("VWoVSetModel", session, Nothing, Blob{keyphraseModel});
}

uint32_t VWoVStartEnrollment(uint32_t session)
{
    return AnswerInSession("VWoVStartEnrollment", session, Nothing);
}

uint32_t VWoVStartEnrollmentUtterance(uint32_t session, uint32_t reserved)
{
    return AnswerInSession("VWoVStartEnrollmentUtterance", session, Nothing, reserved);
}

uint32_t VWoVFeedAudioFrame(uint32_t session, const int16_t* samples, uint32_t sampleCount)
{
    return AnswerInSession(
        "VWoVFeedAudioFrame", session,
        [](ScriptedEngine& engine) {
            ++engine.stepsTaken;
            engine.flushStepsTaken = 0;
            return EngineStatus::Success;
        },
        Frame{samples, sampleCount});
}

uint32_t VWoVFinalizeEnrollmentUtterance(uint32_t session)
{
    return AnswerInSession("VWoVFinalizeEnrollmentUtterance", session, Nothing);
}

uint32_t VWoVFinalizeEnrollment(uint32_t session, uint8_t** phraseModel)
{
    return AnswerInSession("VWoVFinalizeEnrollment", session, [&](ScriptedEngine& engine) {
        MakePhraseModel(engine);
        *phraseModel = engine.breach == EngineBreach::NullPhraseModel ? nullptr : engine.phraseModel.data();
        return EngineStatus::Success;
    });
}

uint32_t VWoVGetScores(uint32_t session, float* scores, uint32_t* count)
{
    return AnswerInSession(
        "VWoVGetScores", session,
        [&](ScriptedEngine& engine) {
            if (scores != nullptr)
            {
                return ReadScores(engine, scores, count);
            }
            *count = engine.stepsTaken == 0 ? engine.scoreCount : static_cast<uint32_t>(CurrentStep(engine).scores.size());
            return EngineStatus::Success;
        },
        Buffer{scores, *count});
}

uint32_t VWoVGetIntOutput(uint32_t session, uint32_t outputId, int32_t* values, uint32_t* count)
{
    return AnswerInSession(
        "VWoVGetIntOutput", session,
        [&](ScriptedEngine& engine) {
            const IntValues found = IntOutput(engine, outputId);
            if (values == nullptr)
            {
                *count = found.count;
                return EngineStatus::Success;
            }
            const uint32_t written = std::min(*count, found.count);
            std::copy_n(found.values.begin(), written, values);
            *count = engine.breach == EngineBreach::CountZeroed ? 0 : written;
            return EngineStatus::Success;
        },
        outputId, Buffer{values, *count});
}

uint32_t VWoVFlush(uint32_t session)
{
    return AnswerInSession("VWoVFlush", session, [](ScriptedEngine& engine) {
        if (engine.flushStepsTaken == engine.flushSteps)
        {
            return EngineStatus::NothingLeft;
        }
        ++engine.flushStepsTaken;
        ++engine.stepsTaken;
        return EngineStatus::Success;
    });
}

uint32_t VWoVPrepareLpeData(uint32_t session, uint8_t* buffer, uint32_t* size)
{
    return AnswerInSession(
        "VWoVPrepareLpeData", session,
        [&](ScriptedEngine& engine) {
            const auto announced = static_cast<uint32_t>(engine.lpeData.size());
            if (buffer == nullptr)
            {
                *size = announced;
                return EngineStatus::Success;
            }
            engine.lpeTarget = buffer;
            const uint32_t whole = std::min(*size, announced);
            std::copy_n(engine.lpeData.begin(), engine.breach == EngineBreach::ShortLpeData ? whole / 2 : whole, buffer);
            *size = engine.breach == EngineBreach::ChangedLpeSize ? 2 * announced : whole;
            return EngineStatus::Success;
        },
        Buffer{buffer, *size});
}

uint32_t VWoVDestroySession(uint32_t session)
{
    const SessionEnd end(session);
    return Answer("VWoVDestroySession", Nothing, session);
}
