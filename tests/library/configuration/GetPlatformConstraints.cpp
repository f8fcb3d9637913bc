#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

class GetPlatformConstraints : public ReaderTest
{
protected:
    std::string Get(std::string_view content)
    {
        WriteWholeFile(configuration.ConstraintsPath(), content);
        std::string constraints = "a longer text that was there before";
        EXPECT_EQ(reader.GetPlatformConstraints(&constraints), S_OK);
        EXPECT_THAT(logger.lines, IsEmpty());
        return constraints;
    }
};

struct ConstraintsCase
{
    const char* description;
    std::string content;
    std::string line;
};

TEST_F(GetPlatformConstraints, FirstLineIsReadWithoutItsEnd)
{
    const std::string long10MB(10 << 20, 'x');
    const ConstraintsCase cases[]{{"several lines", "memory=160k\nsecond line\n", "memory=160k"},
                                  {"without a line end", "memory=160k", "memory=160k"},
                                  {"blanks stay", "  memory = 160k\t \n", "  memory = 160k\t "},
                                  {"empty file", "", ""},
                                  {"empty first line", "\nmemory=160k\n", ""},
                                  {"only a line end", "\n", ""},
                                  {"a zero byte is a character", std::string("a\0b\nc", 5), std::string("a\0b", 3)},
                                  {"bytes above 127", "\xff\xfe\x80\n", "\xff\xfe\x80"},
                                  {"10 MB in one line", long10MB, long10MB},
                                  {"10 MB and a line end", long10MB + "\nmore", long10MB}};
    for (const ConstraintsCase& variant : cases)
    {
        SCOPED_TRACE(variant.description);
        EXPECT_TRUE(Get(variant.content) == variant.line); // 10 MB would drown the output
    }
}

TEST_F(GetPlatformConstraints, ThePlatformsOwnLineEndIsNotStored)
{
    std::ofstream(configuration.ConstraintsPath()) << "memory=160k\nsecond line\n";
    std::string constraints;
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), S_OK);
    EXPECT_EQ(constraints, "memory=160k");
}

TEST_F(GetPlatformConstraints, PathIsTakenAsItStands)
{
    const std::string path = configuration.Directory() + "/elsewhere";
    WriteWholeFile(path, "elsewhere\n");
    configuration.WriteXml("<keywords constraints='" + path + "'/>");
    std::string constraints;
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), S_OK);
    EXPECT_EQ(constraints, "elsewhere");
}

TEST_F(GetPlatformConstraints, UnreadableConfigurationFailsAndLeavesTheText)
{
    configuration.WriteXml("<keywords x=1/>");
    std::string constraints = "old";
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), E_FAIL);
    EXPECT_EQ(constraints, "old");
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1,
                                                    "[GetPlatformConstraints] Failed to load configuration file: " +
                                                        configuration.Path() + ". Status: XML_ERROR_PARSING_ATTRIBUTE.")));
}

TEST_F(GetPlatformConstraints, DocumentWithoutElementFailsAndLeavesTheText)
{
    configuration.WriteXml("<!-- no element -->");
    std::string constraints = "old";
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), E_FAIL);
    EXPECT_EQ(constraints, "old");
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, "[GetPlatformConstraints] Failed to load root element of DOM.")));
}

TEST_F(GetPlatformConstraints, MissingAttributeFailsAndLeavesTheText)
{
    configuration.ReplaceInXml(" constraints=", " Constraints=");
    std::string constraints = "old";
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), E_FAIL);
    EXPECT_EQ(constraints, "old");
    EXPECT_THAT(logger.lines, ElementsAre(Log(2, 1, "[GetPlatformConstraints] Failed to get constraints attribute.")));
}

TEST_F(GetPlatformConstraints, MissingFileFailsAndLeavesTheText)
{
    std::filesystem::remove(configuration.ConstraintsPath());
    std::string constraints = "old";
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), E_FAIL);
    EXPECT_EQ(constraints, "old");
    EXPECT_THAT(logger.lines, ElementsAre(Log(2, 1, "[GetPlatformConstraints] Failed to open platform constraints file.")));
}

TEST_F(GetPlatformConstraints, EmptyPathFailsToOpen)
{
    configuration.WriteXml("<keywords constraints=''/>");
    std::string constraints = "old";
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), E_FAIL);
    EXPECT_EQ(constraints, "old");
    EXPECT_THAT(logger.lines, ElementsAre(Log(2, 1, "[GetPlatformConstraints] Failed to open platform constraints file.")));
}

} // namespace
