#include "tests/library/configuration/Lines.h"
#include "tests/support/ReaderTest.h"
#include "tests/support/Table.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace GetPlatformConstraintsTests
{

using namespace ConfigurationLines;
using testing::ElementsAre;
using testing::IsEmpty;

using Damage = ConfigurationDamage;

class GetPlatformConstraints : public ReaderTest, public testing::WithParamInterface<Damage>
{
protected:
    std::string Get()
    {
        std::string constraints = "a longer text that was there before";
        EXPECT_EQ(reader.GetPlatformConstraints(&constraints), S_OK);
        EXPECT_THAT(logger.lines, IsEmpty());
        return constraints;
    }
};

TEST_F(GetPlatformConstraints, FirstLineIsReadWithoutItsEnd)
{
    struct Case
    {
        const char* description;
        std::string content, line;
    };
    const std::string long10MB(10 << 20, 'x');
    const Case cases[]{{"several lines", "memory=160k\nsecond line\n", "memory=160k"},
                       {"without a line end", "memory=160k", "memory=160k"},
                       {"blanks stay", "  memory = 160k\t \n", "  memory = 160k\t "},
                       {"empty file", "", ""},
                       {"empty first line", "\nmemory=160k\n", ""},
                       {"only a line end", "\n", ""},
                       {"a zero byte is a character", std::string("a\0b\nc", 5), std::string("a\0b", 3)},
                       {"bytes above 127", "\xff\xfe\x80\n", "\xff\xfe\x80"},
                       {"10 MB in one line", long10MB, long10MB},
                       {"10 MB and a line end", long10MB + "\nmore", long10MB}};
    for (const Case& row : cases)
    {
        SCOPED_TRACE(row.description);
        WriteWholeFile(configuration.ConstraintsPath(), row.content);
        EXPECT_TRUE(Get() == row.line); // 10 MB would drown the output
    }
}

TEST_F(GetPlatformConstraints, ThePlatformsOwnLineEndIsNotStored)
{
    std::ofstream(configuration.ConstraintsPath()) << "memory=160k\nsecond line\n";
    EXPECT_EQ(Get(), "memory=160k");
}

TEST_F(GetPlatformConstraints, PathIsTakenAsItStands)
{
    const std::string path = configuration.Directory() + "/elsewhere";
    WriteWholeFile(path, "elsewhere\n");
    configuration.WriteXml("<keywords constraints='" + path + "'/>");
    EXPECT_EQ(Get(), "elsewhere");
}

TEST_P(GetPlatformConstraints, DamageFailsAndLeavesTheText)
{
    GetParam().inflict(configuration);
    std::string constraints = "old";
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), E_FAIL);
    EXPECT_EQ(constraints, "old");
    EXPECT_THAT(logger.lines, ElementsAre(GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(
    Damages, GetPlatformConstraints,
    testing::Values(
        Damage{"no attribute", [](auto& damaged) { damaged.ReplaceInXml(" constraints=", " Constraints="); },
               NotGot("GetPlatformConstraints", "constraints attribute")},
        Damage{"no file", [](auto& damaged) { std::filesystem::remove(damaged.ConstraintsPath()); }, ConstraintsNotOpened},
        Damage{"empty path", [](auto& damaged) { damaged.WriteXml("<keywords constraints=''/>"); }, ConstraintsNotOpened}),
    RowName());

} // namespace GetPlatformConstraintsTests
