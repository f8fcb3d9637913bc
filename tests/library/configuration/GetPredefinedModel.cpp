#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <memory>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

class GetPredefinedModel : public ReaderTest
{
protected:
    /// A lookup that fails, or finds no language, and leaves what the caller had.
    void ExpectOutputsLeft(uint16_t languageId, HRESULT result)
    {
        uint8_t mark = 0;
        uint8_t* data = &mark;
        uint32_t size = 4711;
        EXPECT_EQ(reader.GetPredefinedModel(languageId, &data, &size), result);
        EXPECT_EQ(data, &mark);
        EXPECT_EQ(size, 4711U);
    }
};

TEST_F(GetPredefinedModel, GivesTheLanguagesFirmwareModel)
{
    uint8_t* data = nullptr;
    uint32_t size = 0;
    EXPECT_EQ(reader.GetPredefinedModel(1040, &data, &size), S_OK);
    const std::unique_ptr<uint8_t[]> owner(data);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(data), size), "firmware 1040");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetPredefinedModel, UnknownLanguageIsNoFailureAndGivesNothing)
{
    ExpectOutputsLeft(1031, S_OK);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetPredefinedModel, MissingElementFails)
{
    configuration.ReplaceInXml("<fwBlob>fw_1033.bin</fwBlob>", "");
    ExpectOutputsLeft(1033, E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(Log(2, 1, "[GetPredefinedModel] Failed to get predefined model XML element.")));
}

TEST_F(GetPredefinedModel, ElementWithoutTextFails)
{
    configuration.ReplaceInXml("fw_1033.bin", "");
    ExpectOutputsLeft(1033, E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(Log(2, 1, "[GetPredefinedModel] Failed to get predefined model file name.")));
}

TEST_F(GetPredefinedModel, MissingModelFileFails)
{
    configuration.RemoveFile("fw_1033.bin");
    ExpectOutputsLeft(1033, E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, "[LoadFile] Failed to load file: fw_1033.bin.")));
}

TEST_F(GetPredefinedModel, EmptyModelFileFails)
{
    configuration.WriteFile("fw_1033.bin", "");
    ExpectOutputsLeft(1033, E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, "[LoadFile] The file: fw_1033.bin  is empty.")));
}

TEST_F(GetPredefinedModel, InvalidIdAheadFails)
{
    for (const auto& [element, status] : {std::pair{"<a/>", "1"}, std::pair{"<a id='abc'/>", "2"}})
    {
        SCOPED_TRACE(element);
        configuration.WriteLanguages(element + TestConfiguration::LanguageElement("1033", 10));
        ExpectOutputsLeft(1033, E_FAIL);
        EXPECT_THAT(
            logger.Take(),
            ElementsAre(LogFormat(
                2, 1, "[GetPredefinedModel] Failed to query ID attribute. XML parser status: " + std::string(status) + ".")));
    }
}

TEST_F(GetPredefinedModel, MissingDirectoryFails)
{
    configuration.ReplaceInXml(" directory=", " folder=");
    ExpectOutputsLeft(1033, E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(Log(2, 1, "[GetPredefinedModel] Failed to get directory attribute.")));
}

TEST_F(GetPredefinedModel, UnreadableFileFails)
{
    configuration.WriteXml("");
    ExpectOutputsLeft(1033, E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1,
                                                    "[GetPredefinedModel] Failed to load configuration file: " +
                                                        configuration.Path() + ". Status: XML_ERROR_EMPTY_DOCUMENT.")));
}

TEST_F(GetPredefinedModel, DocumentWithoutElementFails)
{
    configuration.WriteXml("<!-- no element -->");
    ExpectOutputsLeft(1033, E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, "[GetPredefinedModel] Failed to load root element of DOM.")));
}

} // namespace
