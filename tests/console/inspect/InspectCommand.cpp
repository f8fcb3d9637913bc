#include "console/inspect/InspectCommand.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "tests/console/support/InspectionSamples.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace velox::console;
using InspectionSamples::Bytes;

namespace
{

class InspectCommand : public testing::Test
{
protected:
    std::filesystem::path Write(const std::string& name, const Bytes& bytes) const
    {
        const std::string path = folder.Path() + "/" + name;
        WriteWholeFile(path, std::string(bytes.begin(), bytes.end()));
        return PathFromUtf8(path);
    }

    static Outcome Run(const std::vector<std::filesystem::path>& files)
    {
        return InspectFiles(files, false, Style(false));
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(InspectCommand, ExitCodeAndVerdictFollowFromTheFile)
{
    Bytes cut = InspectionSamples::DetectionResult();
    cut.resize(50);
    const struct
    {
        std::string name;
        Bytes bytes;
        ExitCode code;
        std::string verdict;
    } cases[]{{"good", InspectionSamples::DetectionResult(), ExitCode::Success, "detection result, nothing is wrong with it."},
              {"cut", cut, ExitCode::Refused, "detection result with 2 errors, the first at 0x0000 (Size)."},
              {"empty", {}, ExitCode::BadInput, "is empty."},
              {"unknown", Bytes(200, 0x90), ExitCode::BadInput, "is none of the files that inspect knows."}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.name);
        const Outcome outcome = Run({Write(own.name, own.bytes)});
        EXPECT_EQ(outcome.exitCode, own.code);
        EXPECT_THAT(outcome.verdict, testing::EndsWith(own.verdict));
        ASSERT_EQ(outcome.results.Count(), 1U);
        EXPECT_EQ(outcome.results.Array()[0]["size"], own.bytes.size());
    }
}

TEST_F(InspectCommand, MissingFileIsBadInput)
{
    try
    {
        Run({PathFromUtf8(folder.Path() + "/none")});
        FAIL() << "nothing was thrown";
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::BadInput);
        EXPECT_THAT(failure.what(), testing::HasSubstr("none"));
    }
}

TEST_F(InspectCommand, TwoFilesAreComparedAndBothShown)
{
    const auto first = Write("first", InspectionSamples::ArmingPattern({}));
    Bytes changed = InspectionSamples::ArmingPattern({});
    changed[24] = 1;
    const Outcome outcome = Run({first, Write("second", changed)});
    EXPECT_EQ(outcome.exitCode, ExitCode::Refused);
    EXPECT_EQ(outcome.verdict, "The two files differ: 1 field.");
    ASSERT_EQ(outcome.results.Count(), 3U);
    EXPECT_EQ(outcome.results.Array()[2]["fields"][0]["path"], "KpdThreshold");
}

TEST_F(InspectCommand, FilesWithTheSameBytesAreTheSame)
{
    const auto first = Write("first", InspectionSamples::UserModel());
    const Outcome outcome = Run({first, Write("second", InspectionSamples::UserModel())});
    EXPECT_EQ(outcome.exitCode, ExitCode::Success);
    EXPECT_EQ(outcome.verdict, "The two files are the same.");
}
