#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/Registry.h"
#include "tests/support/RegistryDouble.h"

#include <gmock/gmock.h>

#include <new>
#include <stdexcept>
#include <string>

namespace VeloxKeywordDetectorAdapterImplFaultsTests
{

using KeywordDetectorAdapterImplementation::CreateKeywordDetectorAdapterImpl;
using KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl;

std::unique_ptr<IVeloxKeywordDetectorAdapterImpl> MakeAdapter(RecordingLogger& logger)
{
    return std::unique_ptr<IVeloxKeywordDetectorAdapterImpl>(
        CreateKeywordDetectorAdapterImpl(&logger, "a-path-that-needs-storage-of-its-own.xml", "1.2.3", GUID{}).release());
}

// Logger calls of a construction: two registry lines, two setters, the constructor's line.
constexpr int LoggerCalls = 5;

void ConstructWithLoggerThatThrowsAt(int failing)
{
    RecordingLogger logger;
    int calls = 0;
    logger.onLine = [&](const LogLine&) {
        if (++calls == failing)
        {
            throw std::runtime_error("refused");
        }
    };
    EXPECT_THROW(MakeAdapter(logger), std::runtime_error);
    EXPECT_EQ(calls, failing);
}

TEST(VeloxKeywordDetectorAdapterImplFaults, AThrowingLoggerLeavesNothingAllocatedOrOpen)
{
    WriteSettingsDword(L"LoggerLevel", 1);
    ConstructWithLoggerThatThrowsAt(1);
    for (int failing = 1; failing <= LoggerCalls; ++failing)
    {
        SCOPED_TRACE(failing);
        const std::size_t before = AllocatedBytes();
        ConstructWithLoggerThatThrowsAt(failing);
        EXPECT_EQ(AllocatedBytes(), before);
        EXPECT_EQ(OpenRegistryKeys(), 0U);
    }
    RemoveSettingsKey();
}

/// Null when the n-th throwing allocation of a construction fails and passes to the caller.
std::unique_ptr<IVeloxKeywordDetectorAdapterImpl> MakeAdapterWithoutAllocation(RecordingLogger& logger, uint64_t n)
{
    const std::string path = "a-path-that-needs-storage-of-its-own.xml";
    const std::string version = "1.2.3";
    const FaultPlan plan = FaultPlan::Nth(n, FallibleCall::Allocation);
    try
    {
        return std::unique_ptr<IVeloxKeywordDetectorAdapterImpl>(
            CreateKeywordDetectorAdapterImpl(&logger, path, version, GUID{}).release());
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

TEST(VeloxKeywordDetectorAdapterImplFaults, AFailedAllocationLeavesNothingAllocated)
{
    uint64_t failures = 0;
    for (bool made = false; !made;)
    {
        SCOPED_TRACE(failures);
        const std::size_t before = AllocatedBytes();
        {
            RecordingLogger logger;
            made = MakeAdapterWithoutAllocation(logger, failures + 1) != nullptr;
        }
        EXPECT_EQ(AllocatedBytes(), before);
        failures += made ? 0 : 1;
    }
    EXPECT_EQ(failures, 2U) << "the adapter, and the reader's copy of the path";
}

TEST(VeloxKeywordDetectorAdapterImplFaults, TheReaderComesFromTheNothrowNew)
{
    RecordingLogger logger;
    uint64_t calls = 0;
    {
        const FaultPlan plan = FaultPlan::Nth(100, FallibleCall::NothrowAllocation);
        const auto adapter = MakeAdapter(logger);
        calls = plan.Calls();
    }
    EXPECT_EQ(calls, 1U);
}

void ConstructWithoutReader()
{
    RecordingLogger logger;
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
    MakeAdapter(logger);
}

// Kept.
TEST(VeloxKeywordDetectorAdapterImplFaults, AReaderThatCannotBeAllocatedIsNotTestedFor)
{
    EXPECT_DEATH(ConstructWithoutReader(), "");
}

TEST(VeloxKeywordDetectorAdapterImplFaults, DestructionReleasesTheReaderOnce)
{
    const std::size_t before = AllocatedBytes();
    {
        RecordingLogger logger;
        const auto adapter = MakeAdapter(logger);
        EXPECT_GT(AllocatedBytes(), before + sizeof(VeloxKeywordDetectorAdapterImpl) + sizeof(ConfigurationReader));
    }
    EXPECT_EQ(AllocatedBytes(), before);
}

} // namespace VeloxKeywordDetectorAdapterImplFaultsTests
