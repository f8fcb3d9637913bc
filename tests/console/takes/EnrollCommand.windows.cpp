#include "console/takes/EnrollCommand.h"

#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"
#include "engine/enrollment/SpeakerAdaptation.h"
#include "engine/listening/PhraseSearch.h"
#include "engine/listening/SpeakerRatio.h"
#include "tests/console/support/ProgramRun.h"
#include "tests/console/support/ToneProject.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <windows.h>

#include <filesystem>

namespace EnrollCommandOnRealTests
{

using Json = nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;

constexpr std::size_t HalfSecond = 8000;

/// The program as a process.
class EnrollCommand : public testing::Test
{
protected:
    ProgramRun Run(const std::vector<std::string>& more) const
    {
        std::vector<std::string> arguments{"enroll", "--config", project.Configuration(), "en-US"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunVeloxKws(arguments);
    }

    std::string Take(int number, const TinyLanguage::Voice& voice = {0.15, 0.4, 3300.0}) const
    {
        return project.Record("take " + std::to_string(number) + ".wav",
                              TinyLanguage::SayPhrase(voice, static_cast<uint64_t>(number)));
    }

    static constexpr TinyLanguage::Voice Bright{0.2, 0.4, 5000.0};
    static constexpr TinyLanguage::Voice Dark{0.2, 0.4, 250.0};

    void LearnVoices() const
    {
        velox::engine::AcousticModel acoustic = TinyLanguage::Acoustic();
        std::vector<velox::engine::PhraseFrames> takes;
        for (const TinyLanguage::Voice& voice : {Bright, Dark})
        {
            const auto place = velox::engine::FindPhrase(acoustic.phrase, TinyLanguage::SayPhrase(voice));
            takes.push_back({velox::engine::SpeakerFrames(place->features), place->path.counts, 100.0F});
        }
        acoustic.generic = velox::engine::TrainGenericSpeakers(acoustic.generic.states[0], takes, TinyLanguage::States);
        project.Write("am.bin", velox::engine::WriteAcousticModel(acoustic));
    }

    std::string Reversed() const
    {
        return project.Record("wrong.wav", TinyLanguage::Say(std::vector<std::size_t>{3, 2, 1, 0}, HalfSecond, HalfSecond));
    }

    bool Exists(const std::string& name) const
    {
        return std::filesystem::exists(velox::console::PathFromUtf8(project.File(name)));
    }

    /// Files of the project's folder whose name holds this.
    std::ptrdiff_t Count(const std::string& piece) const
    {
        std::ptrdiff_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(project.File("x")).parent_path()))
        {
            count += velox::console::Utf8(entry.path().filename()).find(piece) != std::string::npos ? 1 : 0;
        }
        return count;
    }

    ToneProject project;
};

TEST_F(EnrollCommand, TakesBecomeAModelThatHearsThem)
{
    const ProgramRun run = Run({Take(1), Take(2), Take(3), "--model", project.File("Žofie Nováková.vwov")});
    ASSERT_EQ(run.exitCode, 0) << run.output << run.errors;
    EXPECT_THAT(run.output, HasSubstr("3 of the 3 takes"));
    EXPECT_THAT(run.output, EndsWith("Žofie Nováková.vwov of 1033 (en-US) from 3 takes.\n"));
    const std::vector<uint8_t> model =
        velox::console::ReadWhole(velox::console::PathFromUtf8(project.File("Žofie Nováková.vwov")));
    EXPECT_EQ(std::string(model.begin(), model.begin() + 4), "VWOV");
}

TEST_F(EnrollCommand, TheSameTakesGiveTheSameBytes)
{
    ASSERT_EQ(Run({Take(1), Take(2), "--model", project.File("a.vwov")}).exitCode, 0);
    ASSERT_EQ(Run({Take(1), Take(2), "--model", project.File("b.vwov")}).exitCode, 0);
    EXPECT_EQ(project.Read("a.vwov"), project.Read("b.vwov"));
}

TEST_F(EnrollCommand, ARefusedTakeMakesNoModelAndIsNamed)
{
    const std::string wrong = Reversed();
    const ProgramRun run = Run({Take(1), wrong, "--model", project.File("user.vwov")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.output, EndsWith("Record again: " + wrong + ". No model was made.\n"));
    EXPECT_FALSE(Exists("user.vwov"));
}

TEST_F(EnrollCommand, OnRequestRefusedTakesAreLeftOut)
{
    const ProgramRun run = Run({Take(1), Reversed(), Take(2), "--skip-refused", "--model", project.File("user.vwov"), "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    const Json document = Json::parse(run.output);
    EXPECT_EQ(document["facts"]["takes"], 2);
    EXPECT_THAT(document["verdict"].get<std::string>(), HasSubstr("Refused and left out: " + project.File("wrong.wav") + "."));
    EXPECT_TRUE(Exists("user.vwov"));
}

TEST_F(EnrollCommand, ATakeThatIsNotLikeTheOthersIsNamed)
{
    const TinyLanguage::Voice loud{0.6, 0.4, 3300.0};
    const TinyLanguage::Voice soft{0.12, 0.4, 3300.0};
    const ProgramRun run = Run({Take(1, loud), Take(2, loud), Take(3, soft), "--model", project.File("user.vwov"), "--json"});
    ASSERT_EQ(run.exitCode, 0) << run.output << run.errors;
    const Json document = Json::parse(run.output);
    EXPECT_TRUE(document["results"].at(0)["remarks"].empty());
    EXPECT_EQ(document["results"].at(2)["remarks"].at(0)["code"], "UnlikeInLevel");
    EXPECT_THAT(document["verdict"].get<std::string>(), EndsWith("Better to record again: " + project.File("take 3.wav") + "."));
}

TEST_F(EnrollCommand, ATakeThatTheEngineWillNotLearnFromIsNamed)
{
    const std::string faint = Take(3, {0.012, 0.4, 3300.0}); // loud enough for the verification only
    const ProgramRun run = Run({Take(1), faint, "--model", project.File("user.vwov"), "--json"});
    EXPECT_EQ(run.exitCode, 1) << run.output << run.errors;
    const Json document = Json::parse(run.output);
    EXPECT_EQ(document["results"].at(1)["remarks"].back()["code"], "LeftOut");
    EXPECT_THAT(document["verdict"].get<std::string>(), HasSubstr("Record again: " + faint));
    EXPECT_FALSE(Exists("user.vwov"));
}

/// Everybody's mixtures lie where two voices do, so that the engine tells them apart.
TEST_F(EnrollCommand, WhenTheTakesDisagreeTheyAreShownAndTheOddOneIsNamed)
{
    LearnVoices();
    const ProgramRun run = Run({Take(1, Bright), Take(2, Bright), Take(3, Dark), Take(4, Bright), "--model",
                                project.File("user.vwov"), "--report", project.File("page.html"), "--json"});
    EXPECT_EQ(run.exitCode, 1) << run.output << run.errors;
    const Json document = Json::parse(run.output);
    ASSERT_EQ(document["results"].size(), 4U);
    EXPECT_EQ(document["results"].at(2)["remarks"].at(0)["code"], "UnlikeInVoice");
    EXPECT_TRUE(document["results"].at(0)["remarks"].empty());
    EXPECT_THAT(document["error"]["message"].get<std::string>(), HasSubstr("TakesDisagree"));
    EXPECT_THAT(document["verdict"].get<std::string>(), EndsWith("Record again: " + project.File("take 3.wav") + "."));
    EXPECT_TRUE(Exists("page.html"));
    EXPECT_FALSE(Exists("user.vwov"));
}

TEST_F(EnrollCommand, TwoVoicesInEqualPartsAreToldInTheVerdict)
{
    LearnVoices();
    const ProgramRun run =
        Run({Take(1, Bright), Take(2, Bright), Take(3, Dark), Take(4, Dark), "--model", project.File("user.vwov")});
    EXPECT_THAT(run.output, HasSubstr("Note: two voices: " + project.File("take 1.wav") + " and " + project.File("take 2.wav") +
                                      " sound alike, " + project.File("take 3.wav") + " and " + project.File("take 4.wav") +
                                      " sound alike."));
}

TEST_F(EnrollCommand, OneTakeAloneMakesNoModel)
{
    const ProgramRun run = Run({Take(1), "--model", project.File("user.vwov")});
    EXPECT_EQ(run.exitCode, 1) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("one take alone"));
    EXPECT_FALSE(Exists("user.vwov"));
}

TEST_F(EnrollCommand, TheSameTakeTwiceIsToldInTheVerdict)
{
    const std::string take = Take(1);
    project.Write("copy.wav", project.Read("take 1.wav"));
    const ProgramRun run = Run({take, Take(2), project.File("copy.wav"), "--model", project.File("user.vwov")});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("Note: " + project.File("copy.wav") + " is the same recording as " + take + "."));
}

TEST_F(EnrollCommand, NoOutputReplacesATake)
{
    const std::string take = Take(1);
    const std::vector<uint8_t> before = project.Read("take 1.wav");
    const std::string model = project.File("user.vwov");
    for (const std::vector<std::string>& outputs : {std::vector<std::string>{"--model", take},
                                                    {"--model", model, "--report", take},
                                                    {"--model", model, "--log-file", take}})
    {
        std::vector<std::string> arguments{take};
        arguments.insert(arguments.end(), outputs.begin(), outputs.end());
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(run.exitCode, 2) << run.output << run.errors;
        EXPECT_EQ(run.output, "") << "refused before any work";
        EXPECT_EQ(project.Read("take 1.wav"), before);
        EXPECT_FALSE(Exists("user.vwov"));
    }
}

TEST_F(EnrollCommand, AModelThatCannotBeWrittenLeavesTheFormerOne)
{
    project.Write("user.vwov", std::string("VWOV former"));
    const std::wstring file = velox::console::PathFromUtf8(project.File("user.vwov")).wstring();
    const HANDLE held = CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    const ProgramRun run = Run({Take(1), Take(2), "--model", project.File("user.vwov")});
    CloseHandle(held);
    EXPECT_EQ(run.exitCode, 6) << run.output << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("Cannot write"));
    const std::vector<uint8_t> model = project.Read("user.vwov");
    EXPECT_EQ(std::string(model.begin(), model.end()), "VWOV former");
    EXPECT_EQ(Count("user.vwov"), 1) << "nothing is left beside it";
}

TEST_F(EnrollCommand, TakesComeFromFilesOrAMicrophone)
{
    const std::string model = project.File("user.vwov");
    const std::string take = Take(1);
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{},
                                                  {take, "--microphone"},
                                                  {take, "--takes", "2"},
                                                  {take, "--save-takes", "takes"},
                                                  {"--microphone", "--skip-refused"},
                                                  {"--microphone", "--takes", "17"}})
    {
        std::vector<std::string> line{"--model", model};
        line.insert(line.end(), wrong.begin(), wrong.end());
        EXPECT_EQ(Run(line).exitCode, 2);
    }
    EXPECT_EQ(Run({"--microphone", "no such one", "--model", model}).exitCode, 3);
    EXPECT_FALSE(Exists("user.vwov"));
}

TEST_F(EnrollCommand, StoredTakesReplaceNoForeignFile)
{
    std::filesystem::create_directory(velox::console::PathFromUtf8(project.File("takes")));
    project.Write("takes\\take-2.wav", std::string("a diary"));
    const std::vector<std::string> line{"--microphone", "no such one",         "--takes", "2",
                                        "--save-takes", project.File("takes"), "--model", project.File("user.vwov")};
    EXPECT_EQ(Run(line).exitCode, 2);
    project.Write("takes\\take-2.wav", std::string("RIFF, an older take"));
    EXPECT_EQ(Run(line).exitCode, 3) << "it goes on to the microphone";
}

TEST_F(EnrollCommand, AFolderThatIsNotThereIsAWriteFailure)
{
    const ProgramRun run = Run({Take(1), Take(2), "--model", project.File("missing\\user.vwov")});
    EXPECT_EQ(run.exitCode, 6) << run.output << run.errors;
}

} // namespace EnrollCommandOnRealTests
