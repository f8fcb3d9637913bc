#include "tests/library/configuration/GetDetectionParameters.h"
#include "tests/support/Table.h"

#include <gmock/gmock.h>

#include <limits>

namespace GetDetectionParametersTests
{

using namespace ConfigurationLines;
using testing::IsEmpty;

const std::string Operation = "GetDetectionParameters";

/// A piece of the file for 1033 that is not as it should be.
struct Damage
{
    const char* description;
    const char* piece; ///< of the configuration file, or the name of a file, which is removed
    const char* replacement;
    int32_t quality, predefined, userDefined; ///< what was filled all the same
    Lines lines;
};

class GetDetectionParameters : public DetectionParametersTest, public testing::WithParamInterface<Damage>
{
};

TEST_F(GetDetectionParameters, FillsAllThreeFields)
{
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), S_OK);
    ExpectFields(10, 192, 128);
    EXPECT_EQ(reader.GetDetectionParameters(1040, &parameters), S_OK);
    ExpectFields(20, 320, -333);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetDetectionParameters, UnknownLanguageIsNoFailureAndFillsNothing)
{
    EXPECT_EQ(reader.GetDetectionParameters(1031, &parameters), S_OK);
    ExpectFields(4711, 4711, 4711);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetDetectionParameters, QualityThresholdIsASignedNumber)
{
    const std::pair<std::string, int32_t> cases[]{{"0", 0},
                                                  {"-5", -5},
                                                  {"+7", 7},
                                                  {" 8", 8},
                                                  {"9 of 10", 9},
                                                  {"10.9", 10},
                                                  {"2147483647", std::numeric_limits<int32_t>::max()},
                                                  {"-2147483648", std::numeric_limits<int32_t>::min()},
                                                  {"0x20", 32},
                                                  {"0xFFFFFFFF", -1}};
    for (const auto& [text, quality] : cases)
    {
        SCOPED_TRACE(text);
        configuration.WriteLanguages(TestConfiguration::LanguageElement("1033", 10));
        configuration.ReplaceInXml("qualityThreshold=\"10\"", "qualityThreshold=\"" + text + "\"");
        EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), S_OK);
        ExpectFields(quality, 192, 128);
    }
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_P(GetDetectionParameters, DamageFailsAndKeepsTheFieldsBefore)
{
    const Damage& damage = GetParam();
    if (damage.replacement == nullptr)
    {
        configuration.RemoveFile(damage.piece);
    }
    else
    {
        configuration.ReplaceInXml(damage.piece, damage.replacement);
    }
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    ExpectFields(damage.quality, damage.predefined, damage.userDefined);
    EXPECT_EQ(logger.lines, damage.lines);
}

constexpr const char* Quality = "qualityThreshold=\"10\"";
constexpr int32_t None = 4711;

INSTANTIATE_TEST_SUITE_P(
    Damages, GetDetectionParameters,
    testing::Values(
        Damage{"no quality", Quality, "", None, None, None, AttributeFailed(Operation, 1)},
        Damage{"another case", Quality, "QualityThreshold='10'", None, None, None, AttributeFailed(Operation, 1)},
        Damage{"letters for the quality", Quality, "qualityThreshold='abc'", None, None, None, AttributeFailed(Operation, 2)},
        Damage{"empty quality", Quality, "qualityThreshold=''", None, None, None, AttributeFailed(Operation, 2)},
        Damage{"no predefined element", "<preDefinedKpdSensitivity>kpd_pre_1033.txt</preDefinedKpdSensitivity>", "", 10, None,
               None, NotGot(Operation, "predefined kpd sensitivity XML element")},
        Damage{"no predefined name", "kpd_pre_1033.txt", "", 10, None, None,
               NotGot(Operation, "predefined kpd sensitivity file name")},
        Damage{"no predefined file", "kpd_pre_1033.txt", nullptr, 10, None, None, ThresholdNotOpened + ThresholdNotRead},
        Damage{"no user defined element", "<userDefinedKpdSensitivity>kpd_user_1033.txt</userDefinedKpdSensitivity>", "", 10, 192,
               None, NotGot(Operation, "user defined kpd sensitivity XML element")},
        Damage{"no user defined name", "kpd_user_1033.txt", "", 10, 192, None,
               NotGot(Operation, "user defined kpd sensitivity file name")},
        Damage{"no user defined file", "kpd_user_1033.txt", nullptr, 10, 192, None, ThresholdNotOpened + ThresholdNotRead}),
    RowName());

TEST_F(GetDetectionParameters, ThresholdFilesAreNeverRefusedForWhatTheyHold)
{
    struct Texts
    {
        const char* predefined;
        const char* userDefined;
        int32_t predefinedQ8, userDefinedQ8;
    };
    for (const Texts& row : {Texts{"", "abc", 0, 0},
                             Texts{"1e999", "-1e999", std::numeric_limits<int32_t>::max(), std::numeric_limits<int32_t>::min()},
                             Texts{"nan", "inf", 0, 0},
                             Texts{"\xef\xbb\xbf"
                                   "0.5",
                                   "<xml/>", 0, 0},
                             Texts{"0.75\r\n", "  1  ", 192, 256}})
    {
        SCOPED_TRACE(std::string(row.predefined) + " and " + row.userDefined);
        configuration.WriteFile("kpd_pre_1033.txt", row.predefined);
        configuration.WriteFile("kpd_user_1033.txt", row.userDefined);
        EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), S_OK);
        ExpectFields(10, row.predefinedQ8, row.userDefinedQ8);
    }
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetDetectionParameters, OneFileMayServeBothThresholds)
{
    configuration.ReplaceInXml("kpd_user_1033.txt", "kpd_pre_1033.txt");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), S_OK);
    ExpectFields(10, 192, 192);
}

} // namespace GetDetectionParametersTests
