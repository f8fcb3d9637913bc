#include "console/languages/FileExchange.h"

#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace
{

using namespace velox::console;

std::span<const uint8_t> Bytes(std::string_view text)
{
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

class FileExchange : public testing::Test
{
protected:
    std::filesystem::path Path(const std::string& name = "") const
    {
        return PathFromUtf8(folder.Path()) / name;
    }
    std::string Content(const std::string& name) const
    {
        return ReadWholeFile(Utf8(Path(name)));
    }
    std::ptrdiff_t Entries() const
    {
        return std::distance(std::filesystem::directory_iterator(Path()), {});
    }

    TemporaryFolder folder;
};

TEST_F(FileExchange, FilesStandThereOnceTheyAreKept)
{
    WriteWholeFile(Utf8(Path("a")), "old");
    {
        velox::console::FileExchange exchange(Path());
        exchange.Add("a", Bytes("new"));
        exchange.Add("b", Bytes("more"));
        EXPECT_EQ(Content("a"), "old");
        exchange.PutInPlace();
        exchange.Keep();
    }
    EXPECT_EQ(Content("a"), "new");
    EXPECT_EQ(Content("b"), "more");
    EXPECT_EQ(Entries(), 2);
}

TEST_F(FileExchange, WhatIsNotKeptIsUndone)
{
    WriteWholeFile(Utf8(Path("a")), "old");
    {
        velox::console::FileExchange exchange(Path());
        exchange.Add("a", Bytes("new"));
        exchange.Add("b", Bytes("more"));
        exchange.PutInPlace();
    }
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(Entries(), 1);
}

TEST_F(FileExchange, AFailureInTheMiddleIsUndone)
{
    WriteWholeFile(Utf8(Path("a")), "old");
    {
        velox::console::FileExchange exchange(Path());
        exchange.Add("a", Bytes("new"));
        exchange.Add("b", Bytes("more"));
        std::filesystem::remove(Path(".velox-kws-new") / "b");
        try
        {
            exchange.PutInPlace();
            ADD_FAILURE();
        }
        catch (const CommandFailure& failure)
        {
            EXPECT_EQ(failure.exitCode, ExitCode::WriteFailed);
        }
    }
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(Entries(), 1);
}

TEST_F(FileExchange, FoldersThatWereMadeVanishUnlessTheyAreKept)
{
    {
        const velox::console::FileExchange exchange(Path("x/y"));
        EXPECT_TRUE(std::filesystem::exists(Path("x/y")));
    }
    EXPECT_EQ(Entries(), 0);
    velox::console::FileExchange kept(Path("x/y"));
    kept.Keep();
    EXPECT_TRUE(std::filesystem::is_empty(Path("x/y")));
}

TEST_F(FileExchange, AFileInTheFoldersPlaceIsAFailure)
{
    WriteWholeFile(Utf8(Path("file")), "content");
    for (const std::string name : {"file", "file/below"})
    {
        SCOPED_TRACE(name);
        EXPECT_THROW(velox::console::FileExchange(Path(name)), CommandFailure);
    }
    EXPECT_EQ(Content("file"), "content");
}

TEST_F(FileExchange, InterruptedItLeavesNothing)
{
    {
        velox::console::FileExchange exchange(Path("x"));
        RequestInterruption();
        EXPECT_THROW(exchange.Add("a", Bytes("new")), CommandFailure);
    }
    ForgetInterruption();
    EXPECT_EQ(Entries(), 0);
}

TEST_F(FileExchange, WhatAKilledRunLeftIsClearedAway)
{
    std::filesystem::create_directories(Path(".velox-kws-new"));
    WriteWholeFile(Utf8(Path(".velox-kws-new/half")), "x");
    velox::console::FileExchange exchange(Path());
    exchange.PutInPlace();
    exchange.Keep();
    EXPECT_EQ(Entries(), 0);
}

} // namespace
