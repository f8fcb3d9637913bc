#include "tests/library/adapter/Lines.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/CapabilitiesOutputs.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/MediaFoundation.h"
#include "tests/support/TaskMemory.h"

#include <mferror.h>

#include <gmock/gmock.h>

#include <new>

namespace GetCapabilitiesFaultsTests
{

using namespace CapabilityLines;
using testing::IsEmpty;

class GetCapabilitiesFaults : public AdapterTest
{
protected:
    CapabilitiesOutputs outputs;
    const std::size_t blocksBefore = LiveTaskMemoryBlocks();
    const std::size_t mediaTypesBefore = LiveMediaTypes();
};

TEST_F(GetCapabilitiesFaults, SuccessLeavesTwoBuffersAndOneMediaType)
{
    EXPECT_EQ(outputs.Get(adapter), S_OK);
    EXPECT_EQ(LiveTaskMemoryBlocks(), blocksBefore + 2);
    EXPECT_EQ(LiveMediaTypes(), mediaTypesBefore + 1);
    EXPECT_EQ(WaveFormatSize(outputs.audioFormat), 18U);
}

TEST_F(GetCapabilitiesFaults, NoKeywordBuffer)
{
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::TaskMemory);
    EXPECT_EQ(outputs.Get(adapter), E_OUTOFMEMORY);
    EXPECT_EQ(outputs.keywordIds, nullptr);
    EXPECT_EQ(outputs.keywordCount, CapabilitiesOutputs::Untouched);
    EXPECT_FALSE(outputs.LanguageIdsWritten());
    EXPECT_EQ(outputs.languageCount, CapabilitiesOutputs::Untouched);
    EXPECT_EQ(outputs.supportsUserModels, CapabilitiesOutputs::Untouched);
    EXPECT_EQ(outputs.audioFormat, nullptr);
    EXPECT_EQ(LiveTaskMemoryBlocks(), blocksBefore);
    EXPECT_EQ(logger.lines, Entry + NoKeywordBuffer);
}

TEST_F(GetCapabilitiesFaults, NoLanguageBufferFreesTheKeywordBufferAndKeepsItsAddress)
{
    uint32_t* keywordIds = nullptr;
    logger.onLine = [&](const LogLine& line) {
        if (line == Supported(2))
        {
            keywordIds = outputs.keywordIds;
        }
    };
    const FaultPlan plan = FaultPlan::Nth(2, FallibleCall::TaskMemory);
    EXPECT_EQ(outputs.Get(adapter), E_OUTOFMEMORY);
    EXPECT_NE(keywordIds, nullptr);
    EXPECT_EQ(outputs.keywordIds, keywordIds);
    EXPECT_EQ(outputs.keywordCount, 1U);
    EXPECT_EQ(outputs.languageIds, nullptr);
    EXPECT_EQ(outputs.languageCount, CapabilitiesOutputs::Untouched);
    EXPECT_EQ(outputs.supportsUserModels, CapabilitiesOutputs::Untouched);
    EXPECT_EQ(outputs.audioFormat, nullptr);
    EXPECT_EQ(LiveTaskMemoryBlocks(), blocksBefore);
    EXPECT_EQ(logger.lines, Entry + Supported(2) + NoLanguageBuffer);
    outputs.keywordIds = nullptr;
}

TEST_F(GetCapabilitiesFaults, NoLanguageBufferFailsWithoutLanguagesToo)
{
    configuration.WriteLanguages("");
    const FaultPlan plan = FaultPlan::Nth(2, FallibleCall::TaskMemory);
    EXPECT_EQ(outputs.Get(adapter), E_OUTOFMEMORY);
    EXPECT_EQ(LiveTaskMemoryBlocks(), blocksBefore);
    EXPECT_EQ(logger.lines, Entry + Supported(0) + NoLanguageBuffer);
    outputs.keywordIds = nullptr;
}

// Kept: the result is Media Foundation's, and the log says success.
TEST_F(GetCapabilitiesFaults, AFailedMediaTypeGivesItsCodeAndStillLogsSuccess)
{
    const std::pair<FallibleCall, HRESULT> cases[]{{FallibleCall::CreateMediaType, E_OUTOFMEMORY},
                                                   {FallibleCall::InitMediaType, MF_E_INVALIDMEDIATYPE}};
    for (const auto& [call, result] : cases)
    {
        SCOPED_TRACE(result);
        CapabilitiesOutputs stored;
        const FaultPlan plan = FaultPlan::From(1, call);
        EXPECT_EQ(stored.Get(adapter), result);
        EXPECT_EQ(stored.supportsUserModels, 1);
        EXPECT_EQ(stored.keywordIds[0], 1U);
        EXPECT_EQ(stored.keywordCount, 1U);
        EXPECT_EQ(stored.languageIds[0], 1033);
        EXPECT_EQ(stored.languageIds[1], 1040);
        EXPECT_EQ(stored.languageCount, 2U);
        EXPECT_EQ(stored.audioFormat, nullptr);
        EXPECT_EQ(LiveTaskMemoryBlocks(), blocksBefore + 2);
        EXPECT_EQ(LiveMediaTypes(), mediaTypesBefore);
        EXPECT_EQ(logger.Take(), Entry + Supported(2) + Success);
    }
}

TEST_F(GetCapabilitiesFaults, AFailedReadLeavesWhatWasAllocated)
{
    configuration.ReplaceInXml("id=\"1040\"", "");
    EXPECT_EQ(outputs.Get(adapter), E_FAIL);
    EXPECT_EQ(LiveTaskMemoryBlocks(), blocksBefore + 2);

    CapabilitiesOutputs second;
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::FileOpen);
    EXPECT_EQ(second.Get(adapter), E_FAIL);
    EXPECT_EQ(LiveTaskMemoryBlocks(), blocksBefore + 3);
    EXPECT_EQ(LiveMediaTypes(), mediaTypesBefore);
}

TEST_F(GetCapabilitiesFaults, NullOutputsAllocateNothing)
{
    EXPECT_EQ(adapter.GetCapabilities(&outputs.supportsUserModels, &outputs.keywordIds, &outputs.keywordCount,
                                      &outputs.languageIds, &outputs.languageCount, nullptr),
              E_POINTER);
    EXPECT_EQ(LiveTaskMemoryBlocks(), blocksBefore);
}

TEST_F(GetCapabilitiesFaults, NoMemoryForALogTextPassesToTheCaller)
{
    {
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::Allocation);
        EXPECT_THROW(outputs.Get(adapter), std::bad_alloc);
    }
    EXPECT_FALSE(outputs.KeywordIdsWritten());
    EXPECT_THAT(logger.lines, IsEmpty());
}

} // namespace GetCapabilitiesFaultsTests
