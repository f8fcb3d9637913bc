// Library objects on threads of their own, over the stand-in engine, which the process has once.
//
// The engine's attributes (constraints, log level, acoustic model, population) are the process's: the library sets all four
// before it creates a session, and the session is made of what they are at that moment. An object that sets its own between the
// two has the other object's session made of them. Objects of one configuration may be used at once, since they set the same. Of
// others, a training may be refused by limits that are not its own, or succeed with models that are not its own: nobody notices.
// What a verification scores with is the session's own model, so that its verdict stands; whose level of log it has is open.
#include "engine/models/AcousticModel.h"
#include "engine/models/Population.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/support/TestConfiguration.h"
#include "tests/threads/AtOnce.h"
#include "tests/threads/Conversation.h"

#include <gmock/gmock.h>

#include <functional>

namespace
{

/// Done before the engine creates a session for this thread.
thread_local std::function<void()> beforeSession;

} // namespace

// In place of the engine's function, by the linker's option.
extern "C"
{
    uint32_t __real_VWoVInitSession(uint32_t* session);
    uint32_t __wrap_VWoVInitSession(uint32_t* session);

    uint32_t __wrap_VWoVInitSession(uint32_t* session)
    {
        if (beforeSession)
        {
            beforeSession();
        }
        return __real_VWoVInitSession(session);
    }
}

namespace
{

using namespace velox::engine;
using testing::ElementsAre;

std::string Text(const std::vector<uint8_t>& bytes)
{
    return {bytes.begin(), bytes.end()};
}

/// A language that the engine can work with.
class Language
{
public:
    using Work = std::function<void(LibraryHost*)>;

    Language()
    {
        configuration.WriteFile("kp_1033.bin", Text(WritePhraseModel(TinyLanguage::Phrase())));
        configuration.WriteFile("zn_1033.bin", Text(WritePopulation(TinyLanguage::Background())));
        configuration.WriteFile("fw_1033.bin", Text(WritePhraseModel(TinyLanguage::Phrase())));
        configuration.WriteFile("kpd_pre_1033.txt", "60");
        configuration.WriteFile("kpd_user_1033.txt", "60");
        UseSpeakers(0.0F);
        UseConstraints("max_model_bytes=163840");
    }

    /// @param shift  by which everybody's cepstra lie beside those of the takes
    void UseSpeakers(float shift)
    {
        AcousticModel model = TinyLanguage::Acoustic();
        for (GaussianMixture& state : model.generic.states)
        {
            state = GaussianMixture(state.Weights(), state.Means().array() + shift, state.Variances());
        }
        configuration.WriteFile("am_1033.bin", Text(WriteAcousticModel(model)));
    }

    void UseConstraints(std::string_view text)
    {
        WriteWholeFile(configuration.ConstraintsPath(), text);
    }

    Answers Converse() const
    {
        std::vector<std::vector<float>> takes;
        for (uint64_t seed = 1; seed <= 3; ++seed)
        {
            takes.push_back(TinyLanguage::SayPhrase({0.15, 0.4, 3300.0}, seed));
        }
        return ::Converse(configuration.Path(), takes);
    }

    Answers Do(const Work& work) const
    {
        LibraryHost host(configuration.Path());
        work(&host);
        return host.Take();
    }

    /// Does the work while another thread enrolls a user in another language: from after this one's attributes were set to before
    /// its session is created.
    Answers DoWhileEnrolling(const Language& other, const Work& work) const
    {
        int sessions = 0;
        beforeSession = [&] {
            ++sessions;
            if (sessions == 2) // The first one is only asked for the length of a frame.
            {
                std::thread([&] { other.Do(Enroll); }).join();
            }
        };
        Answers answers = Do(work);
        beforeSession = nullptr;
        return answers;
    }

    /// Enrolls a user, and arms with the model.
    static void Enroll(LibraryHost* host)
    {
        const HostStream stream = MakeHostStream();
        const MediaBuffer take = Take();
        host->Train(stream.get(), {take.get(), take.get(), take.get()});
        host->Arm(stream.get());
    }

    static void Verify(LibraryHost* host)
    {
        host->Verify(Take().get());
    }

private:
    static MediaBuffer Take()
    {
        return MakeMediaBuffer(TinyLanguage::SayPhrase({0.15, 0.4, 3300.0}, 1));
    }

    TestConfiguration configuration;
};

TEST(StandInEngine, EachOfEightObjectsOfOneConfigurationGetsWhatOneGets)
{
    const Language language;
    const Answers alone = language.Converse();
    EXPECT_THAT(alone.results, ElementsAre(S_OK, S_OK, S_OK, S_OK, S_OK, S_OK, S_OK));
    EXPECT_THAT(AtOnce(1, [&] { return language.Converse(); }), testing::Each(alone));
}

TEST(StandInEngine, AnotherObjectsModelsAreTrainedWith)
{
    const Language own;
    Language other;
    other.UseSpeakers(1.0F);
    const Answers alone = own.Do(Language::Enroll);
    ASSERT_THAT(alone.results, ElementsAre(S_OK, S_OK));

    const Answers mixed = own.DoWhileEnrolling(other, Language::Enroll);
    EXPECT_THAT(mixed.results, ElementsAre(S_OK, S_OK));
    EXPECT_NE(mixed.outputs, alone.outputs);
    EXPECT_EQ(mixed.outputs, other.Do(Language::Enroll).outputs);
}

TEST(StandInEngine, AnotherObjectsLimitsRefuseATraining)
{
    const Language own;
    Language other;
    other.UseConstraints("max_model_bytes=1");
    const Answers mixed = own.DoWhileEnrolling(other, Language::Enroll);
    EXPECT_THAT(mixed.results, ElementsAre(E_FAIL, S_OK));
    EXPECT_THAT(mixed.lines, testing::Contains(LogWithCode(1, 1, "[TrainModel] Failed to finalize enrollment.",
                                                           static_cast<uint32_t>(Status::ModelTooLarge))));
}

TEST(StandInEngine, AVerificationScoresWithItsOwnModel)
{
    const Language own;
    Language other;
    other.UseSpeakers(1.0F);
    const Answers alone = own.Do(Language::Verify);
    EXPECT_THAT(alone.results, ElementsAre(S_OK));
    EXPECT_EQ(own.DoWhileEnrolling(other, Language::Verify), alone);
}

} // namespace
