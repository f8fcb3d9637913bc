#include "library/wovwrapper/VeloxWovSDK.h"

#include "engine/api/SessionTable.h"
#include "engine/base/EngineErrors.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <memory>
#include <thread>

namespace VeloxWovSDKTests
{

using namespace velox::engine;
using testing::HasSubstr;

constexpr uint32_t Ok = 0;
constexpr uint32_t Nothing = 0xFFFFFFFF;
constexpr std::size_t HalfSecond = 8000;

constexpr uint32_t Number(Status status)
{
    return static_cast<uint32_t>(status);
}

/// The attributes are the process's: every test sets them first.
class VeloxWovSDK : public testing::Test
{
protected:
    VeloxWovSDK()
    {
        EXPECT_EQ(VWoVSetAttribute(EngineAttribute::FirmwareConstraints, ""), Ok);
        EXPECT_EQ(VWoVSetAttribute(EngineAttribute::LogLevel, "3"), Ok);
        EXPECT_EQ(VWoVSetBinAttribute(EngineBinAttribute::AcousticModel, acoustic.data()), Ok);
        EXPECT_EQ(VWoVSetBinAttribute(EngineBinAttribute::ZnormPopulation, population.data()), Ok);
    }

    static uint32_t Open()
    {
        uint32_t session = 0;
        EXPECT_EQ(VWoVInitSession(&session), Ok);
        EXPECT_NE(session, 0U);
        EXPECT_EQ(VWoVInit(session, EngineComponent::Vad), Ok);
        EXPECT_EQ(VWoVInit(session, EngineComponent::Kpd), Ok);
        return session;
    }

    uint32_t Listening() const
    {
        const uint32_t session = Open();
        EXPECT_EQ(VWoVSetModel(session, phrase.data()), Ok);
        return session;
    }

    static void Feed(uint32_t session, const std::vector<float>& audio)
    {
        const std::vector<int16_t> pcm = TinyLanguage::ToPcm(audio);
        for (std::size_t start = 0; start + FrameSize <= pcm.size(); start += FrameSize)
        {
            EXPECT_EQ(VWoVFeedAudioFrame(session, pcm.data() + start, FrameSize), Ok);
        }
    }

    static int32_t Get(uint32_t session, uint32_t output)
    {
        int32_t value = -1000;
        uint32_t count = 1;
        EXPECT_EQ(VWoVGetIntOutput(session, output, &value, &count), Ok);
        return value;
    }

    static float Score(uint32_t session)
    {
        float score = -1.0F;
        uint32_t count = 1;
        EXPECT_EQ(VWoVGetScores(session, &score, &count), Ok);
        return score;
    }

    /// The highest score of the audio and its flush.
    static float BestScore(uint32_t session, const std::vector<float>& audio)
    {
        Feed(session, audio);
        float best = Score(session);
        while (VWoVFlush(session) == Ok)
        {
            best = std::max(best, Score(session));
        }
        return best;
    }

    std::vector<uint8_t> acoustic = WriteAcousticModel(TinyLanguage::Acoustic());
    std::vector<uint8_t> population = WritePopulation(TinyLanguage::Background());
    std::vector<uint8_t> phrase = WritePhraseModel(TinyLanguage::Phrase());
};

TEST_F(VeloxWovSDK, AProbeWithoutComponentsReportsTheFrameSize)
{
    uint32_t probe = 0;
    ASSERT_EQ(VWoVInitSession(&probe), Ok);
    uint32_t count = 0;
    ASSERT_EQ(VWoVGetIntOutput(probe, EngineOutput::FrameSize, nullptr, &count), Ok);
    EXPECT_EQ(count, 1U);
    int32_t size = 0;
    ASSERT_EQ(VWoVGetIntOutput(probe, EngineOutput::FrameSize, &size, &count), Ok);
    EXPECT_EQ(size, 160);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(VWoVDestroySession(probe), Ok);
}

TEST_F(VeloxWovSDK, ASecondDestroyIsAccepted)
{
    const uint32_t session = Open();
    EXPECT_EQ(VWoVDestroySession(session), Ok);
    EXPECT_EQ(VWoVDestroySession(session), Ok);
    EXPECT_EQ(VWoVDestroySession(0), Number(Status::BadHandle));
    EXPECT_EQ(VWoVDestroySession(0x7FFFFFFF), Number(Status::BadHandle));
}

TEST_F(VeloxWovSDK, MoreSessionsThanThereIsRoomForAreRefused)
{
    std::vector<uint32_t> sessions(SessionTable::Slots);
    for (uint32_t& session : sessions)
    {
        ASSERT_EQ(VWoVInitSession(&session), Ok);
    }
    uint32_t another = 77;
    EXPECT_EQ(VWoVInitSession(&another), Number(Status::OutOfMemory));
    EXPECT_EQ(another, 77U);
    for (const uint32_t session : sessions)
    {
        EXPECT_EQ(VWoVDestroySession(session), Ok);
    }
}

/// The frames between are as many as a flush has steps: the look-ahead, and what a peak waits for.
TEST_F(VeloxWovSDK, AFlushIsDoneInStepsAndEndsForGood)
{
    const uint32_t session = Listening();
    Feed(session, std::vector<float>(FrameSize, 0.0F));
    int steps = 0;
    uint32_t status = VWoVFlush(session);
    for (; status == Ok; status = VWoVFlush(session))
    {
        ++steps;
    }
    EXPECT_EQ(status, Nothing);
    EXPECT_EQ(steps, 12);
    EXPECT_EQ(VWoVFlush(session), Nothing);
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, EveryFunctionRefusesAHandleThatIsNotOpen)
{
    const uint32_t gone = Open();
    ASSERT_EQ(VWoVDestroySession(gone), Ok);
    const std::vector<int16_t> frame(FrameSize, 0);
    for (const uint32_t session : {0U, gone, 0x7FFFFFFFU})
    {
        SCOPED_TRACE(session);
        uint8_t* model = nullptr;
        uint32_t count = 0;
        const uint32_t bad = Number(Status::BadHandle);
        EXPECT_EQ(VWoVInit(session, EngineComponent::Vad), bad);
        EXPECT_EQ(VWoVSetModel(session, phrase.data()), bad);
        EXPECT_EQ(VWoVStartEnrollment(session), bad);
        EXPECT_EQ(VWoVStartEnrollmentUtterance(session, 0), bad);
        EXPECT_EQ(VWoVFeedAudioFrame(session, frame.data(), FrameSize), bad);
        EXPECT_EQ(VWoVFinalizeEnrollmentUtterance(session), bad);
        EXPECT_EQ(VWoVFinalizeEnrollment(session, &model), bad);
        EXPECT_EQ(VWoVGetScores(session, nullptr, &count), bad);
        EXPECT_EQ(VWoVGetIntOutput(session, EngineOutput::FrameSize, nullptr, &count), bad);
        EXPECT_EQ(VWoVFlush(session), bad);
        EXPECT_EQ(VWoVPrepareLpeData(session, nullptr, &count), bad);
    }
}

TEST_F(VeloxWovSDK, NullPointersAreRefused)
{
    const uint32_t session = Listening();
    const uint32_t null = Number(Status::NullArgument);
    EXPECT_EQ(VWoVSetAttribute(EngineAttribute::LogLevel, nullptr), null);
    EXPECT_EQ(VWoVSetBinAttribute(EngineBinAttribute::AcousticModel, nullptr), null);
    EXPECT_EQ(VWoVInitSession(nullptr), null);
    EXPECT_EQ(VWoVSetModel(session, nullptr), null);
    EXPECT_EQ(VWoVFeedAudioFrame(session, nullptr, FrameSize), null);
    EXPECT_EQ(VWoVFinalizeEnrollment(session, nullptr), null);
    EXPECT_EQ(VWoVGetScores(session, nullptr, nullptr), null);
    EXPECT_EQ(VWoVGetIntOutput(session, EngineOutput::FrameSize, nullptr, nullptr), null);
    EXPECT_EQ(VWoVPrepareLpeData(session, nullptr, nullptr), null);
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, UnknownNumbersAreRefused)
{
    const uint32_t session = Open();
    const uint32_t unknown = Number(Status::UnknownIdentifier);
    uint32_t count = 1;
    EXPECT_EQ(VWoVSetAttribute(14, "3"), unknown);
    EXPECT_EQ(VWoVSetBinAttribute(3, acoustic.data()), unknown);
    EXPECT_EQ(VWoVInit(session, 5), unknown);
    EXPECT_EQ(VWoVGetIntOutput(session, 7, nullptr, &count), unknown);
    EXPECT_EQ(VWoVSetAttribute(EngineAttribute::LogLevel, "high"), Number(Status::BadValue));
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, ModelsOfAnotherKindVersionOrChecksumAreRefused)
{
    EXPECT_EQ(VWoVSetBinAttribute(EngineBinAttribute::AcousticModel, population.data()), Number(Status::BlobKind));
    acoustic[4] = 9;
    EXPECT_EQ(VWoVSetBinAttribute(EngineBinAttribute::AcousticModel, acoustic.data()), Number(Status::BlobVersion));
    population.back() ^= 1U;
    EXPECT_EQ(VWoVSetBinAttribute(EngineBinAttribute::ZnormPopulation, population.data()), Number(Status::BlobChecksum));
    const uint32_t session = Open();
    phrase.back() ^= 1U;
    EXPECT_EQ(VWoVSetModel(session, phrase.data()), Number(Status::BlobChecksum));
    EXPECT_EQ(VWoVStartEnrollment(session), Number(Status::NoModel)) << "the refused attributes are gone";
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, ASessionKeepsTheAttributesOfItsCreation)
{
    const uint32_t session = Open();
    // The caller's blocks go away, and the attributes change.
    std::fill(acoustic.begin(), acoustic.end(), uint8_t{0xFF});
    acoustic = {};
    population = {};
    EXPECT_NE(VWoVSetBinAttribute(EngineBinAttribute::AcousticModel, phrase.data()), Ok);
    EXPECT_EQ(VWoVSetAttribute(EngineAttribute::FirmwareConstraints, "max_model_bytes=1"), Ok);

    EXPECT_EQ(VWoVStartEnrollment(session), Ok);
    for (uint64_t seed = 1; seed <= 2; ++seed)
    {
        EXPECT_EQ(VWoVStartEnrollmentUtterance(session, 0), Ok);
        Feed(session, TinyLanguage::SayPhrase({}, seed));
        EXPECT_EQ(VWoVFlush(session), Nothing);
        EXPECT_EQ(VWoVFinalizeEnrollmentUtterance(session), Ok);
    }
    uint8_t* model = nullptr;
    EXPECT_EQ(VWoVFinalizeEnrollment(session, &model), Ok);
    VWoVDestroySession(session);

    const uint32_t later = Open();
    EXPECT_EQ(VWoVStartEnrollment(later), Number(Status::NoModel));
    VWoVDestroySession(later);
}

TEST_F(VeloxWovSDK, TheModelMayGoAwayOnceItIsSet)
{
    auto copy = std::make_unique<std::vector<uint8_t>>(phrase);
    const uint32_t session = Open();
    ASSERT_EQ(VWoVSetModel(session, copy->data()), Ok);
    copy.reset();
    EXPECT_GT(BestScore(session, TinyLanguage::SayPhrase()), 100.0F);
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, ScoresFollowTheirThreeRulesOfCounting)
{
    const uint32_t bare = Open();
    uint32_t count = 0;
    EXPECT_EQ(VWoVGetScores(bare, nullptr, &count), Number(Status::NoModel));
    VWoVDestroySession(bare);

    const uint32_t session = Listening();
    EXPECT_EQ(VWoVGetScores(session, nullptr, &count), Ok);
    EXPECT_EQ(count, 1U) << "without a buffer: how many there are";

    float score = -1.0F;
    EXPECT_EQ(VWoVGetScores(session, &score, &count), Nothing) << "none before the first frame";
    EXPECT_EQ(score, -1.0F);

    Feed(session, TinyLanguage::SayPhrase());
    count = 0;
    EXPECT_EQ(VWoVGetScores(session, &score, &count), EngineStatus::BufferTooSmall);
    EXPECT_EQ(count, 1U) << "too small: how many are needed";
    EXPECT_EQ(score, -1.0F);

    float several[3] = {-1.0F, -1.0F, -1.0F};
    count = 3;
    EXPECT_EQ(VWoVGetScores(session, several, &count), Ok);
    EXPECT_EQ(count, 1U) << "else: how many were written";
    EXPECT_NE(several[0], -1.0F);
    EXPECT_EQ(several[1], -1.0F);
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, ScoresAreThereThroughoutTheFlushOfAShortRecording)
{
    const uint32_t session = Listening();
    Feed(session, std::vector<float>(FrameSize, 0.0F));
    while (VWoVFlush(session) == Ok)
    {
        EXPECT_EQ(Score(session), 0.0F);
    }
    EXPECT_EQ(VWoVFlush(session), Nothing);
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, OutputsCountLikeScores)
{
    const uint32_t session = Listening();
    int32_t value = -1;
    uint32_t count = 0;
    EXPECT_EQ(VWoVGetIntOutput(session, EngineOutput::VadFlag, &value, &count), EngineStatus::BufferTooSmall);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(value, -1);
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, FramesOfAnotherSizeAreRefused)
{
    const uint32_t session = Listening();
    const std::vector<int16_t> frame(FrameSize + 1, 0);
    for (const uint32_t size : {0U, 150U, 159U, 161U})
    {
        EXPECT_EQ(VWoVFeedAudioFrame(session, frame.data(), size), Number(Status::WrongFrameSize));
    }
    VWoVDestroySession(session);
}

/// White noise, then the same noise ten times as loud: 20 dB.
TEST_F(VeloxWovSDK, TheQualityIsTheLevelAboveTheNoiseInDecibels)
{
    const uint32_t session = Listening();
    EXPECT_NE(Get(session, EngineOutput::VadFlag), 0) << "nothing is heard yet";
    Feed(session, Signals::Noise(0.01, 4 * HalfSecond, 1));
    EXPECT_NE(Get(session, EngineOutput::VadFlag), 0);
    EXPECT_NEAR(Get(session, EngineOutput::VadQuality), 0, 3);
    Feed(session, Signals::Noise(0.1, 10 * FrameSize, 1));
    EXPECT_EQ(Get(session, EngineOutput::VadFlag), 0);
    EXPECT_NEAR(Get(session, EngineOutput::VadQuality), 20, 3);
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, LpeDataAreWrittenIntoABufferThatIsLargeEnough)
{
    const uint32_t session = Open();
    uint32_t size = 0;
    EXPECT_EQ(VWoVPrepareLpeData(session, nullptr, &size), Number(Status::NoModel));
    ASSERT_EQ(VWoVSetModel(session, phrase.data()), Ok);
    ASSERT_EQ(VWoVPrepareLpeData(session, nullptr, &size), Ok);
    EXPECT_EQ(size, phrase.size());
    std::vector<uint8_t> data(size);
    uint32_t small = size - 1;
    EXPECT_EQ(VWoVPrepareLpeData(session, data.data(), &small), EngineStatus::BufferTooSmall);
    EXPECT_EQ(small, size);
    EXPECT_EQ(VWoVPrepareLpeData(session, data.data(), &size), Ok);
    EXPECT_EQ(data, phrase);
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, ThePhraseModelHoldsItsLengthAtTheOffsetThatCallersReadIt)
{
    const uint32_t session = Open();
    ASSERT_EQ(VWoVStartEnrollment(session), Ok);
    for (uint64_t seed = 1; seed <= 2; ++seed)
    {
        ASSERT_EQ(VWoVStartEnrollmentUtterance(session, 0), Ok);
        Feed(session, TinyLanguage::SayPhrase({}, seed));
        ASSERT_EQ(VWoVFinalizeEnrollmentUtterance(session), Ok);
    }
    uint8_t* model = nullptr;
    ASSERT_EQ(VWoVFinalizeEnrollment(session, &model), Ok);
    ASSERT_EQ(VWoVSetModel(session, model), Ok);
    uint32_t lpe = 0;
    ASSERT_EQ(VWoVPrepareLpeData(session, nullptr, &lpe), Ok);
    uint32_t length = 0;
    for (std::size_t i = 0; i < 4; ++i)
    {
        length |= uint32_t{model[PhraseModelSizeOffset + i]} << (8 * i);
    }
    EXPECT_EQ(length, lpe + 20) << "a header and a length around the firmware model";
    VWoVDestroySession(session);
}

TEST_F(VeloxWovSDK, SessionsDoNotDisturbEachOther)
{
    const uint32_t alone = Listening();
    const float expected = BestScore(alone, TinyLanguage::SayPhrase());
    VWoVDestroySession(alone);

    const uint32_t first = Listening();
    const uint32_t second = Listening();
    const std::vector<int16_t> said = TinyLanguage::ToPcm(TinyLanguage::SayPhrase());
    const std::vector<int16_t> other =
        TinyLanguage::ToPcm(TinyLanguage::Say(std::vector<std::size_t>{3, 2, 1, 0}, HalfSecond, HalfSecond));
    float best = 0.0F;
    for (std::size_t start = 0; start + FrameSize <= said.size(); start += FrameSize)
    {
        EXPECT_EQ(VWoVFeedAudioFrame(first, said.data() + start, FrameSize), Ok);
        EXPECT_EQ(VWoVFeedAudioFrame(second, other.data() + start, FrameSize), Ok);
        float score = 0.0F;
        uint32_t count = 1;
        if (VWoVGetScores(first, &score, &count) == Ok)
        {
            best = std::max(best, score);
        }
    }
    EXPECT_EQ(best, expected);
    EXPECT_LT(Get(second, static_cast<uint32_t>(Output::BestScore)), 100 * 256);
    VWoVDestroySession(first);
    VWoVDestroySession(second);
}

TEST_F(VeloxWovSDK, ThreadsUseTheirOwnSessions)
{
    const std::vector<float> audio = TinyLanguage::SayPhrase();
    const auto work = [&](float* best) {
        for (int i = 0; i < 5; ++i)
        {
            EXPECT_EQ(VWoVSetBinAttribute(EngineBinAttribute::AcousticModel, acoustic.data()), Ok);
            const uint32_t session = Listening();
            *best = BestScore(session, audio);
            EXPECT_EQ(VWoVDestroySession(session), Ok);
        }
    };
    float first = 0.0F;
    float second = 0.0F;
    std::thread other(work, &second);
    work(&first);
    other.join();
    EXPECT_GT(first, 100.0F);
    EXPECT_EQ(first, second);
}

/// Figures of the native engine. Another compiler's mathematical functions move them by next to nothing, the rounding of a user's
/// model by a little more.
TEST_F(VeloxWovSDK, ScoresAreTheSameFromEveryCompiler)
{
    constexpr float Tolerance = 0.2F; // of 255
    constexpr TinyLanguage::Voice User{0.15, 0.4, 3300.0};
    const uint32_t enrolling = Open();
    ASSERT_EQ(VWoVStartEnrollment(enrolling), Ok);
    for (uint32_t take = 0; take < 3; ++take)
    {
        ASSERT_EQ(VWoVStartEnrollmentUtterance(enrolling, take), Ok);
        Feed(enrolling, TinyLanguage::SayPhrase(User, take + 1));
        ASSERT_EQ(VWoVFinalizeEnrollmentUtterance(enrolling), Ok);
    }
    uint8_t* user = nullptr;
    ASSERT_EQ(VWoVFinalizeEnrollment(enrolling, &user), Ok);

    struct Case
    {
        TinyLanguage::Voice voice;
        float anybodys; ///< score with the phrase's model
        float users;    ///< score with the user's
    };
    for (const Case& one :
         {Case{User, 152.237F, 162.237F}, Case{{0.008, 0.0, 0.0}, 74.159F, 84.159F}, Case{{0.2, 0.9, 900.0}, 152.237F, 162.237F}})
    {
        SCOPED_TRACE(one.voice.amplitude);
        const std::vector<float> said = TinyLanguage::SayPhrase(one.voice, 9);
        const uint32_t session = Listening();
        EXPECT_NEAR(BestScore(session, said), one.anybodys, Tolerance);
        VWoVDestroySession(session);
        const uint32_t usersSession = Open();
        ASSERT_EQ(VWoVSetModel(usersSession, user), Ok);
        EXPECT_NEAR(BestScore(usersSession, said), one.users, Tolerance);
        VWoVDestroySession(usersSession);
    }
    VWoVDestroySession(enrolling);
}

TEST_F(VeloxWovSDK, UnknownConstraintsAreAcceptedAndLogged)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(VWoVSetAttribute(EngineAttribute::FirmwareConstraints, "memory=160k"), Ok);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("memory=160k"));
    EXPECT_EQ(VWoVSetAttribute(EngineAttribute::LogLevel, "0"), Ok);
    testing::internal::CaptureStderr();
    EXPECT_EQ(VWoVSetAttribute(EngineAttribute::FirmwareConstraints, "memory=160k"), Ok);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace VeloxWovSDKTests
