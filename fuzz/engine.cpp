// Verification and training with an engine that answers as the input says: statuses, counts, scores of any bits, sizes; and with
// recordings of any bytes.
#include "fuzz/Input.h"
#include "fuzz/Target.h"
#include "library/wovwrapper/VeloxWovSDK.h"
#include "library/wovwrapper/VeloxWovWrapper.h"
#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/ScriptedRecording.h"

#include <sanitizer/allocator_interface.h>

#include <algorithm>
#include <bit>
#include <memory>
#include <string>
#include <vector>

namespace
{

constexpr const char* Functions[]{"VWoVSetAttribute",
                                  "VWoVSetBinAttribute",
                                  "VWoVInitSession",
                                  "VWoVInit",
                                  "VWoVSetModel",
                                  "VWoVStartEnrollment",
                                  "VWoVFeedAudioFrame",
                                  "VWoVStartEnrollmentUtterance",
                                  "VWoVFinalizeEnrollmentUtterance",
                                  "VWoVFinalizeEnrollment",
                                  "VWoVGetScores",
                                  "VWoVGetIntOutput",
                                  "VWoVFlush",
                                  "VWoVPrepareLpeData",
                                  "VWoVDestroySession"};

constexpr std::size_t Init = 3;

EngineStep AnyStep(FuzzedDataProvider& input)
{
    EngineStep step{
        .scores = {}, .vadFlag = input.ConsumeIntegralInRange<int32_t>(-1, 1), .vadQuality = input.ConsumeIntegral<int32_t>()};
    for (auto count = input.ConsumeIntegralInRange(0, 3); count > 0; --count)
    {
        step.scores.push_back(std::bit_cast<float>(input.ConsumeIntegral<uint32_t>()));
    }
    return step;
}

/// @return whether a session may be lost: kept, when VWoVInit fails in a training
bool WriteScript(FuzzedDataProvider& input, ScriptedEngine* engine)
{
    engine->Reset();
    engine->keepCalls = false;
    engine->breach =
        static_cast<EngineBreach>(input.ConsumeIntegralInRange<int>(0, static_cast<int>(EngineBreach::ChangedLpeSize)));
    engine->frameSize = input.ConsumeIntegral<uint8_t>();
    engine->scoreCount = input.ConsumeIntegralInRange<uint32_t>(0, 5);
    engine->flushSteps = input.ConsumeIntegralInRange<uint32_t>(0, 4);
    engine->phraseModelSize = input.ConsumeIntegral<uint32_t>();
    engine->lpeData = input.ConsumeRandomLengthString(64);
    for (auto count = input.ConsumeIntegralInRange(0, 4); count > 0; --count)
    {
        engine->steps.push_back(AnyStep(input));
    }
    bool losesSession = false;
    for (auto count = input.ConsumeIntegralInRange(0, 3); count > 0; --count)
    {
        const auto function = input.ConsumeIntegralInRange<std::size_t>(0, std::size(Functions) - 1);
        const auto n = input.ConsumeIntegralInRange<uint64_t>(1, 8);
        const uint32_t status =
            input.ConsumeBool()
                ? input.PickValueInArray({EngineStatus::Success, EngineStatus::BufferTooSmall, EngineStatus::NothingLeft})
                : input.ConsumeIntegral<uint32_t>();
        engine->Answer(Functions[function], n, status);
        losesSession = losesSession || function == Init;
    }
    return losesSession;
}

/// The models, whose bytes the engine does not look into.
EnrollmentParameters& Models()
{
    static EnrollmentParameters models;
    if (models.acousticModel == nullptr)
    {
        models.acousticModel = new uint8_t[16]{};
        models.znormPopulation = new uint8_t[16]{};
        models.keyphraseModel = new uint8_t[16]{};
    }
    return models;
}

/// A recording of any bytes, which may not be there or fail.
std::unique_ptr<ScriptedRecording> AnyRecording(FuzzedDataProvider& input)
{
    constexpr std::size_t MostBytes = 256;
    if (input.ConsumeIntegral<uint8_t>() == 255)
    {
        return nullptr;
    }
    const std::string bytes = input.ConsumeRandomLengthString(MostBytes);
    auto recording = std::make_unique<ScriptedRecording>(std::vector<uint8_t>(bytes.begin(), bytes.end()));
    if (input.ConsumeBool())
    {
        recording->lockResult = AnyResult(input);
        recording->unlockResult = AnyResult(input);
    }
    return recording;
}

/// A request to the library's wrapper of the engine.
class Request
{
public:
    explicit Request(FuzzedDataProvider& input)
        : detection{input.ConsumeIntegral<int32_t>(), 0, input.ConsumeIntegral<int32_t>()},
          losesSession(WriteScript(input, &engine) || engine.breach == EngineBreach::ZeroHandle)
    {
        logger.keepLines = false;
        for (auto count = input.ConsumeIntegralInRange(1, 3); count > 0; --count)
        {
            recordings.push_back(AnyRecording(input));
            buffers.push_back(recordings.back().get());
            positions.push_back(input.ConsumeIntegral<int32_t>());
        }
        wrapper.reset(
            KeywordDetectorAdapterImplementation::CreateWovWrapper(&Models(), detection, &logger, 3, constraints).release());
    }

    void Verify()
    {
        bool detected = false;
        const HRESULT result = wrapper->VerifyKeyword(buffers.front(), positions.front(), &detected);
        Expect(result == S_OK || (result == E_FAIL && logger.calls > 0));
        Expect(!detected || HasScoreAbove(static_cast<float>(detection.preDefinedKpdSensitivity) / 256.0F));
        CheckEnd(engine.breach == EngineBreach::ZeroHandle);
    }

    void Train()
    {
        uint8_t* model = nullptr;
        uint32_t size = 0;
        const HRESULT result =
            wrapper->TrainModel(buffers.data(), static_cast<uint32_t>(buffers.size()), positions.data(), &model, &size);
        const std::unique_ptr<uint8_t[]> owned(model);
        Expect(result == S_OK || (result == E_FAIL && logger.calls > 0));
        if (result == S_OK)
        {
            Expect(model != nullptr && __sanitizer_get_allocated_size(model) == std::max(size, 1U));
        }
        CheckEnd(losesSession);
    }

private:
    bool HasScoreAbove(float threshold) const
    {
        return std::ranges::any_of(engine.steps,
                                   [=](const EngineStep& step) {
                                       return std::ranges::any_of(step.scores, [=](float score) { return score > threshold; });
                                   }) ||
               engine.laterStep.scores.front() > threshold;
    }

    /// Nothing is open any more.
    void CheckEnd(bool mayLoseSession) const
    {
        Expect(mayLoseSession || engine.openSessions.empty());
        for (const auto& recording : recordings)
        {
            Expect(recording == nullptr || (recording->OpenLocks() == 0 && !recording->unlockedWithoutLock));
        }
    }

    ScriptedEngine& engine = GetScriptedEngine();
    VELOX_WOV_DETECTION_PARAMETERS detection;
    bool losesSession;
    std::vector<std::unique_ptr<ScriptedRecording>> recordings;
    std::vector<IMFMediaBuffer*> buffers;
    std::vector<int32_t> positions;
    RecordingLogger logger;
    std::string constraints = "memory=160k";
    std::unique_ptr<KeywordDetectorAdapterImplementation::IVeloxWovWrapper> wrapper;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    const bool verifies = input.ConsumeBool();
    Request request(input);
    verifies ? request.Verify() : request.Train();
    return 0;
}
