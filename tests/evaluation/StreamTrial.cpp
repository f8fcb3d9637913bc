#include "evaluation/Trial.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <cmath>

namespace StreamTrialTests
{

using namespace velox;
using namespace velox::evaluation;
using testing::ContainsRegex;
using testing::HasSubstr;

class StreamTrial : public testing::Test
{
protected:
    StreamTrial()
    {
        language.firmware = TinyLanguage::Phrase();
        language.blobs.preDefinedThreshold = 70.0;
        judged.phrase = "a";
        judged.background = {Saying({4, 5, 6}, "human", "talk.wav")};
    }

    static Clip Saying(const std::vector<std::size_t>& tones, const std::string& kind, const std::string& path)
    {
        return {{"dev", "a", "take", kind, "m1", "m", path}, TinyLanguage::Say(tones, 4'000, 4'000)};
    }

    void Try()
    {
        TryStream(language, judged, &report);
    }

    Language language;
    Judged judged;
    Report report;
};

TEST_F(StreamTrial, TheSpreadOverOffsetsIsThatOfEachKindOfVoice)
{
    judged.takes = {Saying({0, 1, 2, 3}, "natural", "right.wav"), Saying({4, 5, 6, 7}, "formant", "other.wav")};
    Try();
    EXPECT_EQ(report.Worst("a: spread of the score over offsets, worst clip, natural"), 0.0);
    EXPECT_GT(report.Worst("a: spread of the score over offsets, worst clip, formant"), 0.0);
    EXPECT_THAT(report.Notes(), ContainsRegex("offsets of right.wav: 1[0-9.]+ to 1"));
    EXPECT_THAT(report.Notes(), ContainsRegex("offsets of other.wav: [0-9.]+ to [0-9.]+\n"));
}

TEST_F(StreamTrial, WithoutANaturalVoiceTheSpreadIsWhole)
{
    judged.takes = {Saying({0, 1, 2, 3}, "formant", "right.wav")};
    Try();
    EXPECT_EQ(report.Worst("a: spread of the score over offsets, worst clip, natural"), 100.0);
}

TEST_F(StreamTrial, PlacesAreThoseOfTheTakesThatAreHeard)
{
    judged.takes = {Saying({0, 1, 2, 3}, "natural", "right.wav"), Saying({4, 5, 6, 7}, "natural", "other.wav")};
    Try();
    EXPECT_THAT(report.Table(), HasSubstr(" of 1 | 5 |"));
    EXPECT_LT(std::abs(report.Worst("a: start reported late, median").value()), 100.0);
}

} // namespace StreamTrialTests
