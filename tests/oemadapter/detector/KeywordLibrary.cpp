#include "oemadapter/detector/KeywordLibrary.h"

#include "oemadapter/windows/ProvisionalResultCodes.h"
#include "tests/oemadapter/support/LibraryTest.h"

#include <array>

namespace KeywordLibraryTests
{

using testing::ElementsAre;
using velox::oemadapter::Capabilities;

class KeywordLibrary : public LibraryTest
{
protected:
    HRESULT Verify()
    {
        return Call([](velox::oemadapter::KeywordLibrary& mended) { return mended.Verify(1033, -1, nullptr); });
    }

    HRESULT Compute(IStream* stream)
    {
        const int32_t end = 0;
        IMFMediaBuffer* recording = nullptr;
        return Call([&](velox::oemadapter::KeywordLibrary& mended) {
            return mended.Compute(stream, {1, 1033}, &end, &recording, 1);
        });
    }
};

TEST_F(KeywordLibrary, IsMadeForTheDetectorWithTheConfigurationAndAVersion)
{
    library.calls.clear();
    detector->RemoveUser();
    Restart();
    EXPECT_EQ(detector->AddUser(), S_OK);
    ASSERT_EQ(library.calls.size(), 1U);
    EXPECT_TRUE(library.calls[0].starts_with("Create(C:\\Velox\\configuration.xml, VeloxOemAdapter "));
    EXPECT_EQ(library.detectorId, (GUID{0x3B0E9B6C, 0x5C1D, 0x4A57, {0x8E, 0x07, 0x61, 0xC2, 0xA9, 0x4D, 0x7F, 0x25}}));
}

TEST_F(KeywordLibrary, EndsThroughItsDestructorAndNotThroughTheFactorysDeleter)
{
    detector.reset();
    EXPECT_THAT(library.calls, ElementsAre("~"));
}

TEST_F(KeywordLibrary, SaysWhetherTheLibraryTakesUserModels)
{
    library.supportsUserModels = 0;
    Capabilities capabilities;
    ASSERT_EQ(Call([&](auto& mended) { return mended.GetCapabilities(&capabilities); }), S_OK);
    EXPECT_FALSE(capabilities.supportsUserModels);
}

TEST_F(KeywordLibrary, HandsCapabilitiesOnAndOwnsThem)
{
    Capabilities capabilities;
    ASSERT_EQ(Call([&](auto& mended) { return mended.GetCapabilities(&capabilities); }), S_OK);
    EXPECT_TRUE(capabilities.supportsUserModels);
    ASSERT_EQ(capabilities.keywordCount, 1U);
    EXPECT_EQ(*capabilities.keywordIds, 1U);
    ASSERT_EQ(capabilities.languageCount, 2U);
    EXPECT_EQ(capabilities.languageIds.get()[1], 1040);
    EXPECT_NE(capabilities.audioFormat, nullptr);
    EXPECT_TRUE(capabilities.HasLanguage(1033));
    EXPECT_FALSE(capabilities.HasLanguage(1031));
}

TEST_F(KeywordLibrary, NoCapabilitiesHaveNoLanguage)
{
    EXPECT_FALSE(Capabilities().HasLanguage(0));
}

struct CapabilitiesFailure
{
    const char* description;
    CapabilitiesEnd end;
    HRESULT result;
};

constexpr CapabilitiesFailure CapabilitiesFailures[] = {
    {"no keywords", CapabilitiesEnd::NoKeywords, E_OUTOFMEMORY},   {"no configuration", CapabilitiesEnd::NoConfiguration, E_FAIL},
    {"no languages", CapabilitiesEnd::NoLanguages, E_OUTOFMEMORY}, {"bad language", CapabilitiesEnd::BadLanguage, E_FAIL},
    {"no format", CapabilitiesEnd::NoFormat, E_OUTOFMEMORY},       {"exception", CapabilitiesEnd::Exception, GenFailure},
};

/// Natively the balance of task memory and the sanitizer tell of a block that is lost, or freed twice.
TEST_F(KeywordLibrary, RepairOfGetCapabilitiesFreesWhatThereIsAndNoDanglingPointer)
{
    for (const CapabilitiesFailure& failure : CapabilitiesFailures)
    {
        SCOPED_TRACE(failure.description);
        library.capabilitiesEnd = failure.end;
        const std::size_t before = LivePlatformObjects();
        Capabilities capabilities;
        EXPECT_EQ(Call([&](auto& mended) { return mended.GetCapabilities(&capabilities); }), failure.result);
        EXPECT_EQ(capabilities.keywordIds, nullptr);
        EXPECT_EQ(capabilities.languageIds, nullptr);
        EXPECT_EQ(capabilities.audioFormat, nullptr);
        EXPECT_EQ(capabilities.keywordCount, 0U);
        EXPECT_EQ(LivePlatformObjects(), before);
    }
}

TEST_F(KeywordLibrary, RepairOfVerifyFailureWithoutALineIsNoMatch)
{
    library.results["VerifyUserKeyword"] = E_FAIL;
    library.lines["VerifyUserKeyword"] = {2, 3, 4, 5};
    EXPECT_EQ(Verify(), E_NO_MATCH);
}

TEST_F(KeywordLibrary, RepairOfVerifyFailureWithALineIsAFailure)
{
    library.results["VerifyUserKeyword"] = E_FAIL;
    library.lines["VerifyUserKeyword"] = {4, 1};
    EXPECT_EQ(Verify(), GenFailure);
}

TEST_F(KeywordLibrary, RepairOfVerifyHoldsWhateverIsShown)
{
    library.level = 0;
    NextProcess();
    library.results["VerifyUserKeyword"] = E_FAIL;
    library.lines["VerifyUserKeyword"] = {1};
    EXPECT_EQ(Verify(), GenFailure);
}

TEST_F(KeywordLibrary, RepairOfVerifyLooksAtThisCallsLinesOnly)
{
    library.results["VerifyUserKeyword"] = E_FAIL;
    library.lines["VerifyUserKeyword"] = {1};
    EXPECT_EQ(Verify(), GenFailure);
    library.lines.clear();
    EXPECT_EQ(Verify(), E_NO_MATCH);
}

TEST_F(KeywordLibrary, VerifyHandsTheOtherResultsOn)
{
    for (const HRESULT result : {S_OK, E_INVALIDARG, E_OUTOFMEMORY})
    {
        library.results["VerifyUserKeyword"] = result;
        EXPECT_EQ(Verify(), result);
    }
}

TEST_F(KeywordLibrary, RepairOfComputeFailureIsAFailure)
{
    library.results["ComputeAndAddUserModelData"] = E_FAIL;
    EXPECT_EQ(Compute(empty.get()), GenFailure);
}

TEST_F(KeywordLibrary, RepairOfComputeModelThatDidNotReachTheStreamIsAFailure)
{
    library.lines["ComputeAndAddUserModelData"] = {4, 2};
    EXPECT_EQ(Compute(empty.get()), GenFailure);
}

TEST_F(KeywordLibrary, ATakeThatTheEngineRefusedIsNoFailureOfComputeWhereOthersMadeTheModel)
{
    library.lines["ComputeAndAddUserModelData"] = {2};
    library.lineOfLevel2 = "VWoVFinalizeEnrollmentUtterance failed!";
    EXPECT_EQ(Compute(empty.get()), S_OK);
}

TEST_F(KeywordLibrary, ComputeHandsTheOtherResultsOn)
{
    library.lines["ComputeAndAddUserModelData"] = {3, 4, 5};
    EXPECT_EQ(Compute(empty.get()), S_OK);
    library.lines["ComputeAndAddUserModelData"] = {1, 2};
    EXPECT_EQ(Compute(nullptr), E_INVALIDARG);
    library.results["ComputeAndAddUserModelData"] = E_OUTOFMEMORY;
    EXPECT_EQ(Compute(empty.get()), E_OUTOFMEMORY);
}

} // namespace KeywordLibraryTests
