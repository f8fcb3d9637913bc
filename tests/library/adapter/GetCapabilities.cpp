#include "tests/library/adapter/Lines.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/AudioFormat.h"
#include "tests/support/CapabilitiesOutputs.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <utility>
#include <vector>

namespace GetCapabilitiesTests
{

using namespace CapabilityLines;
using testing::ElementsAreArray;

class GetCapabilities : public AdapterTest
{
protected:
    /// The keyword's buffer is the caller's.
    void ExpectKeyword() const
    {
        ASSERT_TRUE(outputs.KeywordIdsWritten());
        EXPECT_EQ(outputs.keywordCount, 1U);
        EXPECT_EQ(outputs.keywordIds[0], 1U);
    }

    CapabilitiesOutputs outputs;
};

TEST_F(GetCapabilities, AnnouncesUserModelsTheKeywordAndTheLanguages)
{
    EXPECT_EQ(outputs.Get(adapter), S_OK);
    EXPECT_EQ(outputs.supportsUserModels, 1);
    ExpectKeyword();
    ASSERT_EQ(outputs.languageCount, 2U);
    EXPECT_EQ(outputs.languageIds[0], 1033);
    EXPECT_EQ(outputs.languageIds[1], 1040);
    EXPECT_EQ(logger.lines, Entry + Supported(2) + Success);
}

TEST_F(GetCapabilities, FileThatChangesBetweenCountAndListGivesAsManyAsWereCountedWithZerosForWhatIsMissing)
{
    const std::pair<const char*, uint16_t> cases[]{{"<a id='1'/><a id='2'/><a id='3'/><a id='4'/>", 2}, {"<a id='1'/>", 0}};
    for (const auto& [languages, second] : cases)
    {
        SCOPED_TRACE(languages);
        const TestConfiguration before;
        configuration.WriteXml(ReadWholeFile(before.Path()));
        logger.onLine = [this, list = languages](const LogLine& line) {
            if (line == Supported(2))
            {
                configuration.WriteLanguages(list);
            }
        };
        CapabilitiesOutputs found;
        EXPECT_EQ(found.Get(adapter), S_OK);
        ASSERT_EQ(found.languageCount, 2U);
        EXPECT_EQ(found.languageIds[0], 1);
        EXPECT_EQ(found.languageIds[1], second);
    }
}

TEST_F(GetCapabilities, AnnouncesSixteenKilohertzMonoSixteenBit)
{
    ASSERT_EQ(outputs.Get(adapter), S_OK);
    const WAVEFORMATEX format = ReadAudioFormat(outputs.audioFormat);
    EXPECT_EQ(format.wFormatTag, 1);
    EXPECT_EQ(format.nChannels, 1);
    EXPECT_EQ(format.nSamplesPerSec, 16000U);
    EXPECT_EQ(format.nAvgBytesPerSec, 32000U);
    EXPECT_EQ(format.nBlockAlign, 2);
    EXPECT_EQ(format.wBitsPerSample, 16);
    EXPECT_EQ(format.cbSize, 0);
}

TEST_F(GetCapabilities, TheMediaTypeHasOneReference)
{
    ASSERT_EQ(outputs.Get(adapter), S_OK);
    EXPECT_EQ(std::exchange(outputs.audioFormat, nullptr)->Release(), 0U);
}

TEST_F(GetCapabilities, EachCallHandsOutNewBuffers)
{
    CapabilitiesOutputs second;
    ASSERT_EQ(outputs.Get(adapter), S_OK);
    ASSERT_EQ(second.Get(adapter), S_OK);
    EXPECT_NE(outputs.keywordIds, second.keywordIds);
    EXPECT_NE(outputs.languageIds, second.languageIds);
    EXPECT_NE(outputs.audioFormat, second.audioFormat);
    EXPECT_EQ(second.languageIds[1], 1040);
}

TEST_F(GetCapabilities, KeepsTheFilesOrderAndAlwaysOneKeyword)
{
    const std::vector<std::vector<uint16_t>> lists{{}, {7}, {3, 2, 1}, {1033, 1033}};
    for (const std::vector<uint16_t>& list : lists)
    {
        SCOPED_TRACE(testing::PrintToString(list));
        std::string elements;
        for (const uint16_t id : list)
        {
            elements += TestConfiguration::LanguageElement(std::to_string(id), 1);
        }
        configuration.WriteLanguages(elements);
        CapabilitiesOutputs found;
        EXPECT_EQ(found.Get(adapter), S_OK);
        EXPECT_EQ(found.keywordCount, 1U);
        EXPECT_EQ(found.keywordIds[0], 1U);
        ASSERT_EQ(found.languageCount, list.size());
        EXPECT_NE(found.languageIds, nullptr);
        EXPECT_THAT(std::vector<uint16_t>(found.languageIds, found.languageIds + found.languageCount), ElementsAreArray(list));
        EXPECT_EQ(logger.Take(), Entry + Supported(list.size()) + Success);
    }
}

TEST_F(GetCapabilities, AnyNullOutputFailsAndNothingIsWritten)
{
    constexpr unsigned int AllPresent = 63;
    for (unsigned int present = 0; present < AllPresent; ++present)
    {
        SCOPED_TRACE(present);
        const auto unless = [present](unsigned int bit, auto* output) {
            return (present & (1U << bit)) != 0 ? output : nullptr;
        };
        CapabilitiesOutputs untouched;
        EXPECT_EQ(adapter.GetCapabilities(unless(0, &untouched.supportsUserModels), unless(1, &untouched.keywordIds),
                                          unless(2, &untouched.keywordCount), unless(3, &untouched.languageIds),
                                          unless(4, &untouched.languageCount), unless(5, &untouched.audioFormat)),
                  E_POINTER);
        EXPECT_EQ(untouched.supportsUserModels, CapabilitiesOutputs::Untouched);
        EXPECT_FALSE(untouched.KeywordIdsWritten());
        EXPECT_EQ(untouched.keywordCount, CapabilitiesOutputs::Untouched);
        EXPECT_FALSE(untouched.LanguageIdsWritten());
        EXPECT_EQ(untouched.languageCount, CapabilitiesOutputs::Untouched);
        EXPECT_EQ(untouched.audioFormat, nullptr);
        EXPECT_EQ(logger.Take(), Entry + OutputMissing);
    }
}

TEST_F(GetCapabilities, FailedCountLeavesTheKeywordBuffer)
{
    struct Case
    {
        const char* xml; ///< null for no file
        LogLine line;
    };
    for (const Case& row :
         {Case{"<!-- nothing -->", ConfigurationLines::NoRoot("GetLanguagesCount")},
          Case{nullptr, ConfigurationLines::NotLoaded("GetLanguagesCount", configuration.Path(), "XML_ERROR_FILE_NOT_FOUND")}})
    {
        SCOPED_TRACE(row.line);
        row.xml != nullptr ? configuration.WriteXml(row.xml) : void(std::filesystem::remove(configuration.Path()));
        CapabilitiesOutputs failed;
        EXPECT_EQ(failed.Get(adapter), E_FAIL);
        EXPECT_EQ(failed.keywordIds[0], 1U);
        EXPECT_EQ(failed.keywordCount, 1U);
        EXPECT_FALSE(failed.LanguageIdsWritten());
        EXPECT_EQ(failed.languageCount, CapabilitiesOutputs::Untouched);
        EXPECT_EQ(failed.audioFormat, nullptr);
        EXPECT_EQ(failed.supportsUserModels, CapabilitiesOutputs::Untouched);
        EXPECT_EQ(logger.Take(), Entry + row.line + NoCount);
    }
}

TEST_F(GetCapabilities, ALanguageWithoutIdLeavesBothBuffers)
{
    configuration.ReplaceInXml("id=\"1040\"", "");
    EXPECT_EQ(outputs.Get(adapter), E_FAIL);
    ExpectKeyword();
    EXPECT_EQ(outputs.languageCount, 2U);
    EXPECT_EQ(outputs.languageIds[0], 1033);
    EXPECT_EQ(outputs.audioFormat, nullptr);
    EXPECT_EQ(outputs.supportsUserModels, CapabilitiesOutputs::Untouched);
    EXPECT_EQ(logger.lines,
              Entry + Supported(2) +
                  LogFormat(2, 1, "[GetLanguagesIds] Failed to query ID attribute for language: 2. XML parser status: 1.") +
                  NoIds);
}

TEST_F(GetCapabilities, AConfigurationThatVanishesAfterTheCountLeavesBothBuffers)
{
    logger.onLine = [this](const LogLine& line) {
        if (line == Supported(2))
        {
            std::filesystem::remove(configuration.Path());
        }
    };
    EXPECT_EQ(outputs.Get(adapter), E_FAIL);
    ExpectKeyword();
    EXPECT_TRUE(outputs.LanguageIdsWritten());
    EXPECT_EQ(outputs.languageCount, 2U);
    EXPECT_EQ(logger.lines,
              Entry + Supported(2) +
                  ConfigurationLines::NotLoaded("GetLanguagesIds", configuration.Path(), "XML_ERROR_FILE_NOT_FOUND") + NoIds);
}

} // namespace GetCapabilitiesTests
