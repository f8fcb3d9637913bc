#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/support/MediaBuffer.h"
#include "tests/support/SampleOracle.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

namespace
{

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

using Events = std::vector<std::string>;
using Frame = std::vector<int16_t>;

// Three pieces of what a recording makes happen, for a session with the handle 1.
const Events Began = {"[FeedRecording] Entry.", "[FeedRecording] Getting Scores size", "VWoVGetScores(1, null, 0)", "Lock"};
const Events Frame150 = {"VWoVFeedAudioFrame(1, 150)", "VWoVGetScores(1, buffer, 1)", "VWoVGetIntOutput(1, 2, buffer, 1)",
                         "VWoVGetIntOutput(1, 6, buffer, 1)"};
const Events FlushStep = {"VWoVFlush(1)", "VWoVGetScores(1, buffer, 1)", "VWoVGetIntOutput(1, 2, buffer, 1)",
                          "VWoVGetIntOutput(1, 6, buffer, 1)"};
const Events Ended = {"Unlock", "[FeedRecording] Exit."};

Events Join(const std::vector<Events>& parts)
{
    Events all;
    for (const Events& part : parts)
    {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

Events Fed(uint32_t samples)
{
    return {"[FeedRecording] Starting feeding frames. Samples to feed: " + std::to_string(samples)};
}

const Events FedAll = {"[FeedRecording] Ended feeding frames"};

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
std::vector<Frame> ExpectedFrames(const std::vector<float>& samples, int64_t frameSize, int32_t keywordEndBytePos)
{
    std::vector<Frame> frames;
    for (int64_t start = 0;; start += frameSize)
    {
        Frame frame;
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

class FeedRecording : public WrapperTest
{
protected:
    FeedRecording()
    {
        Open();
    }

    /// Opens a session and forgets how; its handle is 1.
    void Open()
    {
        session = 0;
        EXPECT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
        logger.Take();
        engine.Take();
        TakeEvents();
    }

    void UseFrameSize(int32_t samples)
    {
        WrapperTest::UseFrameSize(samples);
        Open();
    }

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

    std::vector<Frame> FramesFed() const
    {
        std::vector<Frame> frames;
        for (const EngineCall& call : engine.calls)
        {
            if (call.function == "VWoVFeedAudioFrame")
            {
                frames.push_back(call.samples);
            }
        }
        return frames;
    }

    uint32_t session = 0;
    bool detected = false;
};

TEST_F(FeedRecording, ScoresEveryFrameAndFlushStep)
{
    engine.flushSteps = 2;
    EXPECT_EQ(Feed(Ramp(200)), EngineStatus::Success);
    EXPECT_THAT(events, ElementsAreArray(
                            Join({Began, Fed(200), Frame150, Frame150, FedAll, FlushStep, FlushStep, {"VWoVFlush(1)"}, Ended})));
    EXPECT_THAT(logger.lines, ElementsAre(Log(4, 1, "[FeedRecording] Entry."), Log(5, 1, "[FeedRecording] Getting Scores size"),
                                          Log(5, 1, "[FeedRecording] Starting feeding frames. Samples to feed: 200"),
                                          Log(5, 1, "[FeedRecording] Ended feeding frames"), Log(4, 1, "[FeedRecording] Exit.")));
    EXPECT_FALSE(detected);
}

TEST_F(FeedRecording, WithoutScoringOnlyFeedsAndFlushes)
{
    engine.flushSteps = 2;
    engine.laterStep.scores = {1000};
    EXPECT_EQ(Feed(Ramp(200), 0, false), EngineStatus::Success);
    EXPECT_THAT(events,
                ElementsAre("[FeedRecording] Entry.", "Lock", "[FeedRecording] Starting feeding frames. Samples to feed: 200",
                            "VWoVFeedAudioFrame(1, 150)", "VWoVFeedAudioFrame(1, 150)", "[FeedRecording] Ended feeding frames",
                            "VWoVFlush(1)", "VWoVFlush(1)", "VWoVFlush(1)", "Unlock", "[FeedRecording] Exit."));
    EXPECT_FALSE(detected);
}

TEST_F(FeedRecording, WithoutScoringAVerdictEndsTheFlushAndIsNotJudged)
{
    engine.flushSteps = 5;
    detected = true;
    EXPECT_EQ(Feed(Ramp(200), 0, false), EngineStatus::Success);
    EXPECT_EQ(std::count(events.begin(), events.end(), "VWoVFlush(1)"), 1);
    EXPECT_THAT(logger.lines, SizeIs(4));
    EXPECT_TRUE(detected);
}

TEST_F(FeedRecording, SamplesAreClampedAndScaledAndTheLastFrameIsFilledWithZeros)
{
    EXPECT_EQ(Feed({1.5F, -2.0F, 0.5F, 0.0F}), EngineStatus::Success);
    Frame expected(150);
    expected[0] = 32767;
    expected[1] = -32767;
    expected[2] = 16384;
    EXPECT_THAT(FramesFed(), ElementsAre(expected));
}

TEST_F(FeedRecording, FramesOfThePreviousFillLeaveNothingBehind)
{
    EXPECT_EQ(Feed(std::vector<float>(151, 1.0F)), EngineStatus::Success);
    Frame second(150);
    second[0] = 32767;
    EXPECT_THAT(FramesFed(), ElementsAre(Frame(150, 32767), second));
}

TEST_F(FeedRecording, ExactMultipleOfTheFrameSizeIsFollowedByAFrameOfZerosKept)
{
    EXPECT_EQ(Feed(std::vector<float>(300, 1.0F)), EngineStatus::Success);
    EXPECT_THAT(FramesFed(), ElementsAre(Frame(150, 32767), Frame(150, 32767), Frame(150, 0)));
}

TEST_F(FeedRecording, RecordingWithoutSamplesIsOneFrameOfZeros)
{
    for (std::size_t length = 0; length < 4; ++length)
    {
        SCOPED_TRACE(length);
        Restart();
        Open();
        ScriptedRecording recording(std::vector<uint8_t>(length, 0x3F));
        EXPECT_EQ(Feed(recording), EngineStatus::Success);
        EXPECT_THAT(events, ElementsAreArray(Join({Began, Fed(0), Frame150, FedAll, {"VWoVFlush(1)"}, Ended})));
        EXPECT_THAT(FramesFed(), ElementsAre(Frame(150, 0)));
    }
}

TEST_F(FeedRecording, BytesOfAnUnfinishedSampleAreLeftOut)
{
    for (std::size_t surplus = 1; surplus < 4; ++surplus)
    {
        SCOPED_TRACE(surplus);
        Restart();
        Open();
        // 0x3F3F3F3F is 0.74706; times 32767, 24478.9.
        ScriptedRecording recording(std::vector<uint8_t>(8 + surplus, 0x3F));
        EXPECT_EQ(Feed(recording), EngineStatus::Success);
        EXPECT_THAT(events, Contains(Fed(2).front()));
        Frame expected(150);
        expected[0] = expected[1] = 24479;
        EXPECT_THAT(FramesFed(), ElementsAre(expected));
    }
}

TEST_F(FeedRecording, FrameSizeZeroFeedsOneEmptyFrameMoreThanThereAreSamples)
{
    UseFrameSize(0);
    for (const std::size_t count : {0U, 1U, 1000U})
    {
        SCOPED_TRACE(count);
        Restart();
        Open();
        EXPECT_EQ(Feed(Ramp(count)), EngineStatus::Success);
        EXPECT_EQ(FramesFed(), std::vector<Frame>(count + 1));
        EXPECT_EQ(events.back(), "[FeedRecording] Exit.");
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
    const std::vector<std::pair<int32_t, std::size_t>> framesByPosition = {{std::numeric_limits<int32_t>::min(), 34},
                                                                           {-1200, 34},
                                                                           {-2, 34},
                                                                           {-1, 34},
                                                                           {0, 34},
                                                                           {1, 34},
                                                                           {2, 2},
                                                                           {3, 2},
                                                                           {600, 2},
                                                                           {601, 2},
                                                                           {602, 3},
                                                                           {603, 3},
                                                                           {1201, 3},
                                                                           {1202, 4},
                                                                           {std::numeric_limits<int32_t>::max(), 34}};
    const std::vector<float> samples = Ramp(5000);
    for (const auto& [position, frames] : framesByPosition)
    {
        SCOPED_TRACE(position);
        Restart();
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
            for (const int32_t position : {std::numeric_limits<int32_t>::min(),
                                           -601,
                                           -1,
                                           0,
                                           1,
                                           2,
                                           3,
                                           4,
                                           5,
                                           14,
                                           15,
                                           28,
                                           32,
                                           64,
                                           127,
                                           128,
                                           129,
                                           256,
                                           599,
                                           600,
                                           601,
                                           1200,
                                           std::numeric_limits<int32_t>::max()})
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
    EXPECT_THAT(logger.lines, Contains(Log(5, 1, Fed(SamplesPerHour).front())));
    EXPECT_EQ(recording.locks, 1);
}

TEST_F(FeedRecording, HostsBufferIsFedAndGivenBack)
{
    const std::vector<float> samples = Ramp(1234);
    const MediaBuffer buffer = MakeMediaBuffer(samples);
    EXPECT_EQ(wrapper.FeedRecording(session, buffer.get(), 0, true, &detected), EngineStatus::Success);
    EXPECT_EQ(FramesFed(), ExpectedFrames(samples, 150, 0));
    EXPECT_EQ(std::count(events.begin(), events.end(), "[FeedRecording] Exit."), 1);
}

TEST_F(FeedRecording, NullRecordingCannotBeLocked)
{
    EXPECT_EQ(wrapper.FeedRecording(session, nullptr, 0, true, &detected), 11U);
    EXPECT_EQ(logger.lines.back(), Log(2, 0, "[FeedRecording] Failed to lock recording. Status = -2147467261"));
    EXPECT_THAT(events, Not(Contains("VWoVFlush(1)")));
}

TEST_F(FeedRecording, RecordingThatCannotBeLockedEndsTheOperation)
{
    for (const auto& [result, text] : {std::pair<HRESULT, const char*>{E_FAIL, "-2147467259"},
                                       {E_OUTOFMEMORY, "-2147024882"},
                                       {static_cast<HRESULT>(0xFFFFFFFF), "-1"},
                                       {static_cast<HRESULT>(0x80000000), "-2147483648"}})
    {
        SCOPED_TRACE(text);
        Restart();
        Open();
        ScriptedRecording recording(Ramp(200));
        recording.lockResult = result;
        EXPECT_EQ(Feed(recording), 11U);
        const std::string line = std::string("[FeedRecording] Failed to lock recording. Status = ") + text;
        EXPECT_THAT(events, ElementsAreArray(Join({Began, {line}})));
        EXPECT_EQ(logger.lines.back(), Log(2, 0, line));
        EXPECT_EQ(recording.locks, 0);
    }
}

TEST_F(FeedRecording, LockWithAPositiveResultIsALock)
{
    ScriptedRecording recording(Ramp(200));
    recording.lockResult = S_FALSE;
    EXPECT_EQ(Feed(recording), EngineStatus::Success);
    EXPECT_EQ(recording.unlocks, 1);
    EXPECT_THAT(FramesFed(), SizeIs(2));
}

TEST_F(FeedRecording, FailedUnlockIsLoggedAndIgnored)
{
    ScriptedRecording recording(Ramp(200));
    recording.unlockResult = E_UNEXPECTED;
    EXPECT_EQ(Feed(recording), EngineStatus::Success);
    EXPECT_THAT(events, ElementsAreArray(Join({Began,
                                               Fed(200),
                                               Frame150,
                                               Frame150,
                                               FedAll,
                                               {"VWoVFlush(1)", "Unlock", "[FeedRecording] Failed to unlock recording.",
                                                "[FeedRecording] Exit."}})));
    EXPECT_THAT(logger.lines, Contains(LogWithStatus(2, 1, "[FeedRecording] Failed to unlock recording.", E_UNEXPECTED)));
    EXPECT_EQ(recording.unlocks, 1);
}

TEST_F(FeedRecording, UnlockWithAPositiveResultIsNotLogged)
{
    ScriptedRecording recording(Ramp(200));
    recording.unlockResult = S_FALSE;
    EXPECT_EQ(Feed(recording), EngineStatus::Success);
    EXPECT_THAT(logger.lines, SizeIs(5));
}

TEST_F(FeedRecording, RefusedScoreCountIsReturnedBeforeTheLock)
{
    for (const uint32_t status : {7U, EngineStatus::BufferTooSmall, EngineStatus::NothingLeft})
    {
        SCOPED_TRACE(status);
        Restart();
        Open();
        engine.Answer("VWoVGetScores", 1, status);
        ScriptedRecording recording(Ramp(200));
        EXPECT_EQ(Feed(recording), status);
        EXPECT_THAT(events, ElementsAre("[FeedRecording] Entry.", "[FeedRecording] Getting Scores size",
                                        "VWoVGetScores(1, null, 0)", "[FeedRecording] Failed to get the scores array size."));
        EXPECT_EQ(logger.lines.back(), LogWithCode(2, 0, "[FeedRecording] Failed to get the scores array size.", status));
        EXPECT_EQ(recording.locks, 0);
    }
}

TEST_F(FeedRecording, ScoresHaveTheRoomThatTheEngineAskedFor)
{
    for (const uint32_t count : {1U, 2U, 100U})
    {
        SCOPED_TRACE(count);
        Restart();
        Open();
        engine.scoreCount = count;
        EXPECT_EQ(Feed(Ramp(100)), EngineStatus::Success);
        EXPECT_THAT(events, Contains("VWoVGetScores(1, buffer, " + std::to_string(count) + ")"));
    }
}

TEST_F(FeedRecording, RefusedFrameEndsTheFeedingButNotTheFlush)
{
    for (const uint32_t status : {7U, EngineStatus::BufferTooSmall, EngineStatus::NothingLeft})
    {
        SCOPED_TRACE(status);
        Restart();
        Open();
        engine.Answer("VWoVFeedAudioFrame", 2, status);
        engine.flushSteps = 1;
        EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
        EXPECT_THAT(events, ElementsAreArray(Join({Began,
                                                   Fed(1000),
                                                   Frame150,
                                                   {"VWoVFeedAudioFrame(1, 150)", "[FeedRecording] Failed to feed frames."},
                                                   FedAll,
                                                   FlushStep,
                                                   {"VWoVFlush(1)"},
                                                   Ended})));
        EXPECT_THAT(logger.lines, Contains(LogWithCode(2, 1, "[FeedRecording] Failed to feed frames.", status)));
    }
}

TEST_F(FeedRecording, FailedScoresAreLoggedAndTheFeedingGoesOn)
{
    engine.Answer("VWoVGetScores", 2, 7);
    EXPECT_EQ(Feed(Ramp(200)), EngineStatus::Success);
    Events failed = Frame150;
    failed.insert(failed.begin() + 2, "[FeedRecording] Failed to get scores.");
    EXPECT_THAT(events, ElementsAreArray(Join({Began, Fed(200), failed, Frame150, FedAll, {"VWoVFlush(1)"}, Ended})));
    EXPECT_THAT(logger.lines, Contains(LogWithCode(3, 1, "[FeedRecording] Failed to get scores.", 7)));
}

TEST_F(FeedRecording, NothingLeftIsNoErrorOfTheScoresWhileFramesAreFed)
{
    engine.Answer("VWoVGetScores", 2, EngineStatus::NothingLeft);
    EXPECT_EQ(Feed(Ramp(200)), EngineStatus::Success);
    EXPECT_THAT(events, ElementsAreArray(Join({Began, Fed(200), Frame150, Frame150, FedAll, {"VWoVFlush(1)"}, Ended})));
}

TEST_F(FeedRecording, NothingLeftIsAnErrorOfTheScoresWhileFlushing)
{
    for (const uint32_t status : {7U, EngineStatus::NothingLeft})
    {
        SCOPED_TRACE(status);
        Restart();
        Open();
        engine.flushSteps = 2;
        engine.Answer("VWoVGetScores", 3, status);
        EXPECT_EQ(Feed(Ramp(100)), EngineStatus::Success);
        Events failed = FlushStep;
        failed.insert(failed.begin() + 2, "[FeedRecording] Failed to get scores.");
        EXPECT_THAT(events,
                    ElementsAreArray(Join({Began, Fed(100), Frame150, FedAll, failed, FlushStep, {"VWoVFlush(1)"}, Ended})));
        EXPECT_THAT(logger.lines, Contains(LogWithCode(3, 1, "[FeedRecording] Failed to get scores.", status)));
    }
}

TEST_F(FeedRecording, FailedQualityIsLoggedTwiceAndTheFeedingGoesOn)
{
    engine.Answer("VWoVGetIntOutput", 2, 7);
    EXPECT_EQ(Feed(Ramp(200)), EngineStatus::Success);
    EXPECT_THAT(events, ElementsAreArray(
                            Join({Began,
                                  Fed(200),
                                  Frame150,
                                  {"[GetVadQuality] Failed to get VAD output.", "[FeedRecording] Failed to get VAD quality."},
                                  Frame150,
                                  FedAll,
                                  {"VWoVFlush(1)"},
                                  Ended})));
    EXPECT_THAT(logger.lines, AllOf(Contains(LogWithCode(3, 1, "[GetVadQuality] Failed to get VAD output.", 7)),
                                    Contains(LogWithCode(3, 1, "[FeedRecording] Failed to get VAD quality.", 7))));
}

TEST_F(FeedRecording, FailedFlagWithAReadableQualityIsNoFailureOfTheFrame)
{
    engine.Answer("VWoVGetIntOutput", 1, 7);
    EXPECT_EQ(Feed(Ramp(100)), EngineStatus::Success);
    EXPECT_THAT(logger.lines, Not(Contains(LogWithCode(3, 1, "[FeedRecording] Failed to get VAD quality.", 7))));
}

TEST_F(FeedRecording, FailedFlushIsLoggedAndEndsTheFlush)
{
    for (const uint32_t status : {1U, 7U, EngineStatus::BufferTooSmall, EngineStatus::NothingLeft - 1})
    {
        SCOPED_TRACE(status);
        Restart();
        Open();
        engine.flushSteps = 5;
        engine.Answer("VWoVFlush", 2, status);
        EXPECT_EQ(Feed(Ramp(100)), EngineStatus::Success);
        EXPECT_THAT(
            events,
            ElementsAreArray(
                Join({Began, Fed(100), Frame150, FedAll, FlushStep, {"VWoVFlush(1)", "[FeedRecording] Flush failed."}, Ended})));
        EXPECT_THAT(logger.lines, Contains(LogWithCode(3, 1, "[FeedRecording] Flush failed.", status)));
    }
}

TEST_F(FeedRecording, QualityThatFailsWhileFlushingEndsTheFlushAsItsFailureKept)
{
    engine.flushSteps = 5;
    engine.Answer("VWoVGetIntOutput", 4, 7);
    EXPECT_EQ(Feed(Ramp(100)), EngineStatus::Success);
    EXPECT_THAT(events, ElementsAreArray(Join({Began,
                                               Fed(100),
                                               Frame150,
                                               FedAll,
                                               FlushStep,
                                               {"[GetVadQuality] Failed to get VAD output.",
                                                "[FeedRecording] Failed to get VAD quality.", "[FeedRecording] Flush failed."},
                                               Ended})));
    EXPECT_THAT(logger.lines, Contains(LogWithCode(3, 1, "[FeedRecording] Flush failed.", 7)));
}

TEST_F(FeedRecording, QualityStatusOfNothingLeftEndsTheFlushQuietlyKept)
{
    engine.flushSteps = 5;
    engine.Answer("VWoVGetIntOutput", 4, EngineStatus::NothingLeft);
    EXPECT_EQ(Feed(Ramp(100)), EngineStatus::Success);
    EXPECT_THAT(events, ElementsAreArray(
                            Join({Began,
                                  Fed(100),
                                  Frame150,
                                  FedAll,
                                  FlushStep,
                                  {"[GetVadQuality] Failed to get VAD output.", "[FeedRecording] Failed to get VAD quality."},
                                  Ended})));
}

TEST_F(FeedRecording, DetectionWhileFeedingIsJudgedAfterOneFlush)
{
    engine.steps = {{}};
    engine.laterStep.scores = {11};
    engine.flushSteps = 5;
    EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
    EXPECT_TRUE(detected);
    Events detecting = Frame150;
    detecting.insert(detecting.begin() + 2, "[GetScores] Key phrase detected, KPD score(11.000000), time (0.009375).");
    EXPECT_THAT(events, ElementsAreArray(Join({Began,
                                               Fed(1000),
                                               Frame150,
                                               detecting,
                                               FedAll,
                                               FlushStep,
                                               {"[FeedRecording] Best score(11.000000), predefined KPD float threshold "
                                                "(10.000000).",
                                                "[FeedRecording] Recording quality: 100."},
                                               Ended})));
    EXPECT_THAT(logger.lines,
                ElementsAre(Log(4, 1, "[FeedRecording] Entry."), Log(5, 1, "[FeedRecording] Getting Scores size"),
                            Log(5, 1, "[FeedRecording] Starting feeding frames. Samples to feed: 1000"),
                            LogFormat(5, 1, detecting[2]), Log(5, 1, "[FeedRecording] Ended feeding frames"),
                            LogFormat(5, 1,
                                      "[FeedRecording] Best score(11.000000), predefined KPD float "
                                      "threshold (10.000000)."),
                            LogFormat(5, 1, "[FeedRecording] Recording quality: 100."), Log(4, 1, "[FeedRecording] Exit.")));
}

TEST_F(FeedRecording, LowerScoreOfAFlushStepTakesTheDetectionBackKept)
{
    engine.steps = {{.scores = {11}}};
    engine.flushSteps = 2;
    EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
    EXPECT_FALSE(detected);
    EXPECT_THAT(FramesFed(), SizeIs(1));
    EXPECT_EQ(std::count(events.begin(), events.end(), "VWoVFlush(1)"), 3);
    EXPECT_EQ(logger.lines.back(), Log(4, 1, "[FeedRecording] Exit."));
    EXPECT_THAT(logger.lines, SizeIs(6)) << "the quality is not judged";
}

TEST_F(FeedRecording, DetectionWhileFlushingEndsTheFlush)
{
    engine.steps = {{}, {}, {.scores = {11}}};
    engine.flushSteps = 5;
    EXPECT_EQ(Feed(Ramp(100)), EngineStatus::Success);
    EXPECT_TRUE(detected);
    EXPECT_EQ(std::count(events.begin(), events.end(), "VWoVFlush(1)"), 2);
    EXPECT_THAT(logger.lines,
                Contains(LogFormat(5, 1, "[GetScores] Key phrase detected, KPD score(11.000000), time (0.018750).")));
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
    EXPECT_THAT(logger.lines, AllOf(Contains(LogWithCode(3, 1, "[FeedRecording] Flush failed.", 7)),
                                    Contains(LogFormat(5, 1, "[FeedRecording] Recording quality: 100."))));
}

TEST_F(FeedRecording, DetectionOfTheCallersIsKeptWhileNoScoreIsBelowTheThreshold)
{
    detected = true;
    engine.laterStep.scores = {10};
    EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
    EXPECT_TRUE(detected);
    EXPECT_THAT(FramesFed(), SizeIs(1));
    EXPECT_THAT(logger.lines, Contains(LogFormat(5, 1,
                                                 "[FeedRecording] Best score(10.000000), predefined KPD float threshold "
                                                 "(10.000000).")));
}

TEST_F(FeedRecording, BestScoreIsTheLowestFloatWhenNoScoreCame)
{
    detected = true;
    engine.laterStep.scores = {};
    EXPECT_EQ(Feed(Ramp(1000)), EngineStatus::Success);
    // How many of its digits are printed is the C library's business.
    EXPECT_THAT(events, Contains(testing::StartsWith("[FeedRecording] Best score(-3402823466385288")));
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
    constexpr int32_t Most = std::numeric_limits<int32_t>::max();
    constexpr int32_t Least = std::numeric_limits<int32_t>::min();
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
        Restart();
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
        const LogLine tooLow = Log(4, 1, "[FeedRecording] Recording quality is too low. Returning false as a detection result.");
        const auto judged = std::find(logger.lines.begin(), logger.lines.end(), quality);
        ASSERT_NE(judged, logger.lines.end());
        EXPECT_EQ(*(judged + 1), row.accepted ? Log(4, 1, "[FeedRecording] Exit.") : tooLow);
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
    EXPECT_THAT(logger.lines, AllOf(Contains(LogFormat(5, 1,
                                                       "[GetScores] Key phrase detected, KPD score(10.500000), time "
                                                       "(0.000000).")),
                                    Contains(LogFormat(5, 1, "[FeedRecording] Recording quality: 100."))));
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
    ASSERT_THAT(events, Contains("[FeedRecording] Recording quality is too low. Returning false as a detection result."));

    for (std::size_t n = 1; n <= eventCount; ++n)
    {
        SCOPED_TRACE(n);
        throwingEvent.reset();
        Restart();
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

} // namespace
