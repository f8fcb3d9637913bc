#include "console/languages/MakeLanguage.h"

#include "console/hosting/ConfigurationFile.h"
#include "console/hosting/StandInModels.h"
#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"
#include "tests/console/support/LanguageMaterialFolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <array>
#include <chrono>
#include <thread>

namespace
{

using testing::HasSubstr;
using namespace velox::console;

constexpr std::array Files{"kp_1033.bin", "am_1033.bin", "zn_1033.bin", "fw_1033.bin", "kpd_pre_1033.txt", "kpd_user_1033.txt"};

class MakeLanguage : public testing::Test
{
protected:
    void TearDown() override
    {
        ForgetInterruption();
    }

    Outcome Run(const LanguageRequest& request)
    {
        Context context{style, progress, log};
        return velox::console::MakeLanguage(request, context);
    }

    void ExpectFailure(const LanguageRequest& request, ExitCode code, const std::string& message)
    {
        try
        {
            Run(request);
            ADD_FAILURE() << "No failure: " << message;
        }
        catch (const CommandFailure& failure)
        {
            EXPECT_EQ(failure.exitCode, code);
            EXPECT_THAT(failure.what(), HasSubstr(message));
        }
    }

    std::vector<std::vector<uint8_t>> Written() const
    {
        std::vector<std::vector<uint8_t>> contents;
        for (const char* file : Files)
        {
            contents.push_back(ReadWhole(PathFromUtf8(folder.Path("models")) / file));
        }
        contents.push_back(ReadWhole(PathFromUtf8(folder.Path("config.xml"))));
        return contents;
    }

    LanguageMaterialFolder folder;
    Style style{false};
    Progress progress{nullptr};
    LogOptions log;
};

TEST_F(MakeLanguage, WritesModelsThresholdsAndTheConfigurationAndTheSameAgain)
{
    LanguageRequest request = folder.Request();
    const Outcome outcome = Run(request);
    EXPECT_EQ(outcome.exitCode, ExitCode::Success);
    EXPECT_THAT(outcome.verdict, HasSubstr("Language 1033 (en-US) is learned"));
    EXPECT_THAT(outcome.text, HasSubstr("8 takes of 4 voices, 0.02 h of background"));
    EXPECT_THAT(outcome.text, HasSubstr("Only 4 voices say the phrase"));
    EXPECT_THAT(outcome.text, HasSubstr("between 0.00 and 1"));
    ASSERT_EQ(outcome.results.Count(), 1U);
    EXPECT_EQ(outcome.results.Array()[0]["preDefinedThreshold"], 100.0);
    EXPECT_EQ(outcome.results.Array()[0]["warnings"].size(), 2U);

    const std::filesystem::path models = PathFromUtf8(folder.Path("models"));
    const ConfigurationFile configuration = ReadConfigurationFile(request.configuration);
    EXPECT_TRUE(std::filesystem::equivalent(configuration.directory, models));
    EXPECT_TRUE(std::filesystem::exists(configuration.constraints));
    ASSERT_NE(configuration.Find(1033), nullptr);
    EXPECT_EQ(ReadThreshold(models / "kpd_pre_1033.txt"), 100.0);
    EXPECT_EQ(ReadThreshold(models / "kpd_user_1033.txt"), 100.0);
    velox::engine::PhraseModel phrase;
    EXPECT_TRUE(ReadWholePhraseModel(ReadWhole(models / "fw_1033.bin"), &phrase));
    // Six files and the constraints; nothing else is left.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(models), {}), 7);

    const auto first = Written();
    ExpectFailure(request, ExitCode::BadConfiguration, "already");
    request.replace = true;
    EXPECT_EQ(Run(request).results.Array()[0]["replaced"], true);
    EXPECT_EQ(Written(), first);
}

TEST_F(MakeLanguage, TheTargetSetsTheThresholds)
{
    LanguageRequest request = folder.Request();
    request.falseAlarmsPerHour = 5.0;
    request.name = "fast";
    request.configuration = PathFromUtf8(folder.Path("models/config.xml"));
    folder.Record("takes/quiet.wav", std::vector<float>(16'000, 0.0F));
    const Outcome outcome = Run(request);
    EXPECT_NEAR(*ReadThreshold(request.folder / "kpd_pre_fast.txt"), 76.974, 0.01);
    EXPECT_TRUE(std::filesystem::exists(request.configuration));
    EXPECT_EQ(outcome.results.Array()[0]["leftOut"][0]["code"], "NoSpeech");
    EXPECT_THAT(outcome.text, HasSubstr("quiet.wav: no speech in 1.00 s"));
}

TEST_F(MakeLanguage, RefusalsAreToldBeforeTheTrainingAndLeaveNothing)
{
    LanguageRequest request = folder.Request();
    request.takes = PathFromUtf8(folder.Path("missing"));
    ExpectFailure(request, ExitCode::BadInput, "There is no folder");

    request = folder.Request();
    request.takes = PathFromUtf8(folder.Path("takes/voice 0/take 0.wav"));
    ExpectFailure(request, ExitCode::BadInput, "holds 1 recording of the phrase that can be used; at least 2");

    request = folder.Request();
    request.background = {PathFromUtf8(folder.Path("other/0.wav"))};
    ExpectFailure(request, ExitCode::BadInput, "s of background; at least 60 s");

    request = folder.Request();
    request.folder = PathFromUtf8(folder.Path("other/0.wav"));
    ExpectFailure(request, ExitCode::WriteFailed, "Cannot write");
    EXPECT_TRUE(folder.HoldsOnlyMaterial());
}

TEST_F(MakeLanguage, FilesOfNobodyAreNotOverwrittenUnasked)
{
    std::filesystem::create_directories(PathFromUtf8(folder.Path("models")));
    WriteWholeFile(folder.Path("models/fw_1033.bin"), "mine");
    ExpectFailure(folder.Request(), ExitCode::WriteFailed, "is there already");
    EXPECT_EQ(ReadWholeFile(folder.Path("models/fw_1033.bin")), "mine");
}

TEST_F(MakeLanguage, AConfigurationThatCannotBeWrittenTakesTheModelsWithIt)
{
    LanguageRequest request = folder.Request();
    request.configuration = PathFromUtf8(folder.Path("models/constraints.txt/config.xml"));
    ExpectFailure(request, ExitCode::WriteFailed, "config.xml");
    EXPECT_TRUE(folder.HoldsOnlyMaterial());
}

TEST_F(MakeLanguage, InterruptedItLeavesNothing)
{
    LanguageRequest request = folder.Request();
    request.batches = 100'000;
    std::jthread control([this] {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        EXPECT_TRUE(folder.HoldsOnlyMaterial());
        RequestInterruption();
    });
    ExpectFailure(request, ExitCode::Interrupted, "");
    EXPECT_TRUE(folder.HoldsOnlyMaterial());
}

} // namespace
