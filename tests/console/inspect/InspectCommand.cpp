#include "console/inspect/InspectCommand.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "tests/console/support/InspectionSamples.h"
#include "tests/support/TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace InspectCommandTests
{

using namespace velox::console;
using InspectionSamples::Bytes;

/// "0x0030|2|1": what people read of facts.
std::string Texts(const std::vector<Fact>& facts)
{
    std::string texts;
    for (const Fact& fact : facts)
    {
        texts += (texts.empty() ? "" : "|") + fact.text;
    }
    return texts;
}

class InspectCommand : public testing::Test
{
protected:
    std::filesystem::path Write(const std::string& name, const Bytes& bytes) const
    {
        const std::string path = folder.Path() + "/" + name;
        WriteWholeFile(path, std::string(bytes.begin(), bytes.end()));
        return PathFromUtf8(path);
    }

    TemporaryFolder folder;
};

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
        const Report report = InspectFiles({Write(own.name, own.bytes)});
        EXPECT_EQ(report.exitCode, own.code);
        EXPECT_THAT(report.verdict, testing::EndsWith(own.verdict));
        ASSERT_EQ(report.results.size(), 1U);
        EXPECT_EQ(report.results[0].facts[0].value, Value(own.bytes.size()));
        EXPECT_EQ(report.results[0].tone == Tone::Good, own.code == ExitCode::Success);
    }
}

TEST_F(InspectCommand, MissingFileIsBadInput)
{
    try
    {
        InspectFiles({PathFromUtf8(folder.Path() + "/none")});
        FAIL() << "nothing was thrown";
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::BadInput);
        EXPECT_THAT(failure.what(), testing::HasSubstr("none"));
    }
}

TEST_F(InspectCommand, EveryFieldHasOffsetBytesValueAndMeaning)
{
    const Report report = InspectFiles({Write("result", InspectionSamples::DetectionResult())});
    ASSERT_EQ(report.results[0].parts.size(), 10U);
    const std::vector<Fact>& keyword = report.results[0].parts[6].facts;
    EXPECT_EQ(report.results[0].parts[6].title, "KeywordIdFw");
    EXPECT_EQ(Texts(keyword), "0x0030|2|1|1: the key phrase");
}

TEST_F(InspectCommand, WrongFieldSaysWhereAndWhatAndTheOthersAreShown)
{
    Bytes wrong = InspectionSamples::ArmingPattern({});
    wrong[20] = 0;
    const Report report = InspectFiles({Write("wrong", wrong)});
    ASSERT_EQ(report.results[0].parts.size(), 8U);
    const Entry& signature = report.results[0].parts[2];
    EXPECT_EQ(signature.tone, Tone::Bad);
    EXPECT_EQ(signature.remarks.at(0).text, "error at 0x0014: must be 0xAA550001");
    EXPECT_EQ(report.results[0].parts[3].tone, Tone::Neutral);
}

TEST_F(InspectCommand, UserModelSaysThatItIsOne)
{
    const Report report = InspectFiles({Write("jana.vwov", InspectionSamples::UserModel())});
    EXPECT_EQ(report.results[0].status, "user model");
    EXPECT_THAT(report.verdict, testing::EndsWith("jana.vwov: user model, nothing is wrong with it."));
    EXPECT_THAT(Texts(report.results[0].facts), testing::HasSubstr("|4 states|0.60 s|a user's model"));
    EXPECT_EQ(InspectFiles({Write("fw.bin", InspectionSamples::FirmwareModel())}).results[0].status,
              "key-phrase or firmware model");
}

TEST_F(InspectCommand, FieldsOfTwoFilesAreComparedWhereverTheyStand)
{
    const auto shorter = Write("shorter", InspectionSamples::ArmingPattern(InspectionSamples::FromText("one")));
    const auto longer = Write("longer", InspectionSamples::ArmingPattern(InspectionSamples::FromText("three")));
    const Report report = InspectFiles({shorter, longer});
    EXPECT_EQ(report.exitCode, ExitCode::Refused);
    EXPECT_EQ(report.verdict, "The two files differ in 3 fields.");
    ASSERT_EQ(report.results.size(), 3U);
    EXPECT_TRUE(report.results[0].parts.empty()) << "what they have in common is in the way";
    const std::vector<Entry>& differences = report.results[2].parts;
    EXPECT_EQ(differences[0].title, "Size");
    EXPECT_EQ(Texts(differences[0].facts), "0x0000|47|49|0x0000 to 0x0000");
    EXPECT_EQ(differences[2].title, "ModelData");
    EXPECT_EQ(differences[2].facts.back().text, "0x002C to 0x0030");
}

TEST_F(InspectCommand, EveryChangedByteIsFoundInItsField)
{
    const Bytes first = InspectionSamples::DetectionResult();
    const auto firstFile = Write("first", first);
    for (std::size_t place = 4; place < first.size(); ++place)
    {
        SCOPED_TRACE(place);
        Bytes second = first;
        second[place] ^= 1U;
        const Report report = InspectFiles({firstFile, Write("second", second)});
        ASSERT_EQ(report.results[2].parts.size(), 1U);
        EXPECT_EQ(report.results[2].parts[0].facts.back().text, fmt::format("0x{0:04X} to 0x{0:04X}", place));
    }
}

TEST_F(InspectCommand, BytesOfModelsAreComparedInRangesAndManyAreCounted)
{
    Bytes model = InspectionSamples::FirmwareModel();
    const auto first = Write("first", model);
    for (std::size_t i = 0; i < 10; ++i)
    {
        model[20 + 4 * i] ^= 1U;
        model[21 + 4 * i] ^= 1U;
    }
    const Report report = InspectFiles({first, Write("second", model)});
    ASSERT_EQ(report.results[2].parts.size(), 1U);
    const Fact& ranges = report.results[2].parts[0].facts.back();
    EXPECT_THAT(ranges.text, testing::StartsWith("0x0014 to 0x0015, 0x0018 to 0x0019, "));
    EXPECT_THAT(ranges.text, testing::EndsWith(", and 2 more ranges"));
    EXPECT_THAT(std::get<std::string>(ranges.value), testing::EndsWith("0x0038 to 0x0039"));
    EXPECT_EQ(report.results[1].parts.size(), 1U) << "the second one's error stays in sight";
}

TEST_F(InspectCommand, FieldsOfOneFileOnlyAreTold)
{
    const auto plain = Write("plain", InspectionSamples::DetectionResult());
    const Report report = InspectFiles({plain, Write("longer", InspectionSamples::DetectionResult(4))});
    ASSERT_EQ(report.results[2].parts.size(), 2U);
    EXPECT_EQ(report.results[2].parts[1].title, "NotRead60");
    EXPECT_EQ(Texts(report.results[2].parts[1].facts), "0x003C|has none|00 00 00 00");
}

TEST_F(InspectCommand, FilesOfDifferentKindsAreComparedByteByByte)
{
    const auto result = Write("result", InspectionSamples::DetectionResult());
    const Report report = InspectFiles({result, Write("pattern", InspectionSamples::ArmingPattern({}))});
    EXPECT_EQ(report.verdict, "The two files are of different kinds.");
    EXPECT_THAT(report.results[2].facts[0].text, testing::StartsWith("0x0000 to 0x0000, "));
    EXPECT_THAT(report.results[2].facts[0].text, testing::EndsWith(" to 0x003B"));
}

TEST_F(InspectCommand, FilesWithTheSameBytesAreTheSame)
{
    for (const auto& sample : InspectionSamples::All())
    {
        SCOPED_TRACE(sample.name);
        const Report report = InspectFiles({Write("first", sample.bytes), Write("second", sample.bytes)});
        EXPECT_EQ(report.exitCode, ExitCode::Success);
        EXPECT_EQ(report.verdict, "The two files are the same.");
        EXPECT_EQ(report.results.size(), 2U);
    }
}

} // namespace InspectCommandTests
