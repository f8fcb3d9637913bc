#include "console/hosting/Detector.h"

#include "console/hosting/UserModelStream.h"
#include "console/text/CommandFailure.h"
#include "tests/console/support/InspectionSamples.h"
#include "tests/console/support/ToneProject.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace DetectorOnRealTests
{

using namespace velox::console;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* SamplesDetector = "{00112233-4455-6677-8899-AABBCCDDEEFF}";

class Detector : public testing::Test
{
protected:
    ExitCode CodeOfMaking(const std::string& configuration, const std::string& id) const
    {
        try
        {
            const velox::console::Detector made({configuration, id}, {});
            return ExitCode::Success;
        }
        catch (const CommandFailure& failure)
        {
            return failure.exitCode;
        }
    }

    ToneProject project;
    velox::console::Detector detector{{project.Configuration(), SamplesDetector}, {}};
};

TEST_F(Detector, TellsWhatTheLibraryAnnounces)
{
    const CapabilitiesAnswer answer = detector.GetCapabilities();
    ASSERT_TRUE(answer.Succeeded());
    EXPECT_TRUE(answer.supportsUserModels);
    EXPECT_THAT(answer.keywordIds, ElementsAre(1U));
    EXPECT_THAT(answer.languages, ElementsAre(ToneProject::English));
    EXPECT_EQ(answer.samplesPerSecond, 16'000U);
    EXPECT_EQ(answer.channels, 1U);
    EXPECT_EQ(answer.bitsPerSample, 16U);
}

TEST_F(Detector, TrainsArmsAndParsesForAUser)
{
    const std::vector<float> take = TinyLanguage::SayPhrase({0.15, 0.2, 3300.0});
    const std::vector<std::span<const float>> takes{take, take, take};
    EXPECT_TRUE(detector.Verify(ToneProject::English, take).Succeeded());
    const velox::oemadapter::ComPointer<IStream> user = EmptyStream();
    ASSERT_TRUE(detector.Train(user.get(), ToneProject::English, takes).Succeeded());
    const std::vector<uint8_t> model = Content(user.get());
    const ArmingAnswer armed = detector.Arm(user.get(), ToneProject::English);
    ASSERT_TRUE(armed.Succeeded());
    EXPECT_TRUE(std::equal(model.begin(), model.end(), armed.pattern.end() - static_cast<std::ptrdiff_t>(model.size())));
    const DetectionAnswer parsed = detector.Parse(user.get(), InspectionSamples::DetectionResult());
    ASSERT_TRUE(parsed.Succeeded());
    EXPECT_EQ(parsed.keywordId, 1U);
    EXPECT_EQ(parsed.language, ToneProject::English);
    EXPECT_EQ(parsed.keywordStart, 10'000'000U);
    EXPECT_EQ(parsed.keywordEnd, 18'000'000U);
}

TEST_F(Detector, AFailureHasTheLinesOfItsOperationAlone)
{
    const Answer refused = detector.Verify(ToneProject::English, std::vector<float>(16'000));
    EXPECT_FALSE(refused.Succeeded());
    EXPECT_FALSE(refused.lines.empty());
    const ArmingAnswer armed = detector.Arm(EmptyStream().get(), 1031);
    EXPECT_FALSE(armed.Succeeded());
    EXPECT_TRUE(armed.pattern.empty());
    for (const LoggedLine& line : armed.lines)
    {
        EXPECT_THAT(line.message, testing::Not(HasSubstr("VerifyUserKeyword")));
    }
}

TEST_F(Detector, WhoseModelWasArmedIsTold)
{
    EXPECT_FALSE(detector.Arm(EmptyStream().get(), ToneProject::English).usedUserModel);
    project.Write("user.vwov", std::string("VWOV and whatever follows"));
    EXPECT_TRUE(detector.Arm(OpenUserModel(project.File("user.vwov")).get(), ToneProject::English).usedUserModel);
}

TEST_F(Detector, WhatIsRequiredAndFailedIsExplained)
{
    EXPECT_NO_THROW(detector.Arm(EmptyStream().get(), ToneProject::English).Require("Arming"));
    try
    {
        detector.Arm(EmptyStream().get(), 1031).Require("Arming language 1031");
        ADD_FAILURE() << "it went on";
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::BadConfiguration);
        EXPECT_THAT(failure.what(), HasSubstr("Arming language 1031 failed: the language is not in the configuration file"));
    }
}

TEST_F(Detector, ABlockThatIsShorterThanItSaysIsNotHandedOn)
{
    const std::vector<uint8_t> block = InspectionSamples::DetectionResult();
    for (const std::size_t size : {std::size_t{0}, std::size_t{3}, block.size() - 1})
    {
        EXPECT_THROW(detector.Parse(EmptyStream().get(), std::span(block).first(size)), CommandFailure) << size;
    }
}

TEST_F(Detector, AGuidMayLackItsBraces)
{
    EXPECT_EQ(CodeOfMaking(project.Configuration(), "00112233-4455-6677-8899-AABBCCDDEEFF"), ExitCode::Success);
    EXPECT_EQ(CodeOfMaking(project.Configuration(), "{00112233}"), ExitCode::Usage);
    EXPECT_EQ(CodeOfMaking(project.Configuration(), ""), ExitCode::Usage);
}

TEST_F(Detector, APathBeyondTheCodePageIsToldBeforeTheLibrarySeesIt)
{
    EXPECT_EQ(CodeOfMaking(project.File("\xE6\x97\xA5.xml"), SamplesDetector),
              GetACP() == CP_UTF8 ? ExitCode::Success : ExitCode::BadConfiguration);
}

} // namespace DetectorOnRealTests
