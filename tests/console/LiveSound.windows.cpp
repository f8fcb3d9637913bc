// The console and a microphone. The script that runs this has a sound server whose microphone hears its loudspeaker. It plays
// "play.wav" when it lies in the working folder, and unplugs both when a file "unplug" does.
#include "console/audio/PortAudioMicrophone.h"
#include "console/text/Utf8Path.h"
#include "tests/console/support/ProgramRun.h"
#include "tests/console/support/SoundFile.h"
#include "tests/console/support/ToneProject.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <thread>

namespace LiveSoundOnRealTests
{

using namespace std::chrono_literals;
using testing::EndsWith;
using testing::HasSubstr;
using velox::console::PathFromUtf8;

/// Much longer than anything takes, and less than the test may.
constexpr auto Patience = 40s;

class LiveSound : public testing::Test
{
protected:
    /// Waits until the program has written a text.
    static void AwaitOutput(const RunningVeloxKws& program, const std::string& text)
    {
        const auto until = std::chrono::steady_clock::now() + Patience;
        while (program.Output().find(text) == std::string::npos)
        {
            ASSERT_LT(std::chrono::steady_clock::now(), until) << "it wrote:\n" << program.Output();
            std::this_thread::sleep_for(20ms);
        }
    }

    /// Has it played; does not wait.
    static void Play(std::span<const float> samples)
    {
        SoundFile::Write("unfinished.wav", SoundFile::Wav(samples));
        std::filesystem::rename("unfinished.wav", "play.wav");
    }

    /// The command line of listen, for which it arms.
    std::vector<std::string> Listening(const std::vector<std::string>& more) const
    {
        const std::string pattern = project.File("pattern.bin");
        EXPECT_EQ(RunVeloxKws({"arm", "--config", project.Configuration(), "en-US", "--out", pattern}).exitCode, 0);
        std::vector<std::string> line{"listen", "--config", project.Configuration(), "--pattern", pattern, "--microphone"};
        line.insert(line.end(), more.begin(), more.end());
        return line;
    }

    ToneProject project;
};

TEST_F(LiveSound, MicrophonesAreListed)
{
    const ProgramRun run = RunVeloxKws({"devices"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("  default  MME   "));
    EXPECT_THAT(run.output, HasSubstr("Monitor of "));
}

TEST_F(LiveSound, AToneIsRecordedAsItWasPlayed)
{
    constexpr double Amplitude = 0.5;
    const auto microphone = velox::console::OpenMicrophone("");
    EXPECT_THAT(microphone->Conversion(), HasSubstr("converted from "));
    std::vector<float> heard = microphone->Read();
    Play(Signals::Sine(1000.0, Amplitude, 24000));
    const auto isTone = [](float sample) {
        return sample > 0.25F;
    };
    const auto until = std::chrono::steady_clock::now() + Patience;
    auto first = heard.end();
    for (; heard.end() - first < 20000 && std::chrono::steady_clock::now() < until; first = std::ranges::find_if(heard, isTone))
    {
        const std::vector<float> sound = microphone->Read();
        heard.insert(heard.end(), sound.begin(), sound.end());
    }
    ASSERT_GE(heard.end() - first, 20000);
    EXPECT_EQ(microphone->Overruns(), 0U);
    const std::span<const float> tone(first + 1600, 16000);
    const double amplitude = Signals::AmplitudeAt(1000.0, tone);
    EXPECT_NEAR(amplitude, Amplitude, 0.005);
    const double power = std::pow(Signals::RootMeanSquare(tone), 2);
    EXPECT_LT(power - amplitude * amplitude / 2.0, 1e-5 * power) << "nothing else, no gap, no jump";
}

TEST_F(LiveSound, APhraseIsDetectedWhenItIsSaid)
{
    const std::string sounds = project.File("heard");
    RunningVeloxKws program(Listening({"--seconds", "5", "--save-audio", sounds}));
    AwaitOutput(program, "Listening to ");
    Play(TinyLanguage::SayPhrase());
    AwaitOutput(program, "\ndetected  0:0");
    EXPECT_EQ(program.Output().find("Threshold:"), std::string::npos) << "it goes on listening";
    const ProgramRun run = program.Wait();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, EndsWith("1 detection in 5.0 s.\n"));
    EXPECT_FALSE(std::filesystem::is_empty(PathFromUtf8(sounds)));
}

TEST_F(LiveSound, AUserIsEnrolled)
{
    const TinyLanguage::Voice voice{0.15, 0.4, 3300.0};
    RunningVeloxKws program({"enroll", "--config", project.Configuration(), "en-US", "--microphone", "--takes", "2", "--model",
                             project.File("user.vwov"), "--save-takes", project.File("takes")});
    AwaitOutput(program, "Take 1 of 2");
    Play(TinyLanguage::SayPhrase(voice, 1));
    AwaitOutput(program, "Take 2 of 2");
    Play(TinyLanguage::SayPhrase(voice, 2));
    const ProgramRun run = program.Wait();
    EXPECT_EQ(run.exitCode, 0) << run.output << run.errors;
    EXPECT_THAT(run.output, HasSubstr("Enrolled: "));
    EXPECT_TRUE(std::filesystem::exists(PathFromUtf8(project.File("takes\\take-2.wav"))));
    EXPECT_TRUE(std::filesystem::exists(PathFromUtf8(project.File("user.vwov"))));
}

/// The last one.
TEST_F(LiveSound, TheEndOfTheDeviceIsAnError)
{
    RunningVeloxKws program(Listening({}));
    AwaitOutput(program, "Listening to ");
    SoundFile::Write("unplug", "");
    const ProgramRun run = program.Wait();
    EXPECT_EQ(run.exitCode, 3) << run.output;
    EXPECT_THAT(run.errors, HasSubstr(" gives no sound any more."));
    EXPECT_THAT(run.output, HasSubstr("; then the microphone was gone."));
}

TEST(LiveSoundMissing, NoMicrophoneIsAnError)
{
    const ProgramRun run = RunVeloxKws({"devices"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.errors, HasSubstr("error: There is no microphone.\n"));
}

} // namespace LiveSoundOnRealTests
