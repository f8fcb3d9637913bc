// The library and the registered OEM adapter on the same files.
#include "console/hosting/RegisteredAdapter.h"

#include "console/hosting/Detector.h"
#include "console/hosting/UserModelStream.h"
#include "console/text/CommandFailure.h"
#include "tests/console/support/AdapterRegistration.h"
#include "tests/console/support/InspectionSamples.h"
#include "tests/console/support/ProgramRun.h"
#include "tests/console/support/ToneProject.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace RegisteredAdapterOnRealTests
{

using namespace velox::console;
using nlohmann::json;

const std::vector<float> Take = TinyLanguage::SayPhrase({0.15, 0.2, 3300.0});

/// A result block of the console's own detector.
std::vector<uint8_t> ResultBlock(const std::vector<uint8_t>& pattern)
{
    constexpr std::size_t TypeBegin = 4;
    constexpr std::size_t TypeEnd = 20;
    std::vector<uint8_t> block = InspectionSamples::DetectionResult();
    std::copy(pattern.begin() + TypeBegin, pattern.begin() + TypeEnd, block.begin() + TypeBegin);
    return block;
}

/// A command's document without what the library tells its logger alone, which the adapter keeps in a log of its own.
json WithoutLogged(const std::string& document)
{
    json all = json::parse(document);
    for (json& result : all.at("results"))
    {
        result["score"] = nullptr;
        result["quality"] = nullptr;
    }
    return all;
}

class RegisteredAdapter : public testing::Test
{
protected:
    ToneProject project;
    AdapterRegistration registration{project.Configuration()};
    Detector library{{project.Configuration(), DefaultDetectorId}, {}};
    Detector adapter{{project.Configuration(), DefaultDetectorId, ThroughAdapter}, {}};
};

TEST_F(RegisteredAdapter, AnnouncesWhatTheLibraryDoesWithTheRecordingsItTakes)
{
    const CapabilitiesAnswer ofLibrary = library.GetCapabilities();
    const CapabilitiesAnswer ofAdapter = adapter.GetCapabilities();
    ASSERT_TRUE(ofAdapter.Succeeded());
    EXPECT_EQ(ofAdapter.languages, ofLibrary.languages);
    EXPECT_EQ(ofAdapter.keywordIds, ofLibrary.keywordIds);
    EXPECT_EQ(ofAdapter.supportsUserModels, ofLibrary.supportsUserModels);
    EXPECT_EQ(ofAdapter.samplesPerSecond, ofLibrary.samplesPerSecond);
    EXPECT_EQ(ofAdapter.channels, ofLibrary.channels);
    EXPECT_EQ(ofAdapter.bitsPerSample, 32U) << "float, which the library takes but does not announce";
}

TEST_F(RegisteredAdapter, FindsAndMissesThePhraseWhereTheLibraryDoes)
{
    EXPECT_TRUE(adapter.Verify(ToneProject::English, Take).Succeeded());
    const Answer silence = adapter.Verify(ToneProject::English, std::vector<float>(16'000));
    EXPECT_EQ(silence.result, E_FAIL);
    EXPECT_THAT(silence.lines, testing::Each(testing::Field(&LoggedLine::level, testing::Gt(VeloxLogLevel::Error))))
        << "not found is no fault";
}

TEST_F(RegisteredAdapter, MakesTheSameModelPatternAndDetection)
{
    const std::vector<std::span<const float>> takes{Take, Take, Take};
    const velox::oemadapter::ComPointer<IStream> user = EmptyStream();
    const velox::oemadapter::ComPointer<IStream> usersByLibrary = EmptyStream();
    ASSERT_TRUE(adapter.Train(user.get(), ToneProject::English, takes).Succeeded());
    ASSERT_TRUE(library.Train(usersByLibrary.get(), ToneProject::English, takes).Succeeded());
    EXPECT_EQ(Content(user.get()), Content(usersByLibrary.get()));

    const ArmingAnswer byAdapter = adapter.Arm(user.get(), ToneProject::English);
    const ArmingAnswer byLibrary = library.Arm(user.get(), ToneProject::English);
    ASSERT_TRUE(byAdapter.Succeeded());
    EXPECT_TRUE(byAdapter.usedUserModel);
    EXPECT_EQ(byAdapter.pattern, byLibrary.pattern);

    const std::vector<uint8_t> block = ResultBlock(byAdapter.pattern);
    const DetectionAnswer ofAdapter = adapter.Parse(user.get(), block);
    const DetectionAnswer ofLibrary = library.Parse(user.get(), block);
    ASSERT_TRUE(ofAdapter.Succeeded());
    EXPECT_EQ(ofAdapter.keywordId, ofLibrary.keywordId);
    EXPECT_EQ(ofAdapter.language, ofLibrary.language);
    EXPECT_TRUE(ofAdapter.isUserMatch);
    EXPECT_EQ(ofAdapter.keywordStart, ofLibrary.keywordStart);
    EXPECT_EQ(ofAdapter.keywordEnd, ofLibrary.keywordEnd);
}

TEST_F(RegisteredAdapter, AFailureNamesTheAdaptersOwnLog)
{
    const ArmingAnswer refused = adapter.Arm(EmptyStream().get(), ToneProject::Italian);
    ASSERT_EQ(refused.lines.size(), 1U);
    EXPECT_EQ(refused.lines[0].result, refused.result);
    EXPECT_THROW(refused.Require("Arming"), CommandFailure);
}

TEST_F(RegisteredAdapter, EveryCommandGivesTheSameResultsThroughIt)
{
    const std::string take = project.Record("take.wav", Take);
    const std::string silence = project.Record("silence.wav", std::vector<float>(16'000));
    const std::vector<std::vector<std::string>> commands{
        {"verify", "1033", take, silence},
        {"enroll", "1033", take, take, take, "--model", project.File("user.model")},
        {"arm", "1033", "--out", project.File("armed.pattern")},
        {"listen", "--language", "1033", take}};
    for (std::vector<std::string> command : commands)
    {
        SCOPED_TRACE(command.front());
        command.insert(command.end(), {"--json", "--config", project.Configuration()});
        const ProgramRun itself = RunVeloxKws(command);
        command.insert(command.end(), {"--through", "adapter"});
        const ProgramRun through = RunVeloxKws(command);
        EXPECT_EQ(through.exitCode, itself.exitCode);
        EXPECT_EQ(WithoutLogged(through.output), WithoutLogged(itself.output)) << through.errors;
    }
}

TEST_F(RegisteredAdapter, TheCommandsTakeTheConfigurationFileOfItsSettings)
{
    const ProgramRun run = RunVeloxKws({"capabilities", "--through", "adapter"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, testing::HasSubstr("The detector serves 1 language."));
}

TEST(RegisteredAdapterOnRealRegistry, IsSaidToBeAbsentWhereItIs)
{
    const ProgramRun run = RunVeloxKws({"capabilities", "--through", "adapter"});
    EXPECT_EQ(run.exitCode, static_cast<int>(ExitCode::Usage));
    EXPECT_THAT(run.errors, testing::HasSubstr("regsvr32"));
}

} // namespace RegisteredAdapterOnRealTests
