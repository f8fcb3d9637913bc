#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <array>

namespace GetLanguagesIdsTests
{

using testing::ElementsAre;
using testing::IsEmpty;

class GetLanguagesIds : public ReaderTest
{
protected:
    HRESULT Get()
    {
        uint16_t* buffer = ids.data();
        const HRESULT result = reader.GetLanguagesIds(&buffer);
        EXPECT_EQ(buffer, ids.data());
        return result;
    }

    std::array<uint16_t, 4> ids{1, 2, 3, 4};
};

TEST_F(GetLanguagesIds, GivesTheIdsInTheFilesOrder)
{
    EXPECT_EQ(Get(), S_OK);
    EXPECT_THAT(ids, ElementsAre(1033, 1040, 3, 4));
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetLanguagesIds, GivesTheLow16BitsOfEveryId)
{
    const std::pair<const char*, std::array<uint16_t, 4>> cases[]{
        {"", {1, 2, 3, 4}},
        {"<a id='66569'/><a id='65536'/><a id='4294967295'/>", {1033, 0, 65535, 4}},
        {"<a id='1033'/><b id='1033'/>", {1033, 1033, 3, 4}}};
    for (const auto& [languages, expected] : cases)
    {
        SCOPED_TRACE(languages);
        ids = {1, 2, 3, 4};
        configuration.WriteLanguages(languages);
        EXPECT_EQ(Get(), S_OK);
        EXPECT_EQ(ids, expected);
    }
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetLanguagesIds, NoMoreAreWrittenThanThereIsRoomFor)
{
    configuration.WriteLanguages("<a id='1033'/><a id='1040'/><a id='not a number'/>");
    uint16_t* buffer = ids.data();
    EXPECT_EQ(reader.GetLanguagesIds(&buffer, 2), S_OK);
    EXPECT_THAT(ids, ElementsAre(1033, 1040, 3, 4));
    EXPECT_THAT(logger.lines, IsEmpty());
}

struct InvalidIdCase
{
    const char* description;
    const char* element;
    const char* status;
};

TEST_F(GetLanguagesIds, InvalidIdFailsWithItsPositionAndKeepsTheIdsBefore)
{
    const InvalidIdCase cases[]{{"missing", "<a/>", "1"},
                                {"another case of letters", "<a ID='1040'/>", "1"},
                                {"only in a child", "<a><b id='1040'/></a>", "1"},
                                {"empty", "<a id=''/>", "2"},
                                {"letters", "<a id='abc'/>", "2"}};
    for (const InvalidIdCase& variant : cases)
    {
        SCOPED_TRACE(variant.description);
        ids = {1, 2, 3, 4};
        configuration.WriteLanguages("<a id='1033'/><a id='1031'/>" + std::string(variant.element) + "<a id='1036'/>");
        EXPECT_EQ(Get(), E_FAIL);
        EXPECT_THAT(ids, ElementsAre(1033, 1031, 3, 4));
        EXPECT_THAT(logger.Take(),
                    ElementsAre(LogFormat(2, 1,
                                          "[GetLanguagesIds] Failed to query ID attribute for language: 3. XML parser status: " +
                                              std::string(variant.status) + ".")));
    }
}

} // namespace GetLanguagesIdsTests
