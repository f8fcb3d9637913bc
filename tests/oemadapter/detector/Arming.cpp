#include "tests/oemadapter/support/LibraryTest.h"
#include "tests/support/ScriptedStream.h"

#include <cstring>
#include <string>

namespace ArmingTests
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Arming : public LibraryTest
{
protected:
    std::string ArmedModel() const
    {
        uint32_t size = 0;
        std::memcpy(&size, block.get(), sizeof(size));
        return {block.get() + 44, block.get() + size};
    }
};

TEST_F(Arming, HandsTheBlockOver)
{
    EXPECT_EQ(Build(1033, StreamOf("VWOV mine").get()), S_OK);
    EXPECT_EQ(ArmedModel(), "VWOV mine");
}

TEST_F(Arming, RepairOfBuildFailureIsAFailure)
{
    library.results["BuildArmingPatternData"] = E_FAIL;
    EXPECT_EQ(Build(1033, empty.get()), GenFailure);
    EXPECT_EQ(block, nullptr);
}

TEST_F(Arming, RepairOfBuildPositiveCodeIsAFailureAndItsBlockIsFreed)
{
    library.results["BuildArmingPatternData"] = S_FALSE;
    EXPECT_EQ(Build(1033, empty.get()), GenFailure);
    EXPECT_EQ(block, nullptr);
}

TEST_F(Arming, BuildHandsTheOtherFailuresOn)
{
    for (const HRESULT result : {E_POINTER, E_INVALIDARG, E_OUTOFMEMORY, static_cast<HRESULT>(0x80030070U)})
    {
        library.results["BuildArmingPatternData"] = result;
        EXPECT_EQ(Build(1033, empty.get()), result);
        EXPECT_EQ(block, nullptr);
    }
}

TEST_F(Arming, RecordsTheLanguageOfEachArmingThatSucceeds)
{
    EXPECT_EQ(Build(1040, empty.get()), S_OK);
    EXPECT_EQ(ReadNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage"), 1040U);
    EXPECT_THAT(log.Read(), Not(HasSubstr("cannot be recorded")));
    EXPECT_EQ(Build(1031, empty.get()), E_INVALIDARG);
    EXPECT_EQ(ReadNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage"), 1040U);
}

TEST_F(Arming, ParseAfterAnArmingTellsItsLanguageAndUserMatch)
{
    EXPECT_EQ(Build(1040, StreamOf("VWOV mine").get()), S_OK);
    library.calls.clear();
    EXPECT_EQ(Parse(empty.get()), S_OK);
    EXPECT_EQ(detection.languageId, 1040);
    EXPECT_EQ(detection.isUserMatch, TRUE);
    EXPECT_EQ(detection.keywordStart, 1250000U);
    EXPECT_EQ(detection.keywordEnd, 1260800U);
    EXPECT_THAT(library.calls, ElementsAre("ParseDetectionResultData(1040)"));
}

TEST_F(Arming, RepairOfParseFailureIsAFailure)
{
    EXPECT_EQ(Build(1033, empty.get()), S_OK);
    library.results["ParseDetectionResultData"] = E_FAIL;
    EXPECT_EQ(Parse(empty.get()), GenFailure);
    EXPECT_EQ(detection.languageId, 0);
}

TEST_F(Arming, ParseRefusesNullInputsBeforeItArms)
{
    EXPECT_EQ(Parse(nullptr), E_POINTER);
    EXPECT_EQ(Call([&](auto& mended) { return mended.Parse(empty.get(), nullptr, &detection); }), E_POINTER);
    EXPECT_TRUE(library.calls.empty());
}

TEST_F(Arming, ParseHandsTheLibrarysRefusalOn)
{
    EXPECT_EQ(Build(1033, empty.get()), S_OK);
    EXPECT_EQ(Parse(empty.get(), ResultBlock(1, 0, 59)), E_INVALIDARG);
    EXPECT_EQ(Parse(empty.get(), ResultBlock(1, 0, 60, 0)), E_INVALIDARG);
}

TEST_F(Arming, RepairOfParseInANewProcessArmsTheRecordedLanguageWithParsesStream)
{
    EXPECT_EQ(Build(1040, empty.get()), S_OK);
    NextProcess();
    EXPECT_EQ(Parse(StreamOf("VWOV mine").get()), S_OK);
    EXPECT_EQ(detection.languageId, 1040);
    EXPECT_EQ(detection.isUserMatch, TRUE);
    EXPECT_THAT(library.calls, ElementsAre("BuildArmingPatternData(1040)", "ParseDetectionResultData(1040)"));
}

TEST_F(Arming, RepairOfParseArmsForEachResultUntilWindowsDoes)
{
    EXPECT_EQ(Build(1040, empty.get()), S_OK);
    NextProcess();
    EXPECT_EQ(Parse(StreamOf("VWOV mine").get()), S_OK);
    EXPECT_EQ(Parse(empty.get()), S_OK);
    EXPECT_EQ(detection.isUserMatch, FALSE);
    EXPECT_EQ(Build(1033, empty.get()), S_OK);
    library.calls.clear();
    EXPECT_EQ(Parse(empty.get()), S_OK);
    EXPECT_THAT(library.calls, ElementsAre("ParseDetectionResultData(1033)"));
}

TEST_F(Arming, RepairOfParseWithoutARecordArmsTheOnlyConfiguredLanguage)
{
    library.languages = {1040};
    EXPECT_EQ(Parse(empty.get()), S_OK);
    EXPECT_EQ(detection.languageId, 1040);
    EXPECT_THAT(library.calls,
                ElementsAre("GetCapabilities()", "BuildArmingPatternData(1040)", "ParseDetectionResultData(1040)"));
    EXPECT_EQ(ReadNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage"), std::nullopt);
}

TEST_F(Arming, RepairOfParseWithoutAKnownLanguageFailsWithALine)
{
    for (const std::vector<uint16_t>& languages : {std::vector<uint16_t>{1033, 1040}, std::vector<uint16_t>{}})
    {
        library.languages = languages;
        EXPECT_EQ(Parse(empty.get()), GenFailure);
        EXPECT_EQ(detection.languageId, 0);
    }
    EXPECT_THAT(log.Read(), HasSubstr("1 adapter IThing::Method Nothing was armed yet"));
}

TEST_F(Arming, RepairOfParseFailsWhenTheLanguagesCannotBeRead)
{
    library.capabilitiesEnd = CapabilitiesEnd::NoConfiguration;
    EXPECT_EQ(Parse(empty.get()), GenFailure);
}

TEST_F(Arming, RepairOfParseFailsWhenItCannotArm)
{
    EXPECT_EQ(Build(1040, empty.get()), S_OK);
    NextProcess();
    for (const HRESULT result : {E_FAIL, E_INVALIDARG, E_OUTOFMEMORY, S_FALSE})
    {
        library.results["BuildArmingPatternData"] = result;
        library.calls.clear();
        EXPECT_EQ(Parse(empty.get()), GenFailure);
        EXPECT_THAT(library.calls, ElementsAre("BuildArmingPatternData(1040)"));
    }
}

TEST_F(Arming, RepairOfParseAfterAFailedArmingArmsWhatWasArmedBefore)
{
    EXPECT_EQ(Build(1040, StreamOf("VWOV mine").get()), S_OK);
    library.results["BuildArmingPatternData"] = E_OUTOFMEMORY; // when the library had noted that the model is nobody's
    EXPECT_EQ(Build(1033, empty.get()), E_OUTOFMEMORY);
    library.results.clear();
    library.calls.clear();
    EXPECT_EQ(Parse(StreamOf("VWOV mine").get()), S_OK);
    EXPECT_EQ(detection.languageId, 1040);
    EXPECT_EQ(detection.isUserMatch, TRUE);
    EXPECT_THAT(library.calls, ElementsAre("BuildArmingPatternData(1040)", "ParseDetectionResultData(1040)"));
}

TEST_F(Arming, RepairOfParseWithAnotherLibraryObjectArmsWhatThisProcessArmed)
{
    EXPECT_EQ(Build(1040, empty.get()), S_OK);
    WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", 1033); // another process's
    detector->RemoveUser();
    WriteNumber(HKEY_LOCAL_MACHINE, AdapterKey, u"UserRecordings", 7);
    ASSERT_EQ(detector->AddUser(), S_OK);
    library.calls.clear();
    EXPECT_EQ(Parse(empty.get()), S_OK);
    EXPECT_THAT(library.calls, ElementsAre("BuildArmingPatternData(1040)", "ParseDetectionResultData(1040)"));
}

TEST_F(Arming, AnotherKeywordIsHandedOnAsNone)
{
    EXPECT_EQ(Build(1033, empty.get()), S_OK);
    EXPECT_EQ(Parse(empty.get(), ResultBlock(2)), S_OK);
    EXPECT_EQ(detection.keywordId, 0U);
}

} // namespace ArmingTests
