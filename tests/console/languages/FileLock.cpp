#include "console/languages/FileLock.h"

#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <thread>

namespace
{

using testing::HasSubstr;
using namespace velox::console;
using namespace std::chrono_literals;

class FileLock : public testing::Test
{
protected:
    std::filesystem::path Path(const std::string& name) const
    {
        return PathFromUtf8(folder.Path()) / name;
    }
    std::ptrdiff_t Entries() const
    {
        return std::distance(std::filesystem::directory_iterator(PathFromUtf8(folder.Path())), {});
    }

    TemporaryFolder folder;
};

TEST_F(FileLock, WhoeverCannotHaveItIsToldWhoHasIt)
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

TEST_F(FileLock, TheNextOneWaitsForIt)
{
    auto lock = LockFile(Path("lock"));
    std::jthread holder([&] {
        std::this_thread::sleep_for(200ms);
        lock.reset();
    });
    EXPECT_NE(LockFile(Path("lock"), 10s), nullptr);
}

TEST_F(FileLock, NothingIsLeftOfIt)
{
    LockFile(Path("x/y/lock")).reset();
    EXPECT_EQ(Entries(), 0);
    auto lock = LockFile(Path("x/y/lock"));
    WriteWholeFile(Utf8(Path("x/file")), "content");
    lock.reset();
    EXPECT_FALSE(std::filesystem::exists(Path("x/y")));
    EXPECT_EQ(ReadWholeFile(Utf8(Path("x/file"))), "content");
}

TEST_F(FileLock, AFileThatAKilledRunLeftKeepsNobodyOut)
{
    WriteWholeFile(Utf8(Path("lock")), "process 1 on a computer");
    EXPECT_NE(LockFile(Path("lock"), 0ms), nullptr);
    EXPECT_EQ(Entries(), 0);
}

TEST_F(FileLock, WhereNoFileCanBeMadeItFailsAtOnce)
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

TEST_F(FileLock, WaitingCanBeInterrupted)
{
    const auto lock = LockFile(Path("lock"));
    RequestInterruption();
    EXPECT_THROW(LockFile(Path("lock")), CommandFailure);
    ForgetInterruption();
}

} // namespace
