#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

const LogLine NotOpened = Log(2, 1, "[ReadThresholdFile] Failed to open threshold file.");
const LogLine NotRead = Log(2, 1, "[GetDetectionParameters] Failed to read threshold file.");

class GetDetectionParameters : public ReaderTest
{
protected:
    void ExpectFields(int32_t quality, int32_t predefined, int32_t userDefined) const
    {
        EXPECT_EQ(parameters.qualityThreshold, quality);
        EXPECT_EQ(parameters.preDefinedKpdSensitivity, predefined);
        EXPECT_EQ(parameters.userDefinedKpdSensitivity, userDefined);
    }

    VELOX_WOV_DETECTION_PARAMETERS parameters{4711, 4711, 4711};
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

struct QualityCase
{
    const char* text;
    int32_t quality;
};

TEST_F(GetDetectionParameters, QualityThresholdIsASignedNumber)
{
    const QualityCase cases[]{{"0", 0},
                              {"-5", -5},
                              {"+7", 7},
                              {" 8", 8},
                              {"9 of 10", 9},
                              {"10.9", 10},
                              {"2147483647", std::numeric_limits<int32_t>::max()},
                              {"-2147483648", std::numeric_limits<int32_t>::min()},
                              {"0x20", 32},
                              {"0xFFFFFFFF", -1}};
    for (const QualityCase& variant : cases)
    {
        SCOPED_TRACE(variant.text);
        configuration.WriteLanguages(TestConfiguration::LanguageElement("1033", 10));
        configuration.ReplaceInXml("qualityThreshold=\"10\"", "qualityThreshold=\"" + std::string(variant.text) + "\"");
        EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), S_OK);
        ExpectFields(variant.quality, 192, 128);
    }
    EXPECT_THAT(logger.lines, IsEmpty());
}

struct InvalidQualityCase
{
    const char* description;
    const char* attribute;
    const char* status;
};

TEST_F(GetDetectionParameters, InvalidQualityThresholdFailsAndFillsNothing)
{
    const InvalidQualityCase cases[]{{"missing", "", "1"},
                                     {"another case of letters", "QualityThreshold='10'", "1"},
                                     {"letters", "qualityThreshold='abc'", "2"},
                                     {"empty", "qualityThreshold=''", "2"}};
    for (const InvalidQualityCase& variant : cases)
    {
        SCOPED_TRACE(variant.description);
        configuration.WriteLanguages(TestConfiguration::LanguageElement("1033", 10));
        configuration.ReplaceInXml("qualityThreshold=\"10\"", variant.attribute);
        EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
        ExpectFields(4711, 4711, 4711);
        EXPECT_THAT(logger.Take(),
                    ElementsAre(LogFormat(2, 1,
                                          "[GetDetectionParameters] Failed to query attribute. XML parser status: " +
                                              std::string(variant.status) + ".")));
    }
}

TEST_F(GetDetectionParameters, MissingPredefinedElementFailsAfterTheQualityThreshold)
{
    configuration.ReplaceInXml("<preDefinedKpdSensitivity>kpd_pre_1033.txt</preDefinedKpdSensitivity>", "");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    ExpectFields(10, 4711, 4711);
    EXPECT_THAT(logger.lines,
                ElementsAre(Log(2, 1, "[GetDetectionParameters] Failed to get predefined kpd sensitivity XML element.")));
}

TEST_F(GetDetectionParameters, PredefinedElementWithoutTextFailsAfterTheQualityThreshold)
{
    configuration.ReplaceInXml("kpd_pre_1033.txt", "");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    ExpectFields(10, 4711, 4711);
    EXPECT_THAT(logger.lines,
                ElementsAre(Log(2, 1, "[GetDetectionParameters] Failed to get predefined kpd sensitivity file name.")));
}

TEST_F(GetDetectionParameters, MissingPredefinedFileFailsAfterTheQualityThreshold)
{
    configuration.RemoveFile("kpd_pre_1033.txt");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    ExpectFields(10, 4711, 4711);
    EXPECT_THAT(logger.lines, ElementsAre(NotOpened, NotRead));
}

TEST_F(GetDetectionParameters, MissingUserDefinedElementFailsAfterThePredefinedThreshold)
{
    configuration.ReplaceInXml("<userDefinedKpdSensitivity>kpd_user_1033.txt</userDefinedKpdSensitivity>", "");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    ExpectFields(10, 192, 4711);
    EXPECT_THAT(logger.lines,
                ElementsAre(Log(2, 1, "[GetDetectionParameters] Failed to get user defined kpd sensitivity XML element.")));
}

TEST_F(GetDetectionParameters, UserDefinedElementWithoutTextFailsAfterThePredefinedThreshold)
{
    configuration.ReplaceInXml("kpd_user_1033.txt", "");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    ExpectFields(10, 192, 4711);
    EXPECT_THAT(logger.lines,
                ElementsAre(Log(2, 1, "[GetDetectionParameters] Failed to get user defined kpd sensitivity file name.")));
}

TEST_F(GetDetectionParameters, MissingUserDefinedFileFailsAfterThePredefinedThreshold)
{
    configuration.RemoveFile("kpd_user_1033.txt");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    ExpectFields(10, 192, 4711);
    EXPECT_THAT(logger.lines, ElementsAre(NotOpened, NotRead));
}

struct ThresholdTexts
{
    const char* predefined;
    const char* userDefined;
    int32_t predefinedQ8;
    int32_t userDefinedQ8;
};

TEST_F(GetDetectionParameters, ThresholdFilesAreNeverRefusedForWhatTheyHold)
{
    const ThresholdTexts cases[]{{"", "abc", 0, 0},
                                 {"1e999", "-1e999", std::numeric_limits<int32_t>::max(), std::numeric_limits<int32_t>::min()},
                                 {"nan", "inf", 0, 0},
                                 {"\xef\xbb\xbf"
                                  "0.5",
                                  "<xml/>", 0, 0},
                                 {"0.75\r\n", "  1  ", 192, 256}};
    for (const ThresholdTexts& variant : cases)
    {
        SCOPED_TRACE(std::string(variant.predefined) + " and " + variant.userDefined);
        configuration.WriteFile("kpd_pre_1033.txt", variant.predefined);
        configuration.WriteFile("kpd_user_1033.txt", variant.userDefined);
        EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), S_OK);
        ExpectFields(10, variant.predefinedQ8, variant.userDefinedQ8);
    }
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetDetectionParameters, OneFileMayServeBothThresholds)
{
    configuration.ReplaceInXml("kpd_user_1033.txt", "kpd_pre_1033.txt");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), S_OK);
    ExpectFields(10, 192, 192);
}

TEST_F(GetDetectionParameters, InvalidIdAheadFails)
{
    for (const auto& [element, status] : {std::pair{"<a/>", "1"}, std::pair{"<a id='abc'/>", "2"}})
    {
        SCOPED_TRACE(element);
        configuration.WriteLanguages(element + TestConfiguration::LanguageElement("1033", 10));
        EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
        ExpectFields(4711, 4711, 4711);
        EXPECT_THAT(
            logger.Take(),
            ElementsAre(LogFormat(
                2, 1, "[GetDetectionParameters] Failed to query attribute. XML parser status: " + std::string(status) + ".")));
    }
}

TEST_F(GetDetectionParameters, MissingDirectoryFails)
{
    configuration.ReplaceInXml(" directory=", " folder=");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    ExpectFields(4711, 4711, 4711);
    EXPECT_THAT(logger.lines, ElementsAre(Log(2, 1, "[GetDetectionParameters] Failed to get directory attribute.")));
}

TEST_F(GetDetectionParameters, UnreadableFileFails)
{
    configuration.WriteXml("");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    ExpectFields(4711, 4711, 4711);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1,
                                                    "[GetDetectionParameters] Failed to load configuration file: " +
                                                        configuration.Path() + ". Status: XML_ERROR_EMPTY_DOCUMENT.")));
}

TEST_F(GetDetectionParameters, DocumentWithoutElementFails)
{
    configuration.WriteXml("<!-- no element -->");
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    ExpectFields(4711, 4711, 4711);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, "[GetDetectionParameters] Failed to load root element of DOM.")));
}

} // namespace
