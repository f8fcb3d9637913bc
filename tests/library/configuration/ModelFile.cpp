#include "tests/library/configuration/Lines.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <memory>

namespace ModelFileTests
{

using namespace ConfigurationLines;
using testing::ElementsAre;
using testing::IsEmpty;

class ModelFile : public ReaderTest
{
protected:
    HRESULT Load(const std::string& fileName, uint8_t** data, uint32_t* size)
    {
        return PrivateAccess::LoadFile(reader, configuration.Directory(), fileName, data, size);
    }

    /// The bytes that a load gives.
    std::string LoadedBytes(const std::string& directory, const std::string& fileName)
    {
        uint8_t* data = nullptr;
        uint32_t size = 0;
        EXPECT_EQ(PrivateAccess::LoadFile(reader, directory, fileName, &data, &size), S_OK);
        const std::unique_ptr<uint8_t[]> owner(data);
        return {reinterpret_cast<const char*>(data), size};
    }
};

TEST_F(ModelFile, GivesEveryByteAsItIs)
{
    const std::string_view contents[]{"x", std::string_view("\0", 1), std::string_view("a\r\nb\n\x1a\0\xff", 8), "\xef\xbb\xbf"};
    for (const std::string_view content : contents)
    {
        SCOPED_TRACE(testing::PrintToString(content));
        configuration.WriteFile("model.bin", content);
        EXPECT_EQ(LoadedBytes(configuration.Directory(), "model.bin"), content);
    }
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(ModelFile, GivesAHundredMegabytes)
{
    std::string content(100 << 20, '\0');
    for (std::size_t i = 0; i < content.size(); i += 4093)
    {
        content[i] = static_cast<char>(i / 4093);
    }
    content.back() = 'z';
    configuration.WriteFile("model.bin", content);
    EXPECT_TRUE(LoadedBytes(configuration.Directory(), "model.bin") == content); // not to print them
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(ModelFile, SizeMayBeNull)
{
    configuration.WriteFile("model.bin", "abc");
    uint8_t* data = nullptr;
    EXPECT_EQ(Load("model.bin", &data, nullptr), S_OK);
    const std::unique_ptr<uint8_t[]> owner(data);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(data), 3), "abc");
}

TEST_F(ModelFile, FailureLeavesTheOutputsAndLogsTheNameAsItWasGiven)
{
    configuration.WriteFile("empty.bin", "");
    configuration.WriteFile("model.bin", "abc");
    const std::string directory = configuration.Directory();
    const std::string absolute = directory + "\\model.bin";
    struct Case
    {
        std::string directory, fileName;
        LogLine line;
    };
    for (const Case& row :
         {Case{directory, "empty.bin", FileEmpty("empty.bin")}, Case{directory, "absent.bin", FileNotOpened("absent.bin")},
          Case{directory + "-absent", "kp_1033.bin", FileNotOpened("kp_1033.bin")},
          Case{directory, "100%s%n.bin", FileNotOpened("100%s%n.bin")}, Case{directory, "", FileNotOpened("")},
          Case{directory, absolute, FileNotOpened(absolute)}})
    {
        SCOPED_TRACE(row.fileName);
        uint8_t mark = 0;
        uint8_t* data = &mark;
        uint32_t size = 4711;
        EXPECT_EQ(PrivateAccess::LoadFile(reader, row.directory, row.fileName, &data, &size), E_FAIL);
        EXPECT_EQ(data, &mark);
        EXPECT_EQ(size, 4711U);
        EXPECT_THAT(logger.Take(), ElementsAre(row.line));
    }
}

TEST_F(ModelFile, TrailingSeparatorOfTheDirectoryIsDoubled)
{
    const std::string directory = configuration.Directory() + "\\";
    WriteWholeFile(directory + "\\model.bin", "abc");
    EXPECT_EQ(LoadedBytes(directory, "model.bin"), "abc");
}

TEST_F(ModelFile, BlockThatIsThereAlreadyIsDroppedNotReleasedIsKept)
{
    configuration.WriteFile("model.bin", "first");
    uint8_t* data = nullptr;
    ASSERT_EQ(Load("model.bin", &data, nullptr), S_OK);
    const std::unique_ptr<uint8_t[]> dropped(data); // the test's own hold; the library's is lost below

    configuration.WriteFile("model.bin", "other");
    ASSERT_EQ(Load("model.bin", &data, nullptr), S_OK);
    const std::unique_ptr<uint8_t[]> owner(data);
    EXPECT_NE(owner, dropped);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(dropped.get()), 5), "first");
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(owner.get()), 5), "other");
}

} // namespace ModelFileTests
