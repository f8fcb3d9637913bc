#include "tests/support/MediaFoundation.h"

#include "tests/support/FaultInjector.h"

#include <mfapi.h>
#include <mferror.h>

#include <gtest/gtest.h>

namespace MediaFoundationFaultsTests
{

TEST(MediaFoundation, CountsTheMediaTypesThatLive)
{
    const std::size_t before = LiveMediaTypes();
    IMFMediaType* type = nullptr;
    ASSERT_EQ(MFCreateMediaType(&type), S_OK);
    EXPECT_EQ(type->AddRef(), 2U);
    EXPECT_EQ(type->Release(), 1U);
    EXPECT_EQ(LiveMediaTypes(), before + 1);
    EXPECT_EQ(type->Release(), 0U);
    EXPECT_EQ(LiveMediaTypes(), before);
}

TEST(MediaFoundation, KeepsTheSizeOfTheFormat)
{
    struct
    {
        WAVEFORMATEX format{};
        uint32_t more = 0;
    } longFormat;
    IMFMediaType* type = nullptr;
    ASSERT_EQ(MFCreateMediaType(&type), S_OK);
    EXPECT_EQ(WaveFormatSize(type), 0U);
    EXPECT_EQ(MFInitMediaTypeFromWaveFormatEx(type, &longFormat.format, sizeof(WAVEFORMATEX) + 2), S_OK);
    EXPECT_EQ(WaveFormatSize(type), 20U);
    type->Release();
}

TEST(MediaFoundation, FailsAsThePlanSays)
{
    const std::size_t before = LiveMediaTypes();
    IMFMediaType* type = nullptr;
    {
        const FaultPlan plan = FaultPlan::From(1, FallibleCall::CreateMediaType);
        EXPECT_EQ(MFCreateMediaType(&type), E_OUTOFMEMORY);
        EXPECT_EQ(type, nullptr);
        EXPECT_EQ(LiveMediaTypes(), before);
    }
    ASSERT_EQ(MFCreateMediaType(&type), S_OK);
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::InitMediaType);
    const WAVEFORMATEX format{};
    EXPECT_EQ(MFInitMediaTypeFromWaveFormatEx(type, &format, sizeof(format)), MF_E_INVALIDMEDIATYPE);
    EXPECT_EQ(WaveFormatSize(type), 0U);
    type->Release();
}

} // namespace MediaFoundationFaultsTests
