// Training, arming and parsing with a user's stream that answers as the input says: each call's result, counts, sizes, content.
#include "fuzz/Input.h"
#include "fuzz/Target.h"
#include "library/adapter/ArmingPattern.h"
#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/ArmingTest.h"
#include "tests/support/FileOpen.h"
#include "tests/support/ScriptedRecording.h"
#include "tests/support/TaskMemory.h"

#include <sanitizer/allocator_interface.h>

#include <algorithm>
#include <set>

namespace
{

constexpr uint16_t Language = 1033;

/// A configuration that is read quickly.
struct OneLanguage : TestConfiguration
{
    OneLanguage()
    {
        WriteLanguages(LanguageElement(std::to_string(Language), 10));
        KeepInMemory(Path(), ReadWholeFile(Path()));
    }
};

/// A stream that knows what the library reads a model into.
class UserStream final : public ScriptedStream
{
public:
    explicit UserStream(FuzzedDataProvider& input) : ScriptedStream(input.ConsumeRandomLengthString(LongestContent))
    {
        constexpr const char* Operations[]{"Read", "Write", "Seek", "SetSize", "Commit", "Revert"};
        for (auto answers = input.ConsumeIntegralInRange(0, 4); answers > 0; --answers)
        {
            const char* const operation = input.PickValueInArray(Operations);
            const auto n = input.ConsumeIntegralInRange(1, 6);
            Answer(operation, n, Possible(AnyResult(input)));
        }
        if (input.ConsumeBool())
        {
            mostBytes = input.ConsumeIntegralInRange<uint32_t>(0, LongestContent);
            shortResult = Possible(AnyResult(input));
        }
        if (input.ConsumeBool())
        {
            claimedCount = input.ConsumeIntegral<uint32_t>();
        }
        if (input.ConsumeBool())
        {
            // The library takes the lower half for the size.
            reportedEnd = input.ConsumeIntegral<uint16_t>() | uint64_t{input.ConsumeIntegral<uint8_t>()} << 32U;
        }
    }

    STDMETHODIMP Read(void* target, ULONG size, ULONG* count) override
    {
        const HRESULT result = ScriptedStream::Read(target, size, count);
        lastTarget = static_cast<uint8_t*>(target);
        lastResult = result;
        ++reads;
        return result;
    }

    uint8_t* lastTarget = nullptr;
    HRESULT lastResult = S_OK;
    int reads = 0;
    std::set<HRESULT> possible{STG_E_MEDIUMFULL}; ///< results of its calls

private:
    static constexpr std::size_t LongestContent = 256;

    HRESULT Possible(HRESULT result)
    {
        possible.insert(result);
        return result;
    }
};

/// An adapter and its caller, who keeps what the documents say of the results.
class Caller
{
public:
    Caller(FuzzedDataProvider& itsInput, const std::string& configuration)
        : input(itsInput), stream(itsInput), adapter(&logger, configuration, "1.2.3", DetectorId),
          failingCall(AnyFault(itsInput)), plan(FaultPlan::Nth(failingCall))
    {
        logger.keepLines = false;
        engine.Reset();
        engine.keepCalls = false;
    }

    void Step()
    {
        using Operation = void (Caller::*)();
        constexpr Operation Operations[]{&Caller::Compute, &Caller::Arm, &Caller::Parse};
        callsBefore = plan.Calls();
        (this->*input.PickValueInArray(Operations))();
    }

private:
    KeywordSelector Selector()
    {
        return {input.ConsumeIntegralInRange<uint32_t>(0, 2), input.PickValueInArray<uint16_t>({1033, 1033, 1040, 0})};
    }

    static bool IsValid(const KeywordSelector& selector)
    {
        return selector.keywordId == 1 && selector.languageId == Language;
    }

    /// Whether the operation has met the fault.
    bool MetFault() const
    {
        return callsBefore < failingCall && failingCall <= plan.Calls();
    }

    /// The result for a keyword that is not supported. Whether it is, only the configuration tells, which a fault leaves closed.
    bool IsRefusal(HRESULT result) const
    {
        return result == (MetFault() ? E_FAIL : E_INVALIDARG);
    }

    void Compute()
    {
        const KeywordSelector selector = Selector();
        const int32_t position = input.ConsumeIntegral<int32_t>();
        engine.lpeTarget = nullptr;
        engine.openSessions.clear();
        IMFMediaBuffer* recordings[]{&recording};
        const HRESULT result = adapter.ComputeAndAddUserModelData(&stream, selector, &position, recordings, 1);
        Expect(IsValid(selector) ? result == S_OK || result == E_FAIL : IsRefusal(result));
        Expect(recording.OpenLocks() == 0);
        // Kept: a training whose VWoVInit fails does not release its session.
        Expect(engine.openSessions.empty() || (failingCall != 0 && engine.lpeTarget == nullptr));
        // Kept: a model that cannot be written to the stream is not released.
        if (result != S_OK && engine.lpeTarget != nullptr)
        {
            delete[] engine.lpeTarget;
        }
    }

    void Arm()
    {
        const KeywordSelector selector = Selector();
        uint8_t leftAlone = 0;
        uint8_t* block = &leftAlone;
        stream.reads = 0;
        const HRESULT result = adapter.BuildArmingPatternData(&stream, &selector, 1, &block);
        if (result == S_OK)
        {
            Expect(IsValid(selector));
            armedLanguage = selector.languageId;
            CheckPattern(block);
            CoTaskMemFree(block);
            return;
        }
        Expect(block == &leftAlone);
        const bool isOfStream = stream.possible.contains(result);
        Expect(IsValid(selector) ? result == E_FAIL || result == E_OUTOFMEMORY || isOfStream : IsRefusal(result));
        // Kept: the block of a read of the model that is no plain success is dropped.
        if (stream.reads == 2 && stream.lastResult != S_OK)
        {
            delete[] stream.lastTarget;
        }
    }

    static void CheckPattern(const uint8_t* block)
    {
        ArmingPattern head{};
        std::memcpy(&head, block, sizeof(head));
        Expect(__sanitizer_get_allocated_size(block) == head.Size);
        Expect(head.Size == sizeof(head) + head.ModelSize && head.PatternType == DetectorId);
        Expect(head.Signature == ArmingPatternSignature && head.Limit == ArmingPatternLimit);
    }

    void Parse()
    {
        const DetectionResult block{.Size = sizeof(block), .PatternType = DetectorId, .KeywordStart = 1, .KeywordEnd = 2};
        uint32_t keyword = 0;
        uint16_t language = 0;
        BOOL isUserMatch = FALSE;
        uint64_t start = 0;
        uint64_t end = 0;
        const HRESULT result = adapter.ParseDetectionResultData(&stream, &block, &keyword, &language, &isUserMatch, &start, &end);
        // A fault leaves the configuration or a threshold closed.
        Expect(result == (MetFault() ? E_FAIL : S_OK));
        Expect(result != S_OK || (language == armedLanguage && start == 1 && end == 2));
    }

    FuzzedDataProvider& input;
    UserStream stream;
    ScriptedRecording recording{std::vector<float>(4)};
    ScriptedEngine& engine = GetScriptedEngine();
    RecordingLogger logger;
    VeloxKeywordDetectorAdapterImpl adapter;
    uint16_t armedLanguage = 0;
    uint64_t failingCall;
    FaultPlan plan;
    uint64_t callsBefore = 0; ///< the operation
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static const OneLanguage configuration;
    FuzzedDataProvider input(data, size);
    {
        Caller caller(input, configuration.Path());
        for (int steps = 0; steps < 3 && input.remaining_bytes() > 0; ++steps)
        {
            caller.Step();
        }
    }
    Expect(LiveTaskMemoryBlocks() == 0);
    return 0;
}
