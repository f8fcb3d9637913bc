#include "console/listening/Listening.h"

#include "console/text/CommandFailure.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace
{

using namespace velox;
using namespace velox::console;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Tones = std::vector<std::size_t>;

constexpr std::size_t HalfSecond = 8000;

ListeningSetup SetupWith(const engine::PhraseModel& model, double threshold)
{
    ListeningSetup setup;
    setup.pattern = HandMadePattern::Make(model, static_cast<uint32_t>(threshold * 256.0));
    setup.detector = HandMadePattern::Detector;
    return setup;
}

ListeningSetup SetupWith(double threshold)
{
    return SetupWith(TinyLanguage::Phrase(), threshold);
}

std::vector<float> Phrases(int count)
{
    std::vector<float> audio;
    for (int i = 0; i < count; ++i)
    {
        const auto said = TinyLanguage::SayPhrase({}, static_cast<uint64_t>(i) + 1);
        audio.insert(audio.end(), said.begin(), said.end());
    }
    return audio;
}

ParsedBlock Accept(std::span<const uint8_t> block)
{
    return {0, block[48], 1033, false, 0, 0, {}};
}

Heard Hear(const ListeningSetup& setup, std::span<const float> samples)
{
    return HearRecording(setup, samples, Accept, [](double) {});
}

/// What the phrase scores in the first place.
double PhraseScore()
{
    return Hear(SetupWith(60.0), Phrases(1)).detections.at(0).peak.score / 256.0;
}

TEST(Listening, ArmsAgainAfterEachDetection)
{
    const Heard heard = Hear(SetupWith(60.0), Phrases(3));
    ASSERT_THAT(heard.detections, SizeIs(3));
    for (std::size_t i = 0; i < 3; ++i)
    {
        const double start = static_cast<double>(heard.detections[i].peak.detection.startSample) / 16000.0;
        EXPECT_NEAR(start, 0.5 + 1.6 * static_cast<double>(i), 0.05);
        EXPECT_THAT(heard.detections[i].block, SizeIs(60));
        EXPECT_TRUE(heard.detections[i].Told());
    }
    EXPECT_DOUBLE_EQ(heard.seconds, 4.8);
    EXPECT_EQ(heard.threshold, 60U * 256U);
    EXPECT_FALSE(heard.userModel);
    EXPECT_THAT(heard.nearMisses, IsEmpty());
    EXPECT_FALSE(heard.deafFrom.has_value());
}

TEST(Listening, BlocksOfAnyLengthGiveTheSame)
{
    const std::vector<float> audio = Phrases(2);
    const Heard reference = Hear(SetupWith(60.0), audio);
    for (const std::size_t size : {16U, 1600U, 160000U})
    {
        SCOPED_TRACE(size);
        ListeningSetup setup = SetupWith(60.0);
        setup.blockSamples = size;
        const Heard heard = Hear(setup, audio);
        ASSERT_EQ(heard.detections.size(), reference.detections.size());
        for (std::size_t i = 0; i < heard.detections.size(); ++i)
        {
            EXPECT_EQ(heard.detections[i].block, reference.detections[i].block);
        }
    }
}

TEST(Listening, HearsAKeywordThatEndsTheRecording)
{
    const Tones phrase{0, 1, 2, 3};
    EXPECT_THAT(Hear(SetupWith(60.0), TinyLanguage::Say(phrase, HalfSecond, 0)).detections, SizeIs(1));
}

TEST(Listening, PeaksCloseUnderTheThresholdAreNearMisses)
{
    const double score = PhraseScore();
    const Heard close = Hear(SetupWith(score + 19.0), Phrases(1));
    EXPECT_THAT(close.detections, IsEmpty());
    ASSERT_THAT(close.nearMisses, SizeIs(1));
    EXPECT_EQ(close.nearMisses[0].score, *close.highestSilent);
    EXPECT_NEAR(*close.highestSilent / 256.0, score, 0.01);

    const Heard far = Hear(SetupWith(score + 21.0), Phrases(1));
    EXPECT_THAT(far.nearMisses, IsEmpty());
    EXPECT_EQ(far.highestSilent, close.highestSilent) << "it is known all the same";
}

TEST(Listening, WordsThatFitAreNearMissesWhateverTheSecondStageSays)
{
    engine::PhraseModel model = TinyLanguage::Phrase();
    model.nearCheck.cut = 1e6F;
    const Heard heard = Hear(SetupWith(model, 100.0), Phrases(1));
    EXPECT_THAT(heard.detections, IsEmpty());
    ASSERT_THAT(heard.nearMisses, SizeIs(1));
    EXPECT_LT(heard.nearMisses[0].detection.score, 100.0F - NearMissMargin);
}

TEST(Listening, SilenceHasNoPeaks)
{
    const Heard heard = Hear(SetupWith(60.0), std::vector<float>(16000, 0.0F));
    EXPECT_THAT(heard.detections, IsEmpty());
    EXPECT_FALSE(heard.highestSilent.has_value());
}

TEST(Listening, TheCounterHasOffsetAndDrift)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.counter = {1000, 1600};
    const Heard heard = Hear(setup, Phrases(1));
    ASSERT_THAT(heard.detections, SizeIs(1));
    const auto start = static_cast<uint64_t>(heard.detections[0].peak.detection.startSample);
    uint64_t written = 0;
    for (std::size_t i = 8; i-- > 0;)
    {
        written = written << 8U | heard.detections[0].block[28 + i];
    }
    EXPECT_EQ(written, 1000 + 626 * start);
}

TEST(Listening, AResetMakesDeaf)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.fault = firmware::Fault::Reset;
    const Heard heard = Hear(setup, Phrases(3));
    EXPECT_THAT(heard.detections, IsEmpty());
    ASSERT_TRUE(heard.deafFrom.has_value());
    EXPECT_NEAR(*heard.deafFrom, 1.0, 0.1);
    EXPECT_DOUBLE_EQ(heard.seconds, 4.8);
}

TEST(Listening, FaultyBlocksGoToTheParserAsTheyAre)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.fault = firmware::Fault::TruncatedBlock;
    EXPECT_THAT(Hear(setup, Phrases(1)).detections.at(0).block, SizeIs(52));
    setup.fault = firmware::Fault::UnknownKeyword;
    const Heard heard = Hear(setup, Phrases(1));
    setup.fault = firmware::Fault::ForeignGuid;
    EXPECT_NE(Hear(setup, Phrases(1)).detections.at(0).block[4], heard.detections.at(0).block[4]);
}

TEST(Listening, AStalePatternHearsInPlaceOfTheNewer)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.fault = firmware::Fault::StalePattern;
    setup.newerPattern = SetupWith(TinyLanguage::UserPhrase(), 255.0).pattern;
    const Heard heard = Hear(setup, Phrases(1));
    EXPECT_THAT(heard.detections, SizeIs(1));
    EXPECT_EQ(heard.threshold, 60U * 256U);

    setup.fault = firmware::Fault::None;
    EXPECT_TRUE(Hear(setup, Phrases(1)).userModel) << "without the fault the newer one counts";
}

TEST(Listening, ARefusedPatternIsExplained)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.pattern[32] = 1;
    try
    {
        Hear(setup, Phrases(1));
        FAIL() << "the pattern is refused";
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::BadInput);
        EXPECT_STREQ(failure.what(), "The DSP refuses the pattern at 0x20, Reserved1: The first reserved field is not 0.");
        EXPECT_THAT(failure.fix, HasSubstr("velox-kws arm"));
    }
    setup = SetupWith(60.0);
    setup.detector[0] ^= 1U;
    try
    {
        Hear(setup, Phrases(1));
        FAIL() << "the pattern is refused";
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_THAT(failure.fix, HasSubstr("--detector-id"));
    }
}

TEST(Listening, ProgressGoesToTheEnd)
{
    std::vector<double> shares;
    HearRecording(SetupWith(60.0), Phrases(1), Accept, [&](double share) { shares.push_back(share); });
    ASSERT_THAT(shares, SizeIs(160));
    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
    EXPECT_DOUBLE_EQ(shares.back(), 1.0);
}

} // namespace
