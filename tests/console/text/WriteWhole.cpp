#include "console/text/WriteWhole.h"

#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <iterator>

namespace WriteWholeTests
{

namespace console = velox::console;
using console::ExitCode;

class WriteWhole : public testing::Test
{
protected:
    ~WriteWhole() override
    {
        console::ForgetInterruption();
    }

    std::filesystem::path File(const char8_t* name) const
    {
        return std::filesystem::path(folder.Path()) / std::u8string(name);
    }

    std::ptrdiff_t Entries() const
    {
        return std::distance(std::filesystem::directory_iterator(folder.Path()), {});
    }

    static std::string Content(const std::filesystem::path& file)
    {
        const std::vector<uint8_t> bytes = console::ReadWhole(file);
        return {bytes.begin(), bytes.end()};
    }

    static ExitCode Failure(const std::filesystem::path& file)
    {
        try
        {
            console::WriteWhole(file, std::string_view("new"));
        }
        catch (const console::CommandFailure& failure)
        {
            return failure.exitCode;
        }
        return ExitCode::Success;
    }

    TemporaryFolder folder;
};

TEST_F(WriteWhole, MakesANewFile)
{
    const auto file = File(u8"Müller model.bin");
    console::WriteWhole(file, std::string_view("a\r\nb\0c", 6));
    EXPECT_EQ(Content(file), std::string("a\r\nb\0c", 6));
    EXPECT_EQ(Entries(), 1);
}

TEST_F(WriteWhole, ReplacesAFile)
{
    const auto file = File(u8"model.bin");
    console::WriteWhole(file, std::string_view("a long former content"));
    console::WriteWhole(file, std::string_view("new"));
    EXPECT_EQ(Content(file), "new");
    EXPECT_EQ(Entries(), 1);
}

TEST_F(WriteWhole, WithoutAFolderNothingIsMade)
{
    EXPECT_EQ(Failure(File(u8"missing/model.bin")), ExitCode::WriteFailed);
    EXPECT_EQ(Entries(), 0);
}

TEST_F(WriteWhole, TheSystemsReasonIsSaid)
{
    try
    {
        console::WriteWhole(File(u8"missing/model.bin"), std::string_view("x"));
        ADD_FAILURE() << "it was written";
    }
    catch (const console::CommandFailure& failure)
    {
        const std::string message = failure.what();
        EXPECT_GT(message.size(), message.rfind(": ") + 5) << message;
        EXPECT_EQ(message.back(), '.');
    }
}

TEST_F(WriteWhole, WhenItCannotTakeItsPlaceNothingIsLeft)
{
    const auto file = File(u8"model.bin");
    std::filesystem::create_directory(file);
    console::WriteWhole(file / "inside", std::string_view("x"));
    EXPECT_EQ(Failure(file), ExitCode::WriteFailed);
    EXPECT_EQ(Entries(), 1);
    EXPECT_EQ(Content(file / "inside"), "x");
}

TEST_F(WriteWhole, AfterCtrlCTheFileIsAsItWas)
{
    const auto file = File(u8"model.bin");
    console::WriteWhole(file, std::string_view("former"));
    console::RequestInterruption();
    EXPECT_EQ(Failure(file), ExitCode::Interrupted);
    EXPECT_EQ(Content(file), "former");
    EXPECT_EQ(Entries(), 1);
}

TEST_F(WriteWhole, ReadingAFileThatIsNotThereIsBadInput)
{
    try
    {
        console::ReadWhole(File(u8"missing"));
        ADD_FAILURE() << "it was read";
    }
    catch (const console::CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::BadInput);
        EXPECT_FALSE(failure.fix.empty());
    }
}

} // namespace WriteWholeTests
