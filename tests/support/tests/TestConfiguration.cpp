#include "tests/support/TestConfiguration.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace TestConfigurationTests
{

std::string Xml(const TestConfiguration& configuration)
{
    return ReadWholeFile(configuration.Path());
}

std::string ModelFile(const TestConfiguration& configuration, const std::string& name)
{
    return ReadWholeFile(configuration.Directory() + "\\" + name);
}

TEST(TestConfiguration, WritesTwoLanguagesAndWhatTheyName)
{
    const TestConfiguration configuration;
    EXPECT_EQ(Xml(configuration), "<keywords directory=\"" + configuration.Directory() + "\" constraints=\"" +
                                      configuration.ConstraintsPath() + "\">" + TestConfiguration::LanguageElement("1033", 10) +
                                      TestConfiguration::LanguageElement("1040", 20) + "</keywords>\n");
    EXPECT_EQ(ModelFile(configuration, "kp_1033.bin"), "keyphrase 1033");
    EXPECT_EQ(ModelFile(configuration, "am_1040.bin"), "acoustic 1040");
    EXPECT_EQ(ModelFile(configuration, "zn_1033.bin"), "znorm 1033");
    EXPECT_EQ(ModelFile(configuration, "fw_1040.bin"), "firmware 1040");
    EXPECT_EQ(ModelFile(configuration, "kpd_user_1040.txt"), "-1.3\n");
    EXPECT_EQ(ReadWholeFile(configuration.ConstraintsPath()), "memory=160k\nsecond line\n");
}

TEST(TestConfiguration, LanguageElementsCarryIdThresholdAndSixFiles)
{
    EXPECT_EQ(TestConfiguration::LanguageElement("7", 3),
              "<language id=\"7\" qualityThreshold=\"3\"><keyphraseModel>kp_7.bin</keyphraseModel>"
              "<acousticModel>am_7.bin</acousticModel><znormPopulation>zn_7.bin</znormPopulation><fwBlob>fw_7.bin</fwBlob>"
              "<preDefinedKpdSensitivity>kpd_pre_7.txt</preDefinedKpdSensitivity>"
              "<userDefinedKpdSensitivity>kpd_user_7.txt</userDefinedKpdSensitivity></language>");
}

TEST(TestConfiguration, ReplacesAPieceOfTheXmlThatIsThere)
{
    const TestConfiguration configuration;
    configuration.WriteXml("<a b=\"1\"/>");
    configuration.ReplaceInXml("1", "22");
    EXPECT_EQ(Xml(configuration), "<a b=\"22\"/>");
    EXPECT_THROW(configuration.ReplaceInXml("missing", ""), std::logic_error);
}

TEST(TestConfiguration, RemovesAFileThatIsThere)
{
    const TestConfiguration configuration;
    configuration.RemoveFile("kp_1033.bin");
    EXPECT_EQ(ModelFile(configuration, "kp_1033.bin"), "");
    EXPECT_THROW(configuration.RemoveFile("kp_1033.bin"), std::logic_error);
}

TEST(TestConfiguration, LeavesNothingOnDisk)
{
    std::string path;
    {
        const TestConfiguration configuration;
        path = configuration.Path();
        ASSERT_TRUE(std::filesystem::exists(path));
    }
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(path).parent_path()));
}

} // namespace TestConfigurationTests
