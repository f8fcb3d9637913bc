#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

namespace GetScoresTests
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr float Lowest = std::numeric_limits<float>::lowest();
constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

/// What one call changes.
struct Scoring
{
    bool detected = false;
    uint64_t frameCounter = 0;
    float best = Lowest;

    bool operator==(const Scoring&) const = default;
};

class GetScores : public SessionTest
{
protected:
    uint32_t Get(OpenWovWrapper& scoring)
    {
        return scoring.GetScores(session, buffer, &state.detected, &state.frameCounter, &state.best);
    }
    uint32_t Get()
    {
        return Get(wrapper);
    }

    /// Has the engine give these scores, for which there is room.
    uint32_t Get(const std::vector<float>& scores)
    {
        buffer.assign(scores.size(), 0.0F);
        engine.laterStep.scores = scores;
        return Get();
    }

    std::vector<float> buffer{0.0F};
    Scoring state;
};

LogLine Detected(float score, double seconds)
{
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%f", seconds);
    const std::string time = text.data();
    std::snprintf(text.data(), text.size(), "%f", static_cast<double>(score));
    return WrapperLines::Detected(text.data(), time);
}

TEST_F(GetScores, ScoreAboveTheThresholdIsADetection)
{
    EXPECT_EQ(Get({10.5F}), EngineStatus::Success);
    EXPECT_TRUE(state.detected);
    EXPECT_EQ(state.best, 10.5F);
    EXPECT_EQ(state.frameCounter, 1U);
    EXPECT_EQ(events, Lines("VWoVGetScores(1, buffer, 1)") + WrapperLines::Detected("10.500000", "0.000000"));
}

TEST_F(GetScores, ScoreEqualToTheThresholdIsNoDetection)
{
    EXPECT_EQ(Get({10.0F}), EngineStatus::Success);
    EXPECT_FALSE(state.detected);
    EXPECT_EQ(state.best, 10.0F);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetScores, ThresholdIsThePredefinedSensitivityInQ8)
{
    constexpr int32_t Least = std::numeric_limits<int32_t>::min();
    constexpr int32_t Most = std::numeric_limits<int32_t>::max();
    // The float nearest to 2^31 - 1 is 2^31.
    for (const auto& [sensitivity, threshold] : {std::pair{2560, 10.0F},
                                                 {0, 0.0F},
                                                 {1, 0.00390625F},
                                                 {-1, -0.00390625F},
                                                 {-333, -1.30078125F},
                                                 {Most, 8388608.0F},
                                                 {Least, -8388608.0F},
                                                 {16777217, 65536.0F}})
    {
        SCOPED_TRACE(sensitivity);
        detection = {sensitivity, 1, 0};
        OpenWovWrapper other(&parameters, detection, &logger, 3, "");
        for (const bool above : {false, true})
        {
            Open();
            state = {};
            engine.laterStep.scores = {above ? std::nextafter(threshold, Infinity) : threshold};
            EXPECT_EQ(Get(other), EngineStatus::Success);
            EXPECT_EQ(state.detected, above);
        }
    }
}

TEST_F(GetScores, UserDefinedSensitivityIsNotRead)
{
    detection.userDefinedKpdSensitivity = 1000000;
    OpenWovWrapper other(&parameters, detection, &logger, 3, "");
    engine.laterStep.scores = {10.5F};
    EXPECT_EQ(Get(other), EngineStatus::Success);
    EXPECT_TRUE(state.detected);
}

TEST_F(GetScores, LaterScoresAreNotLookedAtAfterADetection)
{
    EXPECT_EQ(Get({9, 11, 20, 5}), EngineStatus::Success);
    EXPECT_TRUE(state.detected);
    EXPECT_EQ(state.best, 11.0F);
    EXPECT_THAT(logger.lines, ElementsAre(Detected(11, 0)));
}

TEST_F(GetScores, BestScoreIsTheHighestOfAllCalls)
{
    for (const float score : {-5.0F, 3.0F, 2.0F, 9.0F, -7.0F})
    {
        EXPECT_EQ(Get({score, score - 1}), EngineStatus::Success);
    }
    EXPECT_EQ(state.best, 9.0F);
    EXPECT_EQ(state.frameCounter, 5U);
}

TEST_F(GetScores, EarlierDetectionIsTakenBackByALowerScoreKept)
{
    state.detected = true;
    EXPECT_EQ(Get({9.5F}), EngineStatus::Success);
    EXPECT_FALSE(state.detected);
    EXPECT_EQ(state.best, 9.5F);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetScores, EarlierDetectionStaysAtAScoreEqualToTheThreshold)
{
    state.detected = true;
    EXPECT_EQ(Get({10, 5, 20}), EngineStatus::Success);
    EXPECT_TRUE(state.detected);
    EXPECT_EQ(state.best, 10.0F) << "the later ones are not looked at";
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetScores, DetectionThatWasTakenBackIsFoundAgainInTheSameCall)
{
    state.detected = true;
    EXPECT_EQ(Get({5, 6, 11, 12}), EngineStatus::Success);
    EXPECT_TRUE(state.detected);
    EXPECT_EQ(state.best, 11.0F);
    EXPECT_THAT(logger.lines, ElementsAre(Detected(11, 0)));
}

TEST_F(GetScores, NaNNeitherDetectsNorTakesBackNorIsBest)
{
    EXPECT_EQ(Get({NaN}), EngineStatus::Success);
    EXPECT_EQ(state, (Scoring{false, 1, Lowest}));
    state.detected = true;
    EXPECT_EQ(Get({NaN}), EngineStatus::Success);
    EXPECT_EQ(state, (Scoring{true, 2, Lowest}));
}

TEST_F(GetScores, InfiniteScoresAreScores)
{
    EXPECT_EQ(Get({-Infinity, Infinity}), EngineStatus::Success);
    EXPECT_EQ(state, (Scoring{true, 1, Infinity}));
}

TEST_F(GetScores, TimeIsThatOfTheFramesBefore)
{
    struct Row
    {
        int32_t frameSize;
        uint64_t frames;
        double seconds;
    };
    for (const Row& row : {Row{150, 0, 0.0},
                           {150, 1, 0.009375},
                           {160, 100, 1.0},
                           {0, 100, 0.0},
                           // Beyond 32 bits the product keeps its 64, and a float's 24 digits.
                           {150, 100000000, static_cast<double>(15000000000.0F / 16000.0F)},
                           {150, 111848107, static_cast<double>(16777216050.0F / 16000.0F)},
                           {2147483647, 3, static_cast<double>(6442450941.0F / 16000.0F)}})
    {
        SCOPED_TRACE(testing::Message() << row.frames << " frames of " << row.frameSize);
        UseFrameSize(row.frameSize);
        Open();
        state = {};
        state.frameCounter = row.frames;
        EXPECT_EQ(Get({11}), EngineStatus::Success);
        EXPECT_THAT(logger.lines, ElementsAre(Detected(11, row.seconds)));
        EXPECT_EQ(state.frameCounter, row.frames + 1);
    }
}

TEST_F(GetScores, BufferThatIsTooSmallIsEnlargedAndAskedForOnceMore)
{
    engine.laterStep.scores = {1, 2, 3};
    EXPECT_EQ(Get(), EngineStatus::Success);
    EXPECT_THAT(events, ElementsAre("VWoVGetScores(1, buffer, 1)", "VWoVGetScores(1, buffer, 3)"));
    EXPECT_THAT(buffer, ElementsAre(1, 2, 3));
    EXPECT_EQ(state, (Scoring{false, 1, 3}));
    TakeEvents();

    EXPECT_EQ(Get(), EngineStatus::Success);
    EXPECT_THAT(events, ElementsAre("VWoVGetScores(1, buffer, 3)")) << "the room is kept";
}

TEST_F(GetScores, SecondRefusalIsReturned)
{
    engine.breach = EngineBreach::ScoresNeverFit;
    engine.laterStep.scores = {11, 12};
    EXPECT_EQ(Get(), EngineStatus::BufferTooSmall);
    EXPECT_THAT(events, ElementsAre("VWoVGetScores(1, buffer, 1)", "VWoVGetScores(1, buffer, 2)"));
    EXPECT_EQ(state, (Scoring{false, 1, Lowest}));
}

TEST_F(GetScores, FailureAfterTheEnlargementIsReturned)
{
    engine.laterStep.scores = {11, 12};
    engine.Answer("VWoVGetScores", 2, 7);
    EXPECT_EQ(Get(), 7U);
    EXPECT_THAT(buffer, SizeIs(2));
    EXPECT_EQ(state, (Scoring{false, 1, Lowest}));
}

TEST_F(GetScores, FailureCountsTheFrameAndLogsNothing)
{
    for (const uint32_t status : {1U, 7U, EngineStatus::NothingLeft})
    {
        SCOPED_TRACE(status);
        Open();
        state = {true, 41, 3.0F};
        engine.laterStep.scores = {11};
        engine.Answer("VWoVGetScores", 1, status);
        EXPECT_EQ(Get(), status);
        EXPECT_EQ(state, (Scoring{true, 42, 3.0F}));
        EXPECT_THAT(events, ElementsAre("VWoVGetScores(1, buffer, 1)"));
    }
}

TEST_F(GetScores, NoScoresCountTheFrame)
{
    state = {true, 41, 3.0F};
    buffer.assign(4, 11.0F);
    engine.laterStep.scores = {};
    EXPECT_EQ(Get(), EngineStatus::Success);
    EXPECT_EQ(state, (Scoring{true, 42, 3.0F}));
}

TEST_F(GetScores, OnlyTheWrittenScoresAreLookedAt)
{
    buffer.assign(4, 11.0F);
    engine.laterStep.scores = {1, 2};
    EXPECT_EQ(Get(), EngineStatus::Success);
    EXPECT_EQ(state, (Scoring{false, 1, 2}));
}

TEST_F(GetScores, EngineThatClaimsMoreScoresThanThereWasRoomForIsNotFollowed)
{
    engine.breach = EngineBreach::ScoreCountBeyondRoom;
    EXPECT_EQ(Get({1, 2}), EngineStatus::Success);
    EXPECT_EQ(state, (Scoring{false, 1, 2}));
}

TEST_F(GetScores, EngineThatAnnouncedNoScoresIsAskedWithoutABuffer)
{
    buffer = std::vector<float>();
    engine.laterStep.scores = {11};
    EXPECT_EQ(Get(), EngineStatus::Success);
    EXPECT_THAT(events, ElementsAre("VWoVGetScores(1, null, 0)"));
    EXPECT_EQ(state, (Scoring{false, 1, Lowest})) << "it only reports their number";
}

TEST_F(GetScores, ExceptionOfTheEngineCountsNothing)
{
    throwingEvent = 1;
    EXPECT_THROW(Get({11}), std::runtime_error);
    EXPECT_EQ(state, Scoring{});
}

/// What a call makes of these scores, for a threshold of 10; `lines` receives what is logged.
Scoring Expected(Scoring state, const std::vector<float>& scores, uint32_t status, int32_t frameSize, std::vector<LogLine>* lines)
{
    constexpr float Threshold = 10.0F;
    bool done = status != EngineStatus::Success;
    for (std::size_t i = 0; i < scores.size() && !done; ++i)
    {
        const bool before = state.detected;
        if (!before && scores[i] > Threshold)
        {
            state.detected = true;
            const auto samples = static_cast<float>(static_cast<uint64_t>(frameSize) * state.frameCounter);
            lines->push_back(Detected(scores[i], static_cast<double>(samples / 16000.0F)));
        }
        if (before && Threshold > scores[i])
        {
            state.detected = false;
        }
        if (scores[i] > state.best)
        {
            state.best = scores[i];
        }
        done = state.detected;
    }
    ++state.frameCounter;
    return state;
}

TEST_F(GetScores, JudgesGeneratedScoresAsTheModelDoes)
{
    std::mt19937 random(20240521);
    const auto below = [&](uint32_t limit) {
        return static_cast<uint32_t>(random() % limit);
    };
    const std::vector<float> values = {
        10.0F, std::nextafter(10.0F, 0.0F), std::nextafter(10.0F, 11.0F), -3, 0, 7, 11, 250, Lowest, -Infinity, Infinity, NaN};
    const std::vector<uint32_t> statuses = {7, EngineStatus::BufferTooSmall, EngineStatus::NothingLeft};
    int detections = 0;
    int takenBack = 0;
    for (int sequence = 0; sequence < 3000; ++sequence)
    {
        SCOPED_TRACE(sequence);
        Open();
        Scoring expected{below(4) == 0, 0, Lowest};
        state = expected;
        buffer.assign(1 + below(4), 0.0F);
        for (int call = 0; call < 6; ++call)
        {
            engine.laterStep.scores.clear();
            for (uint32_t i = below(6); i > 0; --i)
            {
                engine.laterStep.scores.push_back(values[below(static_cast<uint32_t>(values.size()))]);
            }
            uint32_t status = EngineStatus::Success;
            if (below(6) == 0)
            {
                status = statuses[below(3)];
                engine.Answer("VWoVGetScores", 1, status);
                engine.Answer("VWoVGetScores", 2, status);
            }
            std::vector<LogLine> lines;
            const bool before = expected.detected;
            expected = Expected(expected, engine.laterStep.scores, status, 150, &lines);
            detections += static_cast<int>(lines.size());
            takenBack += before && !expected.detected ? 1 : 0;

            ASSERT_EQ(Get(), status);
            ASSERT_EQ(state, expected);
            ASSERT_EQ(logger.Take(), lines);
            engine.answers.clear();
        }
    }
    EXPECT_GT(detections, 1000);
    EXPECT_GT(takenBack, 1000);
}

} // namespace GetScoresTests
