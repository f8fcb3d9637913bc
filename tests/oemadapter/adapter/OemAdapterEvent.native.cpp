// Every call of the platform that a method of the second generation makes fails once: the result is a failure, or the method goes
// on as documented; the outputs are nothing on failure, and nothing is left.
#include "tests/oemadapter/support/FaultSweep.native.h"

namespace OemAdapterEventFaultsTests
{

class OemAdapterEventFaults : public FaultSweep
{
protected:
    PcmTake take{{16384, -8192}};
};

TEST_F(OemAdapterEventFaults, Capabilities)
{
    const uint64_t calls = Sweep([&] {
        EVENTFEATURES features = EVENTFEATURES_None;
        LANGID* languages = nullptr;
        ULONG languageCount = 4711;
        ULONG recordingCount = 4711;
        WAVEFORMATEX* format = nullptr;
        const HRESULT result = event->GetCapabilities(&features, &languages, &languageCount, &recordingCount, &format);
        EXPECT_EQ(SUCCEEDED(result), languages != nullptr && format != nullptr);
        EXPECT_EQ(FAILED(result), languages == nullptr && format == nullptr);
        CoTaskMemFree(languages);
        CoTaskMemFree(format);
        return result;
    });
    EXPECT_GE(calls, 2U);
}

TEST_F(OemAdapterEventFaults, CapabilitiesForLanguage)
{
    const uint64_t calls = Sweep([&] {
        DETECTIONEVENT* events = nullptr;
        ULONG count = 4711;
        const HRESULT result = event->GetCapabilitiesForLanguage(English, &events, &count);
        EXPECT_EQ(events != nullptr, SUCCEEDED(result));
        EXPECT_EQ(count, SUCCEEDED(result) ? 1U : 0U);
        CoTaskMemFree(events);
        return result;
    });
    EXPECT_GE(calls, 1U);
}

TEST_F(OemAdapterEventFaults, Verification)
{
    EXPECT_GE(Sweep([&] { return event->VerifyUserEventData(nullptr, take.Format(), Selector(), 2); }), 4U);
}

TEST_F(OemAdapterEventFaults, Computation)
{
    PcmTake second{{1, 2, 3}};
    WAVEFORMATEX* recordings[] = {take.Format(), second.Format()};
    LONG ends[] = {2, -1};
    const uint64_t calls = Sweep([&] { return event->ComputeAndAddUserModelData(empty.get(), Selector(), ends, recordings, 2); });
    EXPECT_GE(calls, 8U);
}

TEST_F(OemAdapterEventFaults, ArmingWithoutAStream)
{
    const uint64_t calls = Sweep([&] {
        ForgetLanguage();
        DETECTIONEVENTSELECTOR selector = Selector();
        SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
        const HRESULT result = event->BuildArmingPatternData(nullptr, &selector, 1, &pattern);
        EXPECT_EQ(SUCCEEDED(result), pattern != nullptr);
        CoTaskMemFree(pattern);
        return result;
    });
    EXPECT_GE(calls, 6U); // the stream is made, the record read and written
}

TEST_F(OemAdapterEventFaults, ParsingInANewProcessWithoutAStream)
{
    WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", Italian);
    std::vector<uint8_t> block = ResultBlock();
    int withoutText = 0;
    const uint64_t calls = Sweep([&] {
        SOUNDDETECTOR_PATTERNHEADER* context = nullptr;
        DETECTIONEVENTSELECTOR selector{};
        EVENTACTION action{};
        ULONG64 start = 4711;
        ULONG64 end = 4711;
        WCHAR* text = nullptr;
        const HRESULT result =
            event->ParseDetectionResultData(nullptr, AsResult(block), &context, &selector, &action, &start, &end, &text);
        EXPECT_EQ(selector.LangId, SUCCEEDED(result) ? Italian : 0);
        EXPECT_EQ(action.EventActionType, SUCCEEDED(result) ? EVENTACTIONTYPE_Accept : EVENTACTIONTYPE_Error);
        withoutText += SUCCEEDED(result) && text == nullptr ? 1 : 0;
        CoTaskMemFree(text);
        return result;
    });
    EXPECT_GE(calls, 5U);
    EXPECT_EQ(withoutText, 1); // A detection is worth more than its diagnosis.
}

TEST_F(OemAdapterEventFaults, WithoutMemoryForAnEmptyStreamNothingIsArmedOrParsed)
{
    DETECTIONEVENTSELECTOR selector = Selector();
    SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
    {
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::CreateStream);
        EXPECT_EQ(event->BuildArmingPatternData(nullptr, &selector, 1, &pattern), E_OUTOFMEMORY);
    }
    std::vector<uint8_t> block = ResultBlock();
    EventDetection detection;
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::CreateStream);
    EXPECT_EQ(detection.Parse(event, nullptr, AsResult(block)), E_OUTOFMEMORY);
    EXPECT_TRUE(library.calls.empty());
}

} // namespace OemAdapterEventFaultsTests
