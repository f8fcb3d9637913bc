#include "console/text/WriteWhole.h"

#include "console/text/CommandFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <sys/resource.h>

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <iterator>

namespace WriteWholeFaultsTests
{

namespace console = velox::console;

/// A disk on which files hold so many bytes at most, while this lives: what does not fit is refused in the middle of a file, as
/// on a disk that is full.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes) : formerHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &former);
        const rlimit limit{bytes, former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &former);
        std::signal(SIGXFSZ, formerHandler);
    }

private:
    rlimit former{};
    void (*formerHandler)(int);
};

class WriteWholeFaults : public testing::Test
{
protected:
    std::ptrdiff_t Entries() const
    {
        return std::distance(std::filesystem::directory_iterator(folder.Path()), {});
    }

    TemporaryFolder folder;
    std::filesystem::path file = std::filesystem::path(folder.Path()) / "model.bin";
    const std::vector<uint8_t> former = std::vector<uint8_t>(100, 'f');
    const std::vector<uint8_t> next = std::vector<uint8_t>(20'000, 'n'); // more than one buffer of a stream
};

TEST_F(WriteWholeFaults, OnADiskThatFillsUpTheFileIsAsItWasAndTheNextWriteWorks)
{
    console::WriteWhole(file, former);
    for (const rlim_t room : {rlim_t{0}, rlim_t{1}, rlim_t{100}, rlim_t{8192}, rlim_t{19'999}})
    {
        SCOPED_TRACE(room);
        {
            const FullDisk disk(room);
            try
            {
                console::WriteWhole(file, next);
                ADD_FAILURE() << "it was written";
            }
            catch (const console::CommandFailure& failure)
            {
                EXPECT_EQ(failure.exitCode, console::ExitCode::WriteFailed);
                EXPECT_NE(std::string(failure.what()).find("File too large"), std::string::npos) << failure.what();
            }
        }
        EXPECT_EQ(console::ReadWhole(file), former);
        EXPECT_EQ(Entries(), 1);
    }
    console::WriteWhole(file, next);
    EXPECT_EQ(console::ReadWhole(file), next);
}

TEST_F(WriteWholeFaults, WhatAKilledRunLeftBesideTheFileIsReplaced)
{
    console::WriteWhole(file, former);
    std::ofstream(file.string() + ".velox-kws-new") << std::string(50'000, 'h');
    EXPECT_EQ(console::ReadWhole(file), former);
    console::WriteWhole(file, next);
    EXPECT_EQ(console::ReadWhole(file), next);
    EXPECT_EQ(Entries(), 1);
}

} // namespace WriteWholeFaultsTests
