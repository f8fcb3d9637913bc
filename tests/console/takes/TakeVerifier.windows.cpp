#include "console/takes/TakeVerifier.h"

#include "console/text/CommandFailure.h"
#include "tests/console/support/ToneProject.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace velox::console;
using testing::HasSubstr;

namespace
{

constexpr const char* DetectorId = "{01020304-0506-0708-090A-0B0C0D0E0F10}";

/// The verifier of a project for one language.
struct Verifying
{
    Verifying(const ToneProject& project, const std::string& language, const std::vector<std::string>& files)
        : verifier({{project.Configuration(), DetectorId}, language, files}, context, {})
    {
    }

    Progress progress{nullptr};
    LogOptions log;
    Context context{progress, log};
    TakeVerifier verifier;
    std::vector<Take> takes;
};

} // namespace

TEST(TakeVerifier, VerifiesEveryFileAndGoesOnBehindOneThatCannotBeRead)
{
    const ToneProject project;
    project.Write("notes.txt", std::string("no audio"));
    Verifying run(project, "en-US",
                  {project.Record("good.wav", TinyLanguage::SayPhrase({0.15, 0.2, 3300.0})), project.File("notes.txt"),
                   project.Record("silence.wav", std::vector<float>(16'000))});
    EXPECT_EQ(run.verifier.language, ToneProject::English);
    EXPECT_EQ(run.verifier.configured.id, ToneProject::English);
    EXPECT_NE(run.verifier.models.phrase, nullptr);
    run.verifier.Verify(run.progress, &run.takes);
    ASSERT_EQ(run.takes.size(), 3U);
    EXPECT_TRUE(run.takes[0].accepted);
    EXPECT_EQ(run.takes[0].threshold, 70.0);
    EXPECT_TRUE(run.takes[0].review.phrase.has_value());
    EXPECT_FALSE(run.takes[1].readable);
    EXPECT_FALSE(run.takes[2].accepted);
    EXPECT_EQ(run.takes[2].remarks.at(0).code, "NoSpeech");
}

TEST(TakeVerifier, TheTakesBeforeAFailureAreThere)
{
    const ToneProject project;
    Verifying run(project, "en-US", {project.Record("a.wav", TinyLanguage::SayPhrase())});
    run.verifier.Verify(run.progress, &run.takes);
    std::filesystem::remove(project.File("am.bin"));
    EXPECT_THROW(run.verifier.Verify(run.progress, &run.takes), CommandFailure);
    EXPECT_EQ(run.takes.size(), 1U);
}

TEST(TakeVerifier, ALanguageThatIsNotConfiguredIsToldWithThoseThatAre)
{
    const ToneProject project;
    try
    {
        const Verifying run(project, "de-DE", {project.Record("a.wav", TinyLanguage::SayPhrase())});
        ADD_FAILURE();
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::BadConfiguration);
        EXPECT_THAT(failure.what(), HasSubstr("Language 1031 (de-DE) is not in the configuration file"));
        EXPECT_THAT(failure.fix, HasSubstr("1033 (en-US)"));
    }
}
