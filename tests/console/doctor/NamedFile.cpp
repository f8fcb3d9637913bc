#include "console/doctor/NamedFile.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>

using namespace velox::console;
using testing::HasSubstr;

TEST(NamedFile, AFileIsReadWhole)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path() + "/threshold.txt";
    WriteWholeFile(path, "100");
    const NamedFile file = ReadNamedFile(path);
    EXPECT_TRUE(file.readable);
    EXPECT_EQ(file.path, path);
    EXPECT_EQ(file.size, 3U);
    EXPECT_EQ(file.bytes, (std::vector<uint8_t>{'1', '0', '0'}));
}

TEST(NamedFile, AFileBeyondTheBoundIsMeasuredOnly)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path() + "/large.bin";
    WriteWholeFile(path, "x");
    std::filesystem::resize_file(path, NamedFile::LargestInspected + 1);
    const NamedFile file = ReadNamedFile(path);
    EXPECT_TRUE(file.readable);
    EXPECT_EQ(file.size, NamedFile::LargestInspected + 1);
    EXPECT_TRUE(file.bytes.empty());
}

TEST(NamedFile, WhyItCannotBeReadIsTold)
{
    const TemporaryFolder folder;
    const struct
    {
        std::string path;
        std::string why;
    } cases[]{{folder.Path() + "/none.bin", "does not exist"},
              {folder.Path(), "is a folder"},
              {folder.Path() + "/f\xC3\xBCr.bin", "characters beyond ASCII"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.path);
        EXPECT_FALSE(ReadNamedFile(own.path).readable);
        const Absence absence = WhyNotReadable(own.path);
        EXPECT_THAT(absence.why, HasSubstr(own.why));
        EXPECT_NE(absence.fix, "");
    }
}

TEST(NamedFile, DrivesAndSharesAreWholePaths)
{
    for (const std::string_view path : {"C:\\a.bin", "c:/a.bin", "\\\\server\\a.bin", "//server/a.bin"})
    {
        EXPECT_TRUE(IsAbsolute(path)) << path;
    }
    for (const std::string_view path : {"", "a.bin", "C:", "C:a.bin", "models\\a.bin", "1:\\a.bin"})
    {
        EXPECT_FALSE(IsAbsolute(path)) << path;
    }
}

TEST(NamedFile, AsciiEndsAt127)
{
    EXPECT_TRUE(IsAscii("a\x7F"));
    EXPECT_FALSE(IsAscii("a\x80"));
}
