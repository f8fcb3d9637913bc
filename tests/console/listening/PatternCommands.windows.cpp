#include "console/listening/PatternCommands.h"

#include "console/RunCommand.h"
#include "console/hosting/Detector.h"
#include "console/hosting/UserModelStream.h"
#include "console/pages/ReportDocument.h"
#include "console/pages/ReportText.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"
#include "tests/console/support/ProgramRun.h"
#include "tests/console/support/ToneProject.h"
#include "tests/engine/support/TinyLanguage.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <array>
#include <filesystem>

namespace PatternCommandsOnRealTests
{

using namespace velox;
using namespace velox::console;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;
using Json = nlohmann::ordered_json;
using Arguments = std::vector<std::string>;

constexpr const char* OtherDetector = "{01020304-0506-0708-090A-0B0C0D0E0F10}";
constexpr const char* ConsoleDetector = "{3B0E9B6C-5C1D-4A57-8E07-61C2A94D7F25}";
const TinyLanguage::Voice User{0.15, 0.4, 3300.0};

class PatternCommands : public testing::Test
{
protected:
    /// The program as a process.
    ProgramRun RunArm(const std::vector<std::string>& more) const
    {
        std::vector<std::string> arguments{"arm", "--config", project.Configuration()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunVeloxKws(arguments);
    }

    bool Written() const
    {
        return std::filesystem::exists(project.File("pattern.bin"));
    }

    /// Builds a pattern as arm does.
    void Arm(const std::string& name, uint16_t language, const std::string& model = {})
    {
        Detector detector({project.Configuration(), ConsoleDetector}, {});
        const auto stream = model.empty() ? EmptyStream() : OpenUserModel(model);
        const ArmingAnswer answer = detector.Arm(stream.get(), language);
        ASSERT_EQ(answer.result, S_OK);
        project.Write(name, answer.pattern);
    }

    /// Enrolls the user. @return the model's file
    std::string Enroll()
    {
        Detector detector({project.Configuration(), ConsoleDetector}, {});
        const std::array said{TinyLanguage::SayPhrase(User, 1), TinyLanguage::SayPhrase(User, 2),
                              TinyLanguage::SayPhrase(User, 3)};
        const std::vector<std::span<const float>> takes(said.begin(), said.end());
        const auto stream = EmptyStream();
        EXPECT_EQ(detector.Train(stream.get(), ToneProject::English, takes).result, S_OK);
        project.Write("user.vwov", Content(stream.get()));
        return project.File("user.vwov");
    }

    Arguments Line(const Arguments& more) const
    {
        Arguments line{"listen", "--config", project.Configuration()};
        line.insert(line.end(), more.begin(), more.end());
        return line;
    }

    Report Listen(const Arguments& more, const std::string& page = {}) const
    {
        CLI::App app;
        Commands commands;
        AddListenCommand(app, commands);
        Arguments reversed = Line(more);
        std::ranges::reverse(reversed);
        app.parse(reversed);
        Progress progress(nullptr);
        const LogOptions log;
        Context context{progress, log, PathFromUtf8(page)};
        return RunCommand("listen", commands.run.at(app.get_subcommands().at(0)), context);
    }

    static Json Results(const Report& report)
    {
        return Json::parse(ReportDocument("listen", report))["results"];
    }

    static Json Facts(const Report& report)
    {
        return Json::parse(ReportDocument("listen", report))["facts"];
    }

    static std::string Text(const Report& report)
    {
        return ReportText(report, false, false);
    }

    std::string Phrases(const std::string& name, int count) const
    {
        std::vector<float> audio;
        for (int i = 0; i < count; ++i)
        {
            const auto said = TinyLanguage::SayPhrase(User, static_cast<uint64_t>(i) + 10);
            audio.insert(audio.end(), said.begin(), said.end());
        }
        return project.Record(name, audio);
    }

    ToneProject project;
};

TEST_F(PatternCommands, WritesThePatternAsTheLibraryReturnsIt)
{
    const ProgramRun run = RunArm({"0x409", "--detector-id", OtherDetector, "--out", project.File("pattern.bin")});
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    Detector detector({project.Configuration(), OtherDetector}, {});
    EXPECT_EQ(project.Read("pattern.bin"), detector.Arm(EmptyStream().get(), ToneProject::English).pattern);
    EXPECT_THAT(run.output, HasSubstr("everybody's"));
    EXPECT_THAT(run.output, HasSubstr("70 (preDefinedKpdSensitivity)"));
}

TEST_F(PatternCommands, AUsersModelIsArmedWhole)
{
    const std::string model = "VWOV and the rest of a user's model";
    project.Write("user.vwov", model);
    const ProgramRun run =
        RunArm({"en-US", "--model", project.File("user.vwov"), "--out", project.File("pattern.bin"), "--json"});
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    const std::vector<uint8_t> pattern = project.Read("pattern.bin");
    EXPECT_EQ(std::string(pattern.begin() + 44, pattern.end()), model);
    const Json result = Json::parse(run.output)["results"].at(0);
    EXPECT_EQ(result["model"], "user");
    EXPECT_EQ(result["threshold"], 60.0);
}

TEST_F(PatternCommands, AFileThatHoldsNoUserModelIsRefused)
{
    project.Write("other.bin", std::string("RIFF"));
    const ProgramRun run = RunArm({"en-US", "--model", project.File("other.bin"), "--out", project.File("pattern.bin")});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.errors, HasSubstr("holds no user model"));
    EXPECT_FALSE(Written());
}

TEST_F(PatternCommands, AModelThatIsNotThereIsBadInput)
{
    const ProgramRun run = RunArm({"en-US", "--model", project.File("none.vwov"), "--out", project.File("pattern.bin")});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.errors, HasSubstr("none.vwov cannot be opened"));
    EXPECT_FALSE(Written());
}

TEST_F(PatternCommands, RefusesWhatIsNoLanguageOrNoGuid)
{
    EXPECT_EQ(RunArm({"english", "--out", project.File("pattern.bin")}).exitCode, 2);
    EXPECT_EQ(RunArm({"en-US", "--detector-id", "{1234}", "--out", project.File("pattern.bin")}).exitCode, 2);
    EXPECT_FALSE(Written());
}

TEST_F(PatternCommands, ALanguageThatIsNotConfiguredIsABadConfiguration)
{
    const ProgramRun run = RunArm({"de-DE", "--out", project.File("pattern.bin")});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, HasSubstr("the language is not in the configuration file"));
}

TEST_F(PatternCommands, AModelThatTheSimulatorRefusesIsArmedWithAWarning)
{
    auto model = project.Read("fw.bin");
    model.back() ^= 1U;
    project.Write("fw.bin", model);
    const ProgramRun run = RunArm({"en-US", "--out", project.File("pattern.bin")});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("warning: the simulated DSP refuses this block at 0x38, ModelData.checksum"));
    const std::vector<uint8_t> pattern = project.Read("pattern.bin");
    EXPECT_EQ(std::vector<uint8_t>(pattern.begin() + 44, pattern.end()), model);
}

TEST_F(PatternCommands, ThePatternReplacesNoInputAndNoForeignFile)
{
    project.Write("user.vwov", std::string("VWOV and the rest of a user's model"));
    const auto before = project.Read("configuration.xml");
    for (const char* output : {"user.vwov", "configuration.xml", "fw.bin"})
    {
        SCOPED_TRACE(output);
        const ProgramRun run = RunArm({"en-US", "--model", project.File("user.vwov"), "--out", project.File(output)});
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_THAT(run.errors, HasSubstr("Nothing was changed"));
    }
    EXPECT_EQ(project.Read("configuration.xml"), before);
    project.Write("diary.txt", std::string("today"));
    EXPECT_EQ(RunArm({"en-US", "--out", project.File("diary.txt")}).exitCode, 2);
    EXPECT_EQ(RunArm({"en-US", "--out", project.File("pattern.bin")}).exitCode, 0);
    EXPECT_EQ(RunArm({"en-US", "--out", project.File("pattern.bin")}).exitCode, 0) << "a former pattern is replaced";
}

TEST_F(PatternCommands, NamesMayHoldBlanksAndOtherAlphabets)
{
    const std::string name = "Muster für Łukasz.bin";
    const ProgramRun run = RunArm({"en-US", "--out", project.File(name)});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr(name));
    EXPECT_TRUE(std::filesystem::exists(PathFromUtf8(project.File(name))));
}

TEST_F(PatternCommands, HearsPhrasesAndParsesThemWithTheLibrary)
{
    Arm("pattern.bin", ToneProject::English);
    const Report report = Listen({"--pattern", project.File("pattern.bin"), Phrases("two.wav", 2)});
    EXPECT_EQ(report.exitCode, ExitCode::Success) << Text(report);
    EXPECT_EQ(report.verdict, "2 detections in 3.2 s.");
    ASSERT_THAT(Results(report), SizeIs(1));
    const Json detections = Results(report)[0]["parts"];
    ASSERT_THAT(detections, SizeIs(2));
    for (const Json& detection : detections)
    {
        EXPECT_EQ(detection["result"], "0x00000000 S_OK");
        EXPECT_EQ(detection["keywordId"], 1);
        EXPECT_EQ(detection["language"], 1033);
        EXPECT_EQ(detection["userMatch"], false);
        EXPECT_EQ(detection["threshold"], 70.0);
        EXPECT_NEAR(detection["keywordStart"].get<double>(), detection["start"].get<double>() * 1e7, 1.0);
        EXPECT_NEAR(detection["keywordEnd"].get<double>(), detection["end"].get<double>() * 1e7, 1.0);
    }
    EXPECT_NEAR(detections[0]["start"].get<double>(), 0.5, 0.05);
    EXPECT_NEAR(detections[1]["start"].get<double>(), 2.1, 0.05);
    EXPECT_EQ(Text(report).find("note: "), std::string::npos) << Text(report);
}

TEST_F(PatternCommands, AUsersPatternIsAUserMatch)
{
    const std::string model = Enroll();
    Arm("pattern.bin", ToneProject::English, model);
    const Report report = Listen({"--pattern", project.File("pattern.bin"), "--model", model, Phrases("one.wav", 1)});
    EXPECT_EQ(report.exitCode, ExitCode::Success) << Text(report);
    EXPECT_EQ(Facts(report)["userModel"], true);
    EXPECT_EQ(Facts(report)["threshold"], 60.0);
    EXPECT_EQ(Results(report)[0]["parts"][0]["userMatch"], true);
    EXPECT_EQ(Text(report).find("note: "), std::string::npos) << Text(report);
}

TEST_F(PatternCommands, AUsersPatternWithoutTheModelIsNoted)
{
    Arm("pattern.bin", ToneProject::English, Enroll());
    const Report report = Listen({"--pattern", project.File("pattern.bin"), Phrases("one.wav", 1)});
    EXPECT_THAT(Text(report),
                HasSubstr("the library builds another pattern for language 1033 (en-US) now, with a threshold of 70.0 "
                          "instead of 60.0, with another model"));
    EXPECT_EQ(Results(report)[0]["parts"][0]["userMatch"], false);
}

TEST_F(PatternCommands, TheLanguageIsTheOneWhosePatternItIs)
{
    project.AddItalian();
    Arm("pattern.bin", ToneProject::Italian);
    const Report report = Listen({"--pattern", project.File("pattern.bin"), Phrases("one.wav", 1)});
    EXPECT_EQ(Results(report)[0]["parts"][0]["language"], 1040);
    EXPECT_EQ(Facts(report)["threshold"], 80.0);
}

TEST_F(PatternCommands, APatternOfNoneOfTheLanguagesNeedsOneNamed)
{
    project.AddItalian();
    Arm("pattern.bin", ToneProject::Italian);
    project.Write("pre_1040.txt", std::string("81"));
    const std::string one = Phrases("one.wav", 1);
    const Report unnamed = Listen({"--pattern", project.File("pattern.bin"), one});
    EXPECT_EQ(unnamed.exitCode, ExitCode::Usage);
    ASSERT_TRUE(unnamed.error.has_value());
    EXPECT_THAT(unnamed.error->fix, HasSubstr("--language"));

    const Report named = Listen({"--pattern", project.File("pattern.bin"), "--language", "it-IT", one});
    EXPECT_EQ(named.exitCode, ExitCode::Success);
    EXPECT_EQ(Results(named)[0]["parts"][0]["language"], 1040);
    EXPECT_THAT(Text(named), HasSubstr("with a threshold of 81.0 instead of 80.0; "));
}

TEST_F(PatternCommands, CounterOffsetAndDriftReachTheHost)
{
    Arm("pattern.bin", ToneProject::English);
    const Report report = Listen({"--pattern", project.File("pattern.bin"), "--offset", "1000000000000", "--drift", "-100",
                                  "--block", "250", Phrases("one.wav", 1)});
    const Json detection = Results(report)[0]["parts"][0];
    EXPECT_NEAR(detection["keywordStart"].get<double>() - 1e12, detection["start"].get<double>() * 1e7 * 0.9999, 1.0);
}

TEST_F(PatternCommands, SavesEachBlockUnderTheRecordingsName)
{
    Arm("pattern.bin", ToneProject::English);
    const Report report = Listen({"--pattern", project.File("pattern.bin"), "--save-results", project.File("blocks"),
                                  Phrases("two.wav", 2), Phrases("one.wav", 1)});
    EXPECT_EQ(report.exitCode, ExitCode::Success);
    for (const char* name : {"two-001.result", "two-002.result", "one-003.result"})
    {
        SCOPED_TRACE(name);
        const auto block = project.Read(std::string("blocks\\") + name);
        ASSERT_THAT(block, SizeIs(60));
        EXPECT_EQ(block[0], 60);
        EXPECT_EQ(block[48], 1);
    }
    EXPECT_THAT(Results(report)[1]["parts"][0]["block"].get<std::string>(), EndsWith("one-003.result"));
}

TEST_F(PatternCommands, NoInputAndNoForeignFileIsReplaced)
{
    Arm("pattern.bin", ToneProject::English);
    const std::string one = Phrases("one.wav", 1);
    const auto before = project.Read("pattern.bin");
    const auto exitCode = [&](const std::string& blocks, const std::string& page = {}) {
        return Listen({"--pattern", project.File("pattern.bin"), "--save-results", blocks, one}, page).exitCode;
    };
    EXPECT_EQ(exitCode(project.File("pattern.bin")), ExitCode::Usage) << "a file where the folder should be";
    EXPECT_EQ(exitCode(project.File("blocks"), project.File("pattern.bin")), ExitCode::Usage);
    EXPECT_EQ(exitCode(project.File("blocks"), one), ExitCode::Usage);
    std::filesystem::create_directory(PathFromUtf8(project.File("blocks")));
    project.Write("blocks\\one-001.result", std::string("a diary"));
    EXPECT_EQ(exitCode(project.File("blocks")), ExitCode::Usage);
    EXPECT_EQ(project.Read("pattern.bin"), before);

    project.Write("blocks\\one-001.result", std::vector<uint8_t>{4, 0, 0, 0});
    project.Write("blocks\\another.txt", std::string("a diary"));
    EXPECT_EQ(exitCode(project.File("blocks")), ExitCode::Success)
        << "an older block is replaced, and others' files are no matter";
    EXPECT_THAT(project.Read("blocks\\one-001.result"), SizeIs(60));
}

TEST_F(PatternCommands, SavedSoundsReplaceNoInputAndNoForeignFile)
{
    Arm("pattern.bin", ToneProject::English);
    const std::string one = Phrases("one.wav", 1);
    const auto run = [&](const std::string& sounds) {
        return Listen({"--pattern", project.File("pattern.bin"), "--save-audio", sounds, one});
    };
    EXPECT_EQ(run(one).exitCode, ExitCode::Usage) << "a file where the folder should be";
    std::filesystem::create_directory(PathFromUtf8(project.File("sounds")));
    project.Write("sounds\\one-001-0s.wav", std::string("a diary"));
    EXPECT_EQ(run(project.File("sounds")).exitCode, ExitCode::Usage);

    project.Write("sounds\\one-001-0s.wav", std::string("RIFF, an older sound"));
    const Report report = run(project.File("sounds"));
    EXPECT_EQ(report.exitCode, ExitCode::Success) << Text(report);
    EXPECT_THAT(Results(report)[0]["parts"][0]["audio"].get<std::string>(), EndsWith("one-001-0s.wav"));
    EXPECT_GT(project.Read("sounds\\one-001-0s.wav").size(), 32000U);
}

TEST_F(PatternCommands, HearsRecordingsOrAMicrophone)
{
    Arm("pattern.bin", ToneProject::English);
    const std::string one = Phrases("one.wav", 1);
    for (const Arguments& wrong :
         {Arguments{}, {one, "--microphone"}, {one, "--seconds", "1"}, {"--microphone", "--seconds", "0"}})
    {
        Arguments line = Line({"--pattern", project.File("pattern.bin")});
        line.insert(line.end(), wrong.begin(), wrong.end());
        const ProgramRun run = RunVeloxKws(line);
        EXPECT_EQ(run.exitCode, 2) << run.output;
        EXPECT_THAT(run.errors, testing::AnyOf(HasSubstr("--microphone"), HasSubstr("--seconds")));
    }
}

TEST_F(PatternCommands, AMicrophoneThatIsNotThereIsNamed)
{
    Arm("pattern.bin", ToneProject::English);
    const Report report = Listen({"--pattern", project.File("pattern.bin"), "--microphone", "no such one"});
    EXPECT_EQ(report.exitCode, ExitCode::BadInput);
    ASSERT_TRUE(report.error.has_value());
    EXPECT_THAT(report.error->message,
                testing::AnyOf("There is no microphone.", "No microphone has \"no such one\" in its name."));
}

TEST_F(PatternCommands, FoldersAndPatternsStandForTheirRecordings)
{
    Arm("pattern.bin", ToneProject::English);
    Phrases("take-2.wav", 1);
    Phrases("take-10.wav", 1);
    const Report report = Listen({"--pattern", project.File("pattern.bin"), project.File("take-*.wav")});
    EXPECT_EQ(report.verdict, "2 detections in 3.2 s.");
    ASSERT_THAT(report.results, SizeIs(2));
    EXPECT_THAT(report.results[0].title, EndsWith("take-2.wav"));
}

TEST_F(PatternCommands, ARecordingThatCannotBeReadIsToldAtTheEnd)
{
    Arm("pattern.bin", ToneProject::English);
    project.Write("empty.wav", std::string());
    const Report report = Listen({"--pattern", project.File("pattern.bin"), "--save-results", project.File("blocks"),
                                  Phrases("one.wav", 1), project.File("empty.wav"), Phrases("two.wav", 2)});
    EXPECT_EQ(report.exitCode, ExitCode::BadInput);
    EXPECT_EQ(report.verdict, "3 detections in 4.8 s; 1 of 3 recordings could not be read.");
    EXPECT_EQ(report.results.at(1).status, "unreadable");
    EXPECT_THAT(project.Read("blocks\\two-003.result"), SizeIs(60));
}

TEST_F(PatternCommands, AUserModelInThePatternsPlaceIsToldApart)
{
    Arm("pattern.bin", ToneProject::English);
    const std::string model = Enroll();
    const Report report = Listen({"--pattern", model, Phrases("one.wav", 1)});
    EXPECT_EQ(report.exitCode, ExitCode::BadInput);
    ASSERT_TRUE(report.error.has_value());
    EXPECT_THAT(report.error->message, EndsWith("is a user model."));
    EXPECT_THAT(report.error->fix, HasSubstr("velox-kws arm LANG --model " + model));
}

TEST_F(PatternCommands, ThePageHasCloseUpsOfWhatWasHeard)
{
    Arm("pattern.bin", ToneProject::English);
    const Report report = Listen({"--pattern", project.File("pattern.bin"), Phrases("two.wav", 2)}, project.File("page.html"));
    EXPECT_EQ(report.exitCode, ExitCode::Success);
    EXPECT_GT(report.results.at(0).picture.wave.size(), 100U);
    EXPECT_GT(report.results.at(0).parts.at(1).picture.wave.size(), 100U);
    EXPECT_THAT(project.Read("page.html"), testing::Not(testing::IsEmpty()));
    EXPECT_THAT(Listen({"--pattern", project.File("pattern.bin"), Phrases("two.wav", 2)}).results.at(0).picture.wave,
                testing::IsEmpty())
        << "nobody asked";
}

TEST_F(PatternCommands, FaultsHaveTheirOutcomes)
{
    Arm("pattern.bin", ToneProject::English);
    const std::string two = Phrases("two.wav", 2);
    struct Case
    {
        const char* fault;
        ExitCode exitCode;
        const char* verdict;
    };
    for (const Case& one : {Case{"reset", ExitCode::Refused, "The DSP reset itself in 1 file and was deaf from then on."},
                            {"foreign-guid", ExitCode::LibraryFailure, "The library refused 2 of 2 result blocks in 3.2 s."},
                            {"truncated", ExitCode::LibraryFailure, "The library refused 2 of 2 result blocks in 3.2 s."},
                            {"unknown-keyword", ExitCode::Refused, "2 of 2 result blocks named a keyword that was not armed."},
                            {"stale", ExitCode::Success, "2 detections in 3.2 s."}})
    {
        SCOPED_TRACE(one.fault);
        const Report report = Listen({"--pattern", project.File("pattern.bin"), "--fail", one.fault, two});
        EXPECT_EQ(report.exitCode, one.exitCode) << Text(report);
        EXPECT_EQ(report.verdict, one.verdict);
        EXPECT_THAT(Text(report), HasSubstr(std::string("note: fault \"") + one.fault + "\""));
    }
}

TEST_F(PatternCommands, AStalePatternShowsByItsThreshold)
{
    Arm("pattern.bin", ToneProject::English);
    project.Write("pre_1033.txt", std::string("255"));
    const Report report = Listen({"--pattern", project.File("pattern.bin"), "--fail", "stale", Phrases("one.wav", 1)});
    EXPECT_EQ(report.verdict, "1 detection in 1.6 s.") << "the newer pattern would never fire";
    EXPECT_THAT(Text(report), HasSubstr("with a threshold of 255.0 instead of 70.0"));
}

TEST_F(PatternCommands, APatternThatIsDamagedIsRefusedWithItsOffset)
{
    Arm("pattern.bin", ToneProject::English);
    auto pattern = project.Read("pattern.bin");
    pattern[36] = 1;
    project.Write("bad.bin", pattern);
    const Report report = Listen({"--pattern", project.File("bad.bin"), Phrases("one.wav", 1)});
    EXPECT_EQ(report.exitCode, ExitCode::BadInput);
    ASSERT_TRUE(report.error.has_value());
    EXPECT_EQ(report.error->message, "The DSP refuses the pattern at 0x24, Reserved2: The second reserved field is not 0.");
}

TEST_F(PatternCommands, APatternOfAnotherDetectorIsRefused)
{
    Arm("pattern.bin", ToneProject::English);
    const Report report = Listen({"--pattern", project.File("pattern.bin"), "--detector-id",
                                  "{00112233-4455-6677-8899-AABBCCDDEEFF}", Phrases("one.wav", 1)});
    EXPECT_EQ(report.exitCode, ExitCode::BadInput);
    ASSERT_TRUE(report.error.has_value());
    EXPECT_THAT(report.error->fix, HasSubstr("--detector-id"));
}

TEST_F(PatternCommands, MissingFilesHaveTheirClass)
{
    Arm("pattern.bin", ToneProject::English);
    const std::string one = Phrases("one.wav", 1);
    EXPECT_EQ(Listen({"--pattern", project.File("none.bin"), one}).exitCode, ExitCode::BadInput);
    EXPECT_EQ(Listen({"--pattern", project.File("pattern.bin"), project.File("none.wav")}).exitCode, ExitCode::BadInput);
    EXPECT_EQ(Listen({"--pattern", project.File("pattern.bin"), project.File("pattern.bin")}).exitCode, ExitCode::BadInput);
    std::filesystem::remove(project.Configuration());
    EXPECT_EQ(Listen({"--pattern", project.File("pattern.bin"), one}).exitCode, ExitCode::BadConfiguration);
}

TEST_F(PatternCommands, TheProgramPrintsOneDocument)
{
    Arm("pattern.bin", ToneProject::English);
    const Arguments more{"--pattern", project.File("pattern.bin"), Phrases("one.wav", 1)};
    const Report report = Listen(more);
    Arguments line = Line(more);
    line.insert(line.begin(), "--json");
    const ProgramRun run = RunVeloxKws(line);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(Json::parse(run.output)["results"], Results(report));
}

TEST_F(PatternCommands, TheProgramPrintsItsVerdictLast)
{
    Arm("pattern.bin", ToneProject::English);
    const ProgramRun run =
        RunVeloxKws(Line({"--pattern", project.File("pattern.bin"), "--fail", "truncated", Phrases("one.wav", 1)}));
    EXPECT_EQ(run.exitCode, static_cast<int>(ExitCode::LibraryFailure));
    EXPECT_THAT(run.output, testing::ContainsRegex("The library refused 1 of 1 result block in 1.6 s.\r?\n$"));
    EXPECT_EQ(run.output.find('\x1b'), std::string::npos) << "no colours in a file";

    EXPECT_EQ(RunVeloxKws({"listen", "--pattern"}).exitCode, static_cast<int>(ExitCode::Usage));
    EXPECT_EQ(RunVeloxKws(Line({"--pattern", "p", "--fail", "smoke", "a.wav"})).exitCode, static_cast<int>(ExitCode::Usage));
}

} // namespace PatternCommandsOnRealTests
