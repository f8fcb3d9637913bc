#include "console/hosting/LogExplanation.h"

#include "console/text/CommandFailure.h"

#include <gmock/gmock.h>

namespace LogExplanationTests
{

using namespace velox::console;
using testing::HasSubstr;
using testing::SizeIs;

constexpr auto Fail = static_cast<int32_t>(0x80004005);
using Lines = std::vector<LoggedLine>;

std::string Message(const Lines& lines)
{
    const CommandFailure failure = ExplainFailure("Arming", Fail, lines);
    return failure.what();
}

TEST(LogExplanation, TheLineWithTheDetailCounts)
{
    const Lines lines{{4, 0, "[VerifyUserKeyword] Entry."},
                      {2, 1, "[LoadFile] Failed to load file: zn_1033.bin."},
                      {1, 0, "[VerifyUserKeyword] Failed to get enrollment parameters.", Fail}};
    const CommandFailure failure = ExplainFailure("Verifying a.wav", Fail, lines);
    EXPECT_STREQ(failure.what(), "Verifying a.wav failed: the model file zn_1033.bin cannot be opened.");
    EXPECT_EQ(failure.exitCode, ExitCode::BadConfiguration);
    EXPECT_THAT(failure.fix, HasSubstr("directory"));
}

TEST(LogExplanation, ClassesOfFailureHaveTheirExitCode)
{
    struct Case
    {
        LoggedLine line;
        ExitCode exitCode;
        const char* meaning;
    };
    for (const Case& c : {
             Case{{2, 1, "[GetLanguagesCount] Failed to load configuration file: a.xml. Status: XML_ERROR_FILE_NOT_FOUND."},
                  ExitCode::BadConfiguration,
                  "a.xml. Status: XML_ERROR_FILE_NOT_FOUND"},
             Case{{1, 1, "[InitializeSession] Failed to initialize session.", std::nullopt, 105},
                  ExitCode::LibraryFailure,
                  "105 NoModel"},
             Case{{2, 1, "[GetUserModelFromIStream] Failed to read from IStream.", Fail}, ExitCode::BadInput, "user model"},
             Case{{1, 0, "[BuildArmingPatternData] Failed to allocate memory for pattern data."},
                  ExitCode::LibraryFailure,
                  "memory"},
             Case{{1, 0, "[VerifyUserKeyword] Validation error, one or more of the input parameters is invalid."},
                  ExitCode::BadConfiguration,
                  "not in the configuration file"},
         })
    {
        SCOPED_TRACE(c.line.message);
        EXPECT_EQ(ExplainFailure("Arming", Fail, Lines{c.line}).exitCode, c.exitCode);
        EXPECT_THAT(Message({c.line}), HasSubstr(c.meaning));
    }
}

TEST(LogExplanation, LinesThatAreNoFaultExplainNothing)
{
    EXPECT_EQ(Message({{4, 0, "[LoadFile] Failed to load file: x."}}), "Arming failed with 0x80004005 E_FAIL.");
}

TEST(LogExplanation, BracesInALineStayAsTheyAre)
{
    EXPECT_THAT(Message({{2, 1, "[LoadFile] Failed to load file: {0}.bin."}}), HasSubstr("{0}.bin"));
}

TEST(LogExplanation, FindsTheTakesThatTheEngineLeftOut)
{
    const Lines lines{{5, 1, "[FeedRecordingsForEnrollment] Recording 1"},
                      {5, 1, "[FeedRecordingsForEnrollment] Recording 1 was sent"},
                      {5, 1, "[FeedRecordingsForEnrollment] Recording 2"},
                      {2, 1, "VWoVFinalizeEnrollmentUtterance failed!", std::nullopt, 124},
                      {5, 1, "[FeedRecordingsForEnrollment] Recording 3"}};
    const std::vector<LeftOutTake> takes = FindLeftOutTakes(lines);
    ASSERT_THAT(takes, SizeIs(1));
    EXPECT_EQ(takes[0].index, 1U);
    EXPECT_EQ(takes[0].engineStatus, 124U);
    EXPECT_THAT(FindLeftOutTakes(Lines{}), SizeIs(0));
}

TEST(LogExplanation, FindsTheTakesThatOnlyTheEngineTellsOf)
{
    const Lines lines{{5, 1, "[FeedRecordingsForEnrollment] Recording 1"},
                      {4, EngineSource, "VeloxWovSDK: take of the enrollment: 0 Success. Nothing is wrong."},
                      {5, 1, "[FeedRecordingsForEnrollment] Recording 1 was sent"},
                      {5, 1, "[FeedRecordingsForEnrollment] Recording 2"},
                      {4, EngineSource, "VeloxWovSDK: take of the enrollment: 122 Clipped. The utterance is clipped."},
                      {4, EngineSource, "VeloxWovSDK: take of the enrollment: it may be another phrase"},
                      {5, 1, "[FeedRecordingsForEnrollment] Recording 3"},
                      {4, EngineSource, "VeloxWovSDK: take of the enrollment: 124 PhraseNotFound. It is not there."},
                      {2, 1, "VWoVFinalizeEnrollmentUtterance failed!", std::nullopt, 124}};
    const std::vector<LeftOutTake> takes = FindLeftOutTakes(lines);
    ASSERT_THAT(takes, SizeIs(2));
    EXPECT_EQ(takes[0].index, 1U);
    EXPECT_EQ(takes[0].engineStatus, 122U);
    EXPECT_EQ(takes[1].index, 2U);
}

TEST(LogExplanation, TakesThatDisagreeAreToldWithWhatToDo)
{
    const auto fails = [](uint32_t status) {
        const Lines lines{{2, 1, "[TrainModel] Failed to finalize enrollment.", std::nullopt, status}};
        return ExplainFailure("Training", Fail, lines);
    };
    EXPECT_THAT(fails(125).what(), HasSubstr("Training failed: a take is not like the others, or far louder or quieter"));
    EXPECT_THAT(fails(125).fix, HasSubstr("one person, at one distance"));
    EXPECT_THAT(fails(129).what(), HasSubstr("the engine can use fewer than two of the takes"));
    EXPECT_THAT(fails(117).what(), HasSubstr("the engine made no model of the takes"));
}

} // namespace LogExplanationTests
