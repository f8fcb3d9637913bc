// The contract of the first generation's methods: for each argument and each answer of the library, the result and the outputs.
// What is left of task memory and references at a test's end is looked at natively.
#include "oemadapter/settings/DetectorId.h"
#include "oemadapter/windows/ProvisionalResultCodes.h"
#include "tests/oemadapter/support/OemAdapterOutputs.h"
#include "tests/oemadapter/support/OemAdapterTest.h"
#include "tests/support/AudioFormat.h"
#include "tests/support/MediaBuffer.h"
#include "tests/support/PlatformObjects.h"

#include <functional>
#include <optional>
#include <utility>

namespace OemAdapterKeywordTests
{

using testing::ElementsAre;
using testing::IsEmpty;

class OemAdapterKeyword : public OemAdapterTest
{
protected:
    void Arm(LANGID language, IStream* stream)
    {
        KEYWORDSELECTOR selector{KwVoiceAssistant, language};
        SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
        ASSERT_EQ(keyword->BuildArmingPatternData(stream, &selector, 1, &pattern), S_OK);
        CoTaskMemFree(pattern);
    }

    std::vector<uint8_t> block = ResultBlock();
};

// GetCapabilities

TEST_F(OemAdapterKeyword, CapabilitiesAreTheLibrarysWithOwnedArrays)
{
    KeywordCapabilities outputs;
    ASSERT_EQ(outputs.Get(keyword), S_OK);
    EXPECT_EQ(outputs.supportsUserModels, TRUE);
    ASSERT_EQ(outputs.keywordCount, 1U);
    EXPECT_EQ(*outputs.keywordIds, KwVoiceAssistant);
    ASSERT_EQ(outputs.languageCount, 2U);
    EXPECT_EQ(outputs.languageIds[0], English);
    EXPECT_EQ(outputs.languageIds[1], Italian);

    library.supportsUserModels = 0;
    KeywordCapabilities others;
    ASSERT_EQ(others.Get(keyword), S_OK);
    EXPECT_EQ(others.supportsUserModels, FALSE);
}

TEST_F(OemAdapterKeyword, RepairOfCapabilitiesFormatIsFloatAndNotTheLibrarysPcm)
{
    KeywordCapabilities outputs;
    ASSERT_EQ(outputs.Get(keyword), S_OK);
    const WAVEFORMATEX format = ReadAudioFormat(outputs.audioFormat);
    EXPECT_EQ(format.wFormatTag, WAVE_FORMAT_IEEE_FLOAT);
    EXPECT_EQ(format.wBitsPerSample, 32);
    EXPECT_EQ(std::exchange(outputs.audioFormat, nullptr)->Release(), 0U);
}

TEST_F(OemAdapterKeyword, CapabilitiesNeedEveryOutputAndThenWriteNone)
{
    for (int missing = 0; missing < 6; ++missing)
    {
        KeywordCapabilities outputs;
        EXPECT_EQ(outputs.Get(keyword, missing), E_POINTER) << missing;
        EXPECT_TRUE(outputs.AreUntouched());
    }
    EXPECT_THAT(library.calls, IsEmpty());
}

TEST_F(OemAdapterKeyword, CapabilitiesThatCannotBeHadLeaveNoOutput)
{
    for (const auto& [end, result] : {std::pair{CapabilitiesEnd::NoKeywords, E_OUTOFMEMORY},
                                      {CapabilitiesEnd::NoConfiguration, E_FAIL},
                                      {CapabilitiesEnd::NoLanguages, E_OUTOFMEMORY},
                                      {CapabilitiesEnd::BadLanguage, E_FAIL},
                                      {CapabilitiesEnd::NoFormat, E_OUTOFMEMORY},
                                      {CapabilitiesEnd::Exception, GenFailure}})
    {
        library.capabilitiesEnd = end;
        KeywordCapabilities outputs;
        EXPECT_EQ(outputs.Get(keyword), result);
        EXPECT_TRUE(outputs.AreNothing());
    }
}

// VerifyUserKeyword

struct Verification
{
    const char* description;
    HRESULT expected;
    bool hasStream = true;
    KEYWORDID keyword = KwVoiceAssistant;
    LANGID language = English;
    LONG end = 0;
    bool hasRecording = true;
    std::optional<HRESULT> answer = std::nullopt; ///< the library's
    std::vector<uint32_t> lines = {};             ///< levels of the library's lines
    bool reachesLibrary = true;
};

const Verification VerificationRows[] = {
    Verification{.description = "found", .expected = S_OK},
    Verification{"found in the other language", S_OK, true, KwVoiceAssistant, Italian},
    Verification{.description = "end given", .expected = S_OK, .end = 64000},
    Verification{.description = "end not known", .expected = S_OK, .end = -1},
    Verification{.description = "largest end", .expected = S_OK, .end = 0x7FFFFFFF},
    Verification{.description = "repair null stream", .expected = E_INVALIDARG, .hasStream = false, .reachesLibrary = false},
    Verification{.description = "keyword 0", .expected = E_INVALIDARG, .keyword = KwInvalid, .reachesLibrary = false},
    Verification{.description = "repair keyword 2", .expected = E_INVALIDARG, .keyword = KwSelection, .reachesLibrary = false},
    Verification{.description = "repair keyword of no name",
                 .expected = E_INVALIDARG,
                 .keyword = static_cast<KEYWORDID>(3),
                 .reachesLibrary = false},
    Verification{.description = "language that is not configured", .expected = E_INVALIDARG, .language = 1031},
    Verification{.description = "language 0", .expected = E_INVALIDARG, .language = 0},
    Verification{.description = "no recording", .expected = E_INVALIDARG, .hasRecording = false},
    Verification{.description = "repair not found", .expected = E_NO_MATCH, .answer = E_FAIL, .lines = {4, 2, 3}},
    Verification{.description = "repair failed", .expected = GenFailure, .answer = E_FAIL, .lines = {2, 1}},
    Verification{.description = "without memory", .expected = E_OUTOFMEMORY, .answer = E_OUTOFMEMORY},
    Verification{.description = "another failure", .expected = E_ACCESSDENIED, .answer = E_ACCESSDENIED},
};

TEST_F(OemAdapterKeyword, VerificationGivesWhatWindowsExpects)
{
    for (const Verification& row : VerificationRows)
    {
        SCOPED_TRACE(row.description);
        library.Reset();
        if (row.answer)
        {
            library.results["VerifyUserKeyword"] = *row.answer;
        }
        library.lines["VerifyUserKeyword"] = row.lines;
        const MediaBuffer recording = MakeMediaBuffer({0.5F, -0.25F});
        EXPECT_EQ(keyword->VerifyUserKeyword(row.hasStream ? empty.get() : nullptr, row.keyword, row.language, row.end,
                                             row.hasRecording ? recording.get() : nullptr),
                  row.expected);
        if (!row.reachesLibrary)
        {
            EXPECT_THAT(library.calls, IsEmpty());
            continue;
        }
        EXPECT_THAT(library.calls,
                    ElementsAre("VerifyUserKeyword(1, " + std::to_string(row.language) + ", " + std::to_string(row.end) + ")"));
        if (row.hasRecording)
        {
            EXPECT_THAT(library.recordings, ElementsAre(ElementsAre(0.5F, -0.25F)));
        }
    }
}

// ComputeAndAddUserModelData

struct Computation
{
    const char* description;
    HRESULT expected;
    bool hasStream = true;
    KEYWORDID keyword = KwVoiceAssistant;
    LANGID language = English;
    bool hasEnds = true;
    bool hasRecordings = true;
    ULONG count = 2;
    std::optional<HRESULT> answer = std::nullopt;
    std::vector<uint32_t> lines = {};
    bool reachesLibrary = true;
};

const Computation ComputationRows[] = {
    Computation{.description = "two recordings", .expected = S_OK},
    Computation{.description = "one recording", .expected = S_OK, .count = 1},
    Computation{.description = "no stream", .expected = E_INVALIDARG, .hasStream = false},
    Computation{.description = "keyword 0", .expected = E_INVALIDARG, .keyword = KwInvalid},
    Computation{.description = "keyword 2", .expected = E_INVALIDARG, .keyword = KwSelection},
    Computation{.description = "language that is not configured", .expected = E_INVALIDARG, .language = 1031},
    Computation{.description = "no ends", .expected = E_INVALIDARG, .hasEnds = false, .reachesLibrary = false},
    Computation{.description = "recordings null", .expected = E_INVALIDARG, .hasRecordings = false, .reachesLibrary = false},
    Computation{.description = "no recordings", .expected = E_INVALIDARG, .count = 0, .reachesLibrary = false},
    Computation{.description = "all null and a huge count",
                .expected = E_INVALIDARG,
                .hasEnds = false,
                .hasRecordings = false,
                .count = 0xFFFFFFFF,
                .reachesLibrary = false},
    Computation{.description = "repair failed", .expected = GenFailure, .answer = E_FAIL, .lines = {1}},
    Computation{.description = "repair model lost", .expected = GenFailure, .lines = {2}},
    Computation{.description = "warned", .expected = S_OK, .lines = {3, 4, 5}},
    Computation{.description = "without memory", .expected = E_OUTOFMEMORY, .answer = E_OUTOFMEMORY},
};

TEST_F(OemAdapterKeyword, ComputationGivesWhatWindowsExpects)
{
    for (const Computation& row : ComputationRows)
    {
        SCOPED_TRACE(row.description);
        library.Reset();
        if (row.answer)
        {
            library.results["ComputeAndAddUserModelData"] = *row.answer;
        }
        library.lines["ComputeAndAddUserModelData"] = row.lines;
        const MediaBuffer first = MakeMediaBuffer({0.5F});
        const MediaBuffer second = MakeMediaBuffer({0.25F, 0.125F});
        IMFMediaBuffer* recordings[] = {first.get(), second.get()};
        LONG ends[] = {-1, 8};
        EXPECT_EQ(keyword->ComputeAndAddUserModelData(row.hasStream ? empty.get() : nullptr, {row.keyword, row.language},
                                                      row.hasEnds ? ends : nullptr, row.hasRecordings ? recordings : nullptr,
                                                      row.count),
                  row.expected);
        if (!row.reachesLibrary)
        {
            EXPECT_THAT(library.calls, IsEmpty());
            continue;
        }
        EXPECT_THAT(library.calls, ElementsAre("ComputeAndAddUserModelData(" + std::to_string(row.keyword) + ", " +
                                               std::to_string(row.language) + (row.count == 1 ? ", -1)" : ", -1, 8)")));
        EXPECT_THAT(library.recordings.front(), ElementsAre(0.5F));
        EXPECT_EQ(library.recordings.size(), row.count);
    }
}

TEST_F(OemAdapterKeyword, ComputationReachesTheCallersStream)
{
    const MediaBuffer take = MakeMediaBuffer({0.5F});
    IMFMediaBuffer* recordings[] = {take.get()};
    LONG ends[] = {0};
    EXPECT_EQ(keyword->ComputeAndAddUserModelData(empty.get(), {KwVoiceAssistant, English}, ends, recordings, 1), S_OK);
    KEYWORDSELECTOR selector{KwVoiceAssistant, English};
    SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
    EXPECT_EQ(keyword->BuildArmingPatternData(empty.get(), &selector, 1, &pattern), S_OK);
    EXPECT_EQ(TakeModel(pattern), "VWOV computed");
}

// BuildArmingPatternData

struct Arming
{
    const char* description;
    HRESULT expected;
    std::optional<std::string> stream = "";
    KEYWORDID keyword = KwVoiceAssistant;
    LANGID language = English;
    bool hasSelectors = true;
    ULONG count = 1;
    std::optional<HRESULT> answer = std::nullopt;
    const char* model = "predefined";
};

const Arming ArmingRows[] = {
    Arming{"empty stream", S_OK},
    Arming{.description = "users model", .expected = S_OK, .stream = "VWOV mine", .model = "VWOV mine"},
    Arming{"damaged stream", S_OK, "VWO"},
    Arming{"null stream", E_POINTER, std::nullopt},
    Arming{.description = "other language", .expected = S_OK, .language = Italian},
    Arming{.description = "keyword 0", .expected = E_INVALIDARG, .keyword = KwInvalid},
    Arming{.description = "keyword 2", .expected = E_INVALIDARG, .keyword = KwSelection},
    Arming{.description = "language that is not configured", .expected = E_INVALIDARG, .language = 1031},
    Arming{.description = "no selectors", .expected = E_POINTER, .hasSelectors = false},
    Arming{.description = "count 0", .expected = E_POINTER, .count = 0},
    Arming{.description = "count 2", .expected = E_INVALIDARG, .count = 2},
    Arming{.description = "huge count", .expected = E_INVALIDARG, .count = 0xFFFFFFFF},
    Arming{.description = "null selectors and a huge count", .expected = E_POINTER, .hasSelectors = false, .count = 0xFFFFFFFF},
    Arming{.description = "repair failed", .expected = GenFailure, .answer = E_FAIL},
    Arming{.description = "repair positive code", .expected = GenFailure, .answer = S_FALSE},
    Arming{.description = "without memory", .expected = E_OUTOFMEMORY, .answer = E_OUTOFMEMORY},
    Arming{.description = "the streams failure", .expected = E_ACCESSDENIED, .answer = E_ACCESSDENIED},
};

TEST_F(OemAdapterKeyword, ArmingGivesWhatWindowsExpects)
{
    for (const Arming& row : ArmingRows)
    {
        SCOPED_TRACE(row.description);
        library.Reset();
        if (row.answer)
        {
            library.results["BuildArmingPatternData"] = *row.answer;
        }
        const HostStream stream = row.stream ? StreamOf(*row.stream) : nullptr;
        KEYWORDSELECTOR selectors[] = {{row.keyword, row.language}, {KwVoiceAssistant, English}};
        SOUNDDETECTOR_PATTERNHEADER* pattern = reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(selectors);
        EXPECT_EQ(keyword->BuildArmingPatternData(stream.get(), row.hasSelectors ? selectors : nullptr, row.count, &pattern),
                  row.expected);
        if (FAILED(row.expected))
        {
            EXPECT_EQ(pattern, nullptr);
            continue;
        }
        EXPECT_EQ(pattern->PatternType, velox::oemadapter::DetectorId);
        EXPECT_EQ(TakeModel(pattern), row.model);
    }
}

TEST_F(OemAdapterKeyword, ArmingNeedsSomewhereToPutTheBlock)
{
    KEYWORDSELECTOR selector{KwVoiceAssistant, English};
    EXPECT_EQ(keyword->BuildArmingPatternData(empty.get(), &selector, 1, nullptr), E_POINTER);
    EXPECT_THAT(library.calls, IsEmpty());
}

// ParseDetectionResultData

TEST_F(OemAdapterKeyword, ParsingTellsWhatWasDetected)
{
    KeywordDetection outputs;
    Arm(Italian, StreamOf("VWOV mine").get());
    ASSERT_EQ(outputs.Parse(keyword, empty.get(), AsResult(block)), S_OK);
    EXPECT_EQ(outputs.keywordId, KwVoiceAssistant);
    EXPECT_EQ(outputs.languageId, Italian);
    EXPECT_EQ(outputs.isUserMatch, TRUE);
    EXPECT_EQ(outputs.start, 1250000U);
    EXPECT_EQ(outputs.end, 1260800U);
}

TEST_F(OemAdapterKeyword, ParsingTellsAnotherKeywordAsInvalid)
{
    KeywordDetection outputs;
    Arm(English, empty.get());
    block = ResultBlock(2);
    ASSERT_EQ(outputs.Parse(keyword, empty.get(), AsResult(block)), S_OK);
    EXPECT_EQ(outputs.keywordId, KwInvalid);
    EXPECT_EQ(outputs.languageId, English);
    EXPECT_EQ(outputs.isUserMatch, FALSE);
}

TEST_F(OemAdapterKeyword, ParsingTellsWhatAnotherObjectArmed)
{
    KeywordDetection outputs;
    Arm(Italian, empty.get());
    ReleaseAdapter();
    CreateAdapter();
    ASSERT_EQ(outputs.Parse(keyword, empty.get(), AsResult(block)), S_OK);
    EXPECT_EQ(outputs.languageId, Italian);
    EXPECT_THAT(library.calls, ElementsAre("ParseDetectionResultData(1040)"));
}

TEST_F(OemAdapterKeyword, ParsingNeedsEveryOutput)
{
    KeywordDetection outputs;
    Arm(English, empty.get());
    for (int missing = 0; missing < 5; ++missing)
    {
        EXPECT_EQ(outputs.Parse(keyword, empty.get(), AsResult(block), missing), E_POINTER) << missing;
        EXPECT_TRUE(outputs.IsUntouched());
    }
}

TEST_F(OemAdapterKeyword, ParsingFailuresLeaveNoOutput)
{
    KeywordDetection outputs;
    Arm(English, empty.get());
    const auto expect = [&](HRESULT result, IStream* stream, std::vector<uint8_t> damaged) {
        outputs = {};
        EXPECT_EQ(outputs.Parse(keyword, stream, damaged.empty() ? nullptr : AsResult(damaged)), result);
        EXPECT_TRUE(outputs.IsNothing());
    };
    expect(E_POINTER, nullptr, block);
    expect(E_POINTER, empty.get(), {});
    expect(E_INVALIDARG, empty.get(), ResultBlock(1, 0, 59));
    expect(E_INVALIDARG, empty.get(), ResultBlock(1, 0, 0));
    expect(E_INVALIDARG, empty.get(), ResultBlock(1, 0, 60, 0x6D));
    library.results["ParseDetectionResultData"] = E_FAIL;
    expect(GenFailure, empty.get(), block);
    library.results["ParseDetectionResultData"] = E_OUTOFMEMORY;
    expect(E_OUTOFMEMORY, empty.get(), block);
}

TEST_F(OemAdapterKeyword, ParsingTakesABlockThatSaysItIsLarger)
{
    KeywordDetection outputs;
    Arm(English, empty.get());
    block = ResultBlock(1, 0, 0xFFFFFFFF);
    EXPECT_EQ(outputs.Parse(keyword, empty.get(), AsResult(block)), S_OK);
}

TEST_F(OemAdapterKeyword, RepairOfParsingStoredBlockInANewProcessHasLanguageAndUserMatch)
{
    KeywordDetection outputs;
    Arm(Italian, empty.get());
    NextProcess();
    ASSERT_EQ(outputs.Parse(keyword, StreamOf("VWOV mine").get(), AsResult(block)), S_OK);
    EXPECT_EQ(outputs.languageId, Italian);
    EXPECT_EQ(outputs.isUserMatch, TRUE);
}

TEST_F(OemAdapterKeyword, RepairOfParsingUnknownLanguageIsAFailureAndNeverLanguageZero)
{
    KeywordDetection outputs;
    EXPECT_EQ(outputs.Parse(keyword, empty.get(), AsResult(block)), GenFailure);
    EXPECT_TRUE(outputs.IsNothing());
}

TEST_F(OemAdapterKeyword, NoReferenceToTheCallersObjectsIsKept)
{
    const PlatformObjects::Owned<IStream> stream = PlatformObjects::NewStream();
    const PlatformObjects::Owned<IMFMediaBuffer> take = PlatformObjects::Recording(std::vector<float>{0.5F});
    IMFMediaBuffer* recordings[] = {take.get()};
    LONG ends[] = {0};
    KeywordDetection outputs;
    EXPECT_EQ(keyword->VerifyUserKeyword(stream.get(), KwVoiceAssistant, English, 0, take.get()), S_OK);
    EXPECT_EQ(keyword->ComputeAndAddUserModelData(stream.get(), {KwVoiceAssistant, English}, ends, recordings, 1), S_OK);
    Arm(English, stream.get());
    EXPECT_EQ(outputs.Parse(keyword, stream.get(), AsResult(block)), S_OK);
    EXPECT_EQ(stream->AddRef(), 2U);
    EXPECT_EQ(stream->Release(), 1U);
    EXPECT_EQ(take->AddRef(), 2U);
    EXPECT_EQ(take->Release(), 1U);
}

TEST_F(OemAdapterKeyword, NoExceptionLeavesAMethod)
{
    library.onCall = [](const std::string&) {
        throw std::bad_alloc();
    };
    const MediaBuffer take = MakeMediaBuffer({0.5F});
    IMFMediaBuffer* recordings[] = {take.get()};
    LONG ends[] = {0};
    KEYWORDSELECTOR selector{KwVoiceAssistant, English};
    SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
    KeywordCapabilities outputs;
    KeywordDetection parsed;
    EXPECT_EQ(outputs.Get(keyword), E_OUTOFMEMORY);
    EXPECT_EQ(keyword->VerifyUserKeyword(empty.get(), KwVoiceAssistant, English, 0, take.get()), E_OUTOFMEMORY);
    EXPECT_EQ(keyword->ComputeAndAddUserModelData(empty.get(), selector, ends, recordings, 1), E_OUTOFMEMORY);
    EXPECT_EQ(keyword->BuildArmingPatternData(empty.get(), &selector, 1, &pattern), E_OUTOFMEMORY);
    WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", English);
    EXPECT_EQ(parsed.Parse(keyword, empty.get(), AsResult(block)), E_OUTOFMEMORY);
    EXPECT_TRUE(outputs.AreNothing());
    EXPECT_TRUE(parsed.IsNothing());
}

} // namespace OemAdapterKeywordTests
