// The contract of the second generation's methods: for each argument and each answer of the library, the result and the outputs.
// What is left of task memory and references at a test's end is looked at natively.
#include "oemadapter/windows/ProvisionalResultCodes.h"
#include "tests/oemadapter/support/OemAdapterOutputs.h"
#include "tests/oemadapter/support/OemAdapterTest.h"
#include "tests/support/PlatformObjects.h"

#include <optional>
#include <utility>

namespace OemAdapterEventTests
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using velox::oemadapter::TaskMemory;

constexpr LONG Most = 0x7FFFFFFF;

/// What may be wrong with an event.
void Wrong(GUID& id)
{
    id.Data4[7] ^= 1U;
}

class OemAdapterEvent : public OemAdapterTest
{
protected:
    void Arm(DETECTIONEVENTSELECTOR selector, IStream* stream)
    {
        SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
        ASSERT_EQ(event->BuildArmingPatternData(stream, &selector, 1, &pattern), S_OK);
        CoTaskMemFree(pattern);
    }

    std::vector<uint8_t> block = ResultBlock();
    PcmTake take{{16384, -8192}};
};

// GetCapabilities

TEST_F(OemAdapterEvent, CapabilitiesAreTheLibrarysWithItsPcm)
{
    EventCapabilities outputs;
    ASSERT_EQ(outputs.Get(event), S_OK);
    EXPECT_EQ(outputs.features, EVENTFEATURES_UserTraining);
    ASSERT_EQ(outputs.languageCount, 2U);
    EXPECT_EQ(outputs.languageIds[0], English);
    EXPECT_EQ(outputs.languageIds[1], Italian);
    EXPECT_EQ(outputs.recordingCount, 5U);
    EXPECT_EQ(outputs.format->wFormatTag, WAVE_FORMAT_PCM);
    EXPECT_EQ(outputs.format->nChannels, 1);
    EXPECT_EQ(outputs.format->nSamplesPerSec, 16000U);
    EXPECT_EQ(outputs.format->wBitsPerSample, 16);
    EXPECT_EQ(outputs.format->cbSize, 0);
}

TEST_F(OemAdapterEvent, CapabilitiesNeedEveryOutputAndThenWriteNone)
{
    for (int missing = 0; missing < 5; ++missing)
    {
        EventCapabilities outputs;
        EXPECT_EQ(outputs.Get(event, missing), E_POINTER) << missing;
        EXPECT_TRUE(outputs.AreUntouched());
    }
    EXPECT_THAT(library.calls, IsEmpty());
}

TEST_F(OemAdapterEvent, CapabilitiesThatCannotBeHadLeaveNoOutput)
{
    for (const auto& [end, result] : {std::pair{CapabilitiesEnd::NoKeywords, E_OUTOFMEMORY},
                                      {CapabilitiesEnd::NoConfiguration, E_FAIL},
                                      {CapabilitiesEnd::NoLanguages, E_OUTOFMEMORY},
                                      {CapabilitiesEnd::BadLanguage, E_FAIL},
                                      {CapabilitiesEnd::NoFormat, E_OUTOFMEMORY},
                                      {CapabilitiesEnd::Exception, GenFailure}})
    {
        library.capabilitiesEnd = end;
        EventCapabilities outputs;
        EXPECT_EQ(outputs.Get(event), result);
        EXPECT_TRUE(outputs.AreNothing());
    }
}

// GetCapabilitiesForLanguage

TEST_F(OemAdapterEvent, ALanguageHasTheSettingsEventWithAValidModel)
{
    for (const LANGID language : {English, Italian})
    {
        DETECTIONEVENT* events = nullptr;
        ULONG count = 0;
        ASSERT_EQ(event->GetCapabilitiesForLanguage(language, &events, &count), S_OK);
        const TaskMemory<DETECTIONEVENT> owned(events);
        ASSERT_EQ(count, 1U);
        EXPECT_EQ(events->EventId, EventId);
        EXPECT_EQ(events->ProviderId, ProviderId);
        EXPECT_EQ(events->EventFeatures, EVENTFEATURES_UserTraining);
        EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(events->DisplayName)), u"Good morning");
        EXPECT_EQ(events->UserModelValid, TRUE);
    }
}

TEST_F(OemAdapterEvent, ALanguageWithoutEventsLeavesNoOutput)
{
    const auto expect = [&](HRESULT result, LANGID language) {
        DETECTIONEVENT* events = reinterpret_cast<DETECTIONEVENT*>(&library);
        ULONG count = 4711;
        EXPECT_EQ(event->GetCapabilitiesForLanguage(language, &events, &count), result);
        EXPECT_EQ(events, nullptr);
        EXPECT_EQ(count, 0U);
    };
    expect(E_INVALIDARG, 1031);
    expect(E_INVALIDARG, 0);
    library.capabilitiesEnd = CapabilitiesEnd::NoConfiguration;
    expect(E_FAIL, English);
}

TEST_F(OemAdapterEvent, ALanguagesEventsNeedEveryOutput)
{
    DETECTIONEVENT* events = nullptr;
    ULONG count = 4711;
    EXPECT_EQ(event->GetCapabilitiesForLanguage(English, nullptr, &count), E_POINTER);
    EXPECT_EQ(event->GetCapabilitiesForLanguage(English, &events, nullptr), E_POINTER);
    EXPECT_EQ(count, 4711U);
    EXPECT_THAT(library.calls, IsEmpty());
}

// VerifyUserEventData

struct EventVerification
{
    const char* description;
    HRESULT expected;
    void (*change)(DETECTIONEVENTSELECTOR& selector, WAVEFORMATEX& format) = nullptr;
    bool hasStream = true;
    bool hasRecording = true;
    LONG end = 0;
    const char* call = "VerifyUserKeyword(1, 1033, 0)"; ///< null when the library is not called
    std::optional<HRESULT> answer = std::nullopt;       ///< the library's
    std::vector<uint32_t> lines = {};                   ///< levels of the library's lines
};

using Change = DETECTIONEVENTSELECTOR&;

const EventVerification EventVerificationRows[] = {
    {.description = "found", .expected = S_OK},
    {.description = "null stream", .expected = S_OK, .hasStream = false},
    {.description = "other language",
     .expected = S_OK,
     .change = [](Change selector, WAVEFORMATEX&) { selector.LangId = Italian; },
     .call = "VerifyUserKeyword(1, 1040, 0)"},
    {.description = "event of another name and state",
     .expected = S_OK,
     .change =
         [](Change selector, WAVEFORMATEX&) {
             selector.Event.DisplayName[0] = L'x';
             selector.Event.UserModelValid = TRUE;
             selector.UserId = 7;
             selector.Armed = TRUE;
         }},
    {.description = "repair end is doubled", .expected = S_OK, .end = 32000, .call = "VerifyUserKeyword(1, 1033, 64000)"},
    {.description = "repair largest end", .expected = S_OK, .end = Most, .call = "VerifyUserKeyword(1, 1033, 2147483647)"},
    {.description = "repair end not known", .expected = S_OK, .end = -1, .call = "VerifyUserKeyword(1, 1033, -1)"},
    {.description = "repair end 1", .expected = S_OK, .end = 1, .call = "VerifyUserKeyword(1, 1033, 1)"},
    {.description = "wrong event",
     .expected = E_INVALIDARG,
     .change = [](Change selector, WAVEFORMATEX&) { Wrong(selector.Event.EventId); },
     .call = nullptr},
    {.description = "wrong provider",
     .expected = E_INVALIDARG,
     .change = [](Change selector, WAVEFORMATEX&) { Wrong(selector.Event.ProviderId); },
     .call = nullptr},
    {.description = "language that is not configured",
     .expected = E_INVALIDARG,
     .change = [](Change selector, WAVEFORMATEX&) { selector.LangId = 1031; },
     .call = "VerifyUserKeyword(1, 1031, 0)"},
    {.description = "no recording", .expected = E_INVALIDARG, .hasRecording = false, .call = nullptr},
    {.description = "stereo",
     .expected = E_INVALIDARG,
     .change = [](Change, WAVEFORMATEX& format) { format.nChannels = 2; },
     .call = nullptr},
    {.description = "float",
     .expected = E_INVALIDARG,
     .change = [](Change, WAVEFORMATEX& format) { format.wFormatTag = WAVE_FORMAT_IEEE_FLOAT; },
     .call = nullptr},
    {.description = "48 kHz",
     .expected = E_INVALIDARG,
     .change = [](Change, WAVEFORMATEX& format) { format.nSamplesPerSec = 48000; },
     .call = nullptr},
    {.description = "24 bits",
     .expected = E_INVALIDARG,
     .change = [](Change, WAVEFORMATEX& format) { format.wBitsPerSample = 24; },
     .call = nullptr},
    {.description = "half a sample",
     .expected = E_INVALIDARG,
     .change = [](Change, WAVEFORMATEX& format) { format.cbSize = 3; },
     .call = nullptr},
    {.description = "repair not found", .expected = E_NO_MATCH, .answer = E_FAIL, .lines = {2, 4}},
    {.description = "repair failed", .expected = GenFailure, .answer = E_FAIL, .lines = {1}},
    {.description = "without memory", .expected = E_OUTOFMEMORY, .answer = E_OUTOFMEMORY},
};

TEST_F(OemAdapterEvent, VerificationGivesWhatWindowsExpects)
{
    for (const EventVerification& row : EventVerificationRows)
    {
        SCOPED_TRACE(row.description);
        library.Reset();
        library.lines["VerifyUserKeyword"] = row.lines;
        if (row.answer)
        {
            library.results["VerifyUserKeyword"] = *row.answer;
        }
        DETECTIONEVENTSELECTOR selector = Selector();
        PcmTake recording({16384, -8192});
        if (row.change != nullptr)
        {
            row.change(selector, *recording.Format());
        }
        EXPECT_EQ(event->VerifyUserEventData(row.hasStream ? empty.get() : nullptr,
                                             row.hasRecording ? recording.Format() : nullptr, selector, row.end),
                  row.expected);
        if (row.call == nullptr)
        {
            EXPECT_THAT(library.calls, IsEmpty());
            continue;
        }
        EXPECT_THAT(library.calls, ElementsAre(row.call));
        EXPECT_THAT(library.recordings, ElementsAre(ElementsAre(0.5F, -0.25F)));
    }
}

TEST_F(OemAdapterEvent, RecordingsMayBeEmptyOrAsLongAsTheirLengthCanSay)
{
    for (const std::size_t count : {0U, 1U, 32767U})
    {
        library.Reset();
        PcmTake recording(std::vector<int16_t>(count, -32768));
        EXPECT_EQ(event->VerifyUserEventData(nullptr, recording.Format(), Selector(), 0), S_OK);
        EXPECT_THAT(library.recordings, ElementsAre(std::vector<float>(count, -1.0F)));
    }
}

// ComputeAndAddUserModelData

struct EventComputation
{
    const char* description;
    HRESULT expected;
    void (*change)(DETECTIONEVENTSELECTOR& selector, WAVEFORMATEX& second) = nullptr;
    bool hasStream = true;
    bool hasEnds = true;
    bool hasRecordings = true;
    bool hasSecond = true;
    ULONG count = 2;
    const char* call = "ComputeAndAddUserModelData(1, 1033, -1, 8)";
    std::optional<HRESULT> answer = std::nullopt;
    std::vector<uint32_t> lines = {};
};

const EventComputation EventComputationRows[] = {
    {.description = "two recordings", .expected = S_OK},
    {.description = "one recording", .expected = S_OK, .count = 1, .call = "ComputeAndAddUserModelData(1, 1033, -1)"},
    {.description = "null stream", .expected = E_INVALIDARG, .hasStream = false, .call = nullptr},
    {.description = "no ends", .expected = E_INVALIDARG, .hasEnds = false, .call = nullptr},
    {.description = "recordings null", .expected = E_INVALIDARG, .hasRecordings = false, .call = nullptr},
    {.description = "a null recording", .expected = E_INVALIDARG, .hasSecond = false, .call = nullptr},
    {.description = "no recordings", .expected = E_INVALIDARG, .count = 0, .call = nullptr},
    {.description = "all null and a huge count",
     .expected = E_INVALIDARG,
     .hasEnds = false,
     .hasRecordings = false,
     .count = 0xFFFFFFFF,
     .call = nullptr},
    {.description = "wrong event",
     .expected = E_INVALIDARG,
     .change = [](Change selector, WAVEFORMATEX&) { Wrong(selector.Event.EventId); },
     .call = nullptr},
    {.description = "wrong provider",
     .expected = E_INVALIDARG,
     .change = [](Change selector, WAVEFORMATEX&) { Wrong(selector.Event.ProviderId); },
     .call = nullptr},
    {.description = "second recording of another format",
     .expected = E_INVALIDARG,
     .change = [](Change, WAVEFORMATEX& second) { second.nChannels = 2; },
     .call = nullptr},
    {.description = "language that is not configured",
     .expected = E_INVALIDARG,
     .change = [](Change selector, WAVEFORMATEX&) { selector.LangId = 1031; },
     .call = "ComputeAndAddUserModelData(1, 1031, -1, 8)"},
    {.description = "repair failed", .expected = GenFailure, .answer = E_FAIL, .lines = {1}},
    {.description = "repair model lost", .expected = GenFailure, .lines = {2}},
    {.description = "warned", .expected = S_OK, .lines = {3, 4, 5}},
    {.description = "without memory", .expected = E_OUTOFMEMORY, .answer = E_OUTOFMEMORY},
};

TEST_F(OemAdapterEvent, ComputationGivesWhatWindowsExpects)
{
    for (const EventComputation& row : EventComputationRows)
    {
        SCOPED_TRACE(row.description);
        library.Reset();
        library.lines["ComputeAndAddUserModelData"] = row.lines;
        if (row.answer)
        {
            library.results["ComputeAndAddUserModelData"] = *row.answer;
        }
        DETECTIONEVENTSELECTOR selector = Selector();
        PcmTake first({16384});
        PcmTake second({8192, 4096});
        if (row.change != nullptr)
        {
            row.change(selector, *second.Format());
        }
        WAVEFORMATEX* recordings[] = {first.Format(), row.hasSecond ? second.Format() : nullptr};
        LONG ends[] = {-1, 4};
        EXPECT_EQ(event->ComputeAndAddUserModelData(row.hasStream ? empty.get() : nullptr, selector, row.hasEnds ? ends : nullptr,
                                                    row.hasRecordings ? recordings : nullptr, row.count),
                  row.expected);
        if (row.call == nullptr)
        {
            EXPECT_THAT(library.calls, IsEmpty());
            continue;
        }
        EXPECT_THAT(library.calls, ElementsAre(row.call));
        EXPECT_EQ(library.recordings.size(), row.count);
        EXPECT_THAT(library.recordings.front(), ElementsAre(0.5F));
    }
}

// BuildArmingPatternData

struct EventArming
{
    const char* description;
    HRESULT expected;
    std::optional<std::string> stream = "";
    void (*change)(DETECTIONEVENTSELECTOR& selector) = nullptr;
    bool hasSelectors = true;
    ULONG count = 1;
    std::optional<HRESULT> answer = std::nullopt;
    const char* model = "predefined";
};

const EventArming EventArmingRows[] = {
    {.description = "empty stream", .expected = S_OK},
    {.description = "repair null stream", .expected = S_OK, .stream = std::nullopt},
    {.description = "users model", .expected = S_OK, .stream = "VWOV mine", .model = "VWOV mine"},
    {.description = "damaged stream", .expected = S_OK, .stream = "VWO"},
    {.description = "other language",
     .expected = S_OK,
     .change =
         [](Change selector) {
             selector.LangId = Italian;
         }},
    {.description = "language that is not configured",
     .expected = E_INVALIDARG,
     .change =
         [](Change selector) {
             selector.LangId = 1031;
         }},
    {.description = "wrong event",
     .expected = E_INVALIDARG,
     .change =
         [](Change selector) {
             Wrong(selector.Event.EventId);
         }},
    {.description = "wrong provider",
     .expected = E_INVALIDARG,
     .change =
         [](Change selector) {
             Wrong(selector.Event.ProviderId);
         }},
    {.description = "no selectors", .expected = E_POINTER, .hasSelectors = false},
    {.description = "count 0", .expected = E_POINTER, .count = 0},
    {.description = "count 2", .expected = E_INVALIDARG, .count = 2},
    {.description = "huge count", .expected = E_INVALIDARG, .count = 0xFFFFFFFF},
    {.description = "repair failed", .expected = GenFailure, .answer = E_FAIL},
    {.description = "repair positive code", .expected = GenFailure, .answer = S_FALSE},
    {.description = "without memory", .expected = E_OUTOFMEMORY, .answer = E_OUTOFMEMORY},
    {.description = "the streams failure", .expected = E_ACCESSDENIED, .answer = E_ACCESSDENIED},
};

TEST_F(OemAdapterEvent, ArmingGivesWhatWindowsExpects)
{
    for (const EventArming& row : EventArmingRows)
    {
        SCOPED_TRACE(row.description);
        library.Reset();
        if (row.answer)
        {
            library.results["BuildArmingPatternData"] = *row.answer;
        }
        const HostStream stream = row.stream ? StreamOf(*row.stream) : nullptr;
        DETECTIONEVENTSELECTOR selectors[] = {Selector(), Selector()};
        if (row.change != nullptr)
        {
            row.change(selectors[0]);
        }
        SOUNDDETECTOR_PATTERNHEADER* pattern = reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(selectors);
        EXPECT_EQ(event->BuildArmingPatternData(stream.get(), row.hasSelectors ? selectors : nullptr, row.count, &pattern),
                  row.expected);
        if (FAILED(row.expected))
        {
            EXPECT_EQ(pattern, nullptr);
            continue;
        }
        EXPECT_EQ(TakeModel(pattern), row.model);
    }
}

TEST_F(OemAdapterEvent, ArmingNeedsSomewhereToPutTheBlock)
{
    DETECTIONEVENTSELECTOR selector = Selector();
    EXPECT_EQ(event->BuildArmingPatternData(empty.get(), &selector, 1, nullptr), E_POINTER);
    EXPECT_THAT(library.calls, IsEmpty());
}

// ParseDetectionResultData

TEST_F(OemAdapterEvent, ParsingAcceptsWithConfidenceAndTellsForWhomItWasArmed)
{
    DETECTIONEVENTSELECTOR armed = Selector(Italian);
    armed.UserId = 42;
    armed.Armed = TRUE;
    Arm(armed, StreamOf("VWOV mine").get());
    block = ResultBlock(1, 0x7F80);
    EventDetection outputs;
    ASSERT_EQ(outputs.Parse(event, empty.get(), AsResult(block)), S_OK);
    EXPECT_EQ(outputs.context, nullptr);
    EXPECT_EQ(outputs.selector.Event.EventId, EventId);
    EXPECT_EQ(outputs.selector.Event.ProviderId, ProviderId);
    EXPECT_EQ(outputs.selector.Event.UserModelValid, TRUE);
    EXPECT_EQ(outputs.selector.LangId, Italian);
    EXPECT_EQ(outputs.selector.UserId, 42U);
    EXPECT_EQ(outputs.selector.Armed, TRUE);
    EXPECT_EQ(outputs.action.EventActionType, EVENTACTIONTYPE_Accept);
    EXPECT_EQ(outputs.action.EventActionContextType, EVENTACTIONCONTEXTTYPE_Confidence);
    EXPECT_FLOAT_EQ(outputs.action.EventActionContext.ConfidenceValue, 0.5F);
    EXPECT_EQ(outputs.start, 1250000U);
    EXPECT_EQ(outputs.end, 1260800U);
}

TEST_F(OemAdapterEvent, ParsingRejectsAnotherKeyword)
{
    Arm(Selector(), empty.get());
    block = ResultBlock(2);
    EventDetection outputs;
    ASSERT_EQ(outputs.Parse(event, empty.get(), AsResult(block)), S_OK);
    EXPECT_EQ(outputs.action.EventActionType, EVENTACTIONTYPE_Reject);
    EXPECT_EQ(outputs.action.EventActionContextType, EVENTACTIONCONTEXTTYPE_None);
    EXPECT_EQ(outputs.selector.LangId, English);
    EXPECT_EQ(outputs.selector.Event.UserModelValid, FALSE);
}

TEST_F(OemAdapterEvent, ParsingsDebugOutputIsTheCallsLinesWhateverIsShown)
{
    library.level = 0;
    NextProcess();
    Arm(Selector(), empty.get());
    library.lines["ParseDetectionResultData"] = {4, 5};
    EventDetection outputs;
    ASSERT_EQ(outputs.Parse(event, empty.get(), AsResult(block)), S_OK);
    EXPECT_EQ(TakeText(std::exchange(outputs.debugOutput, nullptr)),
              "4 [ParseDetectionResultData] A line.\r\n5 [ParseDetectionResultData] A line.\r\n");
    EXPECT_THAT(log.Read(), Not(HasSubstr("ParseDetectionResultData")));
}

TEST_F(OemAdapterEvent, ParsingWithoutAnArmingOfThisGenerationKnowsNoUser)
{
    DETECTIONEVENTSELECTOR armed = Selector();
    armed.UserId = 42;
    armed.Armed = TRUE;
    Arm(armed, empty.get());
    KEYWORDSELECTOR selector{KwVoiceAssistant, Italian};
    SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
    ASSERT_EQ(keyword->BuildArmingPatternData(empty.get(), &selector, 1, &pattern), S_OK);
    CoTaskMemFree(pattern);
    EventDetection outputs;
    ASSERT_EQ(outputs.Parse(event, empty.get(), AsResult(block)), S_OK);
    EXPECT_EQ(outputs.selector.LangId, Italian);
    EXPECT_EQ(outputs.selector.UserId, 0U);
    EXPECT_EQ(outputs.selector.Armed, FALSE);
}

TEST_F(OemAdapterEvent, RepairOfParsingNullStreamIsAnEmptyOne)
{
    Arm(Selector(), empty.get());
    NextProcess();
    EventDetection outputs;
    ASSERT_EQ(outputs.Parse(event, nullptr, AsResult(block)), S_OK);
    EXPECT_EQ(library.stream, "");
    EXPECT_THAT(library.calls, ElementsAre("BuildArmingPatternData(1033)", "ParseDetectionResultData(1033)"));
}

TEST_F(OemAdapterEvent, RepairOfParsingStoredBlockInANewProcessHasLanguageAndUserMatch)
{
    Arm(Selector(Italian), empty.get());
    NextProcess();
    EventDetection outputs;
    ASSERT_EQ(outputs.Parse(event, StreamOf("VWOV mine").get(), AsResult(block)), S_OK);
    EXPECT_EQ(outputs.selector.LangId, Italian);
    EXPECT_EQ(outputs.selector.Event.UserModelValid, TRUE);
    EXPECT_THAT(TakeText(std::exchange(outputs.debugOutput, nullptr)), HasSubstr("Arming language 1040"));
}

TEST_F(OemAdapterEvent, RepairOfParsingUnknownLanguageIsAFailureAndNeverLanguageZero)
{
    EventDetection outputs;
    EXPECT_EQ(outputs.Parse(event, empty.get(), AsResult(block)), GenFailure);
    EXPECT_TRUE(outputs.IsNothing());
    EXPECT_TRUE(outputs.IsError(GenFailure));
}

TEST_F(OemAdapterEvent, ParsingNeedsEveryOutputAndTellsSoInTheAction)
{
    Arm(Selector(), empty.get());
    for (int missing = 0; missing < 6; ++missing)
    {
        SCOPED_TRACE(missing);
        EventDetection outputs;
        EXPECT_EQ(outputs.Parse(event, empty.get(), AsResult(block), missing), E_POINTER);
        EXPECT_TRUE(outputs.IsUntouched());
        if (missing != 2)
        {
            EXPECT_TRUE(outputs.IsError(E_POINTER));
        }
    }
}

TEST_F(OemAdapterEvent, ParsingsFailuresLeaveNoOutputButTheError)
{
    Arm(Selector(), empty.get());
    const auto expect = [&](HRESULT result, std::vector<uint8_t> damaged) {
        EventDetection outputs;
        EXPECT_EQ(outputs.Parse(event, empty.get(), damaged.empty() ? nullptr : AsResult(damaged)), result);
        EXPECT_TRUE(outputs.IsNothing());
        EXPECT_TRUE(outputs.IsError(result));
    };
    expect(E_POINTER, {});
    expect(E_INVALIDARG, ResultBlock(1, 0, 59));
    expect(E_INVALIDARG, ResultBlock(1, 0, 0));
    expect(E_INVALIDARG, ResultBlock(1, 0, 60, 0x6D));
    library.results["ParseDetectionResultData"] = E_FAIL;
    expect(GenFailure, block);
    library.results["ParseDetectionResultData"] = E_OUTOFMEMORY;
    expect(E_OUTOFMEMORY, block);
}

TEST_F(OemAdapterEvent, NoReferenceToTheCallersStreamIsKept)
{
    const PlatformObjects::Owned<IStream> stream = PlatformObjects::NewStream();
    WAVEFORMATEX* recordings[] = {take.Format()};
    LONG ends[] = {0};
    EventDetection outputs;
    EXPECT_EQ(event->VerifyUserEventData(stream.get(), take.Format(), Selector(), 0), S_OK);
    EXPECT_EQ(event->ComputeAndAddUserModelData(stream.get(), Selector(), ends, recordings, 1), S_OK);
    Arm(Selector(), stream.get());
    EXPECT_EQ(outputs.Parse(event, stream.get(), AsResult(block)), S_OK);
    EXPECT_EQ(stream->AddRef(), 2U);
    EXPECT_EQ(stream->Release(), 1U);
}

// ReportOSDetectionResult

TEST_F(OemAdapterEvent, TheSystemsVerdictIsALine)
{
    DETECTIONEVENTSELECTOR selector = Selector(Italian);
    selector.UserId = 42;
    EVENTACTION action{};
    action.EventActionType = EVENTACTIONTYPE_Reject;
    action.EventActionContextType = EVENTACTIONCONTEXTTYPE_Scale;
    action.EventActionContext.ScaleValue = CONFIDENCESCALE_Low;
    event->ReportOSDetectionResult(selector, action);
    EXPECT_THAT(log.Read(), HasSubstr("The system's verdict: action 1, context 2, 0x00000002; language 1040, user 42, armed 0."));
    EXPECT_THAT(library.calls, IsEmpty());
}

TEST_F(OemAdapterEvent, NoExceptionLeavesAMethod)
{
    library.onCall = [](const std::string&) {
        throw 4711;
    };
    WAVEFORMATEX* recordings[] = {take.Format()};
    LONG ends[] = {0};
    DETECTIONEVENTSELECTOR selector = Selector();
    SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
    EventCapabilities capabilities;
    EventDetection parsed;
    DETECTIONEVENT* events = nullptr;
    ULONG count = 0;
    EXPECT_EQ(capabilities.Get(event), GenFailure);
    EXPECT_EQ(event->GetCapabilitiesForLanguage(English, &events, &count), GenFailure);
    EXPECT_EQ(event->VerifyUserEventData(empty.get(), take.Format(), selector, 0), GenFailure);
    EXPECT_EQ(event->ComputeAndAddUserModelData(empty.get(), selector, ends, recordings, 1), GenFailure);
    EXPECT_EQ(event->BuildArmingPatternData(empty.get(), &selector, 1, &pattern), GenFailure);
    WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", English);
    EXPECT_EQ(parsed.Parse(event, empty.get(), AsResult(block)), GenFailure);
    EXPECT_TRUE(capabilities.AreNothing());
    EXPECT_TRUE(parsed.IsNothing());
    EXPECT_TRUE(parsed.IsError(GenFailure));
}

} // namespace OemAdapterEventTests
