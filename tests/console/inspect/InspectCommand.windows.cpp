// velox-kws inspect as a process.
#include "tests/console/support/InspectionSamples.h"
#include "tests/console/support/ProgramRun.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace InspectCommandOnRealTests
{

using nlohmann::json;

class InspectCommand : public testing::Test
{
protected:
    std::string Write(const std::string& name, const InspectionSamples::Bytes& bytes) const
    {
        const std::string path = folder.Path() + "\\" + name;
        WriteWholeFile(path, std::string(bytes.begin(), bytes.end()));
        return path;
    }

    TemporaryFolder folder;
};

TEST_F(InspectCommand, EveryKindIsShownAndRight)
{
    int number = 0;
    for (const auto& sample : InspectionSamples::All())
    {
        SCOPED_TRACE(sample.name);
        const ProgramRun run = RunVeloxKws({"inspect", Write("file" + std::to_string(number++), sample.bytes)});
        EXPECT_EQ(run.exitCode, 0) << run.output;
        EXPECT_THAT(run.output, testing::EndsWith("nothing is wrong with it.\n"));
        EXPECT_EQ(run.errors, "");
    }
}

TEST_F(InspectCommand, CutAndDamagedFilesKeepWhatWasReadAndFail)
{
    for (auto sample : InspectionSamples::All())
    {
        SCOPED_TRACE(sample.name);
        sample.bytes.resize(sample.bytes.size() - 1);
        sample.bytes[21] ^= 1U;
        const ProgramRun run = RunVeloxKws({"inspect", Write("damaged", sample.bytes)});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_THAT(run.output, testing::HasSubstr("error at 0x"));
        EXPECT_THAT(run.output, testing::HasSubstr("0x0004 "));
    }
}

TEST_F(InspectCommand, DocumentTellsTheSame)
{
    InspectionSamples::Bytes changed = InspectionSamples::DetectionResult();
    changed[48] = 2;
    const ProgramRun run =
        RunVeloxKws({"inspect", "--json", Write("first", InspectionSamples::DetectionResult()), Write("second", changed)});
    EXPECT_EQ(run.exitCode, 1);
    const json document = json::parse(run.output);
    EXPECT_EQ(document["command"], "inspect");
    ASSERT_EQ(document["results"].size(), 3U);
    EXPECT_EQ(document["results"][0]["status"], "detection result");
    EXPECT_EQ(document["results"][2]["parts"][0]["title"], "KeywordIdFw");
    EXPECT_EQ(document["results"][2]["parts"][0]["second"], "2");
}

TEST_F(InspectCommand, FilesThatAreNoneOfThemAreBadInput)
{
    EXPECT_EQ(RunVeloxKws({"inspect", folder.Path() + "\\none"}).exitCode, 3);
    EXPECT_EQ(RunVeloxKws({"inspect", Write("empty", {})}).exitCode, 3);
    EXPECT_EQ(RunVeloxKws({"inspect", Write("zeros", InspectionSamples::Bytes(300))}).exitCode, 3);
    EXPECT_EQ(RunVeloxKws({"inspect"}).exitCode, 2);
}

} // namespace InspectCommandOnRealTests
