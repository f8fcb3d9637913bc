#include "tests/library/adapter/Lines.h"
#include "tests/support/ArmingTest.h"
#include "tests/support/Table.h"

#include <gmock/gmock.h>

#include <functional>
#include <string_view>

namespace BuildArmingPatternDataTests
{

using namespace ArmingLines;
using namespace StreamLines;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using Bytes = std::vector<uint8_t>;

/// What happens to an arming of 1033 with a stream of nine bytes, for an adapter that has armed nothing before.
struct Trouble
{
    const char* description;
    std::function<void(ScriptedStream* stream, const TestConfiguration& configuration)> make;
    HRESULT result;
    std::string model; ///< the armed one; empty for no pattern
    bool userModelRecorded;
    uint16_t languageRecorded;
    Lines lines;
};

class BuildArmingPatternData : public ArmingTest, public testing::WithParamInterface<Trouble>
{
protected:
    ScriptedStream empty;
    ScriptedStream user{"VWOV user"};
};

/// A whole pattern but for the model.
Bytes Head(uint8_t size, uint8_t thresholdLow, uint8_t thresholdHigh, uint8_t modelSize)
{
    return {size,         0x00,          0x00, 0x00,                         // bytes in all
            0xA0,         0xA1,          0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, // detector
            0xA8,         0xA9,          0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF, //
            0x01,         0x00,          0x55, 0xAA,                         // signature
            thresholdLow, thresholdHigh, 0x00, 0x00,                         // in Q8
            0xFF,         0xFF,          0xFF, 0x7F,                         // limit
            0x00,         0x00,          0x00, 0x00, 0x00, 0x00, 0x00, 0x00, //
            modelSize,    0x00,          0x00, 0x00};
}

Bytes operator+(Bytes head, std::string_view model)
{
    head.insert(head.end(), model.begin(), model.end());
    return head;
}

/// The four bytes of the pattern's threshold field.
Bytes ThresholdBytes(const Bytes& pattern)
{
    return {pattern.begin() + 24, pattern.begin() + 28};
}

TEST_F(BuildArmingPatternData, ArmsTheUserModelOfTheStream)
{
    const ArmingOutcome outcome = Arm(&user, 1033);
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_EQ(outcome.pattern, Head(53, 0x80, 0, 9) + "VWOV user");
    ExpectRecord(true, 1033);
    EXPECT_EQ(logger.lines, UserArmed(1033, ModelRead(9), 10, 128, 9));
    EXPECT_THAT(user.calls,
                ElementsAre("Seek(0, SET, no position)", "Read(5)", "Seek(0, END)", "Seek(0, SET, no position)", "Read(9)"));
}

TEST_F(BuildArmingPatternData, ArmsThePredefinedModelOfTheLanguageWhenTheStreamIsEmpty)
{
    const ArmingOutcome outcome = Arm(&empty, 1040);
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_EQ(outcome.pattern, Head(57, 0x40, 1, 13) + "firmware 1040");
    ExpectRecord(false, 1040);
    EXPECT_EQ(logger.lines, PredefinedArmed(1040, 20, 320, 13));
    EXPECT_THAT(empty.calls, ElementsAre("Seek(0, SET, no position)", "Read(5)"));
}

TEST_F(BuildArmingPatternData, StreamThatDoesNotBeginWithTheMagicArmsThePredefinedModel)
{
    for (const std::string_view content : {"V", "VWO", "VWOX user", "vwov user", " VWOV user"})
    {
        SCOPED_TRACE(content);
        ASSERT_EQ(Arm(&user, 1033).result, S_OK);
        EXPECT_EQ(Armed(content, 1033), "firmware 1033");
        ExpectRecord(false, 1033);
    }
}

TEST_F(BuildArmingPatternData, CopiesLargeModelsUnchanged)
{
    std::string model = "VWOV";
    model.resize(1U << 20);
    for (std::size_t i = 4; i < model.size(); ++i)
    {
        model[i] = static_cast<char>(i * 7 + i / 256);
    }
    EXPECT_TRUE(Armed(model, 1033) == model);
    configuration.WriteFile("fw_1033.bin", model);
    EXPECT_TRUE(Armed("", 1033) == model);
}

TEST_F(BuildArmingPatternData, ThresholdIsStoredBitForBitAndLoggedUnsigned)
{
    struct Case
    {
        const char* file;
        Bytes bytes;
        uint32_t logged;
    };
    for (const Case& row :
         {Case{"-1.3\n", {0xB3, 0xFE, 0xFF, 0xFF}, 4294966963}, Case{"0\n", {0, 0, 0, 0}, 0},
          Case{"-0.00390625\n", {0xFF, 0xFF, 0xFF, 0xFF}, 4294967295}, Case{"8388608\n", {0xFF, 0xFF, 0xFF, 0x7F}, 2147483647},
          Case{"-8388608\n", {0x00, 0x00, 0x00, 0x80}, 2147483648}})
    {
        SCOPED_TRACE(row.file);
        configuration.WriteFile("kpd_user_1033.txt", row.file);
        configuration.WriteFile("kpd_pre_1033.txt", "2\n");
        EXPECT_EQ(ThresholdBytes(Arm(&user, 1033).pattern), row.bytes);
        EXPECT_THAT(logger.Take(), Contains(Parameters(10, row.logged, 9)));

        configuration.WriteFile("kpd_pre_1033.txt", row.file);
        configuration.WriteFile("kpd_user_1033.txt", "2\n");
        EXPECT_EQ(ThresholdBytes(Arm(&empty, 1033).pattern), row.bytes);
        EXPECT_THAT(logger.Take(), Contains(Parameters(10, row.logged, 13)));
    }
}

TEST_F(BuildArmingPatternData, QualityThresholdIsOnlyLogged)
{
    const Bytes before = Arm(&user, 1033).pattern;
    configuration.ReplaceInXml("qualityThreshold=\"10\"", "qualityThreshold=\"-5\"");
    EXPECT_EQ(Arm(&user, 1033).pattern, before);
    EXPECT_THAT(logger.lines, Contains(Parameters(4294967291, 128, 9)));
}

TEST_F(BuildArmingPatternData, EveryCallReadsEverythingAnew)
{
    EXPECT_EQ(Armed("", 1033), "firmware 1033");
    configuration.WriteFile("fw_1033.bin", "other");
    EXPECT_EQ(Armed("", 1033), "other");
    EXPECT_EQ(Armed("VWOV user", 1033), "VWOV user");
    ExpectRecord(true, 1033);
    EXPECT_EQ(Armed("", 1040), "firmware 1040");
    ExpectRecord(false, 1040);
}

TEST_F(BuildArmingPatternData, MissingArgumentIsRefusedBeforeAnythingIsDone)
{
    struct Case
    {
        const char* description;
        bool stream, selectors;
        uint32_t count;
        bool pattern;
        HRESULT result;
        LogLine line;
    };
    const LogLine noStream = Log(1, 0, "[BuildArmingPatternData] Validation error, user model data is null.");
    const LogLine noSelectors = Log(1, 0, "[BuildArmingPatternData] Validation error, keyword selectors are null.");
    const LogLine noPattern = Log(1, 0, "[BuildArmingPatternData] Validation error, pattern data is null.");
    const auto tooMany = [](const std::string& count) {
        return LogFormat(1, 0,
                         "[BuildArmingPatternData] Validation error, supported number of keyword selectors: 1, actual number of "
                         "keyword selectors: " +
                             count + ".");
    };
    for (const Case& row : {Case{"no stream", false, true, 1, true, E_POINTER, noStream},
                            Case{"nothing at all", false, false, 0, false, E_POINTER, noStream},
                            Case{"no selectors", true, false, 1, true, E_POINTER, noSelectors},
                            Case{"count 0", true, true, 0, true, E_POINTER, noSelectors},
                            Case{"no selectors and count 0", true, false, 0, true, E_POINTER, noSelectors},
                            Case{"no selectors but count 2", true, false, 2, true, E_POINTER, noSelectors},
                            Case{"count 2", true, true, 2, true, E_INVALIDARG, tooMany("2")},
                            Case{"largest count", true, true, 0xFFFFFFFF, true, E_INVALIDARG, tooMany("4294967295")},
                            Case{"count 2 and no pattern", true, true, 2, false, E_INVALIDARG, tooMany("2")},
                            Case{"no pattern", true, true, 1, false, E_POINTER, noPattern}})
    {
        SCOPED_TRACE(row.description);
        const KeywordSelector selector{1, 1033};
        uint8_t leftAlone = 0;
        uint8_t* block = &leftAlone;
        EXPECT_EQ(adapter.BuildArmingPatternData(row.stream ? &user : nullptr, row.selectors ? &selector : nullptr, row.count,
                                                 row.pattern ? &block : nullptr),
                  row.result);
        EXPECT_EQ(block, &leftAlone);
        EXPECT_EQ(logger.Take(), Entry + row.line);
        EXPECT_THAT(user.calls, IsEmpty());
        ExpectRecord(false, 0);
    }
}

TEST_F(BuildArmingPatternData, FailedLanguageCheckIsAFailure)
{
    configuration.WriteXml("<keywords");
    ExpectNotArmed(E_FAIL, &user, {1, 1033});
    EXPECT_THAT(user.calls, IsEmpty());
    ExpectRecord(false, 0);
    EXPECT_EQ(logger.lines,
              Begun(1033) +
                  ConfigurationLines::NotLoaded("IsLanguageSupported", configuration.Path(), "XML_ERROR_PARSING_ELEMENT") +
                  LanguageNotChecked);
}

TEST_F(BuildArmingPatternData, OtherKeywordIdOrLanguageIsRefusedWithTheKeywordLineKept)
{
    for (const KeywordSelector& selector :
         {KeywordSelector{0, 1033}, KeywordSelector{2, 1033}, KeywordSelector{256, 1033}, KeywordSelector{0x10001, 1033},
          KeywordSelector{0xFFFFFFFF, 1033}, KeywordSelector{1, 0}, KeywordSelector{1, 1031}, KeywordSelector{1, 0xFFFF}})
    {
        const auto keywordId = static_cast<int>(selector.keywordId);
        SCOPED_TRACE(testing::Message() << keywordId << " of " << selector.languageId);
        ExpectNotArmed(E_INVALIDARG, &user, selector);
        EXPECT_EQ(logger.Take(), Begun(selector.languageId) + InvalidKeyword(keywordId, selector.languageId));
        EXPECT_THAT(user.calls, IsEmpty());
        ExpectRecord(false, 0);
    }
}

TEST_P(BuildArmingPatternData, TroubleHasItsResultLinesAndRecord)
{
    const Trouble& trouble = GetParam();
    trouble.make(&user, configuration);
    const ArmingOutcome outcome = Arm(&user, 1033);
    EXPECT_EQ(outcome.result, trouble.result);
    EXPECT_EQ(outcome.pattern.empty() ? "" : outcome.Model(), trouble.model);
    ExpectRecord(trouble.userModelRecorded, trouble.languageRecorded);
    EXPECT_EQ(logger.lines, trouble.lines);
}

/// The n-th call of a stream operation has this result.
auto Answer(const char* operation, int n, HRESULT result)
{
    return [=](ScriptedStream* stream, const TestConfiguration&) {
        stream->Answer(operation, n, result);
    };
}

/// Reads move six bytes at most.
auto ReadShort(HRESULT result)
{
    return [=](ScriptedStream* stream, const TestConfiguration&) {
        stream->mostBytes = 6;
        stream->shortResult = result;
    };
}

auto Remove(const char* file)
{
    return [=](ScriptedStream*, const TestConfiguration& configuration) {
        configuration.RemoveFile(file);
    };
}

INSTANTIATE_TEST_SUITE_P(
    Troubles, BuildArmingPatternData,
    testing::Values(
        Trouble{"seek of the check fails", Answer("Seek", 1, STG_E_ACCESSDENIED), S_OK, "firmware 1033", false, 1033,
                Begun(1033) + CheckSeekFailed(STG_E_ACCESSDENIED) + UsingPredefined + Parameters(10, 192, 13) + Success},
        Trouble{"read of the check fails", Answer("Read", 1, STG_E_ACCESSDENIED), S_OK, "firmware 1033", false, 1033,
                Begun(1033) + CheckReadFailed(STG_E_ACCESSDENIED) + UsingPredefined + Parameters(10, 192, 13) + Success},
        Trouble{"seek to the end fails", Answer("Seek", 2, STG_E_REVERTED), STG_E_REVERTED, "", false, 0,
                Choosing(1033, true) + GetEntry + EndNotFound + UserModelFailed},
        Trouble{"seek to the beginning fails", Answer("Seek", 3, STG_E_REVERTED), STG_E_REVERTED, "", false, 0,
                Choosing(1033, true) + GetEntry + BeginningNotFound + UserModelFailed},
        Trouble{"short read that claims success arms zeros kept", ReadShort(S_OK), S_OK, std::string("VWOV u\0\0\0", 9), true,
                1033, UserArmed(1033, ModelNotRead("0", 6, 9), 10, 128, 9)},
        Trouble{"no user threshold", Remove("kpd_user_1033.txt"), E_FAIL, "", true, 0,
                Choosing(1033, true) + ModelRead(9) + DynamicSize(9) + ConfigurationLines::ThresholdNotOpened +
                    ConfigurationLines::ThresholdNotRead + ParametersFailed}),
    RowName());

// This loses the model's block: see leaks.supp.
TEST_F(BuildArmingPatternData, ReadThatIsNoPlainSuccessFailsAndItsBlockIsDroppedKept)
{
    struct Case
    {
        const char* description;
        std::function<void(ScriptedStream*, const TestConfiguration&)> make;
        HRESULT result;
        Lines reading;
    };
    const auto readWhole = [](ScriptedStream* stream, const TestConfiguration&) {
        stream->Answer("Read", 2, S_FALSE);
        stream->claimedCount = 9;
    };
    for (const Case& row : {Case{"short and positive", ReadShort(S_FALSE), S_FALSE, ModelNotRead("1", 6, 9)},
                            Case{"whole and positive", readWhole, S_FALSE, ModelRead(9)},
                            Case{"failed", Answer("Read", 2, STG_E_READFAULT), STG_E_READFAULT, ModelNotRead("8003001e", 0, 9)}})
    {
        SCOPED_TRACE(row.description);
        ScriptedStream stream("VWOV user");
        row.make(&stream, configuration);
        ExpectNotArmed(row.result, &stream, {1, 1033});
        ExpectRecord(false, 0);
        EXPECT_EQ(logger.Take(), Choosing(1033, true) + row.reading + UserModelFailed);
    }
}

TEST_F(BuildArmingPatternData, PositiveResultOfTheCheckArmsTheUserModel)
{
    ScriptedStream stream("VWOV");
    stream.shortResult = S_FALSE;
    EXPECT_EQ(Arm(&stream, 1033).Model(), "VWOV");
    ExpectRecord(true, 1033);
}

TEST_F(BuildArmingPatternData, PredefinedModelThatCannotBeLoadedGivesTheLoadsResult)
{
    Armed("VWOV user", 1040);
    logger.Take();
    configuration.RemoveFile("fw_1033.bin");
    ExpectNotArmed(E_FAIL, &empty, {1, 1033});
    EXPECT_EQ(logger.lines, Choosing(1033, false) + ConfigurationLines::FileNotOpened("fw_1033.bin") + PredefinedModelFailed);
    ExpectRecord(true, 1040);
}

TEST_F(BuildArmingPatternData, FailedParametersLeaveTheLanguageButNotTheModelKind)
{
    Armed("VWOV user", 1033);
    configuration.RemoveFile("kpd_user_1040.txt");
    logger.Take();
    ExpectNotArmed(E_FAIL, &empty, {1, 1040});
    ExpectRecord(false, 1033);
    EXPECT_EQ(logger.Take(), Choosing(1040, false) + ConfigurationLines::ThresholdNotOpened +
                                 ConfigurationLines::ThresholdNotRead + ParametersFailed);
    ExpectNotArmed(E_FAIL, &user, {1, 1040});
    ExpectRecord(true, 1033);
}

TEST_F(BuildArmingPatternData, RefusedCallLeavesTheArmingRecord)
{
    Armed("VWOV user", 1040);
    ExpectNotArmed(E_INVALIDARG, &empty, {1, 1031});
    ExpectNotArmed(E_INVALIDARG, &empty, {2, 1033});
    ExpectNotArmed(E_POINTER, nullptr, {1, 1033});
    ExpectRecord(true, 1040);
}

TEST_F(BuildArmingPatternData, LanguageThatVanishesBeforeThePredefinedModelIsReadGivesABareHead)
{
    logger.onLine = [this](const LogLine& line) {
        if (line == UsingPredefined)
        {
            configuration.WriteLanguages(TestConfiguration::LanguageElement("1040", 20));
        }
    };
    const ArmingOutcome outcome = Arm(&empty, 1033);
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_EQ(outcome.pattern, Head(44, 0, 0, 0));
    ExpectRecord(false, 1033);
    EXPECT_EQ(logger.lines, PredefinedArmed(1033, 0, 0, 0));
}

TEST_F(BuildArmingPatternData, LanguageThatVanishesAfterTheUserModelIsReadGivesAThresholdOfZero)
{
    logger.onLine = [this](const LogLine& line) {
        if (line == DynamicSize(9))
        {
            configuration.WriteLanguages("");
        }
    };
    EXPECT_EQ(Arm(&user, 1033).pattern, Head(53, 0, 0, 9) + "VWOV user");
    ExpectRecord(true, 1033);
    EXPECT_EQ(logger.lines, UserArmed(1033, ModelRead(9), 0, 0, 9));
}

TEST_F(BuildArmingPatternData, StreamOf4GBGivesTheModelThatTheLow32BitsOfItsLengthTell)
{
    for (const auto& [end, model] : {std::pair{uint64_t{0x1'0000'0000}, ""}, {uint64_t{0x1'0000'0004}, "VWOV"}})
    {
        SCOPED_TRACE(end);
        ScriptedStream stream("VWOV user");
        stream.reportedEnd = end;
        const ArmingOutcome outcome = Arm(&stream, 1033);
        EXPECT_EQ(outcome.result, S_OK);
        EXPECT_EQ(outcome.Model(), model);
        ExpectRecord(true, 1033);
    }
}

TEST_F(BuildArmingPatternData, ModelWhosePatternDoesNotFit32BitsIsOutOfMemory)
{
    // The stream claims that it delivered everything, so nobody touches the four gigabytes.
    for (const uint32_t size : {0xFFFFFFD4U, 0xFFFFFFF0U, 0xFFFFFFFFU})
    {
        SCOPED_TRACE(size);
        ScriptedStream stream("VWOV user");
        stream.reportedEnd = size;
        stream.claimedCount = size;
        ExpectNotArmed(E_OUTOFMEMORY, &stream, {1, 1033});
        ExpectRecord(true, 0);
        EXPECT_EQ(logger.Take(), Choosing(1033, true) + ModelRead(size) + DynamicSize(size) + WithoutMemory);
    }
}

} // namespace BuildArmingPatternDataTests
