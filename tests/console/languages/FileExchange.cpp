#include "console/languages/FileExchange.h"

#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string_view>
#include <thread>

namespace FileExchangeTests
{

using testing::HasSubstr;
using namespace velox::console;
using namespace std::chrono_literals;

std::vector<uint8_t> Bytes(std::string_view text)
{
    return {text.begin(), text.end()};
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
    // In the way of what is written beside b.
    std::filesystem::create_directory(Path("b.velox-kws-new"));
    WriteWholeFile(Utf8(Path("b.velox-kws-new/file")), "content");
    {
        velox::console::FileExchange exchange(Path());
        exchange.Add("a", Bytes("new"));
        exchange.Add("b", Bytes("more"));
        EXPECT_THROW(exchange.PutInPlace(), CommandFailure);
        EXPECT_EQ(Content("a"), "new");
    }
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(Entries(), 2);
}

TEST_F(FileExchange, AFileElsewhereBelongsToItByItsWholePath)
{
    WriteWholeFile(Utf8(Path("config")), "old");
    {
        velox::console::FileExchange exchange(Path("models"));
        exchange.Add("a", Bytes("new"));
        exchange.Add(Path("config"), Bytes("new"));
        exchange.PutInPlace();
        EXPECT_EQ(Content("config"), "new");
    }
    EXPECT_EQ(Content("config"), "old");
    EXPECT_EQ(Entries(), 1);
}

TEST_F(FileExchange, WhatWasNeverPutInPlaceTouchesNothing)
{
    WriteWholeFile(Utf8(Path("a")), "old");
    {
        velox::console::FileExchange exchange(Path());
        exchange.Add("a", Bytes("new"));
    }
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(Entries(), 1);
}

TEST_F(FileExchange, FoldersThatWereMadeVanishUnlessAFileIsKept)
{
    {
        velox::console::FileExchange exchange(Path("x/y"));
        exchange.Add("a", Bytes("new"));
        exchange.PutInPlace();
        EXPECT_TRUE(std::filesystem::exists(Path("x/y/a")));
    }
    EXPECT_EQ(Entries(), 0);
    {
        velox::console::FileExchange kept(Path("x/y"));
        kept.Add("a", Bytes("new"));
        kept.PutInPlace();
        kept.Keep();
    }
    EXPECT_EQ(Content("x/y/a"), "new");
}

TEST_F(FileExchange, InterruptedItLeavesNothing)
{
    {
        velox::console::FileExchange exchange(Path("x"));
        exchange.Add("a", Bytes("new"));
        RequestInterruption();
        EXPECT_THROW(exchange.PutInPlace(), CommandFailure);
    }
    ForgetInterruption();
    EXPECT_EQ(Entries(), 0);
}

TEST_F(FileExchange, InterruptedWhenAllIsPlacedItComesBack)
{
    WriteWholeFile(Utf8(Path("a")), "old");
    {
        velox::console::FileExchange exchange(Path());
        exchange.Add("a", Bytes("new"));
        exchange.PutInPlace();
        RequestInterruption();
    }
    ForgetInterruption();
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(Entries(), 1);
}

TEST_F(FileExchange, ARunThatWasKilledBetweenTwoFilesIsUndoneByTheNextEvenIfThatFails)
{
    WriteWholeFile(Utf8(Path("a")), "new");
    WriteWholeFile(Utf8(Path("a.velox-kws-old")), "old");
    WriteWholeFile(Utf8(Path("b")), "old");
    WriteWholeFile(Utf8(Path("b.velox-kws-old")), "old");
    WriteWholeFile(Utf8(Path("b.velox-kws-new")), "ne");
    WriteWholeFile(Utf8(Path("c")), "new");
    WriteWholeFile(Utf8(Path(".velox-kws-journal")),
                   "placing\n-" + Utf8(Path("c")) + "\n+" + Utf8(Path("a")) + "\n+" + Utf8(Path("b")) + "\n");
    {
        const velox::console::FileExchange exchange(Path());
    }
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(Content("b"), "old");
    EXPECT_EQ(Entries(), 2);
}

TEST_F(FileExchange, WhatCannotBeUndoneStaysForTheNext)
{
    std::filesystem::create_directories(Path("a/in the way"));
    WriteWholeFile(Utf8(Path("a.velox-kws-old")), "old");
    WriteWholeFile(Utf8(Path(".velox-kws-journal")), "placing\n+" + Utf8(Path("a")) + "\n");
    EXPECT_THROW(const velox::console::FileExchange exchange(Path()), CommandFailure);
    EXPECT_EQ(Content("a.velox-kws-old"), "old");
    std::filesystem::remove_all(Path("a"));
    {
        const velox::console::FileExchange exchange(Path());
    }
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(Entries(), 1);
}

class FileExchangeLock : public FileExchange
{
};

TEST_F(FileExchangeLock, WhoeverCannotHaveItIsToldWhoHasIt)
{
    const auto lock = LockFile(Path("lock"));
    try
    {
        LockFile(Path("lock"), 50ms);
        ADD_FAILURE();
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::WriteFailed);
        EXPECT_THAT(failure.what(), HasSubstr("Another run is writing to " + Utf8(Path("lock").parent_path())));
        EXPECT_THAT(failure.what(), testing::ContainsRegex("process .* on .* since .* UTC"));
    }
    EXPECT_TRUE(std::filesystem::exists(Path("lock")));
}

TEST_F(FileExchangeLock, TheNextOneWaitsForIt)
{
    auto lock = LockFile(Path("lock"));
    std::jthread holder([&] {
        std::this_thread::sleep_for(200ms);
        lock.reset();
    });
    EXPECT_NE(LockFile(Path("lock"), 10s), nullptr);
}

TEST_F(FileExchangeLock, NothingIsLeftOfIt)
{
    LockFile(Path("x/y/lock")).reset();
    EXPECT_EQ(Entries(), 0);
    auto lock = LockFile(Path("x/y/lock"));
    WriteWholeFile(Utf8(Path("x/file")), "content");
    lock.reset();
    EXPECT_FALSE(std::filesystem::exists(Path("x/y")));
    EXPECT_EQ(ReadWholeFile(Utf8(Path("x/file"))), "content");
}

TEST_F(FileExchangeLock, AFileThatAKilledRunLeftKeepsNobodyOut)
{
    WriteWholeFile(Utf8(Path("lock")), "process 1 on a computer");
    EXPECT_NE(LockFile(Path("lock"), 0ms), nullptr);
    EXPECT_EQ(Entries(), 0);
}

TEST_F(FileExchangeLock, WhereNoFileCanBeMadeItFailsAtOnce)
{
    WriteWholeFile(Utf8(Path("file")), "content");
    for (const std::string name : {"file/lock", "file/below/lock"})
    {
        SCOPED_TRACE(name);
        try
        {
            LockFile(Path(name));
            ADD_FAILURE();
        }
        catch (const CommandFailure& failure)
        {
            EXPECT_THAT(failure.what(), HasSubstr("no file can be made in this folder"));
        }
    }
    EXPECT_EQ(ReadWholeFile(Utf8(Path("file"))), "content");
}

TEST_F(FileExchangeLock, WaitingCanBeInterrupted)
{
    const auto lock = LockFile(Path("lock"));
    RequestInterruption();
    EXPECT_THROW(LockFile(Path("lock")), CommandFailure);
    ForgetInterruption();
}

} // namespace FileExchangeTests
