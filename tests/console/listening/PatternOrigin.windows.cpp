#include "console/listening/PatternOrigin.h"

#include "console/hosting/UserModelStream.h"
#include "console/text/CommandFailure.h"
#include "tests/console/support/ToneProject.h"

#include <gmock/gmock.h>

namespace
{

using namespace velox::console;
using testing::HasSubstr;

class PatternOrigin : public testing::Test
{
protected:
    PatternOrigin()
    {
        project.AddItalian();
    }

    std::vector<uint8_t> Pattern(uint16_t language)
    {
        return detector.Arm(stream.get(), language).pattern;
    }
    velox::console::PatternOrigin Find(std::optional<uint16_t> language, const std::vector<uint8_t>& pattern)
    {
        return FindPatternOrigin(&detector, stream.get(), language, pattern);
    }

    ToneProject project;
    ComPointer<IStream> stream = EmptyStream();
    Detector detector{{project.Configuration(), "{01020304-0506-0708-090A-0B0C0D0E0F10}"}, {}};
};

TEST_F(PatternOrigin, ThePatternTellsItsLanguage)
{
    for (const uint16_t language : {ToneProject::English, ToneProject::Italian})
    {
        const std::vector<uint8_t> pattern = Pattern(language);
        const auto origin = Find({}, pattern);
        EXPECT_EQ(origin.language, language);
        EXPECT_EQ(origin.pattern, pattern);
        EXPECT_EQ(origin.difference, "");
    }
    EXPECT_EQ(ThresholdOf(Pattern(ToneProject::English)), 70.0);
    EXPECT_EQ(ThresholdOf(Pattern(ToneProject::Italian)), 80.0);
}

TEST_F(PatternOrigin, ALanguageThatIsNamedIsTakenWithTheDifferenceTold)
{
    std::vector<uint8_t> pattern = Pattern(ToneProject::English);
    EXPECT_THAT(Find(ToneProject::Italian, pattern).difference, HasSubstr("with a threshold of 80.0 instead of 70.0"));
    pattern.back() ^= 1U;
    EXPECT_THAT(Find(ToneProject::English, pattern).difference, HasSubstr("with another model"));
}

TEST_F(PatternOrigin, OfSeveralLanguagesOneMustFit)
{
    std::vector<uint8_t> pattern = Pattern(ToneProject::English);
    pattern.back() ^= 1U;
    try
    {
        Find({}, pattern);
        ADD_FAILURE();
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::Usage);
        EXPECT_THAT(failure.what(), HasSubstr("none of the 2 configured languages"));
    }
}

TEST_F(PatternOrigin, AFailedArmingIsExplained)
{
    EXPECT_THROW(Find(uint16_t{1031}, Pattern(ToneProject::English)), CommandFailure);
}

} // namespace
