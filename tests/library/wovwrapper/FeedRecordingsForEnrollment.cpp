#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/WrapperTest.h"

#include <mferror.h>

#include <gmock/gmock.h>

#include <algorithm>

namespace FeedRecordingsForEnrollmentTests
{

using namespace WrapperLines;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Statuses with a meaning elsewhere have none here.
constexpr uint32_t Statuses[] = {7, EngineStatus::BufferTooSmall, UnexpectedBehaviour, EngineStatus::NothingLeft};

class FeedRecordingsForEnrollment : public SessionTest
{
protected:
    FeedRecordingsForEnrollment()
    {
        for (ScriptedRecording* recording : {&first, &second, &third})
        {
            Watch(*recording);
        }
    }

    ~FeedRecordingsForEnrollment() override
    {
        for (const ScriptedRecording* recording : {&first, &second, &third})
        {
            EXPECT_EQ(recording->OpenLocks(), 0);
            EXPECT_FALSE(recording->unlockedWithoutLock);
        }
    }

    uint32_t Feed(std::vector<IMFMediaBuffer*> recordings, std::vector<int32_t> positions = {0, 0, 0})
    {
        // On the heap, so that a look beyond the last position does not pass unseen.
        positions.resize(std::min(positions.size(), recordings.size()));
        positions.shrink_to_fit();
        return wrapper.FeedRecordingsForEnrollment(&session, recordings.data(), static_cast<uint32_t>(recordings.size()),
                                                   positions.data());
    }

    /// The operation's own lines of those that were written.
    Lines OwnLines()
    {
        Lines lines = logger.Take();
        std::erase_if(lines, [](const LogLine& line) { return line.text.starts_with("[FeedRecording]"); });
        return lines;
    }

    ScriptedRecording first{std::vector<float>(100, 0.5F)};
    ScriptedRecording second{std::vector<float>(200)};
    ScriptedRecording third{std::vector<float>(20)};
};

TEST_F(FeedRecordingsForEnrollment, EveryRecordingIsOneUtterance)
{
    EXPECT_EQ(Feed({&first, &second}), EngineStatus::Success);
    EXPECT_EQ(events, Utterances(1, {100, 200}));
    EXPECT_EQ(logger.lines, events.Logged());
}

TEST_F(FeedRecordingsForEnrollment, SamplesAreTheRecordings)
{
    EXPECT_EQ(Feed({&first}), EngineStatus::Success);
    const auto fed = std::find_if(engine.calls.begin(), engine.calls.end(),
                                  [](const EngineCall& call) { return call.function == "VWoVFeedAudioFrame"; });
    ASSERT_NE(fed, engine.calls.end());
    std::vector<int16_t> expected(100, 16384);
    expected.resize(150);
    EXPECT_EQ(fed->samples, expected);
}

TEST_F(FeedRecordingsForEnrollment, WithoutRecordingsThereAreTwoLinesAndNoCall)
{
    EXPECT_EQ(wrapper.FeedRecordingsForEnrollment(&session, nullptr, 0, nullptr), EngineStatus::Success);
    EXPECT_EQ(events, RecordingsEntry + RecordingsExit);
}

TEST_F(FeedRecordingsForEnrollment, EveryRecordingHasItsOwnEndPosition)
{
    ScriptedRecording one(std::vector<float>(1000));
    ScriptedRecording other(std::vector<float>(1000));
    EXPECT_EQ(Feed({&one, &other, &one}, {1200, 1, 2}), EngineStatus::Success);
    // Up to the frame that starts at sample 300; the whole recording; up to the frame that starts at sample 150.
    std::vector<std::ptrdiff_t> frames;
    for (const std::string& text : engine.Take())
    {
        if (text.starts_with("VWoVStartEnrollmentUtterance"))
        {
            frames.push_back(0);
        }
        else if (text.starts_with("VWoVFeedAudioFrame"))
        {
            ++frames.back();
        }
    }
    EXPECT_THAT(frames, ElementsAre(3, 7, 2));
}

TEST_F(FeedRecordingsForEnrollment, NothingIsScored)
{
    engine.laterStep.scores = {1000};
    engine.flushSteps = 2;
    EXPECT_EQ(Feed({&first, &second}), EngineStatus::Success);
    EXPECT_THAT(events.Texts(), Each(Not(HasSubstr("VWoVGet"))));
    EXPECT_EQ(std::count(events.begin(), events.end(), Flush(1)), 6) << "to the end after each recording";
}

TEST_F(FeedRecordingsForEnrollment, RecordingsAreNumberedInPlainDecimal)
{
    std::vector<IMFMediaBuffer*> recordings(11, &third);
    EXPECT_EQ(Feed(recordings, std::vector<int32_t>(11)), EngineStatus::Success);
    EXPECT_EQ(third.locks, 11);
    const Lines lines = OwnLines();
    EXPECT_THAT(lines, Contains(Sent(9)));
    EXPECT_THAT(lines, Contains(Begun(10)));
    EXPECT_THAT(lines, Contains(Sent(11)));
}

TEST_F(FeedRecordingsForEnrollment, RefusedUtteranceEndsAtOnceWithoutAnExitLine)
{
    for (const uint32_t status : Statuses)
    {
        SCOPED_TRACE(status);
        Open();
        engine.Answer("VWoVStartEnrollmentUtterance", 2, status);
        EXPECT_EQ(Feed({&first, &second, &third}), status);
        Lines expected = Utterances(1, {100});
        expected.pop_back();
        EXPECT_EQ(events, expected + Begun(2) + Call("VWoVStartEnrollmentUtterance", 1, "0") +
                              LogWithCode(1, 1, UtteranceRefused, status));
    }
}

TEST_F(FeedRecordingsForEnrollment, RecordingThatCannotBeLockedEndsTheLoopAndIsNotFinalised)
{
    ScriptedRecording locked(std::vector<float>(100));
    locked.lockResult = MF_E_INVALIDREQUEST;
    struct Case
    {
        IMFMediaBuffer* recording;
        HRESULT result;
    };
    for (const Case& one : {Case{&locked, MF_E_INVALIDREQUEST}, Case{nullptr, E_POINTER}})
    {
        SCOPED_TRACE(one.result);
        Open();
        EXPECT_EQ(Feed({&first, one.recording, &third}), UnexpectedBehaviour);
        Lines expected = Utterances(1, {100});
        expected.pop_back();
        EXPECT_EQ(logger.lines, expected.Logged() + Begun(2) + FeedEntry + NotLocked(one.result) +
                                    LogWithCode(2, 1, "[FeedRecordingsForEnrollment] Failed to feed recording.", 11) +
                                    RecordingsExit);
        EXPECT_EQ(std::count(events.begin(), events.end(), "VWoVFinalizeEnrollmentUtterance(1)"), 1);
        EXPECT_EQ(third.locks, 0);
    }
}

// Kept.
TEST_F(FeedRecordingsForEnrollment, FailedFinalisationIsForgottenWhenALaterOneSucceeds)
{
    engine.Answer("VWoVFinalizeEnrollmentUtterance", 1, 7);
    engine.Answer("VWoVFinalizeEnrollmentUtterance", 2, 8);
    EXPECT_EQ(Feed({&first, &second, &third}), EngineStatus::Success);
    EXPECT_EQ(OwnLines(), RecordingsEntry + Begun(1) + LogWithCode(2, 1, UtteranceNotFinalized, 7) + Begun(2) +
                              LogWithCode(2, 1, UtteranceNotFinalized, 8) + Begun(3) + Sent(3) + RecordingsExit);
    EXPECT_EQ(first.locks + second.locks + third.locks, 3);
}

TEST_F(FeedRecordingsForEnrollment, FailedFinalisationOfTheLastRecordingIsTheResult)
{
    for (const uint32_t status : Statuses)
    {
        SCOPED_TRACE(status);
        Open();
        engine.Answer("VWoVFinalizeEnrollmentUtterance", 2, status);
        EXPECT_EQ(Feed({&first, &second}), status);
        EXPECT_EQ(OwnLines(), RecordingsEntry + Begun(1) + Sent(1) + Begun(2) + LogWithCode(2, 1, UtteranceNotFinalized, status) +
                                  RecordingsExit);
    }
}

TEST_F(FeedRecordingsForEnrollment, FailuresWithinARecordingAreLoggedAndPassedOver)
{
    struct Case
    {
        const char* function;
        LogLine line;
    };
    for (const Case& one : {Case{"VWoVFeedAudioFrame", NotFed(7)}, Case{"VWoVFlush", NotFlushed(7)}})
    {
        SCOPED_TRACE(one.function);
        Open();
        engine.Answer(one.function, 1, 7);
        EXPECT_EQ(Feed({&first, &third}), EngineStatus::Success);
        EXPECT_THAT(logger.lines, Contains(one.line).Times(1));
        EXPECT_EQ(OwnLines(), RecordingsEntry + Begun(1) + Sent(1) + Begun(2) + Sent(2) + RecordingsExit);
    }
}

TEST_F(FeedRecordingsForEnrollment, RecordingThatCannotBeUnlockedIsLoggedAndPassedOver)
{
    first.unlockResult = E_ACCESSDENIED;
    EXPECT_EQ(Feed({&first, &third}), EngineStatus::Success);
    EXPECT_THAT(logger.lines, Contains(NotUnlocked(E_ACCESSDENIED)).Times(1));
    EXPECT_EQ(OwnLines(), RecordingsEntry + Begun(1) + Sent(1) + Begun(2) + Sent(2) + RecordingsExit);
}

TEST_F(FeedRecordingsForEnrollment, RecordingWithoutSamplesIsOneFrameOfZeros)
{
    ScriptedRecording empty((std::vector<float>()));
    EXPECT_EQ(Feed({&empty}), EngineStatus::Success);
    EXPECT_EQ(std::count(events.begin(), events.end(), "VWoVFeedAudioFrame(1, 150)"), 1);
    EXPECT_EQ(empty.OpenLocks(), 0);
}

TEST_F(FeedRecordingsForEnrollment, ExceptionAtAnyPointReachesTheCallerAndUnlocks)
{
    ASSERT_EQ(Feed({&first, &second}), EngineStatus::Success);
    const Lines all = TakeEvents();
    for (std::size_t n = 1; n <= all.size(); ++n)
    {
        SCOPED_TRACE(all[n - 1]);
        Open();
        throwingEvent = n;
        const int locksBefore = first.locks + second.locks;
        try
        {
            Feed({&first, &second});
            ADD_FAILURE() << "no exception";
        }
        catch (const std::runtime_error& thrown)
        {
            EXPECT_EQ(thrown.what(), all[n - 1].text);
        }
        // A recording that is unlocked on the exception's way tells so; an Unlock that throws has unlocked nothing.
        const bool locked = first.locks + second.locks > locksBefore;
        EXPECT_EQ(locked, n > 5);
        if (all[n - 1] == "Unlock")
        {
            first.onCall = second.onCall = nullptr;
            (first.OpenLocks() > 0 ? first : second).Unlock();
            Watch(first);
            Watch(second);
        }
        EXPECT_EQ(first.OpenLocks() + second.OpenLocks(), 0);
        EXPECT_EQ(engine.Destroys(1), 0) << "the session is the caller's";
    }
    throwingEvent.reset();
}

} // namespace FeedRecordingsForEnrollmentTests
