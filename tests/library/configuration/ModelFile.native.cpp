#include "tests/library/configuration/Lines.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

namespace ModelFileFaultsTests
{

using namespace ConfigurationLines;
using testing::ElementsAre;

constexpr std::size_t Length = 54321;

class ModelFileFaults : public ReaderTest
{
protected:
    ModelFileFaults()
    {
        configuration.WriteFile("model.bin", std::string(Length, 'm'));
    }
    HRESULT Load(const std::string& directory, const std::string& fileName)
    {
        return PrivateAccess::LoadFile(reader, directory, fileName, &data, &size);
    }

    uint8_t mark = 0;
    uint8_t* data = &mark;
    uint32_t size = 4711;
};

TEST_F(ModelFileFaults, OneBlockOfExactlyTheFilesLengthIsAllocated)
{
    const FaultPlan plan(FaultPlan::From(1000, FallibleCall::NothrowAllocation));
    const AllocationCounter ofTheLength(Length);
    EXPECT_EQ(Load(configuration.Directory(), "model.bin"), S_OK);
    const std::unique_ptr<uint8_t[]> owner(data);
    EXPECT_EQ(ofTheLength.Calls(), 1U);
    EXPECT_EQ(plan.Calls(), 1U);
    EXPECT_EQ(size, Length);
}

TEST_F(ModelFileFaults, BlockThatCannotBeAllocatedLeavesNullAndNoSize)
{
    const FaultPlan plan(FaultPlan::Nth(1, FallibleCall::NothrowAllocation));
    EXPECT_EQ(Load(configuration.Directory(), "model.bin"), E_FAIL);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 4711U);
    EXPECT_THAT(logger.lines, ElementsAre(FileWithoutMemory("model.bin")));
}

TEST_F(ModelFileFaults, FileThatCannotBeOpenedLeavesTheOutputs)
{
    const FaultPlan plan(FaultPlan::Nth(1, FallibleCall::FileOpen));
    EXPECT_EQ(Load(configuration.Directory(), "model.bin"), E_FAIL);
    EXPECT_EQ(data, &mark);
    EXPECT_EQ(size, 4711U);
    EXPECT_THAT(logger.lines, ElementsAre(FileNotOpened("model.bin")));
}

TEST_F(ModelFileFaults, FileThatShrinksWhileItIsReadGivesZerosForWhatIsGone)
{
    const std::string path = configuration.Directory() + "\\model.bin";
    const AllocationCounter shrinking(Length, [&] { std::filesystem::resize_file(path, 3); });
    EXPECT_EQ(Load(configuration.Directory(), "model.bin"), S_OK);
    const std::unique_ptr<uint8_t[]> owner(data);
    ASSERT_EQ(size, Length);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(data), size), "mmm" + std::string(Length - 3, '\0'));
    EXPECT_THAT(logger.lines, testing::IsEmpty());
}

TEST_F(ModelFileFaults, DirectoryInsteadOfAFileFails)
{
    std::filesystem::create_directory(configuration.Directory() + "\\folder");
    EXPECT_EQ(Load(configuration.Directory(), "folder"), E_FAIL);
    EXPECT_EQ(size, 4711U);
    // What the end of a directory is differs from file system to file system: none, or one too far away for memory.
    ASSERT_EQ(logger.lines.size(), 1U);
    EXPECT_THAT(logger.lines.front(), testing::AnyOf(FileNotOpened("folder"), FileEmpty("folder"), FileWithoutMemory("folder")));
}

TEST_F(ModelFileFaults, PipeInsteadOfAFileFails)
{
    // A pipe has no end to seek to. Opened for writing, too, so that the open does not wait.
    const std::string pipe = configuration.Directory() + "\\pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int other = open(pipe.c_str(), O_RDWR);
    ASSERT_GE(other, 0);
    EXPECT_EQ(Load(configuration.Directory(), "pipe"), E_FAIL);
    close(other);
    EXPECT_EQ(data, &mark);
    EXPECT_EQ(size, 4711U);
    EXPECT_THAT(logger.lines, ElementsAre(FileNotOpened("pipe")));
}

} // namespace ModelFileFaultsTests
