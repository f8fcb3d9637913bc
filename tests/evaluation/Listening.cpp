#include "evaluation/Listening.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <set>

namespace ListeningTests
{

using namespace velox;
using namespace velox::evaluation;

Clip Saying(const std::vector<std::size_t>& tones)
{
    return {{}, TinyLanguage::Say(tones, 16'000, 16'000)};
}

const engine::PhraseModel& Model()
{
    static const engine::PhraseModel model = TinyLanguage::Phrase();
    return model;
}

const Condition AsItIs{"as it is", [](std::span<const float> clip, uint64_t) {
                           return std::vector<float>(clip.begin(), clip.end());
                       }};

TEST(Listening, APhraseAtTheVeryEndIsFound)
{
    const std::vector<std::size_t> phrase{0, 1, 2, 3};
    const std::vector<engine::Detection> found = Listen(Model(), TinyLanguage::Say(phrase, 16'000, 0));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].endSample, Listen(Model(), TinyLanguage::Say(phrase, 16'000, 16'000)).at(0).endSample);
    EXPECT_TRUE(Listen(Model(), std::vector<float>(16'000)).empty());
    EXPECT_TRUE(Listen(Model(), {}).empty());
}

TEST(Listening, TheBestDetectionIsTheOneWithTheHighestScore)
{
    const std::vector<float> recording = Saying({0, 1, 2, 3}).samples;
    EXPECT_EQ(BestIn(Model(), recording).score, Listen(Model(), recording).at(0).score);
    EXPECT_EQ(BestIn(Model(), std::vector<float>(16'000)).score, 0.0F);
}

TEST(Listening, EachClipHasItsBestDetectionOrNone)
{
    const std::vector<Clip> clips{Saying({0, 1, 2, 3}), Saying({3, 2, 1, 0})};
    engine::WorkerPool pool(2);
    const std::vector<Outcome> outcomes = ListenToClips(Model(), clips, AsItIs, 1, &pool);
    ASSERT_EQ(outcomes.size(), 2U);
    EXPECT_EQ(outcomes[0].clip, &clips[0]);
    EXPECT_EQ(outcomes[0].best.score, Listen(Model(), clips[0].samples).at(0).score);
    EXPECT_EQ(outcomes[1].clip, &clips[1]);
    EXPECT_EQ(outcomes[1].best.score, 0.0F);
}

TEST(Listening, EachClipAndEachListenerHasNoiseOfItsOwn)
{
    const std::vector<Clip> clips(2, Saying({0}));
    std::set<uint64_t> seeds;
    std::mutex mutex;
    const Condition noted{"noted", [&](std::span<const float> clip, uint64_t noise) {
                              const std::lock_guard lock(mutex);
                              seeds.insert(noise);
                              return std::vector<float>(clip.begin(), clip.end());
                          }};
    engine::WorkerPool pool(2);
    ListenToClips(Model(), clips, noted, 1, &pool);
    ListenToClips(Model(), clips, noted, 2, &pool);
    EXPECT_EQ(seeds.size(), 4U);
    ListenToClips(Model(), clips, noted, 2, &pool);
    EXPECT_EQ(seeds.size(), 4U) << "the same every time";
}

TEST(Listening, BackgroundGivesTheSameScoresWhateverTheThreads)
{
    std::vector<Clip> background;
    for (int i = 0; i < 12; ++i)
    {
        background.push_back(Saying(i % 3 == 0 ? std::vector<std::size_t>{0, 1, 2, 3} : std::vector<std::size_t>{4, 5}));
    }
    engine::WorkerPool one(1);
    engine::WorkerPool two(2);
    const std::vector<float> scores = ListenToBackground(Model(), background, &one);
    EXPECT_EQ(scores.size(), 4U);
    EXPECT_TRUE(std::is_sorted(scores.rbegin(), scores.rend()));
    EXPECT_EQ(ListenToBackground(Model(), background, &two), scores);
}

} // namespace ListeningTests
