#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <memory>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

/// A block's first bytes; the blocks carry no length.
std::string Bytes(const uint8_t* block, std::size_t size)
{
    return {reinterpret_cast<const char*>(block), size};
}

class GetEnrollmentParameters : public ReaderTest
{
protected:
    EnrollmentParameters parameters;
};

TEST_F(GetEnrollmentParameters, LoadsTheLanguagesThreeModels)
{
    EXPECT_EQ(reader.GetEnrollmentParameters(1040, &parameters), S_OK);
    EXPECT_EQ(Bytes(parameters.keyphraseModel, 14), "keyphrase 1040");
    EXPECT_EQ(Bytes(parameters.acousticModel, 13), "acoustic 1040");
    EXPECT_EQ(Bytes(parameters.znormPopulation, 10), "znorm 1040");
    EXPECT_EQ(parameters.reservedBlob, nullptr);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetEnrollmentParameters, UnknownLanguageIsNoFailureAndLoadsNothing)
{
    EXPECT_EQ(reader.GetEnrollmentParameters(1031, &parameters), S_OK);
    EXPECT_EQ(parameters.keyphraseModel, nullptr);
    EXPECT_EQ(parameters.acousticModel, nullptr);
    EXPECT_EQ(parameters.znormPopulation, nullptr);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetEnrollmentParameters, NeitherConstraintsNorThresholdsAreNeeded)
{
    configuration.WriteXml("<r directory='" + configuration.Directory() +
                           "'><a id='1033'><znormPopulation>zn_1033.bin</znormPopulation><acousticModel>am_1033.bin"
                           "</acousticModel><keyphraseModel>kp_1033.bin</keyphraseModel></a></r>");
    EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), S_OK);
    EXPECT_EQ(Bytes(parameters.keyphraseModel, 14), "keyphrase 1033");
    EXPECT_EQ(Bytes(parameters.acousticModel, 13), "acoustic 1033");
    EXPECT_EQ(Bytes(parameters.znormPopulation, 10), "znorm 1033");
}

struct ModelFileFailure
{
    const char* missing; ///< file that is not there
    const char* empty;   ///< file that is empty
    HRESULT result;
    std::vector<LogLine> lines;
};

TEST_F(GetEnrollmentParameters, OnlyTheResultOfTheLastLoadIsKept)
{
    const LogLine noKeyphrase = LogFormat(2, 1, "[LoadFile] Failed to load file: kp_1033.bin.");
    const LogLine noAcoustic = LogFormat(2, 1, "[LoadFile] Failed to load file: am_1033.bin.");
    const LogLine noZnorm = LogFormat(2, 1, "[LoadFile] Failed to load file: zn_1033.bin.");
    const LogLine emptyKeyphrase = LogFormat(2, 1, "[LoadFile] The file: kp_1033.bin  is empty.");
    const LogLine emptyAcoustic = LogFormat(2, 1, "[LoadFile] The file: am_1033.bin  is empty.");
    const LogLine emptyZnorm = LogFormat(2, 1, "[LoadFile] The file: zn_1033.bin  is empty.");
    const ModelFileFailure cases[]{{"kp", "", S_OK, {noKeyphrase}},
                                   {"am", "", S_OK, {noAcoustic}},
                                   {"zn", "", E_FAIL, {noZnorm}},
                                   {"", "kp", S_OK, {emptyKeyphrase}},
                                   {"", "am", S_OK, {emptyAcoustic}},
                                   {"", "zn", E_FAIL, {emptyZnorm}},
                                   {"kp", "am", S_OK, {noKeyphrase, emptyAcoustic}},
                                   {"am", "zn", E_FAIL, {noAcoustic, emptyZnorm}}};
    for (const ModelFileFailure& variant : cases)
    {
        SCOPED_TRACE(std::string("missing ") + variant.missing + ", empty " + variant.empty);
        const TestConfiguration fresh;
        if (*variant.missing != '\0')
        {
            fresh.RemoveFile(std::string(variant.missing) + "_1033.bin");
        }
        if (*variant.empty != '\0')
        {
            fresh.WriteFile(std::string(variant.empty) + "_1033.bin", "");
        }
        const auto loads = [&variant](const std::string& file) {
            return file != variant.missing && file != variant.empty;
        };
        EnrollmentParameters loaded;
        EXPECT_EQ(ConfigurationReader(fresh.Path(), &logger).GetEnrollmentParameters(1033, &loaded), variant.result);
        EXPECT_EQ(loaded.keyphraseModel != nullptr, loads("kp"));
        EXPECT_EQ(loaded.acousticModel != nullptr, loads("am"));
        EXPECT_EQ(loaded.znormPopulation != nullptr, loads("zn"));
        EXPECT_EQ(logger.Take(), variant.lines);
    }
}

struct ElementFailure
{
    const char* element;
    const char* noun;
    bool keyphraseLoaded;
    bool acousticLoaded;
};

constexpr ElementFailure Elements[]{{"keyphraseModel", "keyphrase model", false, false},
                                    {"acousticModel", "acoustic model", true, false},
                                    {"znormPopulation", "znorm population", true, true}};

TEST_F(GetEnrollmentParameters, MissingElementFailsAndKeepsWhatWasLoaded)
{
    for (const ElementFailure& variant : Elements)
    {
        SCOPED_TRACE(variant.element);
        const TestConfiguration fresh;
        fresh.ReplaceInXml("<" + std::string(variant.element) + ">", "<other>");
        fresh.ReplaceInXml("</" + std::string(variant.element) + ">", "</other>");
        EnrollmentParameters loaded;
        EXPECT_EQ(ConfigurationReader(fresh.Path(), &logger).GetEnrollmentParameters(1033, &loaded), E_FAIL);
        EXPECT_EQ(loaded.keyphraseModel != nullptr, variant.keyphraseLoaded);
        EXPECT_EQ(loaded.acousticModel != nullptr, variant.acousticLoaded);
        EXPECT_EQ(loaded.znormPopulation, nullptr);
        EXPECT_THAT(
            logger.Take(),
            ElementsAre(Log(2, 1, "[GetEnrollmentParameters] Failed to get " + std::string(variant.noun) + " XML element.")));
    }
}

TEST_F(GetEnrollmentParameters, ElementWithoutTextFailsAndKeepsWhatWasLoaded)
{
    for (const ElementFailure& variant : Elements)
    {
        SCOPED_TRACE(variant.element);
        const TestConfiguration fresh;
        const std::string opening = "<" + std::string(variant.element) + ">";
        fresh.ReplaceInXml(opening, opening + "</" + variant.element + ">" + opening);
        EnrollmentParameters loaded;
        EXPECT_EQ(ConfigurationReader(fresh.Path(), &logger).GetEnrollmentParameters(1033, &loaded), E_FAIL);
        EXPECT_EQ(loaded.keyphraseModel != nullptr, variant.keyphraseLoaded);
        EXPECT_EQ(loaded.acousticModel != nullptr, variant.acousticLoaded);
        EXPECT_EQ(loaded.znormPopulation, nullptr);
        EXPECT_THAT(
            logger.Take(),
            ElementsAre(Log(2, 1, "[GetEnrollmentParameters] Failed to get " + std::string(variant.noun) + " file name.")));
    }
}

TEST_F(GetEnrollmentParameters, ElementIsLookedUpAfterTheLoadBeforeIt)
{
    configuration.RemoveFile("kp_1033.bin");
    configuration.ReplaceInXml("<acousticModel>am_1033.bin</acousticModel>", "");
    EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, "[LoadFile] Failed to load file: kp_1033.bin."),
                                          Log(2, 1, "[GetEnrollmentParameters] Failed to get acoustic model XML element.")));
}

TEST_F(GetEnrollmentParameters, FirstOfTwoEqualElementsCounts)
{
    configuration.ReplaceInXml("<keyphraseModel>", "<keyphraseModel>kp_1040.bin</keyphraseModel><keyphraseModel>");
    EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), S_OK);
    EXPECT_EQ(Bytes(parameters.keyphraseModel, 14), "keyphrase 1040");
}

TEST_F(GetEnrollmentParameters, SecondLoadIntoTheSameMembersDropsTheirBlocksIsKept)
{
    ASSERT_EQ(reader.GetEnrollmentParameters(1033, &parameters), S_OK);
    // The test's own hold on what the library drops below.
    const std::unique_ptr<uint8_t[]> keyphrase(parameters.keyphraseModel);
    const std::unique_ptr<uint8_t[]> acoustic(parameters.acousticModel);
    const std::unique_ptr<uint8_t[]> znorm(parameters.znormPopulation);

    ASSERT_EQ(reader.GetEnrollmentParameters(1040, &parameters), S_OK);
    EXPECT_EQ(Bytes(keyphrase.get(), 14), "keyphrase 1033");
    EXPECT_EQ(Bytes(acoustic.get(), 13), "acoustic 1033");
    EXPECT_EQ(Bytes(znorm.get(), 10), "znorm 1033");
    EXPECT_EQ(Bytes(parameters.keyphraseModel, 14), "keyphrase 1040");
    EXPECT_EQ(Bytes(parameters.acousticModel, 13), "acoustic 1040");
    EXPECT_EQ(Bytes(parameters.znormPopulation, 10), "znorm 1040");
}

TEST_F(GetEnrollmentParameters, InvalidIdAheadFails)
{
    for (const auto& [element, status] : {std::pair{"<a/>", "1"}, std::pair{"<a id='abc'/>", "2"}})
    {
        SCOPED_TRACE(element);
        configuration.WriteLanguages(element + TestConfiguration::LanguageElement("1033", 10));
        EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), E_FAIL);
        EXPECT_EQ(parameters.keyphraseModel, nullptr);
        EXPECT_THAT(logger.Take(),
                    ElementsAre(LogFormat(2, 1,
                                          "[GetEnrollmentParameters] Failed to query ID attribute. XML parser status: " +
                                              std::string(status) + ".")));
    }
}

TEST_F(GetEnrollmentParameters, MissingDirectoryFails)
{
    configuration.ReplaceInXml(" directory=", " folder=");
    EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(Log(2, 1, "[GetEnrollmentParameters] Failed to get directory attribute.")));
}

TEST_F(GetEnrollmentParameters, UnreadableFileFails)
{
    configuration.WriteXml("");
    EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1,
                                                    "[GetEnrollmentParameters] Failed to load configuration file: " +
                                                        configuration.Path() + ". Status: XML_ERROR_EMPTY_DOCUMENT.")));
}

TEST_F(GetEnrollmentParameters, DocumentWithoutElementFails)
{
    configuration.WriteXml("<!-- no element -->");
    EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, "[GetEnrollmentParameters] Failed to load root element of DOM.")));
}

} // namespace
