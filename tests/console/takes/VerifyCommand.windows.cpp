#include "console/takes/VerifyCommand.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "tests/console/support/ProgramRun.h"
#include "tests/console/support/SoundFile.h"
#include "tests/console/support/ToneProject.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace VerifyCommandOnRealTests
{

using namespace velox::console;
using Json = nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;

using Tones = std::vector<std::size_t>;
constexpr std::size_t HalfSecond = 8000;

/// The program as a process.
class VerifyCommand : public testing::Test
{
protected:
    ProgramRun Run(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {"verify", "--config", project.Configuration(), "en-US"});
        return RunVeloxKws(arguments);
    }

    std::string Phrase(const std::string& name, const TinyLanguage::Voice& voice = {0.15, 0.2, 3300.0}) const
    {
        return project.Record(name, TinyLanguage::SayPhrase(voice));
    }

    /// The code of the one remark of the one take.
    Json Refusal(const std::string& recording) const
    {
        const ProgramRun run = Run({recording, "--json"});
        EXPECT_EQ(run.exitCode, 1) << run.output << run.errors;
        const Json take = Json::parse(run.output)["results"].at(0);
        EXPECT_EQ(take["status"], "refused");
        EXPECT_EQ(take["remarks"].size(), 1U) << take;
        EXPECT_NE(take["remarks"].at(0)["fix"], "");
        return take;
    }

    ToneProject project;
};

TEST_F(VerifyCommand, AGoodTakeIsAcceptedWithItsPlaceScoreAndThreshold)
{
    const ProgramRun run = Run({Phrase("take 1.wav")});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("take 1.wav\n"));
    EXPECT_THAT(run.output, HasSubstr("\nThreshold:     70\n"));
    EXPECT_THAT(run.output, EndsWith("The take is accepted.\n"));
    EXPECT_EQ(run.errors, "");
}

TEST_F(VerifyCommand, TheDocumentTellsWhereThePhraseLies)
{
    const Json take = Json::parse(Run({Phrase("a.wav"), "--json"}).output)["results"].at(0);
    EXPECT_NEAR(take["phraseBegin"].get<double>(), 0.5, 0.05);
    EXPECT_NEAR(take["phraseEnd"].get<double>(), 1.1, 0.2);
    EXPECT_GT(take["score"].get<double>(), take["threshold"].get<double>());
}

TEST_F(VerifyCommand, OneLineTellsOfManyTakesWhichToRecordAgain)
{
    const std::string wrong = project.Record("b.wav", TinyLanguage::Say(Tones{3, 2, 1, 0}, HalfSecond, HalfSecond));
    const ProgramRun run = Run({Phrase("a.wav"), wrong, Phrase("c.wav")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.output, EndsWith("2 of 3 takes are accepted. Record again: " + wrong + ".\n"));
}

TEST_F(VerifyCommand, EachRefusalHasItsReason)
{
    std::vector<float> quiet = TinyLanguage::Whisper();
    struct Case
    {
        const char* code;
        std::vector<float> samples;
    };
    const std::vector<Case> cases{
        {"PhraseNotFound", TinyLanguage::Say(Tones{3, 2, 1, 0}, HalfSecond, HalfSecond)},
        {"NoSpeech", Signals::Noise(0.001, 32000, 3)},
        {"TooQuiet", std::move(quiet)},
        {"UtteranceTooShort", std::vector<float>(800, 0.0F)},
        {"CutAtEnd", TinyLanguage::Say(Tones{0, 1}, HalfSecond, 0)},
        {"CutAtStart", TinyLanguage::Say(Tones{2, 3}, 0, HalfSecond)},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.code);
        EXPECT_EQ(Refusal(project.Record("take.wav", c.samples))["remarks"].at(0)["code"], c.code);
    }
}

TEST_F(VerifyCommand, AConvertedRecordingSaysSo)
{
    std::vector<float> twice;
    for (const float sample : TinyLanguage::SayPhrase())
    {
        twice.insert(twice.end(), {sample, sample, sample, sample}); // 32 kHz stereo: each sample held
    }
    project.Write("stereo.wav", SoundFile::Wav(twice, 32000, 2));
    const ProgramRun run = Run({project.File("stereo.wav")});
    EXPECT_THAT(run.output, HasSubstr("converted from 32 kHz stereo"));
}

TEST_F(VerifyCommand, AFileThatIsNoSoundDoesNotHideTheOthers)
{
    project.Write("text.wav", std::string("no sound"));
    const ProgramRun run = Run({project.File("text.wav"), Phrase("a.wav"), "--json"});
    EXPECT_EQ(run.exitCode, 3);
    const Json results = Json::parse(run.output)["results"];
    EXPECT_EQ(results.at(0)["remarks"].at(0)["code"], "Unreadable");
    EXPECT_EQ(results.at(1)["status"], "accepted");
}

TEST_F(VerifyCommand, AFolderStandsForTheRecordingsInIt)
{
    std::filesystem::create_directory(velox::console::PathFromUtf8(project.File("takes")));
    Phrase("takes\\take 10.wav");
    Phrase("takes\\take 2.wav");
    const Json results = Json::parse(Run({project.File("takes"), "--json"}).output)["results"];
    ASSERT_EQ(results.size(), 2U);
    EXPECT_THAT(results.at(0)["title"].get<std::string>(), EndsWith("take 2.wav"));
    EXPECT_EQ(Json::parse(Run({project.File("takes\\*.wav"), "--json"}).output)["results"].size(), 2U);
}

TEST_F(VerifyCommand, SamplesBeyondFullScaleAreAWarning)
{
    std::vector<float> loud = TinyLanguage::SayPhrase();
    loud[100] = 1.5F;
    const Json take = Json::parse(Run({project.Record("a.wav", loud), "--json"}).output)["results"].at(0);
    ASSERT_EQ(take["remarks"].size(), 1U) << take;
    EXPECT_EQ(take["remarks"].at(0)["severity"], "warning");
}

TEST_F(VerifyCommand, NoOutputReplacesATake)
{
    const std::string take = Phrase("a.wav");
    const std::vector<uint8_t> before = project.Read("a.wav");
    for (const char* option : {"--report", "--log-file"})
    {
        const ProgramRun run = Run({take, option, take});
        EXPECT_EQ(run.exitCode, 2) << option;
        EXPECT_EQ(run.output, "") << "refused before any work";
        EXPECT_EQ(project.Read("a.wav"), before) << option;
    }
}

TEST_F(VerifyCommand, NamesMayHoldBlanksAndOtherAlphabets)
{
    const std::string name = "Zoë und Đorđe.wav";
    SoundFile::Write(velox::console::PathFromUtf8(project.File(name)), SoundFile::FloatWav(TinyLanguage::SayPhrase()));
    const ProgramRun run = Run({project.File(name)});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("accepted  " + project.File(name) + "\n"));
}

TEST_F(VerifyCommand, WithoutTheLanguageTheConfiguredOnesAreNamed)
{
    const ProgramRun run = RunVeloxKws({"verify", "--config", project.Configuration(), "de-DE", Phrase("a.wav")});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, HasSubstr("Language 1031 (de-DE) is not in the configuration file"));
    EXPECT_THAT(run.errors, HasSubstr("1033 (en-US)"));
}

TEST_F(VerifyCommand, AConfigurationThatIsNotThereIsNamed)
{
    const ProgramRun run = RunVeloxKws({"verify", "--config", project.File("none.xml"), "en-US", Phrase("a.wav")});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, HasSubstr("none.xml cannot be used: There is no such file"));
}

TEST_F(VerifyCommand, AMissingModelFileIsNamed)
{
    std::filesystem::remove(project.File("zn.bin"));
    const ProgramRun run = Run({Phrase("a.wav")});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, HasSubstr("the model file zn.bin cannot be opened"));
    EXPECT_THAT(run.errors, HasSubstr("fix: "));
}

TEST_F(VerifyCommand, AModelThatTheEngineRefusesIsNamedWithTheEnginesReason)
{
    project.Write("am.bin", std::string("VWZN is another kind of model, and longer than its head"));
    const ProgramRun run = Run({Phrase("a.wav")});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, HasSubstr("the engine refuses the language's acoustic model"));
    EXPECT_THAT(run.errors, HasSubstr("engine status 1"));
}

TEST_F(VerifyCommand, VerboseShowsTheLibrarysLinesAmongTheErrorsOnly)
{
    const ProgramRun run = Run({Phrase("a.wav"), "--verbose", "--json"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(Json::parse(run.output)["command"], "verify");
    EXPECT_THAT(run.errors, HasSubstr("[VerifyUserKeyword] Exit. Key-phrase detected: TRUE."));
}

TEST_F(VerifyCommand, TheLogFileGetsEveryLine)
{
    const ProgramRun run = Run({Phrase("a.wav"), "--log-file", project.File("kws log.txt")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
    const std::vector<uint8_t> log = project.Read("kws log.txt");
    EXPECT_THAT(std::string(log.begin(), log.end()), HasSubstr("[VerifyUserKeyword] Exit. Key-phrase detected: TRUE."));
}

/// The verifier of a project for one language.
struct Verifying
{
    Verifying(const ToneProject& project, const std::string& language, const std::vector<std::string>& files)
        : verifier({{project.Configuration(), "{01020304-0506-0708-090A-0B0C0D0E0F10}"}, language, files}, context, {})
    {
    }

    Progress progress{nullptr};
    LogOptions log;
    Context context{progress, log};
    TakeVerifier verifier;
    std::vector<Take> takes;
};

TEST_F(VerifyCommand, VerifiesEveryFileAndGoesOnBehindOneThatCannotBeRead)
{
    project.Write("notes.txt", std::string("no audio"));
    Verifying run(project, "en-US",
                  {project.Record("good.wav", TinyLanguage::SayPhrase({0.15, 0.2, 3300.0})), project.File("notes.txt"),
                   project.Record("silence.wav", std::vector<float>(16'000))});
    EXPECT_EQ(run.verifier.language, ToneProject::English);
    EXPECT_EQ(run.verifier.configured.id, ToneProject::English);
    EXPECT_NE(run.verifier.models.phrase, nullptr);
    run.verifier.Verify(run.progress, &run.takes);
    ASSERT_EQ(run.takes.size(), 3U);
    EXPECT_TRUE(run.takes[0].accepted);
    EXPECT_EQ(run.takes[0].threshold, 70.0);
    EXPECT_TRUE(run.takes[0].review.phrase.has_value());
    EXPECT_FALSE(run.takes[1].readable);
    EXPECT_FALSE(run.takes[2].accepted);
    EXPECT_EQ(run.takes[2].remarks.at(0).code, "NoSpeech");
}

TEST_F(VerifyCommand, TheTakesBeforeAFailureAreThere)
{
    Verifying run(project, "en-US", {project.Record("a.wav", TinyLanguage::SayPhrase())});
    run.verifier.Verify(run.progress, &run.takes);
    std::filesystem::remove(project.File("am.bin"));
    EXPECT_THROW(run.verifier.Verify(run.progress, &run.takes), CommandFailure);
    EXPECT_EQ(run.takes.size(), 1U);
}

TEST_F(VerifyCommand, ALanguageThatIsNotConfiguredIsToldWithThoseThatAre)
{
    try
    {
        const Verifying run(project, "de-DE", {project.Record("a.wav", TinyLanguage::SayPhrase())});
        ADD_FAILURE();
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::BadConfiguration);
        EXPECT_THAT(failure.what(), HasSubstr("Language 1031 (de-DE) is not in the configuration file"));
        EXPECT_THAT(failure.fix, HasSubstr("1033 (en-US)"));
    }
}

} // namespace VerifyCommandOnRealTests
