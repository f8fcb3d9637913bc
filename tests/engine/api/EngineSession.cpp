#include "engine/api/EngineSession.h"

#include "tests/engine/support/BlobDamage.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <functional>

namespace EngineSessionTests
{

using namespace velox::engine;
using Tones = std::vector<std::size_t>;

constexpr std::size_t HalfSecond = 8000;

class EngineSession : public testing::Test
{
protected:
    EngineSession()
    {
        attributes.acousticModel = std::make_shared<AcousticModel>(TinyLanguage::Acoustic());
        attributes.population = std::make_shared<Population>(TinyLanguage::Background());
    }

    velox::engine::EngineSession Open() const
    {
        velox::engine::EngineSession session(attributes);
        EXPECT_EQ(session.InitComponent(2), Status::Success);
        EXPECT_EQ(session.InitComponent(4), Status::Success);
        return session;
    }

    velox::engine::EngineSession Listening() const
    {
        velox::engine::EngineSession session = Open();
        EXPECT_EQ(session.SetModel(phrase.data()), Status::Success);
        return session;
    }

    static float Score(const velox::engine::EngineSession& session)
    {
        float score = -1.0F;
        uint32_t count = 1;
        const Status status = session.GetScores(&score, &count);
        EXPECT_TRUE(status == Status::Success || status == Status::NothingLeft);
        return score;
    }

    static int32_t Get(const velox::engine::EngineSession& session, Output output)
    {
        int32_t value = -1000;
        uint32_t count = 1;
        EXPECT_EQ(session.GetIntOutput(static_cast<uint32_t>(output), &value, &count), Status::Success);
        EXPECT_EQ(count, 1U);
        return value;
    }

    /// @return the scores after each frame
    static std::vector<float> Feed(velox::engine::EngineSession* session, const std::vector<float>& audio)
    {
        std::vector<float> scores;
        const std::vector<int16_t> pcm = TinyLanguage::ToPcm(audio);
        for (std::size_t start = 0; start + FrameSize <= pcm.size(); start += FrameSize)
        {
            EXPECT_EQ(session->FeedFrame(pcm.data() + start, FrameSize), Status::Success);
            scores.push_back(Score(*session));
        }
        return scores;
    }

    static void Flush(velox::engine::EngineSession* session)
    {
        Status status = Status::Success;
        while (status == Status::Success)
        {
            status = session->Flush();
        }
        EXPECT_EQ(status, Status::NothingLeft);
    }

    static Status Take(velox::engine::EngineSession* session, const std::vector<float>& audio)
    {
        EXPECT_EQ(session->StartUtterance(), Status::Success);
        const std::vector<int16_t> pcm = TinyLanguage::ToPcm(audio);
        for (std::size_t start = 0; start + FrameSize <= pcm.size(); start += FrameSize)
        {
            EXPECT_EQ(session->FeedFrame(pcm.data() + start, FrameSize), Status::Success);
        }
        Flush(session);
        return session->FinalizeUtterance();
    }

    EngineAttributes attributes;
    std::vector<uint8_t> phrase = WritePhraseModel(TinyLanguage::Phrase());
};

TEST_F(EngineSession, CallsOutOfOrderAreViolations)
{
    using Session = velox::engine::EngineSession;
    const std::vector<int16_t> frame(FrameSize, 0);
    uint8_t* model = nullptr;
    const std::vector<std::pair<const char*, std::function<Status(Session*)>>> calls{
        {"start enrollment",
         [](Session* session) {
             return session->StartEnrollment();
         }},
        {"start utterance",
         [](Session* session) {
             return session->StartUtterance();
         }},
        {"feed",
         [&](Session* session) {
             return session->FeedFrame(frame.data(), FrameSize);
         }},
        {"finalize utterance",
         [](Session* session) {
             return session->FinalizeUtterance();
         }},
        {"finalize enrollment",
         [&](Session* session) {
             return session->FinalizeEnrollment(&model);
         }},
        {"flush",
         [](Session* session) {
             return session->Flush();
         }},
        {"set model",
         [&](Session* session) {
             return session->SetModel(phrase.data());
         }},
    };
    const auto expectOnly = [&](const char* state, const std::function<Session()>& make,
                                const std::vector<std::string>& allowed) {
        for (const auto& [name, call] : calls)
        {
            SCOPED_TRACE(std::string(state) + ": " + name);
            Session session = make();
            const bool due = std::find(allowed.begin(), allowed.end(), name) != allowed.end();
            EXPECT_EQ(call(&session) != Status::OrderViolated, due);
        }
    };
    const auto enrolling = [&] {
        Session session = Open();
        EXPECT_EQ(session.StartEnrollment(), Status::Success);
        return session;
    };
    const auto inUtterance = [&] {
        Session session = enrolling();
        EXPECT_EQ(session.StartUtterance(), Status::Success);
        return session;
    };
    const auto enrolled = [&] {
        Session session = enrolling();
        EXPECT_EQ(Take(&session, TinyLanguage::SayPhrase()), Status::Success);
        EXPECT_EQ(Take(&session, TinyLanguage::SayPhrase({}, 2)), Status::Success);
        EXPECT_EQ(session.FinalizeEnrollment(&model), Status::Success);
        return session;
    };
    expectOnly("fresh", [&] { return Session(attributes); }, {});
    expectOnly("initialised", [&] { return Open(); }, {"start enrollment", "set model"});
    expectOnly("listening", [&] { return Listening(); }, {"feed", "flush", "set model"});
    expectOnly("enrolling", enrolling, {"start utterance", "finalize enrollment"});
    expectOnly("in an utterance", inUtterance, {"feed", "flush", "finalize utterance"});
    expectOnly("enrolled", enrolled, {"set model"});
}

TEST_F(EngineSession, ComponentsAreInitialisedInTheirOrder)
{
    velox::engine::EngineSession session(attributes);
    EXPECT_EQ(session.InitComponent(4), Status::OrderViolated);
    EXPECT_EQ(session.InitComponent(3), Status::UnknownIdentifier);
    EXPECT_EQ(session.InitComponent(2), Status::Success);
    EXPECT_EQ(session.InitComponent(4), Status::Success);
}

/// Callers look once more while they flush, and take a lower score there for a withdrawal.
TEST_F(EngineSession, TheScoreOfADetectionStandsForHalfASecond)
{
    velox::engine::EngineSession session = Listening();
    const std::vector<float> scores = Feed(&session, TinyLanguage::Say(Tones{0, 1, 2, 3}, HalfSecond, 3 * HalfSecond));
    const auto heard = [](float score) {
        return score > ScoreScale::HalfAlarmPerHour;
    };
    const auto first = std::find_if(scores.begin(), scores.end(), heard);
    ASSERT_NE(first, scores.end());
    const auto after = std::find_if_not(first, scores.end(), heard);
    EXPECT_EQ(after - first, velox::engine::EngineSession::HeldFrames + 1);
    EXPECT_TRUE(std::none_of(after, scores.end(), heard));
    EXPECT_EQ(std::count(first, after, *first), after - first);
}

TEST_F(EngineSession, ADetectionComesWithTheFlushWhenTheAudioEndsWithThePhrase)
{
    velox::engine::EngineSession session = Listening();
    Feed(&session, TinyLanguage::Say(Tones{0, 1, 2, 3}, HalfSecond, 0));
    EXPECT_EQ(Score(session), ScoreScale::Least);
    int steps = 0;
    while (session.Flush() == Status::Success)
    {
        ++steps;
    }
    EXPECT_EQ(steps, 12) << "two frames of look-ahead and ten for the peak";
    EXPECT_GT(Score(session), ScoreScale::HalfAlarmPerHour);
    EXPECT_EQ(session.Flush(), Status::NothingLeft) << "and nothing is left for good";
}

TEST_F(EngineSession, AudioAfterAFlushIsHeardAndFlushedAgain)
{
    velox::engine::EngineSession session = Listening();
    Feed(&session, TinyLanguage::Say(Tones{0}, HalfSecond, 0));
    Flush(&session);
    Feed(&session, TinyLanguage::Say(Tones{0, 1, 2, 3}, HalfSecond, 0));
    EXPECT_EQ(session.Flush(), Status::Success);
    Flush(&session);
    EXPECT_GT(Score(session), ScoreScale::HalfAlarmPerHour);
}

TEST_F(EngineSession, AModelSetAgainStartsAnew)
{
    velox::engine::EngineSession session = Listening();
    const std::vector<float> audio = TinyLanguage::SayPhrase();
    const std::vector<float> first = Feed(&session, audio);
    ASSERT_EQ(session.SetModel(phrase.data()), Status::Success);
    EXPECT_EQ(Feed(&session, audio), first);
}

TEST_F(EngineSession, EachTakesFaultHasItsStatusAndPlace)
{
    const auto judge = [&](const std::vector<float>& audio) {
        velox::engine::EngineSession session = Listening();
        Feed(&session, audio);
        Flush(&session);
        return session;
    };
    const auto statusOf = [&](const std::vector<float>& audio) {
        return static_cast<Status>(Get(judge(audio), Output::TakeStatus));
    };
    const std::vector<float> quiet = TinyLanguage::Whisper();
    EXPECT_EQ(statusOf(TinyLanguage::SayPhrase()), Status::Success);
    EXPECT_EQ(statusOf(quiet), Status::TooQuiet);
    EXPECT_EQ(statusOf(Signals::Noise(TinyLanguage::NoiseAmplitude, 16000, 1)), Status::NoSpeech);
    EXPECT_EQ(statusOf(TinyLanguage::Say(Tones{2, 3}, 0, HalfSecond)), Status::CutAtStart);
    EXPECT_EQ(statusOf(TinyLanguage::Say(Tones{0, 1}, HalfSecond, 0)), Status::CutAtEnd);
    EXPECT_EQ(statusOf(TinyLanguage::Say(Tones{2, 1}, HalfSecond, HalfSecond)), Status::PhraseNotFound);

    const auto whole = judge(TinyLanguage::SayPhrase());
    EXPECT_NEAR(Get(whole, Output::PlaceStart), static_cast<double>(HalfSecond + TinyLanguage::StartPadding), 480);
    EXPECT_GT(Get(whole, Output::PlaceEnd), HalfSecond + 3 * TinyLanguage::ToneSamples);
    EXPECT_LT(Get(whole, Output::PlaceEnd), HalfSecond + TinyLanguage::PhraseSamples + 480);
    EXPECT_GT(Get(whole, Output::BestScore), 100 * 256);
    const auto part = judge(TinyLanguage::Say(Tones{2, 1}, HalfSecond, HalfSecond));
    EXPECT_NEAR(Get(part, Output::PlaceStart), HalfSecond, 1600);
    EXPECT_NEAR(Get(part, Output::PlaceEnd), HalfSecond + 2 * TinyLanguage::ToneSamples, 1600);
    const auto nothing = judge(Signals::Noise(TinyLanguage::NoiseAmplitude, 16000, 1));
    EXPECT_EQ(Get(nothing, Output::PlaceStart), 0);
    EXPECT_EQ(Get(nothing, Output::PlaceEnd), 0);
}

TEST_F(EngineSession, EnrollmentGivesAModelThatHearsItsUser)
{
    velox::engine::EngineSession session = Open();
    ASSERT_EQ(session.StartEnrollment(), Status::Success);
    for (uint64_t seed = 1; seed <= 3; ++seed)
    {
        ASSERT_EQ(Take(&session, TinyLanguage::SayPhrase({}, seed)), Status::Success);
    }
    uint8_t* model = nullptr;
    ASSERT_EQ(session.FinalizeEnrollment(&model), Status::Success);
    ASSERT_TRUE(IsBlob(model, BlobKind::PhraseModel));
    const uint32_t length = BlobLength(model);
    const std::vector<uint8_t> kept(model, model + length);
    ASSERT_EQ(session.SetModel(model), Status::Success);

    uint32_t size = 0;
    ASSERT_EQ(session.PrepareLpeData(nullptr, &size), Status::Success);
    EXPECT_LE(size, 160U * 1024U);
    std::vector<uint8_t> lpe(size);
    ASSERT_EQ(session.PrepareLpeData(lpe.data(), &size), Status::Success);
    EXPECT_EQ(std::string(lpe.begin(), lpe.begin() + 4), "VWOV");
    EXPECT_EQ(BlobLength(lpe.data()), size);

    velox::engine::EngineSession other = Open();
    ASSERT_EQ(other.SetModel(kept.data()), Status::Success);
    EXPECT_THAT(Feed(&other, TinyLanguage::SayPhrase({}, 8)), testing::Contains(testing::Gt(ScoreScale::HalfAlarmPerHour)));
}

TEST_F(EngineSession, ATakeThatIsRefusedDoesNotEndTheEnrollment)
{
    velox::engine::EngineSession session = Open();
    ASSERT_EQ(session.StartEnrollment(), Status::Success);
    EXPECT_EQ(Take(&session, Signals::Noise(TinyLanguage::NoiseAmplitude, 16000, 1)), Status::NoSpeech);
    uint8_t* model = nullptr;
    EXPECT_EQ(session.FinalizeEnrollment(&model), Status::NoUtterances);
    EXPECT_EQ(model, nullptr);
    EXPECT_EQ(Take(&session, TinyLanguage::SayPhrase()), Status::Success);
    EXPECT_EQ(session.FinalizeEnrollment(&model), Status::NoUtterances) << "one is not enough";
    EXPECT_EQ(Take(&session, TinyLanguage::SayPhrase({}, 2)), Status::Success);
    EXPECT_EQ(session.FinalizeEnrollment(&model), Status::Success);
}

/// Callers give up when the last take's status is no success.
TEST_F(EngineSession, ARefusedTakeIsLeftOutWhicheverPlaceItHas)
{
    std::vector<std::vector<uint8_t>> models;
    for (uint64_t place = 1; place <= 4; ++place)
    {
        SCOPED_TRACE(place);
        velox::engine::EngineSession session = Open();
        ASSERT_EQ(session.StartEnrollment(), Status::Success);
        Status last = Status::NoUtterances;
        uint64_t seed = 0;
        for (uint64_t take = 1; take <= 4; ++take)
        {
            last = Take(&session, take == place ? TinyLanguage::Whisper() : TinyLanguage::SayPhrase({}, ++seed));
        }
        EXPECT_EQ(last, Status::Success);
        EXPECT_EQ(Get(session, Output::TakeStatus), place == 4 ? static_cast<int32_t>(Status::TooQuiet) : 0);
        uint8_t* model = nullptr;
        ASSERT_EQ(session.FinalizeEnrollment(&model), Status::Success);
        models.emplace_back(model, model + BlobLength(model));
    }
    EXPECT_THAT(models, testing::Each(models.front()));
}

TEST_F(EngineSession, TheTakeThatIsUnlikeTheOthersIsNamedInTheLog)
{
    ASSERT_EQ(attributes.SetLogLevel("3"), Status::Success);
    velox::engine::EngineSession session = Open();
    ASSERT_EQ(session.StartEnrollment(), Status::Success);
    const std::vector<float> loud = TinyLanguage::SayPhrase({0.9, 0.0, 0.0});
    std::vector<float> quiet = loud;
    std::transform(quiet.begin(), quiet.end(), quiet.begin(), [](float sample) { return 0.04F * sample; });
    ASSERT_EQ(Take(&session, loud), Status::Success);
    ASSERT_EQ(Take(&session, quiet), Status::Success);
    ASSERT_EQ(Take(&session, loud), Status::Success);
    testing::internal::CaptureStderr();
    uint8_t* model = nullptr;
    EXPECT_EQ(session.FinalizeEnrollment(&model), Status::TakesDisagree);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr("enrollment of 3 takes, take 2 is unlike the others: 125 TakesDisagree."));
}

TEST_F(EngineSession, ModelsThatTheEnrollmentNeedsAreAskedFor)
{
    attributes.population = nullptr;
    EXPECT_EQ(Open().StartEnrollment(), Status::NoModel);
    Population other = TinyLanguage::Background();
    other.peaks[0].counts.pop_back();
    attributes.population = std::make_shared<Population>(other);
    EXPECT_EQ(Open().StartEnrollment(), Status::ModelsDisagree);
    attributes.acousticModel = nullptr;
    EXPECT_EQ(Open().StartEnrollment(), Status::NoModel);
}

TEST_F(EngineSession, AModelLargerThanTheConstraintsAllowIsRefused)
{
    attributes.SetConstraints("max_model_bytes=1000");
    velox::engine::EngineSession session = Open();
    ASSERT_EQ(session.StartEnrollment(), Status::Success);
    ASSERT_EQ(Take(&session, TinyLanguage::SayPhrase()), Status::Success);
    ASSERT_EQ(Take(&session, TinyLanguage::SayPhrase({}, 2)), Status::Success);
    uint8_t* model = nullptr;
    EXPECT_EQ(session.FinalizeEnrollment(&model), Status::ModelTooLarge);
    EXPECT_EQ(model, nullptr);
}

TEST_F(EngineSession, DamageToAPhraseModelIsRefused)
{
    BlobWriter writer(BlobKind::PhraseModel);
    writer.Nested(WritePhraseModel(TinyLanguage::UserPhrase()));
    velox::engine::EngineSession session = Open();
    BlobDamage::ExpectDamageIsRefused(writer.Finish(),
                                      [&](const std::vector<uint8_t>& blob) { return session.SetModel(blob.data()); });
}

TEST_F(EngineSession, ARefusedModelLeavesTheFormerOneAtWork)
{
    velox::engine::EngineSession session = Listening();
    std::vector<uint8_t> damaged = phrase;
    damaged.back() ^= 1U;
    EXPECT_EQ(session.SetModel(damaged.data()), Status::BlobChecksum);
    EXPECT_THAT(Feed(&session, TinyLanguage::SayPhrase()), testing::Contains(testing::Gt(ScoreScale::HalfAlarmPerHour)));
}

TEST_F(EngineSession, TakesLongerThanTheMostAreStillHeard)
{
    velox::engine::EngineSession session = Listening();
    const std::vector<float> second = Signals::Noise(TinyLanguage::NoiseAmplitude, SampleRate, 1);
    for (std::size_t i = 0; i <= velox::engine::EngineSession::MostTakeSeconds; ++i)
    {
        Feed(&session, second);
    }
    Feed(&session, TinyLanguage::SayPhrase());
    EXPECT_GT(Get(session, Output::BestScore), 100 * 256);
}

TEST_F(EngineSession, WithoutAttributesTheFrameSizeIsThere)
{
    const velox::engine::EngineSession probe{EngineAttributes{}};
    EXPECT_EQ(Get(probe, Output::AudioFrameSize), 160);
}

TEST_F(EngineSession, LogsWhatItHearsAtTheLevelOfItsAttributes)
{
    ASSERT_EQ(attributes.SetLogLevel("4"), Status::Success);
    testing::internal::CaptureStderr();
    velox::engine::EngineSession session = Listening();
    Feed(&session, TinyLanguage::SayPhrase());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "VeloxWovSDK: session opened\n"
                                                      "VeloxWovSDK: listening for everybody's phrase of 4 states, " +
                                                          std::to_string(phrase.size()) + " bytes\n")
        << "nothing while it is fed";

    testing::internal::CaptureStderr();
    Flush(&session);
    EXPECT_EQ(session.Flush(), Status::NothingLeft);
    const std::string judgement = testing::internal::GetCapturedStderr();
    EXPECT_THAT(judgement, testing::StartsWith("VeloxWovSDK: take heard, score "));
    EXPECT_THAT(judgement, testing::HasSubstr(": 0 Success."));
    EXPECT_EQ(std::count(judgement.begin(), judgement.end(), '\n'), 1) << "once, however often it is flushed";
}

TEST_F(EngineSession, LogsRefusedTakesAsWarningsAndEnrollmentsThatFailAsErrors)
{
    ASSERT_EQ(attributes.SetLogLevel("3"), Status::Success);
    attributes.SetConstraints("max_model_bytes=1000");
    testing::internal::CaptureStderr();
    velox::engine::EngineSession session = Open();
    ASSERT_EQ(session.StartEnrollment(), Status::Success);
    EXPECT_EQ(Take(&session, TinyLanguage::Whisper()), Status::TooQuiet);
    EXPECT_EQ(Take(&session, TinyLanguage::SayPhrase()), Status::Success);
    EXPECT_EQ(Take(&session, TinyLanguage::SayPhrase({}, 2)), Status::Success);
    uint8_t* model = nullptr;
    EXPECT_EQ(session.FinalizeEnrollment(&model), Status::ModelTooLarge);
    EXPECT_EQ(session.SetModel(WritePopulation(TinyLanguage::Background()).data()), Status::OrderViolated);
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        "VeloxWovSDK: take of the enrollment: 121 TooQuiet. The utterance is too quiet.\n"
        "VeloxWovSDK: enrollment of 2 takes: 110 ModelTooLarge. The firmware model is larger than the platform's constraints "
        "allow.\n");
}

} // namespace EngineSessionTests
