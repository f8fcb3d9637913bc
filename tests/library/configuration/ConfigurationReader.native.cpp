#include "tests/support/FaultInjector.h"
#include "tests/support/FileOpen.h"
#include "tests/support/ReaderOperations.h"
#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <map>
#include <new>

namespace ConfigurationReaderFaultsTests
{

class ConfigurationReaderFaults : public ReaderTest
{
protected:
    ~ConfigurationReaderFaults() override
    {
        CloseOpenFiles(); // TinyXML-2 loses the file that it has open when it gets no memory.
    }
};

TEST_F(ConfigurationReaderFaults, EveryOperationOpensItsFilesAnew)
{
    const std::map<std::string, uint64_t> opens{{"GetLanguagesCount", 1},       {"GetLanguagesIds", 1},
                                                {"IsLanguageSupported", 1},     {"GetPlatformConstraints", 2},
                                                {"GetEnrollmentParameters", 4}, {"GetPredefinedModel", 2},
                                                {"GetDetectionParameters", 4}}; // the user-defined threshold is read twice
    for (const ReaderOperation& operation : ReaderOperations())
    {
        for (int round = 0; round < 2; ++round)
        {
            SCOPED_TRACE(operation);
            ReaderOutputs outputs;
            const FaultPlan plan(FaultPlan::From(1000, FallibleCall::FileOpen));
            EXPECT_EQ(operation.run(reader, 1033, &outputs), S_OK);
            EXPECT_EQ(plan.Calls(), opens.at(operation.name));
        }
    }
}

TEST_F(ConfigurationReaderFaults, EveryFailedOpenIsLogged)
{
    for (const ReaderOperation& operation : ReaderOperations())
    {
        SCOPED_TRACE(operation);
        for (uint64_t n = 1;; ++n)
        {
            SCOPED_TRACE(n);
            ReaderOutputs outputs;
            const FaultPlan plan(FaultPlan::Nth(n, FallibleCall::FileOpen));
            const HRESULT result = operation.run(reader, 1033, &outputs);
            if (plan.Calls() < n)
            {
                EXPECT_EQ(result, S_OK);
                EXPECT_GT(n, 1U);
                break;
            }
            // The results of the first two model files are not looked at.
            const bool dropped = operation.name == "GetEnrollmentParameters" && (n == 2 || n == 3);
            EXPECT_EQ(result, dropped ? S_OK : E_FAIL);
            EXPECT_FALSE(logger.Take().empty());
        }
    }
}

TEST_F(ConfigurationReaderFaults, EveryFailedAllocationLeavesAsAnExceptionAndHarmsNothing)
{
    for (const ReaderOperation& operation : ReaderOperations())
    {
        SCOPED_TRACE(operation);
        for (uint64_t n = 1;; ++n)
        {
            SCOPED_TRACE(n);
            ReaderOutputs outputs;
            bool thrown = false;
            uint64_t calls = 0;
            {
                const FaultPlan plan(FaultPlan::Nth(n, FallibleCall::Allocation));
                try
                {
                    EXPECT_EQ(operation.run(reader, 1033, &outputs), S_OK);
                }
                catch (const std::bad_alloc&)
                {
                    thrown = true;
                }
                calls = plan.Calls();
            }
            if (calls < n)
            {
                EXPECT_FALSE(thrown);
                EXPECT_GT(n, 1U);
                break;
            }
            // A number's extraction swallows the exception, and its outcome is not examined: the threshold reads as 0.
            EXPECT_TRUE(thrown || operation.name == "GetDetectionParameters");
            ReaderOutputs again;
            EXPECT_EQ(operation.run(reader, 1033, &again), S_OK);
        }
    }
    EXPECT_THAT(logger.lines, testing::IsEmpty());
}

} // namespace ConfigurationReaderFaultsTests
