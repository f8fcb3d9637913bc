// A thousand objects that are made, used and released; scripts/endure does it with a million, and with the other operations.
#include "library/configuration/ConfigurationReader.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/FileOpen.h"
#include "tests/support/LibraryHost.h"
#include "tests/support/Registry.h"
#include "tests/support/RegistryDouble.h"
#include "tests/support/ScriptedStream.h"
#include "tests/support/TaskMemory.h"
#include "tests/support/TestConfiguration.h"

#include <gmock/gmock.h>

namespace EnduranceFaultsTests
{

Answers ArmAndParse(const std::string& configurationFile)
{
    ScriptedStream empty;
    ScriptedStream enrolled("VWOV user's model");
    LibraryHost host(configurationFile);
    for (IStream* stream : {&empty, &enrolled})
    {
        host.Arm(stream);
        host.Parse(stream);
    }
    return host.Take();
}

TEST(Endurance, AThousandObjectsAnswerAlikeAndLoseTheirReadersOnlyKept)
{
    constexpr std::size_t Count = 1000;
    const TestConfiguration configuration;
    RemoveSettingsKey();
    const std::string path = configuration.Path();
    const Answers first = ArmAndParse(path);
    EXPECT_THAT(first.results, testing::ElementsAre(S_OK, S_OK, S_OK, S_OK));
    ASSERT_EQ(first.outputs.size(), 4U);
    EXPECT_THAT(first.outputs[0], testing::EndsWith("firmware 1033"));
    EXPECT_THAT(first.outputs[2], testing::EndsWith("VWOV user's model"));

    const std::size_t heap = AllocatedBytes();
    const std::size_t taskMemory = LiveTaskMemoryBlocks();
    for (std::size_t i = 0; i < Count && !testing::Test::HasFailure(); ++i)
    {
        EXPECT_EQ(ArmAndParse(path), first);
    }
    if (AllocatedBytesAreExact())
    {
        EXPECT_EQ(AllocatedBytes() - heap, Count * (sizeof(ConfigurationReader) + path.size() + 1));
    }
    EXPECT_EQ(LiveTaskMemoryBlocks(), taskMemory);
    EXPECT_EQ(OpenRegistryKeys(), 0U);
    EXPECT_EQ(OpenFiles(), 0U);
}

} // namespace EnduranceFaultsTests
