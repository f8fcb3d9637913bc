#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/support/WrapperTest.h"

#include <mferror.h>

#include <gmock/gmock.h>

#include <algorithm>

namespace
{

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* StartRefused = "[FeedRecordingsForEnrollment] Failed to start utterance enrollment.";
constexpr const char* FeedFailed = "[FeedRecordingsForEnrollment] Failed to feed recording.";
constexpr const char* FinalizeFailed = "VWoVFinalizeEnrollmentUtterance failed!";

const LogLine Entry = Log(4, 1, "[FeedRecordingsForEnrollment] Entry.");
const LogLine Exit = Log(4, 1, "[FeedRecordingsForEnrollment] Exit.");

/// Statuses with a meaning elsewhere have none here.
constexpr uint32_t Statuses[] = {7, EngineStatus::BufferTooSmall, UnexpectedBehaviour, EngineStatus::NothingLeft};

/// Lines that the operation itself writes about a recording.
LogLine Begun(int number)
{
    return Log(5, 1, "[FeedRecordingsForEnrollment] Recording " + std::to_string(number));
}

LogLine Sent(int number)
{
    return Log(5, 1, "[FeedRecordingsForEnrollment] Recording " + std::to_string(number) + " was sent");
}

class FeedRecordingsForEnrollment : public WrapperTest
{
protected:
    FeedRecordingsForEnrollment()
    {
        OpenSession();
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

    /// Opens session 1 without a trace.
    void OpenSession()
    {
        Restart();
        session = 0;
        ASSERT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
        TakeEvents();
        logger.Take();
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
    std::vector<LogLine> OwnLines()
    {
        std::vector<LogLine> lines = logger.Take();
        std::erase_if(lines, [](const LogLine& line) { return line.text.starts_with("[FeedRecording]"); });
        return lines;
    }

    uint32_t session = 0;
    ScriptedRecording first{std::vector<float>(100, 0.5F)};
    ScriptedRecording second{std::vector<float>(200)};
    ScriptedRecording third{std::vector<float>(20)};
};

TEST_F(FeedRecordingsForEnrollment, EveryRecordingIsOneUtterance)
{
    EXPECT_EQ(Feed({&first, &second}), EngineStatus::Success);
    EXPECT_THAT(events,
                ElementsAre("[FeedRecordingsForEnrollment] Entry.", "[FeedRecordingsForEnrollment] Recording 1",
                            "VWoVStartEnrollmentUtterance(1, 0)", "[FeedRecording] Entry.", "Lock",
                            "[FeedRecording] Starting feeding frames. Samples to feed: 100", "VWoVFeedAudioFrame(1, 150)",
                            "[FeedRecording] Ended feeding frames", "VWoVFlush(1)", "Unlock", "[FeedRecording] Exit.",
                            "VWoVFinalizeEnrollmentUtterance(1)", "[FeedRecordingsForEnrollment] Recording 1 was sent",
                            "[FeedRecordingsForEnrollment] Recording 2", "VWoVStartEnrollmentUtterance(1, 0)",
                            "[FeedRecording] Entry.", "Lock", "[FeedRecording] Starting feeding frames. Samples to feed: 200",
                            "VWoVFeedAudioFrame(1, 150)", "VWoVFeedAudioFrame(1, 150)", "[FeedRecording] Ended feeding frames",
                            "VWoVFlush(1)", "Unlock", "[FeedRecording] Exit.", "VWoVFinalizeEnrollmentUtterance(1)",
                            "[FeedRecordingsForEnrollment] Recording 2 was sent", "[FeedRecordingsForEnrollment] Exit."));
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Begun(1), Log(4, 1, "[FeedRecording] Entry."),
                                          Log(5, 1, "[FeedRecording] Starting feeding frames. Samples to feed: 100"),
                                          Log(5, 1, "[FeedRecording] Ended feeding frames"), Log(4, 1, "[FeedRecording] Exit."),
                                          Sent(1), Begun(2), Log(4, 1, "[FeedRecording] Entry."),
                                          Log(5, 1, "[FeedRecording] Starting feeding frames. Samples to feed: 200"),
                                          Log(5, 1, "[FeedRecording] Ended feeding frames"), Log(4, 1, "[FeedRecording] Exit."),
                                          Sent(2), Exit));
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
    EXPECT_THAT(events, ElementsAre(Entry.text, Exit.text));
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Exit));
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
    EXPECT_THAT(events, Each(Not(HasSubstr("VWoVGet"))));
    EXPECT_EQ(std::count(events.begin(), events.end(), "VWoVFlush(1)"), 6) << "to the end after each recording";
}

TEST_F(FeedRecordingsForEnrollment, RecordingsAreNumberedInPlainDecimal)
{
    std::vector<IMFMediaBuffer*> recordings(11, &third);
    EXPECT_EQ(Feed(recordings, std::vector<int32_t>(11)), EngineStatus::Success);
    EXPECT_EQ(third.locks, 11);
    const std::vector<LogLine> lines = OwnLines();
    EXPECT_THAT(lines, Contains(Sent(9)));
    EXPECT_THAT(lines, Contains(Begun(10)));
    EXPECT_THAT(lines, Contains(Sent(11)));
}

TEST_F(FeedRecordingsForEnrollment, RefusedUtteranceEndsAtOnceWithoutAnExitLine)
{
    for (const uint32_t status : Statuses)
    {
        SCOPED_TRACE(status);
        OpenSession();
        engine.Answer("VWoVStartEnrollmentUtterance", 2, status);
        EXPECT_EQ(Feed({&first, &second, &third}), status);
        EXPECT_EQ(events.back(), StartRefused);
        EXPECT_EQ(events.at(events.size() - 2), "VWoVStartEnrollmentUtterance(1, 0)");
        EXPECT_THAT(OwnLines(), ElementsAre(Entry, Begun(1), Sent(1), Begun(2), LogWithCode(1, 1, StartRefused, status)));
        EXPECT_EQ(second.locks + third.locks, 0);
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
        OpenSession();
        EXPECT_EQ(Feed({&first, one.recording, &third}), UnexpectedBehaviour);
        const std::vector<LogLine> lines = logger.Take();
        EXPECT_THAT(std::vector<LogLine>(lines.end() - 5, lines.end()),
                    ElementsAre(Begun(2), Log(4, 1, "[FeedRecording] Entry."),
                                Log(2, 0, "[FeedRecording] Failed to lock recording. Status = " + std::to_string(one.result)),
                                LogWithCode(2, 1, FeedFailed, 11), Exit));
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
    EXPECT_THAT(OwnLines(), ElementsAre(Entry, Begun(1), LogWithCode(2, 1, FinalizeFailed, 7), Begun(2),
                                        LogWithCode(2, 1, FinalizeFailed, 8), Begun(3), Sent(3), Exit));
    EXPECT_EQ(first.locks + second.locks + third.locks, 3);
}

TEST_F(FeedRecordingsForEnrollment, FailedFinalisationOfTheLastRecordingIsTheResult)
{
    for (const uint32_t status : Statuses)
    {
        SCOPED_TRACE(status);
        OpenSession();
        engine.Answer("VWoVFinalizeEnrollmentUtterance", 2, status);
        EXPECT_EQ(Feed({&first, &second}), status);
        EXPECT_THAT(OwnLines(), ElementsAre(Entry, Begun(1), Sent(1), Begun(2), LogWithCode(2, 1, FinalizeFailed, status), Exit));
    }
}

TEST_F(FeedRecordingsForEnrollment, FailuresWithinARecordingAreLoggedAndPassedOver)
{
    struct Case
    {
        const char* function;
        LogLine line;
    };
    for (const Case& one : {Case{"VWoVFeedAudioFrame", LogWithCode(2, 1, "[FeedRecording] Failed to feed frames.", 7)},
                            Case{"VWoVFlush", LogWithCode(3, 1, "[FeedRecording] Flush failed.", 7)}})
    {
        SCOPED_TRACE(one.function);
        OpenSession();
        engine.Answer(one.function, 1, 7);
        EXPECT_EQ(Feed({&first, &third}), EngineStatus::Success);
        EXPECT_THAT(logger.lines, Contains(one.line).Times(1));
        EXPECT_THAT(OwnLines(), ElementsAre(Entry, Begun(1), Sent(1), Begun(2), Sent(2), Exit));
    }
}

TEST_F(FeedRecordingsForEnrollment, RecordingThatCannotBeUnlockedIsLoggedAndPassedOver)
{
    first.unlockResult = E_ACCESSDENIED;
    EXPECT_EQ(Feed({&first, &third}), EngineStatus::Success);
    EXPECT_THAT(logger.lines,
                Contains(LogWithStatus(2, 1, "[FeedRecording] Failed to unlock recording.", E_ACCESSDENIED)).Times(1));
    EXPECT_THAT(OwnLines(), ElementsAre(Entry, Begun(1), Sent(1), Begun(2), Sent(2), Exit));
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
    const std::vector<std::string> all = TakeEvents();
    for (std::size_t n = 1; n <= all.size(); ++n)
    {
        SCOPED_TRACE(all[n - 1]);
        throwingEvent.reset();
        OpenSession();
        throwingEvent = n;
        const int locksBefore = first.locks + second.locks;
        try
        {
            Feed({&first, &second});
            ADD_FAILURE() << "no exception";
        }
        catch (const std::runtime_error& thrown)
        {
            EXPECT_EQ(thrown.what(), all[n - 1]);
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

} // namespace
