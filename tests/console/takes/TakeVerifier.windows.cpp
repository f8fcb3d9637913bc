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

TakeReport Take(const std::string& file, bool accepted, bool readable = true)
{
    TakeReport take;
    take.file = file;
    take.accepted = accepted;
    take.readable = readable;
    return take;
}

} // namespace

TEST(TakeVerifier, VerifiesEveryFileAndGoesOnBehindOneThatCannotBeRead)
{
    const ToneProject project;
    TakeVerifier verifier({project.Configuration(), DetectorId}, "en-US", {});
    EXPECT_EQ(verifier.Language(), ToneProject::English);
    EXPECT_EQ(verifier.Configured().id, ToneProject::English);
    EXPECT_NE(verifier.Models().phrase, nullptr);
    project.Write("notes.txt", std::string("no audio"));
    Progress progress(nullptr);
    const std::vector<TakeReport> takes =
        verifier.Verify({project.Record("good.wav", TinyLanguage::SayPhrase({0.15, 0.2, 3300.0})), project.File("notes.txt"),
                         project.Record("silence.wav", std::vector<float>(16'000))},
                        progress);
    ASSERT_EQ(takes.size(), 3U);
    EXPECT_TRUE(takes[0].accepted);
    EXPECT_EQ(takes[0].threshold, 70.0);
    EXPECT_TRUE(takes[0].review.phrase.has_value());
    EXPECT_FALSE(takes[1].readable);
    EXPECT_FALSE(takes[2].accepted);
    EXPECT_EQ(takes[2].remarks.at(0).code, "NoSpeech");
}

TEST(TakeVerifier, ALanguageThatIsNotConfiguredIsToldWithThoseThatAre)
{
    const ToneProject project;
    try
    {
        const TakeVerifier verifier({project.Configuration(), DetectorId}, "de-DE", {});
        ADD_FAILURE();
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::BadConfiguration);
        EXPECT_THAT(failure.what(), HasSubstr("Language 1031 (de-DE) is not in the configuration file"));
        EXPECT_THAT(failure.fix, HasSubstr("1033 (en-US)"));
    }
}

TEST(TakeVerifier, OneSentenceTellsOfAllTakes)
{
    EXPECT_EQ(Verdict({Take("a.wav", true)}), "The take is accepted.");
    EXPECT_EQ(Verdict({Take("a.wav", false)}), "The take is refused. Record again: a.wav.");
    EXPECT_EQ(Verdict({Take("a.wav", true), Take("b.wav", false), Take("c.wav", false, false)}),
              "1 of 3 takes are accepted. Record again: b.wav, c.wav.");
}

TEST(TakeVerifier, AFileThatCannotBeReadCountsMoreThanATakeThatIsRefused)
{
    EXPECT_EQ(ExitCodeOf({Take("a.wav", true)}), ExitCode::Success);
    EXPECT_EQ(ExitCodeOf({Take("a.wav", true), Take("b.wav", false)}), ExitCode::Refused);
    EXPECT_EQ(ExitCodeOf({Take("a.wav", false), Take("b.wav", false, false)}), ExitCode::BadInput);
}
