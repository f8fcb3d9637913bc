// velox-kws doctor as a process, and whether its words about the library are true.
#include "console/doctor/DoctorCommand.h"

#include "console/hosting/Detector.h"
#include "console/hosting/UserModelStream.h"
#include "console/listening/Pattern.h"
#include "console/text/Utf8Path.h"
#include "tests/console/support/DoctorDefects.h"
#include "tests/console/support/InspectionSamples.h"
#include "tests/console/support/ProgramRun.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace DoctorCommandOnRealTests
{

using namespace velox::console;
using nlohmann::json;

constexpr uint16_t Language = 1033;

/// The library on a project, armed while nothing was wrong with it yet.
class LibraryOn
{
public:
    explicit LibraryOn(const DoctorProject& project) : detector({project.Path(), "{00112233-4455-6677-8899-AABBCCDDEEFF}"}, {})
    {
        EXPECT_TRUE(detector.Arm(EmptyStream().get(), Language).Succeeded());
    }

    /// What is promised has no fault, though the take may be refused; what fails does not succeed.
    void Expect(bool promised, Operation operation)
    {
        SCOPED_TRACE(static_cast<int>(operation));
        const Answer answer = Do(operation);
        const bool faulty = std::any_of(answer.lines.begin(), answer.lines.end(),
                                        [](const LoggedLine& line) { return line.level == VeloxLogLevel::Error; });
        EXPECT_TRUE(promised ? answer.Succeeded() || !faulty : !answer.Succeeded());
    }

private:
    Answer Do(Operation operation)
    {
        static const std::vector<float> take = TinyLanguage::SayPhrase({0.15, 0.2, 3300.0});
        const std::array<std::span<const float>, 2> takes{take, take};
        switch (operation)
        {
        case Operation::Capabilities:
            return detector.GetCapabilities();
        case Operation::Verification:
            return detector.Verify(Language, take);
        case Operation::Training:
            return detector.Train(EmptyStream().get(), Language, takes);
        case Operation::Arming:
            return detector.Arm(EmptyStream().get(), Language);
        case Operation::Parsing:
            return detector.Parse(EmptyStream().get(), InspectionSamples::DetectionResult());
        }
        return {E_UNEXPECTED, {}};
    }

    Detector detector;
};

bool Promises(const Findings& findings, Operation operation)
{
    return std::none_of(findings.begin(), findings.end(), [&](const Finding& finding) {
        return std::any_of(finding.failures.begin(), finding.failures.end(), [&](const Failure& failure) {
            return failure.operation == operation && (!failure.language || *failure.language == Language);
        });
    });
}

TEST(DoctorCommand, GoodConfigurationSucceedsAndOnlyLacksAnOemAdapter)
{
    const DoctorProject project;
    const ProgramRun run = RunVeloxKws({"doctor", project.Path()});
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_THAT(run.output, testing::StartsWith("note  No OEM adapter is registered.\n"));
    EXPECT_THAT(run.output, testing::HasSubstr("\nNothing is wrong: 2 languages, "));
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 4);
    EXPECT_EQ(run.errors, "");
}

TEST(DoctorCommand, VerboseShowsEveryCheck)
{
    const DoctorProject project;
    const ProgramRun run = RunVeloxKws({"doctor", "--config", project.Path(), "--verbose"});
    for (const char* part : {"Language 1033 is English (United States).", "has all fifteen functions",
                             "frames of 160 samples (10 ms)", "The library was loaded, version ", "LoggerLevel is"})
    {
        EXPECT_THAT(run.output, testing::HasSubstr(part));
    }
}

TEST(DoctorCommand, ExitCodeFollowsFromTheWorstFinding)
{
    const DoctorProject project;
    project.WriteModel("pre_1033.txt", "100 per cent");
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path()}).exitCode, 0) << "a warning";
    project.RemoveModel("pre_1033.txt");
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path()}).exitCode, 1) << "an error";
    project.WriteXml("<keywords>");
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path()}).exitCode, 4) << "no configuration";
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path() + ".none"}).exitCode, 4);
}

TEST(DoctorCommand, DocumentHoldsEveryFinding)
{
    const DoctorProject project;
    project.RemoveModel("fw_1033.bin");
    const ProgramRun run = RunVeloxKws({"doctor", project.Path(), "--json"});
    const json document = json::parse(run.output);
    EXPECT_EQ(document["command"], "doctor");
    EXPECT_EQ(document["exitCode"], 1);
    const auto error = std::find_if(document["results"].begin(), document["results"].end(),
                                    [](const json& finding) { return finding["status"] == "error"; });
    ASSERT_NE(error, document["results"].end());
    EXPECT_EQ((*error)["line"], 7);
    EXPECT_EQ((*error)["fails"], "arming 1033");
    EXPECT_THAT(document["verdict"], testing::HasSubstr("Fails for 1033 (en-US): arming."));
}

TEST(DoctorCommand, BundleIsWrittenWhateverIsWrong)
{
    const DoctorProject project;
    const std::string bundle = project.Directory() + "\\support.txt";
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path(), "--bundle", bundle}).exitCode, 0);
    EXPECT_THAT(ReadWholeFile(bundle), testing::HasSubstr("Windows "));
    EXPECT_THAT(ReadWholeFile(bundle), testing::HasSubstr("code page "));
    EXPECT_THAT(ReadWholeFile(bundle), testing::HasSubstr("VeloxWovSDK.dll: "));
    EXPECT_THAT(ReadWholeFile(bundle), testing::Not(testing::HasSubstr("VWAM"))) << "a model's first bytes";

    project.WriteXml("<keywords>");
    const ProgramRun run = RunVeloxKws({"doctor", project.Path(), "--bundle", bundle});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.output, testing::HasSubstr("support.txt"));
    EXPECT_THAT(ReadWholeFile(bundle), testing::HasSubstr("== Configuration "));
}

TEST(DoctorCommand, BundleReplacesNoOtherFile)
{
    const DoctorProject project;
    const std::string before = project.Xml();
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path(), "--bundle", project.Path()}).exitCode, 2);
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path(), "--bundle", project.Directory() + "\\am_1033.bin"}).exitCode, 2);
    EXPECT_EQ(project.Xml(), before);
}

TEST(DoctorCommand, FindingsStayWhenTheBundleCannotBeWritten)
{
    const DoctorProject project;
    const Report report = Examine(PathFromUtf8(project.Path()), PathFromUtf8(project.Directory() + "\\none\\support.txt"));
    EXPECT_EQ(report.exitCode, ExitCode::WriteFailed);
    EXPECT_TRUE(report.error.has_value());
    EXPECT_FALSE(report.results.empty());
}

TEST(DoctorCommand, WhatDoctorSaysOfTheLibraryIsTrue)
{
    for (const DoctorDefect& defect : DoctorDefects())
    {
        SCOPED_TRACE(defect.name);
        const DoctorProject project;
        LibraryOn library(project);
        defect.damage(project);
        const Findings findings = project.Check().findings;
        library.Expect(Promises(findings, Operation::Capabilities), Operation::Capabilities);
        if (defect.name == "NoId" || defect.name == "IdIsNoNumber")
        {
            continue; // 1033 is no language any more
        }
        // The parsing is of what was armed before, and comes first.
        for (const Operation operation : {Operation::Parsing, Operation::Verification, Operation::Training, Operation::Arming})
        {
            library.Expect(Promises(findings, operation), operation);
        }
    }
}

TEST(DoctorCommand, ThresholdsAreTheLibrarys)
{
    const struct
    {
        std::string_view text;
        int32_t q8;
    } cases[]{{"0.75", 192},
              {"-1.3", -333},
              {"0,75", 0},
              {"abc", 0},
              {"1e999", INT32_MAX},
              {"\xEF\xBB\xBF"
               "100",
               0}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.text);
        const DoctorProject project;
        project.WriteModel("pre_1033.txt", own.text);
        Detector detector({project.Path(), "{00112233-4455-6677-8899-AABBCCDDEEFF}"}, {});
        EXPECT_EQ(ThresholdOf(detector.Arm(EmptyStream().get(), Language).pattern), own.q8 / 256.0);
    }
}

} // namespace DoctorCommandOnRealTests
