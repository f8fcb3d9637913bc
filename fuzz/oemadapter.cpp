// Calls of the OEM adapter's two interfaces in any order, with hostile arguments, over a library that fails as the input says.
#include "oemadapter/adapter/OemAdapter.h"
#include "fuzz/Input.h"
#include "fuzz/Target.h"
#include "oemadapter/adapter/DetectionEvent.h"
#include "oemadapter/settings/DetectorId.h"
#include "oemadapter/windows/ProcessingFailed.h"
#include "oemadapter/windows/ProvisionalResultCodes.h"
#include "tests/oemadapter/support/Environment.native.h"
#include "tests/oemadapter/support/LiveObjects.h"
#include "tests/oemadapter/support/OemAdapterOutputs.h"
#include "tests/oemadapter/support/PcmTake.h"
#include "tests/oemadapter/support/RegistryTree.h"
#include "tests/oemadapter/support/ScriptedLibrary.h"
#include "tests/support/ScriptedRecording.h"
#include "tests/support/ScriptedStream.h"

#include <VeloxHwKwsImpl.h>

#include <mferror.h>

#include <sanitizer/allocator_interface.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace
{

using velox::oemadapter::OemAdapter;

constexpr const char* Operations[]{"VerifyUserKeyword", "ComputeAndAddUserModelData", "BuildArmingPatternData",
                                   "ParseDetectionResultData"};

/// What the library does, besides what its arguments ask for.
void WriteScript(FuzzedDataProvider& input, ScriptedLibrary* library)
{
    library->Reset();
    library->logToFile = false;
    library->capabilitiesEnd = static_cast<CapabilitiesEnd>(input.ConsumeIntegralInRange(0, 6));
    library->languages.resize(input.ConsumeIntegralInRange<std::size_t>(0, 3), 1033);
    for (auto count = input.ConsumeIntegralInRange(0, 2); count > 0; --count)
    {
        // A success has its outputs, which are not for the script to say.
        if (const HRESULT result = AnyResult(input); result != S_OK)
        {
            library->results[input.PickValueInArray(Operations)] = result;
        }
    }
    library->lines[input.PickValueInArray(Operations)] = {input.ConsumeIntegral<uint8_t>()};
    if (input.ConsumeBool())
    {
        library->onCall = [thrown = std::string(input.PickValueInArray(Operations))](const std::string& operation) {
            if (operation == thrown)
            {
                throw std::runtime_error("scripted");
            }
        };
    }
}

/// Whoever calls, with one object that has both interfaces.
class Caller
{
public:
    explicit Caller(FuzzedDataProvider& itsInput) : input(itsInput)
    {
        WriteScript(input, &library);
    }
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;
    ~Caller()
    {
        if (keyword != nullptr)
        {
            keyword->Release();
            event->Release();
        }
    }

    /// @return false when it cannot be made
    bool Create()
    {
        void* made = nullptr;
        const HRESULT result = OemAdapter::Create(detector, IID_IKeywordDetectorOemAdapter, &made);
        Expect(SUCCEEDED(result) == (made != nullptr));
        if (FAILED(result))
        {
            return false;
        }
        keyword = static_cast<IKeywordDetectorOemAdapter*>(made);
        Expect(keyword->QueryInterface(IID_IEventDetectorOemAdapter, &made) == S_OK);
        event = static_cast<IEventDetectorOemAdapter*>(made);
        return true;
    }

    void Step()
    {
        using Method = void (Caller::*)();
        constexpr Method Methods[]{&Caller::GetCapabilities,
                                   &Caller::GetEventCapabilities,
                                   &Caller::GetLanguageCapabilities,
                                   &Caller::Verify,
                                   &Caller::VerifyEvent,
                                   &Caller::Compute,
                                   &Caller::ComputeEvent,
                                   &Caller::Build,
                                   &Caller::BuildEvent,
                                   &Caller::Parse,
                                   &Caller::ParseEvent,
                                   &Caller::Report,
                                   &Caller::Query};
        (this->*input.PickValueInArray(Methods))();
    }

private:
    // Arguments.

    LANGID AnyLanguage()
    {
        return input.PickValueInArray<LANGID>({1033, 1033, 1040, 0, 65535});
    }

    /// Sometimes null.
    template <typename Argument>
    Argument* Sometimes(Argument* argument)
    {
        return input.ConsumeIntegralInRange(0, 7) == 7 ? nullptr : argument;
    }

    /// The number of an output that is missing; -1 for none.
    int Missing()
    {
        return input.ConsumeIntegralInRange(-1, 6);
    }

    KEYWORDSELECTOR AnySelector()
    {
        return {static_cast<KEYWORDID>(input.ConsumeIntegralInRange(0, 2)), AnyLanguage()};
    }

    DETECTIONEVENTSELECTOR AnyEventSelector()
    {
        DETECTIONEVENTSELECTOR selector{};
        if (input.ConsumeBool())
        {
            selector.Event = ours;
        }
        selector.LangId = AnyLanguage();
        selector.UserId = input.ConsumeIntegral<ULONG>();
        selector.Armed = input.ConsumeIntegral<BOOL>();
        return selector;
    }

    /// A block that is as long as its first field says, as far as anybody reads.
    std::vector<uint8_t> AnyBlock()
    {
        DetectionResult block{};
        block.Size = input.ConsumeBool() ? DetectionResultMinSize : input.ConsumeIntegral<uint32_t>();
        block.PatternType = velox::oemadapter::DetectorId;
        block.PatternType.Data1 ^= input.ConsumeIntegralInRange(0U, 1U);
        block.KeywordStart = input.ConsumeIntegral<uint64_t>();
        block.KeywordIdFw = input.ConsumeIntegral<uint8_t>();
        block.KpdScore[0] = input.ConsumeIntegral<uint8_t>();
        std::vector<uint8_t> bytes(std::clamp<std::size_t>(block.Size, sizeof(block.Size), sizeof(block)));
        std::memcpy(bytes.data(), &block, bytes.size());
        return bytes;
    }

    /// A take whose memory is as long as its format says, which may be another.
    PcmTake AnyTake()
    {
        PcmTake take(std::vector<int16_t>(input.ConsumeIntegralInRange<std::size_t>(0, 8)));
        WAVEFORMATEX* const format = take.Format();
        switch (input.ConsumeIntegralInRange(0, 9))
        {
        case 0:
            format->wFormatTag = input.ConsumeIntegral<WORD>();
            break;
        case 1:
            format->nChannels = input.ConsumeIntegral<WORD>();
            break;
        case 2:
            format->nSamplesPerSec = input.ConsumeIntegral<DWORD>();
            break;
        case 3:
            format->wBitsPerSample = input.ConsumeIntegral<WORD>();
            break;
        case 4:
            format->cbSize = static_cast<WORD>(format->cbSize - std::min<WORD>(format->cbSize, 1));
            break;
        default:
            break;
        }
        return take;
    }

    // Methods.

    void GetCapabilities()
    {
        KeywordCapabilities outputs;
        const HRESULT result = outputs.Get(keyword, Missing());
        CheckResult(result, {E_POINTER, E_OUTOFMEMORY, E_FAIL, ProcessingFailed, MF_E_INVALIDMEDIATYPE});
        Expect(result == S_OK || (result == E_POINTER ? outputs.AreUntouched() : outputs.AreNothing()));
    }

    void GetEventCapabilities()
    {
        EventCapabilities outputs;
        const HRESULT result = outputs.Get(event, Missing());
        CheckResult(result, {E_POINTER, E_OUTOFMEMORY, E_FAIL, ProcessingFailed, MF_E_INVALIDMEDIATYPE});
        Expect(result == S_OK || (result == E_POINTER ? outputs.AreUntouched() : outputs.AreNothing()));
    }

    void GetLanguageCapabilities()
    {
        DETECTIONEVENT* events = nullptr;
        ULONG count = 0;
        const HRESULT result = event->GetCapabilitiesForLanguage(AnyLanguage(), Sometimes(&events), Sometimes(&count));
        CheckResult(result, {E_POINTER, E_OUTOFMEMORY, E_FAIL, E_INVALIDARG, ProcessingFailed, MF_E_INVALIDMEDIATYPE});
        Expect((result == S_OK) == (events != nullptr && count == 1));
        CoTaskMemFree(events);
    }

    void Verify()
    {
        const auto keywordId = static_cast<KEYWORDID>(input.ConsumeIntegralInRange(0, 2));
        const LANGID language = AnyLanguage();
        const LONG end = input.ConsumeIntegral<LONG>();
        CheckResult(keyword->VerifyUserKeyword(Sometimes<IStream>(&stream), keywordId, language, end,
                                               Sometimes<IMFMediaBuffer>(&recording)),
                    {E_INVALIDARG, E_NO_MATCH, ProcessingFailed});
    }

    void VerifyEvent()
    {
        PcmTake take = AnyTake();
        const DETECTIONEVENTSELECTOR selector = AnyEventSelector();
        const LONG end = input.ConsumeIntegral<LONG>();
        CheckResult(event->VerifyUserEventData(Sometimes<IStream>(&stream), Sometimes(take.Format()), selector, end),
                    {E_INVALIDARG, E_NO_MATCH, E_OUTOFMEMORY, ProcessingFailed});
    }

    void Compute()
    {
        LONG ends[]{input.ConsumeIntegral<LONG>(), input.ConsumeIntegral<LONG>()};
        IMFMediaBuffer* recordings[]{Sometimes<IMFMediaBuffer>(&recording), Sometimes<IMFMediaBuffer>(&recording)};
        const KEYWORDSELECTOR selector = AnySelector();
        const auto count = input.ConsumeIntegralInRange<ULONG>(0, 2);
        CheckResult(keyword->ComputeAndAddUserModelData(Sometimes<IStream>(&stream), selector, Sometimes(ends),
                                                        Sometimes(recordings), count),
                    {E_INVALIDARG, E_OUTOFMEMORY, ProcessingFailed});
    }

    void ComputeEvent()
    {
        LONG ends[]{input.ConsumeIntegral<LONG>(), input.ConsumeIntegral<LONG>()};
        PcmTake first = AnyTake();
        PcmTake second = AnyTake();
        WAVEFORMATEX* takes[]{Sometimes(first.Format()), Sometimes(second.Format())};
        const DETECTIONEVENTSELECTOR selector = AnyEventSelector();
        const auto count = input.ConsumeIntegralInRange<ULONG>(0, 2);
        CheckResult(
            event->ComputeAndAddUserModelData(Sometimes<IStream>(&stream), selector, Sometimes(ends), Sometimes(takes), count),
            {E_INVALIDARG, E_OUTOFMEMORY, ProcessingFailed});
    }

    void Build()
    {
        const auto selector = std::make_unique<KEYWORDSELECTOR>(AnySelector());
        const auto count = input.PickValueInArray<ULONG>({1, 1, 1, 0, 2, 0xFFFFFFFF});
        SOUNDDETECTOR_PATTERNHEADER* pattern = &noPattern;
        const HRESULT result =
            keyword->BuildArmingPatternData(Sometimes<IStream>(&stream), Sometimes(selector.get()), count, Sometimes(&pattern));
        CheckPattern(result, pattern);
    }

    void BuildEvent()
    {
        const auto selector = std::make_unique<DETECTIONEVENTSELECTOR>(AnyEventSelector());
        const auto count = input.PickValueInArray<ULONG>({1, 1, 1, 0, 2, 0xFFFFFFFF});
        SOUNDDETECTOR_PATTERNHEADER* pattern = &noPattern;
        const HRESULT result =
            event->BuildArmingPatternData(Sometimes<IStream>(&stream), Sometimes(selector.get()), count, Sometimes(&pattern));
        CheckPattern(result, pattern);
    }

    void Parse()
    {
        std::vector<uint8_t> block = AnyBlock();
        KeywordDetection outputs;
        const HRESULT result = outputs.Parse(keyword, Sometimes<IStream>(&stream),
                                             Sometimes(reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(block.data())), Missing());
        CheckResult(result, {E_POINTER, E_INVALIDARG, E_OUTOFMEMORY, ProcessingFailed});
        Expect(result == S_OK || outputs.IsNothing() || outputs.IsUntouched());
    }

    void ParseEvent()
    {
        std::vector<uint8_t> block = AnyBlock();
        EventDetection outputs;
        const int missing = Missing();
        constexpr int Action = 2;
        const HRESULT result = outputs.Parse(event, Sometimes<IStream>(&stream),
                                             Sometimes(reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(block.data())), missing);
        CheckResult(result, {E_POINTER, E_INVALIDARG, E_OUTOFMEMORY, ProcessingFailed});
        Expect(result == S_OK || outputs.IsNothing() || outputs.IsUntouched());
        Expect(result == S_OK || missing == Action || outputs.IsError(result));
        if (result == S_OK && outputs.action.EventActionType == EVENTACTIONTYPE_Accept)
        {
            const float confidence = outputs.action.EventActionContext.ConfidenceValue;
            Expect(confidence >= 0.0F && confidence <= 1.0F);
        }
    }

    void Report()
    {
        EVENTACTION action{};
        action.EventActionType = static_cast<EVENTACTIONTYPE>(input.ConsumeIntegralInRange(0, 3));
        action.EventActionContext.ErrorCode = AnyResult(input);
        event->ReportOSDetectionResult(AnyEventSelector(), action);
    }

    void Query()
    {
        IID wanted = input.PickValueInArray({IID_IUnknown, IID_IMarshal, IID_IEventDetectorOemAdapter});
        wanted.Data1 ^= input.ConsumeIntegralInRange(0U, 1U);
        void* made = &noPattern;
        const HRESULT result = event->QueryInterface(wanted, &made);
        Expect((result == S_OK) == (made != nullptr));
        if (made != nullptr)
        {
            static_cast<IUnknown*>(made)->Release();
        }
    }

    // What must hold.

    /// Those that the interface documents, and what the library's script says.
    void CheckResult(HRESULT result, std::initializer_list<HRESULT> documented) const
    {
        const bool isScripted = std::ranges::any_of(library.results, [=](const auto& own) { return own.second == result; });
        Expect(result == S_OK || isScripted || std::ranges::find(documented, result) != documented.end());
    }

    void CheckPattern(HRESULT result, SOUNDDETECTOR_PATTERNHEADER* pattern) const
    {
        CheckResult(result, {E_POINTER, E_INVALIDARG, E_OUTOFMEMORY, ProcessingFailed});
        if (result == S_OK)
        {
            Expect(__sanitizer_get_allocated_size(pattern) == pattern->Size);
            CoTaskMemFree(pattern);
            return;
        }
        Expect(FAILED(result) && (pattern == nullptr || pattern == &noPattern));
    }

    FuzzedDataProvider& input;
    ScriptedLibrary& library = GetScriptedLibrary();
    velox::oemadapter::Detector detector;
    IKeywordDetectorOemAdapter* keyword = nullptr;
    IEventDetectorOemAdapter* event = nullptr;
    ScriptedStream stream{"VWOV of a user"};
    ScriptedRecording recording{std::vector<float>(4)};
    DETECTIONEVENT ours = velox::oemadapter::MakeEvent({});
    SOUNDDETECTOR_PATTERNHEADER noPattern{};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    constexpr int MostSteps = 8;
    FuzzedDataProvider input(data, size);
    RemoveAdapterKeys();
    modulePath.reset(); // The room for it would take half of each run.
    const std::size_t before = LivePlatformObjects();
    {
        Caller caller(input);
        const FaultPlan plan = FaultPlan::Nth(AnyFault(input));
        if (caller.Create())
        {
            for (int steps = 0; steps < MostSteps && input.remaining_bytes() > 0; ++steps)
            {
                caller.Step();
            }
        }
    }
    Expect(GetScriptedLibrary().objects == 0 && LivePlatformObjects() == before);
    return 0;
}
