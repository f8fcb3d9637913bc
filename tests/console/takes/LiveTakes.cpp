#include "console/takes/LiveTakes.h"

#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "tests/console/support/FileMicrophone.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace LiveTakesTests
{

using namespace velox;
using namespace velox::console;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::ptrdiff_t Second = 16000;

std::vector<float> Silence(std::ptrdiff_t samples)
{
    return TinyLanguage::Say({}, static_cast<std::size_t>(samples), 0);
}

/// The phrase with much silence behind it.
std::vector<float> GoodTake(uint64_t seed = 1)
{
    std::vector<float> take = TinyLanguage::SayPhrase({}, seed);
    const std::vector<float> silence = Silence(4 * Second);
    take.insert(take.end(), silence.begin(), silence.end());
    return take;
}

std::vector<float> QuietTake()
{
    std::vector<float> whisper = TinyLanguage::Whisper();
    whisper.insert(whisper.end(), whisper.begin(), whisper.begin() + Second / 2); // its silence
    return whisper;
}

/// Plays the sound of one try after the other, and judges takes by the stand-in's review alone.
class LiveTakes : public testing::Test
{
protected:
    ~LiveTakes() override
    {
        ForgetInterruption();
    }

    void Record(const std::vector<std::vector<float>>& tries, const TakeRequest& request)
    {
        const auto open = [&] {
            auto microphone = std::make_unique<FileMicrophone>(tries.at(opened));
            microphone->overruns = opened < overruns.size() ? overruns[opened] : 0;
            ++opened;
            return microphone;
        };
        const auto judge = [](const std::string& name, Audio audio) {
            engine::TakeReview review = engine::ReviewTake(&Phrase(), audio.samples);
            const bool accepted = review.status == engine::Status::Success;
            return MakeTake(name, std::move(audio), std::move(review), {accepted});
        };
        Progress progress(nullptr, std::chrono::steady_clock::now, &lines);
        RecordTakes(request, open, judge, &progress, &takes);
    }

    CommandFailure FailureOf(const std::vector<std::vector<float>>& tries, const TakeRequest& request)
    {
        try
        {
            Record(tries, request);
        }
        catch (const CommandFailure& failure)
        {
            return failure;
        }
        return {ExitCode::Success, "all takes were accepted"};
    }

    static const engine::PhraseModel& Phrase()
    {
        static const engine::PhraseModel model = TinyLanguage::Phrase();
        return model;
    }

    std::ostringstream lines;
    std::vector<Take> takes;
    std::size_t opened = 0;
    std::vector<std::size_t> overruns; ///< of each try
    TemporaryFolder folder;
};

TEST_F(LiveTakes, AsksForEachTakeAndEndsItAfterTheSpeech)
{
    Record({GoodTake(1), GoodTake(2)}, {2});
    EXPECT_EQ(lines.str(), "Take 1 of 2: say the phrase.\nGood.\nTake 2 of 2: say the phrase.\nGood.\n");
    ASSERT_THAT(takes, SizeIs(2));
    for (const Take& take : takes)
    {
        EXPECT_TRUE(take.accepted);
        EXPECT_NEAR(take.audio.seconds, 0.5 + 0.6 + 0.8, 0.2) << "0.8 s behind the phrase";
        EXPECT_EQ(take.audio.conversion, "converted from 48 kHz mono");
    }
    EXPECT_EQ(takes[1].file, "take 2");
}

TEST_F(LiveTakes, TellsAtOnceWhatIsWrongAndAsksAgain)
{
    Record({QuietTake(), Silence(7 * Second), GoodTake()}, {1});
    EXPECT_THAT(lines.str(), HasSubstr("Take 1 of 1: say the phrase.\nRefused.\n    too quiet: "));
    EXPECT_THAT(lines.str(), HasSubstr("    fix: Come closer to the microphone"));
    EXPECT_THAT(lines.str(), HasSubstr("Take 1 of 1: say the phrase again.\nRefused.\n    no speech in 6.0"));
    EXPECT_THAT(lines.str(), testing::EndsWith("Take 1 of 1: say the phrase again.\nGood.\n"));
    EXPECT_THAT(takes, SizeIs(1)) << "those that were refused are gone";
}

TEST_F(LiveTakes, ATakeWithAGapIsRefused)
{
    overruns = {1};
    Record({GoodTake(), GoodTake()}, {1});
    EXPECT_THAT(lines.str(), HasSubstr("Refused.\n    sound was lost 1 time\n    fix: The computer was too busy"));
    EXPECT_EQ(opened, 2U);
}

TEST_F(LiveTakes, FiveRefusalsAreEnough)
{
    const CommandFailure failure = FailureOf({GoodTake(), Silence(7 * Second), Silence(7 * Second), Silence(7 * Second),
                                              Silence(7 * Second), Silence(7 * Second), GoodTake()},
                                             {3});
    EXPECT_EQ(failure.exitCode, ExitCode::Refused);
    EXPECT_STREQ(failure.what(), "Take 2 was refused 5 times.");
    EXPECT_FALSE(failure.fix.empty());
    ASSERT_THAT(takes, SizeIs(2)) << "the first one, and that which was refused last";
    EXPECT_TRUE(takes[0].accepted);
    EXPECT_FALSE(takes[1].accepted);
}

TEST_F(LiveTakes, StoresTheTakesWhenAsked)
{
    const TakeRequest request{2, folder.Path() + "/takes"};
    Record({GoodTake(1), QuietTake(), GoodTake(2)}, request);
    ASSERT_THAT(takes, SizeIs(2));
    for (std::size_t i = 0; i < 2; ++i)
    {
        EXPECT_EQ(takes[i].file, TakeFile(request, i + 1));
        const Audio stored = ReadAudio(PathFromUtf8(takes[i].file));
        EXPECT_TRUE(std::ranges::equal(stored.samples, takes[i].audio.samples,
                                       [](float one, float other) { return std::abs(one - other) <= 1.0F / 32768.0F; }));
    }
    EXPECT_EQ(PathFromUtf8(takes[1].file), PathFromUtf8(request.folder) / "take-2.wav");
}

TEST_F(LiveTakes, AFolderThatCannotBeMadeIsAWriteFailure)
{
    WriteWholeFile(folder.Path() + "/takes", "a file");
    EXPECT_EQ(FailureOf({GoodTake()}, {1, folder.Path() + "/takes"}).exitCode, ExitCode::WriteFailed);
}

TEST_F(LiveTakes, AMicrophoneThatIsUnpluggedEndsIt)
{
    EXPECT_EQ(FailureOf({Silence(Second)}, {1}).exitCode, ExitCode::BadInput);
    EXPECT_THAT(takes, IsEmpty());
}

TEST_F(LiveTakes, CtrlCEndsIt)
{
    RequestInterruption();
    EXPECT_EQ(FailureOf({GoodTake()}, {1}).exitCode, ExitCode::Interrupted);
}

} // namespace LiveTakesTests
