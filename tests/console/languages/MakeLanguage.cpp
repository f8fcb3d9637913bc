#include "console/languages/MakeLanguage.h"

#include "console/hosting/ConfigurationFile.h"
#include "console/hosting/StandInModels.h"
#include "console/pages/ReportText.h"
#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"
#include "tests/console/support/LanguageMaterialFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <future>
#include <sstream>
#include <thread>

namespace MakeLanguageTests
{

using testing::HasSubstr;
using testing::Not;
using namespace velox::console;

constexpr std::array Files{"kp_1033.bin", "am_1033.bin", "zn_1033.bin", "fw_1033.bin", "kpd_pre_1033.txt", "kpd_user_1033.txt"};

class MakeLanguage : public testing::Test
{
protected:
    void TearDown() override
    {
        ForgetInterruption();
    }

    Report Run(const LanguageRequest& request)
    {
        Context context{progress, log, page};
        return velox::console::MakeLanguage(request, context, readBack);
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

    /// A failure after the recordings were read: what was found is not lost.
    Report ExpectError(const LanguageRequest& request, ExitCode code, const std::string& message)
    {
        Report report = Run(request);
        EXPECT_EQ(report.exitCode, code);
        EXPECT_THAT(report.error.value_or(Problem{}).message, HasSubstr(message));
        EXPECT_NE(report.error.value_or(Problem{}).fix, "");
        return report;
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
    Progress progress{nullptr};
    LogOptions log;
    std::filesystem::path page;
    ReadBack readBack = [](const LanguageRequest&, std::span<const float>) {
    };
};

Value FactOf(const Report& report, const std::string& key)
{
    const auto found = std::ranges::find(report.facts, key, &Fact::key);
    return found == report.facts.end() ? Value() : found->value;
}

std::string TextOf(const Report& report)
{
    return ReportText(report, false, false);
}

TEST_F(MakeLanguage, WritesModelsThresholdsAndTheConfigurationAndTheSameAgain)
{
    LanguageRequest request = folder.Request();
    const Report report = Run(request);
    EXPECT_EQ(report.exitCode, ExitCode::Success);
    EXPECT_THAT(report.verdict, HasSubstr("Language 1033 (en-US) is learned"));
    EXPECT_THAT(TextOf(report), HasSubstr("8 takes of 4 voices, 0.02 h of background"));
    EXPECT_THAT(TextOf(report), HasSubstr("warning: only 4 voices say the phrase"));
    EXPECT_THAT(TextOf(report), HasSubstr("the background leaves 0.00 to 1"));
    EXPECT_EQ(FactOf(report, "preDefinedThreshold"), Value(100.0));
    EXPECT_EQ(FactOf(report, "fwBlob"), Value("fw_1033.bin"));
    EXPECT_EQ(FactOf(report, "replaced"), Value(false));

    const std::filesystem::path models = PathFromUtf8(folder.Path("models"));
    const ConfigurationFile configuration = ReadConfigurationFile(request.configuration);
    EXPECT_TRUE(std::filesystem::equivalent(configuration.directory, models));
    EXPECT_TRUE(std::filesystem::exists(configuration.constraints));
    ASSERT_NE(configuration.Find(1033), nullptr);
    EXPECT_EQ(ReadThreshold(models / "kpd_pre_1033.txt"), 100.0);
    EXPECT_EQ(ReadThreshold(models / "kpd_user_1033.txt"), 100.0);
    velox::engine::PhraseModel phrase;
    EXPECT_EQ(ReadModel(ReadWhole(models / "fw_1033.bin"), &phrase), velox::engine::Status::Success);
    // Six files and the constraints; nothing else is left.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(models), {}), 7);

    const auto first = Written();
    ExpectFailure(request, ExitCode::BadConfiguration, "already");
    request.replace = true;
    EXPECT_EQ(FactOf(Run(request), "replaced"), Value(true));
    EXPECT_EQ(Written(), first);
}

TEST_F(MakeLanguage, TheTargetSetsTheThresholds)
{
    LanguageRequest request = folder.Request();
    request.training.falseAlarmsPerHour = 5.0;
    request.name = "fast";
    request.configuration = PathFromUtf8(folder.Path("models/config.xml"));
    folder.Record("takes/quiet.wav", std::vector<float>(16'000, 0.0F));
    const Report report = Run(request);
    EXPECT_NEAR(*ReadThreshold(request.folder / "kpd_pre_fast.txt"), 76.974, 0.01);
    EXPECT_TRUE(std::filesystem::exists(request.configuration));
    ASSERT_EQ(report.results.size(), 1U);
    EXPECT_EQ(report.results[0].remarks.at(0).code, "NoSpeech");
    EXPECT_THAT(TextOf(report), HasSubstr("quiet.wav\n    no speech in 1.00 s"));
}

TEST_F(MakeLanguage, RefusalsAreToldBeforeTheTrainingAndLeaveNothing)
{
    LanguageRequest request = folder.Request();
    request.takes = PathFromUtf8(folder.Path("missing"));
    ExpectFailure(request, ExitCode::BadInput, "There is no folder");

    request = folder.Request();
    request.takes = PathFromUtf8(folder.Path("takes/voice 0/take 0.wav"));
    ExpectError(request, ExitCode::BadInput, "fewer than two takes of the phrase can be used");

    request = folder.Request();
    request.background = {folder.Path("other/0.wav")};
    ExpectError(request, ExitCode::BadInput, "less than a minute of background");
    EXPECT_TRUE(folder.HoldsOnlyMaterial());
}

TEST_F(MakeLanguage, WhatWouldReplaceOrMixWithRecordingsIsRefusedFirst)
{
    LanguageRequest request = folder.Request();
    request.folder = PathFromUtf8(folder.Path("other/0.wav"));
    ExpectFailure(request, ExitCode::Usage, "is a file, and no folder");
    for (const std::string name : {"takes", "takes/models", "other"})
    {
        SCOPED_TRACE(name);
        request.folder = PathFromUtf8(folder.Path(name));
        ExpectFailure(request, ExitCode::Usage, "is read for recordings");
    }
    request = folder.Request();
    request.configuration = PathFromUtf8(folder.Path("other/0.wav"));
    const auto recording = ReadWhole(request.configuration);
    ExpectFailure(request, ExitCode::Usage, "0.wav");
    EXPECT_EQ(ReadWhole(request.configuration), recording);
    request = folder.Request();
    page = PathFromUtf8(folder.Path("takes/voice 0/take 0.wav"));
    ExpectFailure(request, ExitCode::Usage, "take 0.wav");
    EXPECT_TRUE(folder.HoldsOnlyMaterial());
}

TEST_F(MakeLanguage, LeftOutRecordingsAreToldAlsoWhenItFails)
{
    LanguageRequest request = folder.Request();
    request.background = {folder.Path("other/0.wav")};
    folder.Record("takes/quiet.wav", std::vector<float>(16'000, 0.0F));
    const Report report = ExpectError(request, ExitCode::BadInput, "less than a minute");
    ASSERT_EQ(report.results.size(), 1U);
    EXPECT_THAT(report.results[0].title, HasSubstr("quiet.wav"));
    EXPECT_THAT(TextOf(report), HasSubstr("8 takes of 4 voices, 0.00 h of background"));
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
    // In the way of what is written beside it.
    std::filesystem::create_directories(PathFromUtf8(folder.Path("config.xml.velox-kws-new/x")));
    ExpectError(folder.Request(), ExitCode::WriteFailed, "config.xml");
    EXPECT_FALSE(std::filesystem::exists(PathFromUtf8(folder.Path("models"))));
}

TEST_F(MakeLanguage, InterruptedItLeavesNothing)
{
    LanguageRequest request = folder.Request();
    request.training.batches = 100'000;
    std::jthread control([this] {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        EXPECT_TRUE(folder.HoldsOnlyMaterial());
        RequestInterruption();
    });
    ExpectFailure(request, ExitCode::Interrupted, "");
    EXPECT_TRUE(folder.HoldsOnlyMaterial());
}

TEST_F(MakeLanguage, WhatCannotBeUsedIsUndone)
{
    LanguageRequest request = folder.Request();
    ASSERT_EQ(Run(request).exitCode, ExitCode::Success);
    const auto first = Written();
    request.replace = true;
    request.training.batches = 1;
    std::size_t samples = 0;
    readBack = [&](const LanguageRequest& written, std::span<const float> take) {
        samples = take.size();
        EXPECT_NE(ReadWhole(written.folder / "fw_1033.bin"), first[3]);
        EXPECT_NE(ReadConfigurationFile(written.configuration).Find(1033), nullptr);
        throw CommandFailure(ExitCode::LibraryFailure, "The model is malformed.", "Train longer.");
    };
    const Report report = ExpectError(request, ExitCode::LibraryFailure, "cannot be used: The model is malformed.");
    EXPECT_THAT(report.error->fix, HasSubstr("All files are as they were"));
    EXPECT_EQ(report.verdict, "");
    EXPECT_GT(samples, 0U);
    EXPECT_EQ(Written(), first);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(request.folder), {}), 7);
}

TEST_F(MakeLanguage, AnEditOfTheConfigurationMeanwhileIsKept)
{
    LanguageRequest request = folder.Request();
    WriteWholeFile(Utf8(request.configuration), "<keywords><language id=\"1040\"/></keywords>");
    // The bar is drawn for the first time when the recordings are read.
    std::ostringstream terminal;
    Progress editing(&terminal, [&] {
        WriteWholeFile(Utf8(request.configuration), "<keywords><!-- meanwhile --><language id=\"1031\"/></keywords>");
        return std::chrono::steady_clock::now();
    });
    Context context{editing, log, page};
    const Report report = velox::console::MakeLanguage(request, context, readBack);
    ASSERT_EQ(report.exitCode, ExitCode::Success);
    const std::string text = ReadWholeFile(Utf8(request.configuration));
    EXPECT_THAT(text, HasSubstr("<!-- meanwhile -->"));
    EXPECT_THAT(text, HasSubstr("id=\"1031\""));
    EXPECT_THAT(text, Not(HasSubstr("id=\"1040\"")));
    EXPECT_THAT(text, HasSubstr("id=\"1033\""));
}

TEST_F(MakeLanguage, OfTwoRunsAtOnceNoneLosesItsLanguage)
{
    LanguageRequest italian = folder.Request();
    italian.language = 1040;
    auto second = std::async(std::launch::async, [&] {
        Progress quiet(nullptr);
        Context context{quiet, log, {}};
        return velox::console::MakeLanguage(italian, context, readBack);
    });
    EXPECT_EQ(Run(folder.Request()).exitCode, ExitCode::Success);
    EXPECT_EQ(second.get().exitCode, ExitCode::Success);
    const ConfigurationFile configuration = ReadConfigurationFile(italian.configuration);
    EXPECT_NE(configuration.Find(1033), nullptr);
    EXPECT_NE(configuration.Find(1040), nullptr);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(italian.folder), {}), 13);
}

TEST_F(MakeLanguage, MissesAreEstimatedFromVoicesThatWereHeldOut)
{
    folder.AddVoices(3);
    const Report report = Run(folder.Request());
    EXPECT_EQ(FactOf(report, "heldOutVoices"), FactOf(report, "voices"));
    EXPECT_EQ(FactOf(report, "heldOutTakes"), Value(14));
    EXPECT_THAT(TextOf(report), HasSubstr("of 14 takes of 7 voices"));
    EXPECT_THAT(TextOf(report), HasSubstr("has learned from all voices and should do no worse"));
    ASSERT_TRUE(report.chart.has_value());
    EXPECT_EQ(report.chart->marked, 0.5);
}

TEST_F(MakeLanguage, WithFewVoicesThereIsNoEstimateAndItIsSaid)
{
    const Report report = Run(folder.Request());
    EXPECT_FALSE(report.chart.has_value());
    EXPECT_THAT(TextOf(report), HasSubstr("the misses are not estimated: that takes 6 voices"));
}

} // namespace MakeLanguageTests
