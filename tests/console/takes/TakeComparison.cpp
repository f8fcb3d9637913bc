#include "console/takes/TakeComparison.h"

#include "tests/engine/support/TinyLanguage.h"

#include "engine/enrollment/Enrollment.h"
#include "engine/listening/PhraseSearch.h"
#include "engine/listening/SpeakerRatio.h"

#include <gtest/gtest.h>

namespace TakeComparisonTests
{

using namespace velox::console;

using Strings = std::vector<std::string>;

constexpr TinyLanguage::Voice One{0.2, 0.4, 5000.0};
constexpr TinyLanguage::Voice Another{0.2, 0.4, 250.0};

/// What of a take is compared without models.
Take Figures(double level, double seconds, float score, float sample = 0.0F)
{
    static float different = 0.0F;
    Take take{"take.wav", true};
    take.audio.samples = {sample != 0.0F ? sample : different += 1.0F};
    take.review.level = level;
    take.review.phrase = velox::engine::Detection{score, 0, static_cast<int64_t>(seconds * 16000.0)};
    return take;
}

Take Usual()
{
    return Figures(-20.0, 0.8, 120.0F);
}

/// The codes of the takes' first remarks.
Strings CodesOf(const std::vector<Take>& takes)
{
    Strings codes;
    for (const Take& take : takes)
    {
        codes.push_back(take.remarks.empty() ? "" : take.remarks.front().code);
    }
    return codes;
}

Strings Codes(std::vector<Take> takes)
{
    CompareTakes(takes, {});
    return CodesOf(takes);
}

/// Everybody's mixtures come from takes of both voices.
const StandInModels& Models()
{
    static const StandInModels models = [] {
        StandInModels made;
        made.acoustic = std::make_unique<velox::engine::AcousticModel>(TinyLanguage::Acoustic());
        std::vector<velox::engine::PhraseFrames> takes;
        for (const TinyLanguage::Voice& voice : {One, Another})
        {
            const auto place = velox::engine::FindPhrase(made.acoustic->phrase, TinyLanguage::SayPhrase(voice));
            takes.push_back({velox::engine::SpeakerFrames(place->features), place->path.counts, 100.0F});
        }
        made.acoustic->generic =
            velox::engine::TrainGenericSpeakers(made.acoustic->generic.states[0], takes, TinyLanguage::States);
        return made;
    }();
    return models;
}

/// Accepted takes "1.wav", "2.wav"... of these voices.
std::vector<Take> Said(const std::vector<TinyLanguage::Voice>& voices)
{
    std::vector<Take> takes;
    for (const TinyLanguage::Voice& voice : voices)
    {
        const std::size_t number = takes.size() + 1;
        takes.push_back({std::to_string(number) + ".wav", true});
        takes.back().audio.samples = TinyLanguage::SayPhrase(voice, number);
    }
    return takes;
}

TEST(TakeComparison, TakesAlikeHaveNoOutlier)
{
    EXPECT_EQ(Codes({Usual(), Figures(-24.0, 0.9, 110.0F), Figures(-17.0, 0.7, 130.0F)}), (Strings{"", "", ""}));
}

TEST(TakeComparison, EachDifferenceIsNamed)
{
    EXPECT_EQ(Codes({Usual(), Figures(-20.0, 1.3, 120.0F), Usual()}), (Strings{"", "UnlikeInLength", ""}));
    EXPECT_EQ(Codes({Figures(-33.0, 0.8, 120.0F), Usual(), Usual()}), (Strings{"UnlikeInLevel", "", ""}));
    EXPECT_EQ(Codes({Usual(), Usual(), Figures(-20.0, 0.8, 85.0F)}), (Strings{"", "", "UnlikeInScore"}));
}

TEST(TakeComparison, OfTwoTakesBothAreNamed)
{
    EXPECT_EQ(Codes({Figures(-20.0, 0.8, 120.0F), Figures(-40.0, 0.8, 120.0F)}), (Strings{"UnlikeInLevel", "UnlikeInLevel"}));
}

TEST(TakeComparison, OneTakeDiffersFromNothing)
{
    EXPECT_EQ(Codes({Usual()}), Strings{""});
}

TEST(TakeComparison, ARefusedTakeIsNotCompared)
{
    std::vector<Take> takes{Usual(), Usual(), Figures(-60.0, 0.8, 120.0F)};
    takes[2].accepted = false;
    EXPECT_TRUE(CompareTakes(takes, {}).again.empty());
}

TEST(TakeComparison, TheSameRecordingTwiceIsTold)
{
    std::vector<Take> takes{Figures(-20.0, 0.8, 120.0F, 0.5F), Usual(), Figures(-20.0, 0.8, 120.0F, 0.5F)};
    takes[0].file = "first.wav";
    takes[2].file = "again.wav";
    const TakeComparison comparison = CompareTakes(takes, {});
    ASSERT_EQ(comparison.remarks.size(), 1U);
    EXPECT_EQ(comparison.remarks[0].text, "again.wav is the same recording as first.wav");
    EXPECT_EQ(comparison.again, std::vector<std::size_t>{2});
}

TEST(TakeComparison, TakesOfOneVoiceAreAlike)
{
    std::vector<Take> takes = Said({One, One, One});
    const TakeComparison comparison = CompareTakes(takes, Models());
    EXPECT_TRUE(comparison.again.empty());
    EXPECT_TRUE(comparison.remarks.empty());
    EXPECT_GT(takes[0].likeness.value(), 0.0F);
}

TEST(TakeComparison, ATakeOfAnotherVoiceIsNamedWhereverItStands)
{
    std::vector<Take> last = Said({One, One, One, Another});
    EXPECT_EQ(NamesOf(last, CompareTakes(last, Models()).again), Strings{"4.wav"});
    EXPECT_EQ(CodesOf(last), (Strings{"", "", "", "UnlikeInVoice"}));
    EXPECT_LT(last[3].likeness.value(), 0.0F) << "the engine refuses it, too";
    std::vector<Take> first = Said({Another, One, One});
    EXPECT_EQ(NamesOf(first, CompareTakes(first, Models()).again), Strings{"1.wav"});
}

TEST(TakeComparison, OfTwoVoicesBothAreNamed)
{
    std::vector<Take> takes = Said({One, Another});
    CompareTakes(takes, Models());
    EXPECT_EQ(CodesOf(takes), (Strings{"UnlikeInVoice", "UnlikeInVoice"}));
}

TEST(TakeComparison, TwoVoicesInEqualPartsAreToldAsSuch)
{
    std::vector<Take> takes = Said({One, Another, Another, One});
    const TakeComparison comparison = CompareTakes(takes, Models());
    ASSERT_EQ(comparison.remarks.size(), 1U);
    EXPECT_EQ(comparison.remarks[0].code, "TwoVoices");
    EXPECT_EQ(comparison.remarks[0].text, "two voices: 1.wav and 4.wav sound alike, 2.wav and 3.wav sound alike");
    EXPECT_TRUE(comparison.again.empty());
}

TEST(TakeComparison, WithoutModelsTheVoiceIsNotCompared)
{
    std::vector<Take> takes = Said({One, One, Another});
    EXPECT_TRUE(CompareTakes(takes, {}).again.empty());
    EXPECT_FALSE(takes[0].likeness.has_value());
}

TEST(TakeComparison, NamesStandOnceAndInTheTakesOrder)
{
    EXPECT_EQ(NamesOf(Said({One, One, One}), {2, 0, 2}), (Strings{"1.wav", "3.wav"}));
    EXPECT_EQ(NamesOf(Said({One}), {}), Strings{});
}

} // namespace TakeComparisonTests
