#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/MediaBuffer.h"
#include "tests/support/SampleOracle.h"
#include "tests/support/Table.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

namespace FeedRecordingTests
{

using namespace WrapperLines;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::SizeIs;

using Samples = std::vector<int16_t>;

constexpr int32_t Least = std::numeric_limits<int32_t>::min();
constexpr int32_t Most = std::numeric_limits<int32_t>::max();

const Lines Began = Scoring(1) + "Lock";
const Lines FrameAndLook = Frame(1) + Look(1);
const Lines FlushStep = Flush(1) + Look(1);
const Lines Ended = Flush(1) + Unlocked;

/// Samples that all differ from their neighbours.
std::vector<float> Ramp(std::size_t count)
{
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        samples[i] = static_cast<float>(i % 3001) / 1500.0F - 1.0F;
    }
    return samples;
}

/// The frames that a recording is fed in, one sample after the other.
std::vector<Samples> ExpectedFrames(const std::vector<float>& samples, int64_t frameSize, int32_t keywordEndBytePos)
{
    std::vector<Samples> frames;
    for (int64_t start = 0;; start += frameSize)
    {
        Samples frame;
        for (int64_t i = start; i < start + frameSize; ++i)
        {
            const bool recorded = i < static_cast<int64_t>(samples.size());
            frame.push_back(recorded ? ExpectedSample(samples[static_cast<std::size_t>(i)]) : int16_t{0});
        }
        frames.push_back(frame);
        const bool recordingEnded = start + frameSize > static_cast<int64_t>(samples.size());
        const bool keywordEnded = keywordEndBytePos >= 2 && 2 * start >= keywordEndBytePos / 2;
        const bool oneEmptyFrameTooMany = frameSize == 0 && frames.size() > samples.size();
        if (recordingEnded || keywordEnded || oneEmptyFrameTooMany)
        {
            return frames;
        }
    }
}

constexpr uint32_t Any = 4711;
constexpr uint32_t TooSmall = EngineStatus::BufferTooSmall;
constexpr uint32_t NothingLeft = EngineStatus::NothingLeft;

template <typename... Each>
std::vector<uint32_t> Statuses(Each... each)
{
    return {each...};
}

/// A call that is refused, and what happens then.
struct Refusal
{
    const char* description;
    const char* function;
    uint64_t call;
    uint32_t flushSteps;
    std::size_t samples;
    std::vector<uint32_t> statuses;
    Lines expected;        ///< with the status Any for each of them
    bool returned = false; ///< the status is the operation's result
};

class FeedRecording : public SessionTest, public testing::WithParamInterface<Refusal>
{
protected:
    /// Feeds a recording, whose locks must be in balance afterwards.
    uint32_t Feed(ScriptedRecording& recording, int32_t keywordEndBytePos = 0, bool scoring = true)
    {
        Watch(recording);
        const uint32_t status = wrapper.FeedRecording(session, &recording, keywordEndBytePos, scoring, &detected);
        EXPECT_EQ(recording.OpenLocks(), 0);
        EXPECT_FALSE(recording.unlockedWithoutLock);
        return status;
    }

    uint32_t Feed(const std::vector<float>& samples, int32_t keywordEndBytePos = 0, bool scoring = true)
    {
        ScriptedRecording recording(samples);
        const uint32_t status = Feed(recording, keywordEndBytePos, scoring);
        EXPECT_EQ(recording.locks, 1);
        EXPECT_EQ(recording.unlocks, 1);
        return status;
    }

    bool detected = false;
};

TEST_F(FeedRecording, ScoresEveryFrameAndFlushStep)
{
    engine.flushSteps = 2;
    EXPECT_EQ(Feed(Ramp(200)), EngineStatus::Success);
    EXPECT_EQ(events, Began + ToFeed(200) + FrameAndLook + FrameAndLook + AllFed + FlushStep + FlushStep + Ended);
    EXPECT_EQ(logger.lines, events.Logged());
    EXPECT_FALSE(detected);
}

TEST_F(FeedRecording, WithoutScoringOnlyFeedsAndFlushes)
{
    engine.flushSteps = 2;
    engine.laterStep.scores = {1000};
    EXPECT_EQ(Feed(Ramp(200), 0, false), EngineStatus::Success);
    EXPECT_EQ(events, FeedEntry + "Lock" + ToFeed(200) + Frame(1) + Frame(1) + AllFed + Flush(1) + Flush(1) + Ended);
    EXPECT_FALSE(detected);
}

TEST_F(FeedRecording, WithoutScoringAVerdictEndsTheFlushAndIsNotJudged)
{
    engine.flushSteps = 5;
    detected = true;
    EXPECT_EQ(Feed(Ramp(200), 0, false), EngineStatus::Success);
    EXPECT_EQ(events, FeedEntry + "Lock" + ToFeed(200) + Frame(1) + Frame(1) + AllFed + Ended);
    EXPECT_TRUE(detected);
}

TEST_F(FeedRecording, SamplesAreClampedAndScaledAndTheLastFrameIsFilledWithZeros)
{
    Samples first(150);
    first[0] = 32767;
    first[1] = -32767;
    first[2] = 16384;
    EXPECT_EQ(Feed({1.5F, -2.0F, 0.5F, 0.0F}), EngineStatus::Success);
    EXPECT_THAT(FramesFed(), ElementsAre(first));
}

TEST_F(FeedRecording, FramesOfThePreviousFillLeaveNothingBehind)
{
    Samples second(150);
    second[0] = 32767;
    EXPECT_EQ(Feed(std::vector<float>(151, 1.0F)), EngineStatus::Success);
    EXPECT_THAT(FramesFed(), ElementsAre(Samples(150, 32767), second));
}

TEST_F(FeedRecording, ExactMultipleOfTheFrameSizeIsFollowedByAFrameOfZerosKept)
{
    EXPECT_EQ(Feed(std::vector<float>(300, 1.0F)), EngineStatus::Success);
    EXPECT_THAT(FramesFed(), ElementsAre(Samples(150, 32767), Samples(150, 32767), Samples(150, 0)));
}

TEST_F(FeedRecording, BytesOfAnUnfinishedSampleAreLeftOut)
{
    for (std::size_t length = 0; length < 12; ++length)
    {
        SCOPED_TRACE(length);
        Open();
        // 0x3F3F3F3F is 0.74706; times 32767, 24478.9.
        ScriptedRecording recording(std::vector<uint8_t>(length, 0x3F));
        EXPECT_EQ(Feed(recording), EngineStatus::Success);
        EXPECT_EQ(events, Began + ToFeed(length / 4) + FrameAndLook + AllFed + Ended);
        Samples frame(150);
        std::fill_n(frame.begin(), length / 4, int16_t{24479});
        EXPECT_THAT(FramesFed(), ElementsAre(frame));
    }
}

TEST_F(FeedRecording, FrameSizeZeroFeedsOneEmptyFrameMoreThanThereAreSamples)
{
    UseFrameSize(0);
    for (const std::size_t count : {0U, 1U, 1000U})
    {
        SCOPED_TRACE(count);
        Open();
        EXPECT_EQ(Feed(Ramp(count)), EngineStatus::Success);
        EXPECT_EQ(FramesFed(), std::vector<Samples>(count + 1));
        EXPECT_EQ(events.back(), FeedExit);
    }
}

TEST_F(FeedRecording, FrameSizeZeroIgnoresTheKeywordsEnd)
{
    UseFrameSize(0);
    EXPECT_EQ(Feed(Ramp(20), 2), EngineStatus::Success);
    EXPECT_THAT(FramesFed(), SizeIs(21));
}

TEST_F(FeedRecording, FrameSizeZeroEndsAtTheFrameThatIsRefused)
{
    UseFrameSize(0);
    engine.Answer("VWoVFeedAudioFrame", 3, 7);
    EXPECT_EQ(Feed(Ramp(20)), EngineStatus::Success);
    EXPECT_THAT(FramesFed(), SizeIs(3));
}

TEST_F(FeedRecording, FrameSizeZeroEndsAtTheFrameThatIsDetected)
{
    UseFrameSize(0);
    engine.steps = {{}, {}, {.scores = {11}}};
    EXPECT_EQ(Feed(Ramp(20)), EngineStatus::Success);
    EXPECT_THAT(FramesFed(), SizeIs(3));
}

TEST_F(FeedRecording, StopsAfterTheFrameThatBeginsAtTheKeywordsEnd)
{
    // 2 * 300 >= 1200 / 2
    EXPECT_EQ(Feed(Ramp(5000), 1200), EngineStatus::Success);
    EXPECT_THAT(FramesFed(), SizeIs(3));
}

TEST_F(FeedRecording, KeywordEndIsOfUseFromTwoOn)
{
    const std::pair<int32_t, std::size_t> framesByPosition[]{{Least, 34}, {-1200, 34}, {-2, 34},  {-1, 34},  {0, 34},
                                                             {1, 34},     {2, 2},      {3, 2},    {600, 2},  {601, 2},
                                                             {602, 3},    {603, 3},    {1201, 3}, {1202, 4}, {Most, 34}};
    const std::vector<float> samples = Ramp(5000);
    for (const auto& [position, frames] : framesByPosition)
    {
        SCOPED_TRACE(position);
        Open();
        EXPECT_EQ(Feed(samples, position, false), EngineStatus::Success);
        EXPECT_THAT(FramesFed(), SizeIs(frames));
    }
}

TEST_F(FeedRecording, FeedsAsTheModelDoes)
{
    int combinations = 0;
    for (const int32_t frameSize : {0, 1, 2, 3, 7, 8, 9, 16, 31, 64, 150, 400})
    {
        UseFrameSize(frameSize);
        for (const std::size_t count : {0U, 1U, 2U, 3U, 6U, 7U, 8U, 9U, 14U, 15U, 16U, 63U, 64U, 65U, 149U, 150U, 151U, 300U})
        {
            const std::vector<float> samples = Ramp(count);
            ScriptedRecording recording(samples);
            for (const int32_t position :
                 {Least, -601, -1, 0, 1, 2, 3, 4, 5, 14, 15, 28, 32, 64, 127, 128, 129, 256, 599, 600, 601, 1200, Most})
            {
                SCOPED_TRACE(testing::Message() << count << " samples, frame size " << frameSize << ", keyword end " << position);
                engine.Take();
                ASSERT_EQ(Feed(recording, position, false), EngineStatus::Success);
                ASSERT_EQ(FramesFed(), ExpectedFrames(samples, frameSize, position));
                ++combinations;
            }
            EXPECT_EQ(recording.locks, 23);
        }
    }
    EXPECT_EQ(combinations, 12 * 18 * 23);
}

TEST_F(FeedRecording, AnHourOfAudioIsFedWhole)
{
    constexpr uint32_t SamplesPerHour = 3600 * 16000;
    engine.keepCalls = false;
    engine.onCall = nullptr;
    ScriptedRecording recording(std::vector<uint8_t>(std::size_t{SamplesPerHour} * sizeof(float)));
    EXPECT_EQ(Feed(recording, 0, false), EngineStatus::Success);
    EXPECT_EQ(engine.callCounts["VWoVFeedAudioFrame"], SamplesPerHour / 150 + 1);
    EXPECT_THAT(logger.lines, Contains(ToFeed(SamplesPerHour)));
    EXPECT_EQ(recording.locks, 1);
}

TEST_F(FeedRecording, HostsBufferIsFedAndGivenBack)
{
    const std::vector<float> samples = Ramp(1234);
    const MediaBuffer buffer = MakeMediaBuffer(samples);
    EXPECT_EQ(wrapper.FeedRecording(session, buffer.get(), 0, true, &detected), EngineStatus::Success);
    EXPECT_EQ(FramesFed(), ExpectedFrames(samples, 150, 0));
    EXPECT_EQ(std::count(events.begin(), events.end(), FeedExit), 1);
}

TEST_F(FeedRecording, RecordingThatCannotBeLockedEndsTheOperation)
{
    for (const HRESULT result : {E_FAIL, E_OUTOFMEMORY, static_cast<HRESULT>(0xFFFFFFFF), static_cast<HRESULT>(0x80000000)})
    {
        SCOPED_TRACE(result);
        Open();
        ScriptedRecording recording(Ramp(200));
        recording.lockResult = result;
        EXPECT_EQ(Feed(recording), UnexpectedBehaviour);
        EXPECT_EQ(events, Began + NotLocked(result));
        EXPECT_EQ(recording.locks, 0);
    }
    EXPECT_EQ(NotLocked(E_FAIL).text, "[FeedRecording] Failed to lock recording. Status = -2147467259");
    Open();
    EXPECT_EQ(wrapper.FeedRecording(session, nullptr, 0, true, &detected), UnexpectedBehaviour);
    EXPECT_EQ(events, Scoring(1) + NotLocked(E_POINTER));
}

TEST_F(FeedRecording, LockAndUnlockMayHavePositiveResults)
{
    ScriptedRecording recording(Ramp(200));
    recording.lockResult = S_FALSE;
    recording.unlockResult = S_FALSE;
    EXPECT_EQ(Feed(recording), EngineStatus::Success);
    EXPECT_EQ(events, Began + ToFeed(200) + FrameAndLook + FrameAndLook + AllFed + Ended);
    EXPECT_EQ(recording.unlocks, 1);
}

TEST_F(FeedRecording, FailedUnlockIsLoggedAndIgnored)
{
    ScriptedRecording recording(Ramp(200));
    recording.unlockResult = E_UNEXPECTED;
    EXPECT_EQ(Feed(recording), EngineStatus::Success);
    EXPECT_EQ(events, Began + ToFeed(200) + FrameAndLook + FrameAndLook + AllFed + Flush(1) + "Unlock" +
                          NotUnlocked(E_UNEXPECTED) + FeedExit);
    EXPECT_EQ(recording.unlocks, 1);
}

TEST_F(FeedRecording, ScoresHaveTheRoomThatTheEngineAskedFor)
{
    for (const uint32_t count : {1U, 2U, 100U})
    {
        SCOPED_TRACE(count);
        Open();
        engine.scoreCount = count;
        EXPECT_EQ(Feed(Ramp(100)), EngineStatus::Success);
        EXPECT_THAT(events, Contains("VWoVGetScores(1, buffer, " + std::to_string(count) + ")"));
    }
}

TEST_P(FeedRecording, RefusedCallIsLoggedAndPassedOverOrEndsItsLoop)
{
    const Refusal& refusal = GetParam();
    for (const uint32_t status : refusal.statuses)
    {
        SCOPED_TRACE(status);
        Open();
        engine.flushSteps = refusal.flushSteps;
        engine.Answer(refusal.function, refusal.call, status);
        ScriptedRecording recording(Ramp(refusal.samples));
        EXPECT_EQ(Feed(recording), refusal.returned ? status : EngineStatus::Success);
        Lines expected = refusal.expected;
        for (LogLine& line : expected)
        {
            line.value = line.value == Any ? status : line.value;
        }
        EXPECT_EQ(events, expected);
        EXPECT_FALSE(detected);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Refusals, FeedRecording,
    testing::Values(
        Refusal{"score count, before the lock", "VWoVGetScores", 1, 0, 200, Statuses(7U, TooSmall, NothingLeft),
                Scoring(1) + NoScoreCount(Any), true},
        Refusal{"frame, which ends the feeding", "VWoVFeedAudioFrame", 2, 1, 1000, Statuses(7U, TooSmall, NothingLeft),
                Began + ToFeed(1000) + FrameAndLook + Frame(1) + NotFed(Any) + AllFed + FlushStep + Ended},
        Refusal{"scores of a frame", "VWoVGetScores", 2, 0, 200, Statuses(7U),
                Began + ToFeed(200) + Frame(1) + Look(1, NoScores(Any)) + FrameAndLook + AllFed + Ended},
        Refusal{"no scores left of a frame is no error", "VWoVGetScores", 2, 0, 200, Statuses(NothingLeft),
                Began + ToFeed(200) + FrameAndLook + FrameAndLook + AllFed + Ended},
        Refusal{"scores of a flush step", "VWoVGetScores", 3, 2, 100, Statuses(7U, NothingLeft),
                Began + ToFeed(100) + FrameAndLook + AllFed + Flush(1) + Look(1, NoScores(Any)) + FlushStep + Ended},
        Refusal{"flag with a readable quality", "VWoVGetIntOutput", 1, 0, 100, Statuses(7U),
                Began + ToFeed(100) + Frame(1) + Call("VWoVGetScores", 1, "buffer, 1") +
                    Call("VWoVGetIntOutput", 1, "2, buffer, 1") + NoVadOutput(Any) + Call("VWoVGetIntOutput", 1, "6, buffer, 1") +
                    AllFed + Ended},
        Refusal{"quality of a frame", "VWoVGetIntOutput", 2, 0, 200, Statuses(7U),
                Began + ToFeed(200) + FrameAndLook + NoQuality(Any) + FrameAndLook + AllFed + Ended},
        Refusal{"flush, which ends it", "VWoVFlush", 2, 5, 100, Statuses(1U, 7U, TooSmall, NothingLeft - 1),
                Began + ToFeed(100) + FrameAndLook + AllFed + FlushStep + Flush(1) + NotFlushed(Any) + Unlocked},
        Refusal{"quality of a flush step ends the flush as its failure kept", "VWoVGetIntOutput", 4, 5, 100, Statuses(7U),
                Began + ToFeed(100) + FrameAndLook + AllFed + FlushStep + NoQuality(Any) + NotFlushed(Any) + Unlocked},
        Refusal{"no quality left of a flush step ends the flush quietly kept", "VWoVGetIntOutput", 4, 5, 100,
                Statuses(NothingLeft), Began + ToFeed(100) + FrameAndLook + AllFed + FlushStep + NoQuality(Any) + Unlocked}),
    RowName());

TEST_F(FeedRecording, DetectionWhileFeedingIsJudgedAfterOneFlush)
{
    engine.steps = {{}};
    engine.laterStep.scores = {11};
    engine.flushSteps = 5;
    EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
    EXPECT_TRUE(detected);
    EXPECT_EQ(events, Began + ToFeed(1000) + FrameAndLook + Frame(1) + Look(1, Detected("11.000000", "0.009375")) + AllFed +
                          FlushStep + Judged("11.000000", "10.000000", "100") + Unlocked);
}

TEST_F(FeedRecording, LowerScoreOfAFlushStepTakesTheDetectionBackKept)
{
    engine.steps = {{.scores = {11}}};
    engine.flushSteps = 2;
    EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
    EXPECT_FALSE(detected);
    EXPECT_EQ(events, Began + ToFeed(1000) + Frame(1) + Look(1, Detected("11.000000", "0.000000")) + AllFed + FlushStep +
                          FlushStep + Ended)
        << "the quality is not judged";
}

TEST_F(FeedRecording, DetectionWhileFlushingEndsTheFlush)
{
    engine.steps = {{}, {}, {.scores = {11}}};
    engine.flushSteps = 5;
    EXPECT_EQ(Feed(Ramp(100)), EngineStatus::Success);
    EXPECT_TRUE(detected);
    EXPECT_EQ(events, Began + ToFeed(100) + FrameAndLook + AllFed + FlushStep + Flush(1) +
                          Look(1, Detected("11.000000", "0.018750")) + Judged("11.000000", "10.000000", "100") + Unlocked);
}

TEST_F(FeedRecording, DetectionWithoutAReadableQualityDoesNotEndTheFeedingKept)
{
    engine.laterStep.scores = {11};
    engine.Answer("VWoVGetIntOutput", 2, 7);
    EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
    EXPECT_THAT(FramesFed(), SizeIs(2));
    EXPECT_TRUE(detected);
}

TEST_F(FeedRecording, DetectionAtAnEngineThatFailsToFlushIsJudgedAllTheSame)
{
    engine.laterStep.scores = {11};
    engine.Answer("VWoVFlush", 1, 7);
    EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
    EXPECT_TRUE(detected);
    EXPECT_EQ(events, Began + ToFeed(1000) + Frame(1) + Look(1, Detected("11.000000", "0.000000")) + AllFed + Flush(1) +
                          NotFlushed(7) + Judged("11.000000", "10.000000", "100") + Unlocked);
}

TEST_F(FeedRecording, DetectionOfTheCallersIsKeptWhileNoScoreIsBelowTheThreshold)
{
    detected = true;
    engine.laterStep.scores = {10};
    EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
    EXPECT_TRUE(detected);
    EXPECT_EQ(events,
              Began + ToFeed(1000) + FrameAndLook + AllFed + Flush(1) + Judged("10.000000", "10.000000", "100") + Unlocked);
}

TEST_F(FeedRecording, BestScoreIsTheLowestFloatWhenNoScoreCame)
{
    detected = true;
    engine.laterStep.scores = {};
    EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
    // How many of its digits are printed is the C library's business.
    EXPECT_THAT(events.Texts(), Contains(testing::StartsWith("[FeedRecording] Best score(-3402823466385288")));
}

struct QualityCase
{
    const char* description;
    std::vector<int32_t> qualities; ///< of the frames; the last one detects
    int32_t vadFlag;
    int32_t threshold;
    int64_t mean;
    bool accepted;
};

TEST_F(FeedRecording, MeanQualityIsComparedWithTheThresholdUnsigned)
{
    for (const QualityCase& row : std::vector<QualityCase>{
             {"equal to the threshold", {50}, 0, 50, 50, true},
             {"just below", {49}, 0, 50, 49, false},
             {"mean is truncated", {49, 50}, 0, 50, 49, false},
             {"mean of several", {0, 100, 50}, 0, 50, 50, true},
             {"sum beyond 32 bits", {Most, Most, Most}, 0, Most, Most, true},
             {"no quality sampled", {1000}, 1, 1, 0, false},
             {"no quality sampled, no threshold", {1000}, 1, 0, 0, true},
             {"negative flag is a flag", {1000}, -1, 1, 0, false},
             {"negative threshold makes every recording too poor", {Most}, 0, -1, Most, false},
             {"least threshold is half of the range", {Most}, 0, Least, Most, false},
             {"negative mean passes any threshold", {-1}, 0, Most, -1, true},
             {"negative mean passes a negative threshold", {-100}, 0, -1, -100, true},
             {"negative mean is truncated toward zero", {-1, -2}, 0, 1, -1, true},
             {"negative mean truncated to zero", {-1, 0}, 0, 1, 0, false},
         })
    {
        SCOPED_TRACE(row.description);
        detection.qualityThreshold = row.threshold;
        OpenWovWrapper judging(&parameters, detection, &logger, 3, "");
        Open();
        for (const int32_t quality : row.qualities)
        {
            engine.steps.push_back({.scores = {0}, .vadFlag = row.vadFlag, .vadQuality = quality});
        }
        engine.steps.back().scores = {11};
        ScriptedRecording recording(Ramp(1000));
        detected = false;
        EXPECT_EQ(judging.FeedRecording(session, &recording, 0, true, &detected), EngineStatus::Success);
        EXPECT_EQ(detected, row.accepted);

        // As the host's printf takes it: 32 bits on Windows.
        const LogLine quality =
            LogFormat(5, 1, "[FeedRecording] Recording quality: " + std::to_string(static_cast<unsigned long>(row.mean)) + ".");
        const auto judged = std::find(logger.lines.begin(), logger.lines.end(), quality);
        ASSERT_NE(judged, logger.lines.end());
        EXPECT_EQ(*(judged + 1), row.accepted ? FeedExit : QualityTooLow);
        EXPECT_EQ(recording.OpenLocks(), 0);
    }
}

TEST_F(FeedRecording, ScoresAndQualityBeginAnewWithEveryRecording)
{
    engine.steps = {{.scores = {9}, .vadQuality = 0}, {.scores = {9}, .vadQuality = 0}};
    EXPECT_EQ(Feed(Ramp(200)), EngineStatus::Success);
    logger.Take();
    engine.laterStep.scores = {10.5F};
    EXPECT_EQ(Feed(Ramp(200)), EngineStatus::Success);
    EXPECT_TRUE(detected);
    EXPECT_THAT(logger.lines, Contains(Detected("10.500000", "0.000000")));
    EXPECT_THAT(logger.lines, Contains(Judged("10.500000", "10.000000", "100")[1]));
}

TEST_F(FeedRecording, ExceptionAtAnyPointPassesAndTheRecordingIsUnlocked)
{
    // Everything that can be logged and called is: a refused frame, scores and qualities that fail, a flush that detects, low
    // quality.
    const auto script = [this] {
        engine.steps = {{.scores = {11}, .vadQuality = 1}, {.scores = {11}, .vadQuality = 1}};
        engine.flushSteps = 3;
        engine.Answer("VWoVGetScores", 2, 7);
        engine.Answer("VWoVGetIntOutput", 2, 7);
        engine.Answer("VWoVFeedAudioFrame", 2, 7);
    };
    const std::vector<float> samples = Ramp(1000);
    ScriptedRecording whole(samples);
    script();
    ASSERT_EQ(wrapper.FeedRecording(session, &whole, 0, true, &detected), EngineStatus::Success);
    const std::size_t eventCount = events.size();
    ASSERT_THAT(events, Contains(QualityTooLow));

    for (std::size_t n = 1; n <= eventCount; ++n)
    {
        SCOPED_TRACE(n);
        Open();
        script();
        detected = false;
        throwingEvent = n;
        ScriptedRecording recording(samples);
        EXPECT_THROW(wrapper.FeedRecording(session, &recording, 0, true, &detected), std::runtime_error);
        EXPECT_EQ(events.size(), n);
        EXPECT_EQ(recording.locks, n <= 3 ? 0 : 1);
        EXPECT_EQ(recording.OpenLocks(), 0);
        EXPECT_FALSE(recording.unlockedWithoutLock);
        EXPECT_EQ(engine.Destroys(session), 0) << "the session is the caller's";
    }
}

TEST_F(FeedRecording, SecondExceptionOfTheUnlockingDoesNotReplaceTheFirst)
{
    ScriptedRecording recording(Ramp(100));
    recording.onCall = [](const std::string& call) {
        if (call == "Unlock")
        {
            throw std::runtime_error(call);
        }
    };
    engine.onCall = [](const EngineCall& call) {
        throw std::runtime_error(call.function);
    };
    EXPECT_THAT([&] { wrapper.FeedRecording(session, &recording, 0, false, &detected); },
                testing::ThrowsMessage<std::runtime_error>("VWoVFeedAudioFrame"));
    EXPECT_EQ(recording.OpenLocks(), 1);
}

} // namespace FeedRecordingTests
