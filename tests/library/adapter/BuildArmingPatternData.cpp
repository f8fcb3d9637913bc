#include "tests/support/ArmingTest.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

#include <string_view>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

const LogLine Entry = Log(4, 0, "[BuildArmingPatternData] Entry.");
const LogLine UsingPredefined = Log(4, 0, "[BuildArmingPatternData] Using predefined model.");
const LogLine UsingUser = Log(4, 0, "[BuildArmingPatternData] Using user model.");
const LogLine UserModelFailed = Log(1, 0, "[BuildArmingPatternData] Failed to get user model.");
const LogLine PredefinedModelFailed = Log(1, 0, "[BuildArmingPatternData] Failed to get predefined model.");
const LogLine ParametersFailed = LogWithStatus(1, 0, "[BuildArmingPatternData] Failed to load configuration parameters.", E_FAIL);
const LogLine PatternMemoryFailed = Log(1, 0, "[BuildArmingPatternData] Failed to allocate memory for pattern data.");
const LogLine Success = Log(4, 0, "[BuildArmingPatternData] Exit, success.");

const LogLine CheckEntry = Log(4, 1, "[CheckIStreamForUserModel] Entry.");
const LogLine NoModel = Log(5, 1, "[CheckIStreamForUserModel] There is no user model data in IStream.");
const LogLine CheckExit = Log(4, 1, "[CheckIStreamForUserModel] Exit.");
const LogLine GetEntry = Log(4, 1, "[GetUserModelFromIStream] Entry.");
const LogLine GetExit = Log(4, 1, "[GetUserModelFromIStream] Exit.");

LogLine ForLanguage(int languageId)
{
    return LogFormat(4, 0, "[BuildArmingPatternData] Building package for language: " + std::to_string(languageId) + ".");
}

LogLine DynamicSize(uint32_t size)
{
    return LogFormat(5, 0, "[BuildArmingPatternData] Dynamic model data size: " + std::to_string(size) + ".");
}

LogLine Parameters(uint32_t quality, uint32_t threshold, uint32_t modelSize)
{
    return LogFormat(5, 0,
                     "[BuildArmingPatternData] Detection parameters: Quality threshold(" + std::to_string(quality) + "), KPD(" +
                         std::to_string(threshold) + "), model_size(" + std::to_string(modelSize) + ").");
}

LogLine InvalidKeyword(int keywordId, int languageId)
{
    return LogFormat(1, 0,
                     "[BuildArmingPatternData] Validation error, expected keyword ID: 1, actual keyword ID: " +
                         std::to_string(keywordId) + ". Language ID: " + std::to_string(languageId) + ".");
}

LogLine ExpectedSize(uint32_t size)
{
    return LogFormat(5, 1, "[GetUserModelFromIStream] Expected user model size from IStream: " + std::to_string(size) + ".");
}

LogLine ReadSuccess(uint32_t size)
{
    return LogFormat(5, 1,
                     "[GetUserModelFromIStream] User model data read successfully. Data size: " + std::to_string(size) + ".");
}

LogLine ReadFailure(const std::string& status, uint32_t count, uint32_t size)
{
    return LogFormat(2, 1,
                     "[GetUserModelFromIStream] Reading user model data failed. Status: 0x" + status +
                         " . Data size: " + std::to_string(count) + " , expected: " + std::to_string(size) + ".");
}

using Bytes = std::vector<uint8_t>;

/// The four bytes of the pattern's threshold field.
Bytes ThresholdBytes(const Bytes& pattern)
{
    return {pattern.begin() + 24, pattern.begin() + 28};
}

/// The model that follows the pattern's head.
std::string ModelOf(const Bytes& pattern)
{
    return {pattern.begin() + 44, pattern.end()};
}

class BuildArmingPatternData : public ArmingTest
{
protected:
    void ExpectArmed(bool userModel, uint16_t languageId)
    {
        EXPECT_EQ(PrivateAccess::UserModelArmed(adapter), userModel);
        EXPECT_EQ(PrivateAccess::ArmedLanguageId(adapter), languageId);
    }

    ScriptedStream empty;
    ScriptedStream user{"VWOV user"};
};

TEST_F(BuildArmingPatternData, ArmsTheUserModelOfTheStream)
{
    const ArmingOutcome outcome = Arm(&user, 1033);
    EXPECT_EQ(outcome.result, S_OK);
    const Bytes expected{0x35, 0x00, 0x00, 0x00,                         // 53 bytes in all
                         0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, // detector
                         0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF, //
                         0x01, 0x00, 0x55, 0xAA,                         // signature
                         0x80, 0x00, 0x00, 0x00,                         // 0.5
                         0xFF, 0xFF, 0xFF, 0x7F,                         // limit
                         0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, //
                         0x09, 0x00, 0x00, 0x00,                         // bytes of model
                         'V',  'W',  'O',  'V',  ' ',  'u',  's',  'e',  'r'};
    EXPECT_EQ(outcome.pattern, expected);
    ExpectArmed(true, 1033);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, ForLanguage(1033), CheckEntry, CheckExit, UsingUser, GetEntry, ExpectedSize(9),
                                          ReadSuccess(9), GetExit, DynamicSize(9), Parameters(10, 128, 9), Success));
    EXPECT_THAT(user.calls,
                ElementsAre("Seek(0, SET, no position)", "Read(5)", "Seek(0, END)", "Seek(0, SET, no position)", "Read(9)"));
}

TEST_F(BuildArmingPatternData, ArmsThePredefinedModelOfTheLanguageWhenTheStreamIsEmpty)
{
    const ArmingOutcome outcome = Arm(&empty, 1040);
    EXPECT_EQ(outcome.result, S_OK);
    const Bytes expected{0x39, 0x00, 0x00, 0x00,                         // 57 bytes in all
                         0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, // detector
                         0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF, //
                         0x01, 0x00, 0x55, 0xAA,                         // signature
                         0x40, 0x01, 0x00, 0x00,                         // 1.25
                         0xFF, 0xFF, 0xFF, 0x7F,                         // limit
                         0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, //
                         0x0D, 0x00, 0x00, 0x00,                         // bytes of model
                         'f',  'i',  'r',  'm',  'w',  'a',  'r',  'e',  ' ', '1', '0', '4', '0'};
    EXPECT_EQ(outcome.pattern, expected);
    ExpectArmed(false, 1040);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, ForLanguage(1040), CheckEntry, NoModel, CheckExit, UsingPredefined,
                                          Parameters(20, 320, 13), Success));
    EXPECT_THAT(empty.calls, ElementsAre("Seek(0, SET, no position)", "Read(5)"));
}

TEST_F(BuildArmingPatternData, StreamThatDoesNotBeginWithTheMagicArmsThePredefinedModel)
{
    for (const std::string_view content : {"V", "VWO", "VWOX user", "vwov user", " VWOV user"})
    {
        SCOPED_TRACE(content);
        ASSERT_EQ(Arm(&user, 1033).result, S_OK);
        ScriptedStream stream(content);
        const ArmingOutcome outcome = Arm(&stream, 1033);
        EXPECT_EQ(outcome.result, S_OK);
        EXPECT_EQ(ModelOf(outcome.pattern), "firmware 1033");
        ExpectArmed(false, 1033);
    }
}

TEST_F(BuildArmingPatternData, StreamThatCannotBeCheckedArmsThePredefinedModel)
{
    for (const std::string operation : {"Seek", "Read"})
    {
        SCOPED_TRACE(operation);
        ScriptedStream stream("VWOV user");
        stream.Answer(operation, 1, STG_E_ACCESSDENIED);
        const ArmingOutcome outcome = Arm(&stream, 1033);
        EXPECT_EQ(outcome.result, S_OK);
        EXPECT_EQ(ModelOf(outcome.pattern), "firmware 1033");
        ExpectArmed(false, 1033);
        const std::string line =
            operation == "Seek" ? "Failed to set pointer to the beginning of IStream." : "Failed to read from IStream.";
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, ForLanguage(1033), CheckEntry,
                                               LogWithStatus(2, 1, "[CheckIStreamForUserModel] " + line, STG_E_ACCESSDENIED),
                                               UsingPredefined, Parameters(10, 192, 13), Success));
    }
}

TEST_F(BuildArmingPatternData, PositiveResultOfTheCheckArmsTheUserModel)
{
    ScriptedStream stream("VWOV");
    stream.shortResult = S_FALSE;
    const ArmingOutcome outcome = Arm(&stream, 1033);
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_EQ(ModelOf(outcome.pattern), "VWOV");
    ExpectArmed(true, 1033);
}

TEST_F(BuildArmingPatternData, CopiesLargeModelsUnchanged)
{
    std::string model = "VWOV";
    model.resize(1U << 20);
    for (std::size_t i = 4; i < model.size(); ++i)
    {
        model[i] = static_cast<char>(i * 7 + i / 256);
    }
    ScriptedStream stream(model);
    EXPECT_TRUE(ModelOf(Arm(&stream, 1033).pattern) == model);
    configuration.WriteFile("fw_1033.bin", model);
    EXPECT_TRUE(ModelOf(Arm(&empty, 1033).pattern) == model);
}

TEST_F(BuildArmingPatternData, ThresholdIsStoredBitForBitAndLoggedUnsigned)
{
    struct Case
    {
        const char* file;
        Bytes bytes;
        uint32_t logged;
    };
    for (const Case& one :
         {Case{"-1.3\n", {0xB3, 0xFE, 0xFF, 0xFF}, 4294966963}, Case{"0\n", {0, 0, 0, 0}, 0},
          Case{"-0.00390625\n", {0xFF, 0xFF, 0xFF, 0xFF}, 4294967295}, Case{"8388608\n", {0xFF, 0xFF, 0xFF, 0x7F}, 2147483647},
          Case{"-8388608\n", {0x00, 0x00, 0x00, 0x80}, 2147483648}})
    {
        SCOPED_TRACE(one.file);
        configuration.WriteFile("kpd_user_1033.txt", one.file);
        configuration.WriteFile("kpd_pre_1033.txt", "2\n");
        EXPECT_EQ(ThresholdBytes(Arm(&user, 1033).pattern), one.bytes);
        EXPECT_THAT(logger.Take(), testing::Contains(Parameters(10, one.logged, 9)));

        configuration.WriteFile("kpd_pre_1033.txt", one.file);
        configuration.WriteFile("kpd_user_1033.txt", "2\n");
        EXPECT_EQ(ThresholdBytes(Arm(&empty, 1033).pattern), one.bytes);
        EXPECT_THAT(logger.Take(), testing::Contains(Parameters(10, one.logged, 13)));
    }
}

TEST_F(BuildArmingPatternData, QualityThresholdIsOnlyLogged)
{
    const Bytes before = Arm(&user, 1033).pattern;
    logger.Take();
    configuration.ReplaceInXml("qualityThreshold=\"10\"", "qualityThreshold=\"-5\"");
    EXPECT_EQ(Arm(&user, 1033).pattern, before);
    EXPECT_THAT(logger.lines, testing::Contains(Parameters(4294967291, 128, 9)));
}

TEST_F(BuildArmingPatternData, EveryCallReadsEverythingAnew)
{
    EXPECT_EQ(ModelOf(Arm(&empty, 1033).pattern), "firmware 1033");
    configuration.WriteFile("fw_1033.bin", "other");
    EXPECT_EQ(ModelOf(Arm(&empty, 1033).pattern), "other");
    EXPECT_EQ(ModelOf(Arm(&user, 1033).pattern), "VWOV user");
    ExpectArmed(true, 1033);
    EXPECT_EQ(ModelOf(Arm(&empty, 1040).pattern), "firmware 1040");
    ExpectArmed(false, 1040);
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
    for (const Case& one : {Case{"no stream", false, true, 1, true, E_POINTER, noStream},
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
        SCOPED_TRACE(one.description);
        const KeywordSelector selector{1, 1033};
        uint8_t leftAlone = 0;
        uint8_t* block = &leftAlone;
        EXPECT_EQ(adapter.BuildArmingPatternData(one.stream ? &user : nullptr, one.selectors ? &selector : nullptr, one.count,
                                                 one.pattern ? &block : nullptr),
                  one.result);
        EXPECT_EQ(block, &leftAlone);
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, one.line));
        EXPECT_THAT(user.calls, IsEmpty());
        ExpectArmed(false, 0);
    }
}

TEST_F(BuildArmingPatternData, FailedLanguageCheckIsAFailure)
{
    configuration.WriteXml("<keywords");
    const ArmingOutcome outcome = Arm(&user, 1033);
    EXPECT_EQ(outcome.result, E_FAIL);
    EXPECT_THAT(outcome.pattern, IsEmpty());
    EXPECT_THAT(user.calls, IsEmpty());
    ExpectArmed(false, 0);
    ASSERT_EQ(logger.lines.size(), 4U);
    EXPECT_EQ(logger.lines[0], Entry);
    EXPECT_EQ(logger.lines[1], ForLanguage(1033));
    EXPECT_THAT(logger.lines[2].text, testing::StartsWith("[IsLanguageSupported] Failed to load configuration file: "));
    EXPECT_EQ(logger.lines[3], Log(1, 0, "[BuildArmingPatternData] Failed to check if language is supported."));
}

TEST_F(BuildArmingPatternData, OtherKeywordIdIsRefused)
{
    for (const uint32_t keywordId : {0U, 2U, 256U, 0x10001U, 0xFFFFFFFFU})
    {
        SCOPED_TRACE(keywordId);
        const ArmingOutcome outcome = Arm(&user, KeywordSelector{keywordId, 1033});
        EXPECT_EQ(outcome.result, E_INVALIDARG);
        EXPECT_THAT(outcome.pattern, IsEmpty());
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, ForLanguage(1033), InvalidKeyword(static_cast<int>(keywordId), 1033)));
        EXPECT_THAT(user.calls, IsEmpty());
        ExpectArmed(false, 0);
    }
}

TEST_F(BuildArmingPatternData, UnsupportedLanguageIsReportedWithTheKeywordLineKept)
{
    for (const uint16_t languageId : {uint16_t{0}, uint16_t{1031}, uint16_t{0xFFFF}})
    {
        SCOPED_TRACE(languageId);
        const ArmingOutcome outcome = Arm(&user, languageId);
        EXPECT_EQ(outcome.result, E_INVALIDARG);
        EXPECT_THAT(outcome.pattern, IsEmpty());
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, ForLanguage(languageId), InvalidKeyword(1, languageId)));
        EXPECT_THAT(user.calls, IsEmpty());
        ExpectArmed(false, 0);
    }
}

TEST_F(BuildArmingPatternData, PredefinedModelThatCannotBeLoadedGivesTheLoadsResult)
{
    ASSERT_EQ(Arm(&user, 1040).result, S_OK);
    logger.Take();
    configuration.RemoveFile("fw_1033.bin");
    const ArmingOutcome outcome = Arm(&empty, 1033);
    EXPECT_EQ(outcome.result, E_FAIL);
    EXPECT_THAT(outcome.pattern, IsEmpty());
    EXPECT_THAT(logger.lines,
                ElementsAre(Entry, ForLanguage(1033), CheckEntry, NoModel, CheckExit, UsingPredefined,
                            LogFormat(2, 1, "[LoadFile] Failed to load file: fw_1033.bin."), PredefinedModelFailed));
    ExpectArmed(true, 1040);
}

TEST_F(BuildArmingPatternData, FailedSeekOfTheUserModelGivesItsCode)
{
    struct Case
    {
        int seek;
        const char* line;
    };
    for (const Case& one : {Case{2, "[GetUserModelFromIStream] Failed to set pointer to end of stream."},
                            Case{3, "[GetUserModelFromIStream] Failed set pointer to beggining of stream"}})
    {
        SCOPED_TRACE(one.line);
        ScriptedStream stream("VWOV user");
        stream.Answer("Seek", one.seek, STG_E_REVERTED);
        const ArmingOutcome outcome = Arm(&stream, 1033);
        EXPECT_EQ(outcome.result, STG_E_REVERTED);
        EXPECT_THAT(outcome.pattern, IsEmpty());
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, ForLanguage(1033), CheckEntry, CheckExit, UsingUser, GetEntry,
                                               Log(2, 1, one.line), UserModelFailed));
        ExpectArmed(false, 0);
    }
}

TEST_F(BuildArmingPatternData, ShortReadThatClaimsSuccessArmsTheModelWithZerosKept)
{
    ScriptedStream stream("VWOV user");
    stream.mostBytes = 6;
    const ArmingOutcome outcome = Arm(&stream, 1033);
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_EQ(ModelOf(outcome.pattern), std::string("VWOV u\0\0\0", 9));
    ExpectArmed(true, 1033);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, ForLanguage(1033), CheckEntry, CheckExit, UsingUser, GetEntry, ExpectedSize(9),
                                          ReadFailure("0", 6, 9), GetExit, DynamicSize(9), Parameters(10, 128, 9), Success));
}

// The three tests that follow lose the model's block: see leaks.supp.

TEST_F(BuildArmingPatternData, ShortReadWithAPositiveResultFailsAndItsBlockIsDroppedKept)
{
    ScriptedStream stream("VWOV user");
    stream.mostBytes = 6;
    stream.shortResult = S_FALSE;
    const ArmingOutcome outcome = Arm(&stream, 1033);
    EXPECT_EQ(outcome.result, S_FALSE);
    EXPECT_THAT(outcome.pattern, IsEmpty());
    ExpectArmed(false, 0);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, ForLanguage(1033), CheckEntry, CheckExit, UsingUser, GetEntry, ExpectedSize(9),
                                          ReadFailure("1", 6, 9), GetExit, UserModelFailed));
}

TEST_F(BuildArmingPatternData, WholeReadWithAPositiveResultFailsAndItsBlockIsDroppedKept)
{
    ScriptedStream stream("VWOV user");
    stream.Answer("Read", 2, S_FALSE);
    stream.claimedCount = 9;
    const ArmingOutcome outcome = Arm(&stream, 1033);
    EXPECT_EQ(outcome.result, S_FALSE);
    EXPECT_THAT(outcome.pattern, IsEmpty());
    ExpectArmed(false, 0);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, ForLanguage(1033), CheckEntry, CheckExit, UsingUser, GetEntry, ExpectedSize(9),
                                          ReadSuccess(9), GetExit, UserModelFailed));
}

TEST_F(BuildArmingPatternData, FailedReadGivesItsCodeAndItsBlockIsDroppedKept)
{
    ScriptedStream stream("VWOV user");
    stream.Answer("Read", 2, STG_E_READFAULT);
    const ArmingOutcome outcome = Arm(&stream, 1033);
    EXPECT_EQ(outcome.result, STG_E_READFAULT);
    EXPECT_THAT(outcome.pattern, IsEmpty());
    ExpectArmed(false, 0);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, ForLanguage(1033), CheckEntry, CheckExit, UsingUser, GetEntry, ExpectedSize(9),
                                          ReadFailure("8003001e", 0, 9), GetExit, UserModelFailed));
}

TEST_F(BuildArmingPatternData, FailedParametersLeaveTheLanguageButNotTheModelKind)
{
    ASSERT_EQ(Arm(&empty, 1033).result, S_OK);
    configuration.RemoveFile("kpd_user_1040.txt");
    logger.Take();

    const ArmingOutcome withUserModel = Arm(&user, 1040);
    EXPECT_EQ(withUserModel.result, E_FAIL);
    EXPECT_THAT(withUserModel.pattern, IsEmpty());
    ExpectArmed(true, 1033);
    const LogLine fileFailed = Log(2, 1, "[ReadThresholdFile] Failed to open threshold file.");
    const LogLine readFailed = Log(2, 1, "[GetDetectionParameters] Failed to read threshold file.");
    EXPECT_THAT(logger.Take(), ElementsAre(Entry, ForLanguage(1040), CheckEntry, CheckExit, UsingUser, GetEntry, ExpectedSize(9),
                                           ReadSuccess(9), GetExit, DynamicSize(9), fileFailed, readFailed, ParametersFailed));

    const ArmingOutcome withPredefinedModel = Arm(&empty, 1040);
    EXPECT_EQ(withPredefinedModel.result, E_FAIL);
    EXPECT_THAT(withPredefinedModel.pattern, IsEmpty());
    ExpectArmed(false, 1033);
    EXPECT_THAT(logger.Take(), ElementsAre(Entry, ForLanguage(1040), CheckEntry, NoModel, CheckExit, UsingPredefined, fileFailed,
                                           readFailed, ParametersFailed));
}

TEST_F(BuildArmingPatternData, RefusedCallLeavesTheArmingRecord)
{
    ASSERT_EQ(Arm(&user, 1040).result, S_OK);
    EXPECT_EQ(Arm(&empty, 1031).result, E_INVALIDARG);
    EXPECT_EQ(Arm(&empty, KeywordSelector{2, 1033}).result, E_INVALIDARG);
    EXPECT_EQ(Arm(nullptr, 1033).result, E_POINTER);
    ExpectArmed(true, 1040);
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
    const Bytes expected{0x2C, 0x00, 0x00, 0x00,                         // 44 bytes in all
                         0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, // detector
                         0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF, //
                         0x01, 0x00, 0x55, 0xAA,                         // signature
                         0x00, 0x00, 0x00, 0x00,                         // threshold: none
                         0xFF, 0xFF, 0xFF, 0x7F,                         // limit
                         0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, //
                         0x00, 0x00, 0x00, 0x00};                        // no model
    EXPECT_EQ(outcome.pattern, expected);
    ExpectArmed(false, 1033);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, ForLanguage(1033), CheckEntry, NoModel, CheckExit, UsingPredefined,
                                          Parameters(0, 0, 0), Success));
}

TEST_F(BuildArmingPatternData, LanguageThatVanishesAfterTheUserModelIsReadGivesAThresholdOfZero)
{
    logger.onLine = [this](const LogLine& line) {
        if (line == DynamicSize(9))
        {
            configuration.WriteLanguages("");
        }
    };
    const ArmingOutcome outcome = Arm(&user, 1033);
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_EQ(ThresholdBytes(outcome.pattern), (Bytes{0, 0, 0, 0}));
    EXPECT_EQ(ModelOf(outcome.pattern), "VWOV user");
    ExpectArmed(true, 1033);
    EXPECT_THAT(logger.lines, testing::Contains(Parameters(0, 0, 9)));
}

TEST_F(BuildArmingPatternData, StreamOf4GBGivesTheModelThatTheLow32BitsOfItsLengthTell)
{
    struct Case
    {
        uint64_t end;
        std::string model;
    };
    for (const Case& one : {Case{0x1'0000'0000, ""}, Case{0x1'0000'0004, "VWOV"}})
    {
        SCOPED_TRACE(one.end);
        ScriptedStream stream("VWOV user");
        stream.reportedEnd = one.end;
        const ArmingOutcome outcome = Arm(&stream, 1033);
        EXPECT_EQ(outcome.result, S_OK);
        ASSERT_EQ(outcome.pattern.size(), 44 + one.model.size());
        EXPECT_EQ(ModelOf(outcome.pattern), one.model);
        ExpectArmed(true, 1033);
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
        const ArmingOutcome outcome = Arm(&stream, 1033);
        EXPECT_EQ(outcome.result, E_OUTOFMEMORY);
        EXPECT_THAT(outcome.pattern, IsEmpty());
        ExpectArmed(true, 0);
        EXPECT_THAT(logger.Take(),
                    ElementsAre(Entry, ForLanguage(1033), CheckEntry, CheckExit, UsingUser, GetEntry, ExpectedSize(size),
                                ReadSuccess(size), GetExit, DynamicSize(size), PatternMemoryFailed));
    }
}

} // namespace
