// Every call of the platform that a method of the first generation makes fails once: the result is a failure, or the method goes
// on as documented; the outputs are nothing on failure, and nothing is left.
#include "tests/oemadapter/support/FaultSweep.native.h"
#include "tests/support/MediaBuffer.h"

namespace OemAdapterKeywordFaultsTests
{

class OemAdapterKeywordFaults : public FaultSweep
{
};

TEST_F(OemAdapterKeywordFaults, Capabilities)
{
    const uint64_t calls = Sweep([&] {
        BOOL supported = 4711;
        KEYWORDID* keywords = nullptr;
        LANGID* languages = nullptr;
        ULONG keywordCount = 4711;
        ULONG languageCount = 4711;
        IMFMediaType* format = nullptr;
        const HRESULT result =
            keyword->GetCapabilities(&supported, &keywords, &keywordCount, &languages, &languageCount, &format);
        const bool isWhole = keywords != nullptr && languages != nullptr && format != nullptr && languageCount == 2;
        const bool isNothing = keywords == nullptr && languages == nullptr && format == nullptr && languageCount == 0;
        EXPECT_TRUE(SUCCEEDED(result) ? isWhole : isNothing);
        CoTaskMemFree(keywords);
        CoTaskMemFree(languages);
        if (format != nullptr)
        {
            format->Release();
        }
        return result;
    });
    EXPECT_GE(calls, 2U); // the media type is made and filled
}

TEST_F(OemAdapterKeywordFaults, Computation)
{
    const MediaBuffer take = MakeMediaBuffer({0.5F});
    IMFMediaBuffer* recordings[] = {take.get()};
    LONG ends[] = {0};
    const uint64_t calls = Sweep([&] {
        return keyword->ComputeAndAddUserModelData(empty.get(), {KwVoiceAssistant, English}, ends, recordings, 1);
    });
    EXPECT_GE(calls, 1U);
}

TEST_F(OemAdapterKeywordFaults, Arming)
{
    const uint64_t calls = Sweep([&] {
        ForgetLanguage();
        KEYWORDSELECTOR selector{KwVoiceAssistant, English};
        SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
        const HRESULT result = keyword->BuildArmingPatternData(empty.get(), &selector, 1, &pattern);
        EXPECT_EQ(SUCCEEDED(result), pattern != nullptr);
        CoTaskMemFree(pattern);
        return result;
    });
    EXPECT_GE(calls, 5U); // the record is read and written
}

TEST_F(OemAdapterKeywordFaults, ParsingInANewProcess)
{
    WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", Italian);
    std::vector<uint8_t> block = ResultBlock();
    const uint64_t calls = Sweep([&] {
        KEYWORDID keywordId = KwSelection;
        LANGID language = 4711;
        BOOL isUserMatch = 4711;
        ULONG64 start = 4711;
        ULONG64 end = 4711;
        const HRESULT result =
            keyword->ParseDetectionResultData(empty.get(), AsResult(block), &keywordId, &language, &isUserMatch, &start, &end);
        EXPECT_EQ(language, SUCCEEDED(result) ? Italian : 0);
        EXPECT_EQ(end, SUCCEEDED(result) ? 1260800U : 0U);
        return result;
    });
    EXPECT_GE(calls, 3U);
}

} // namespace OemAdapterKeywordFaultsTests
