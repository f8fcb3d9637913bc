#include "docs/samples/Arming.h"
#include "library/configuration/ConfigurationReader.h"
#include "library/configuration/EnrollmentParameters.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/ScriptedStream.h"
#include "tests/support/TestConfiguration.h"

#include <gmock/gmock.h>

#include <tinyxml2.h>

#include <cctype>
#include <cstring>
#include <iomanip>
#include <memory>
#include <sstream>

namespace SamplesTests
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string SourceFolder = VELOX_SOURCE_FOLDER;

/// The sample configuration file, with its two paths led to a folder of the test that holds a file for every name in it.
class Samples : public testing::Test
{
protected:
    Samples()
    {
        configuration.WriteXml(sample);
        configuration.ReplaceInXml("C:\\ProgramData\\Velox\\Models", configuration.Directory());
        configuration.ReplaceInXml("C:\\ProgramData\\Velox\\constraints.txt", configuration.ConstraintsPath());
        WriteFilesThatTheSampleNames();
    }

    /// Each model file holds its own name; the threshold files hold numbers.
    void WriteFilesThatTheSampleNames()
    {
        tinyxml2::XMLDocument document;
        ASSERT_EQ(document.LoadFile(configuration.Path().c_str()), tinyxml2::XML_SUCCESS);
        const auto* root = document.FirstChildElement();
        for (const auto* language = root->FirstChildElement(); language != nullptr; language = language->NextSiblingElement())
        {
            for (const auto* file = language->FirstChildElement(); file != nullptr; file = file->NextSiblingElement())
            {
                const std::string name = file->GetText();
                configuration.WriteFile(name, name.ends_with(".txt") ? "0.75\n" : name);
            }
        }
    }

    const std::string sample = ReadWholeFile(SourceFolder + "/docs/samples/configuration.xml");
    TestConfiguration configuration;
    RecordingLogger logger;
    ConfigurationReader reader{configuration.Path(), &logger};
};

TEST_F(Samples, ConfigurationListsTwoLanguages)
{
    uint32_t count = 0;
    ASSERT_EQ(reader.GetLanguagesCount(&count), S_OK);
    std::vector<uint16_t> ids(count);
    uint16_t* buffer = ids.data();
    EXPECT_EQ(reader.GetLanguagesIds(&buffer), S_OK);
    EXPECT_THAT(ids, ElementsAre(1033, 2057));
    for (const uint16_t id : ids)
    {
        bool supported = false;
        EXPECT_EQ(reader.IsLanguageSupported(id, &supported), S_OK);
        EXPECT_TRUE(supported) << id;
    }
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(Samples, ConfigurationNamesTheConstraints)
{
    std::string constraints;
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), S_OK);
    EXPECT_EQ(constraints, "memory=160k");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(Samples, ConfigurationNamesEveryFileOfItsLanguages)
{
    for (const std::string id : {"1033", "2057"})
    {
        SCOPED_TRACE(id);
        const auto languageId = static_cast<uint16_t>(std::stoi(id));

        EnrollmentParameters enrollment;
        EXPECT_EQ(reader.GetEnrollmentParameters(languageId, &enrollment), S_OK);
        EXPECT_NE(enrollment.keyphraseModel, nullptr);
        EXPECT_NE(enrollment.acousticModel, nullptr);
        EXPECT_NE(enrollment.znormPopulation, nullptr);

        uint8_t* model = nullptr;
        uint32_t size = 0;
        EXPECT_EQ(reader.GetPredefinedModel(languageId, &model, &size), S_OK);
        const std::unique_ptr<uint8_t[]> owner(model);
        EXPECT_EQ(std::string(model, model + size), "fw_" + id + ".bin");

        VELOX_WOV_DETECTION_PARAMETERS detection{};
        EXPECT_EQ(reader.GetDetectionParameters(languageId, &detection), S_OK);
        EXPECT_EQ(detection.preDefinedKpdSensitivity, 192);
        EXPECT_EQ(detection.userDefinedKpdSensitivity, 192);
        EXPECT_EQ(detection.qualityThreshold, 10);
        EXPECT_THAT(logger.lines, IsEmpty());
    }
}

/// Bytes as docs/firmware-blocks.md shows them.
std::string HexDump(std::string_view bytes)
{
    std::ostringstream dump;
    dump << std::hex << std::setfill('0');
    for (std::size_t row = 0; row < bytes.size(); row += 16)
    {
        std::string characters;
        dump << std::setw(4) << row << ' ';
        for (std::size_t column = 0; column < 16; ++column)
        {
            dump << (column == 8 ? "  " : " ");
            if (row + column >= bytes.size())
            {
                dump << "  ";
                continue;
            }
            const auto byte = static_cast<unsigned char>(bytes[row + column]);
            dump << std::setw(2) << unsigned{byte};
            characters += std::isprint(byte) != 0 ? static_cast<char>(byte) : '.';
        }
        dump << "  " << characters << '\n';
    }
    return dump.str();
}

TEST_F(Samples, ArmingHandsOutTheBlockThatTheFirmwareBlocksPageShows)
{
    constexpr GUID detectorId = {0x00112233, 0x4455, 0x6677, {0x88, 0x99, 0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff}};
    const TestConfiguration firmware1033;
    ScriptedStream noUserModel;
    std::string pattern;
    EXPECT_EQ(ArmEnglish(&logger, firmware1033.Path(), detectorId, &noUserModel,
                         [&](const uint8_t* block) {
                             uint32_t size = 0;
                             std::memcpy(&size, block, sizeof(size));
                             pattern.assign(block, block + size);
                         }),
              S_OK);
    EXPECT_THAT(ReadWholeFile(SourceFolder + "/docs/firmware-blocks.md"), HasSubstr("```\n" + HexDump(pattern) + "```"));
}

TEST_F(Samples, ConfigurationPageShowsTheConfigurationAsItIs)
{
    EXPECT_THAT(ReadWholeFile(SourceFolder + "/docs/configuration.md"), HasSubstr("```xml\n" + sample + "```"));
}

TEST_F(Samples, ReadmeShowsTheHostAsItIs)
{
    EXPECT_THAT(ReadWholeFile(SourceFolder + "/README.md"),
                HasSubstr("```cpp\n" + ReadWholeFile(SourceFolder + "/docs/samples/Arming.h") + "```"));
}

} // namespace SamplesTests
