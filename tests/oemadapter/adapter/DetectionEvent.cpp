#include "oemadapter/adapter/DetectionEvent.h"

#include <gtest/gtest.h>

namespace DetectionEventTests
{

namespace oem = velox::oemadapter;

TEST(DetectionEvent, IsThatOfTheSettings)
{
    oem::AdapterSettings settings;
    settings.eventName = std::u16string(99, u'x');
    const DETECTIONEVENT event = oem::MakeEvent(settings);
    EXPECT_EQ(event.EventId, settings.eventId);
    EXPECT_EQ(event.ProviderId, settings.eventProviderId);
    EXPECT_EQ(event.EventFeatures, EVENTFEATURES_UserTraining);
    EXPECT_EQ(event.DisplayName[98], u'x');
    EXPECT_EQ(event.DisplayName[99], 0);
    EXPECT_EQ(event.UserModelValid, TRUE);
}

TEST(DetectionEvent, IsKnownByBothItsIds)
{
    const oem::AdapterSettings settings;
    DETECTIONEVENT event = oem::MakeEvent(settings);
    EXPECT_TRUE(oem::IsOurs(event, settings));
    event.EventId.Data1 ^= 1U;
    EXPECT_FALSE(oem::IsOurs(event, settings));
    event = oem::MakeEvent(settings);
    event.ProviderId.Data4[7] ^= 1U;
    EXPECT_FALSE(oem::IsOurs(event, settings));
}

TEST(DetectionEvent, SelectorTellsWhatWasDetectedAndForWhomItWasArmed)
{
    oem::DetectorContents inside;
    inside.lastArming = {.language = 1033, .userId = 42, .armed = TRUE};
    const DETECTIONEVENTSELECTOR selector = oem::MakeSelector({.keywordId = 1, .languageId = 1040, .isUserMatch = FALSE}, inside);
    EXPECT_EQ(selector.Event.EventId, inside.settings.eventId);
    EXPECT_EQ(selector.Event.UserModelValid, FALSE);
    EXPECT_EQ(selector.LangId, 1040);
    EXPECT_EQ(selector.UserId, 42U);
    EXPECT_EQ(selector.Armed, TRUE);
}

TEST(DetectionEvent, ConfidenceIsTheScoresShareOfTheLargest)
{
    for (const auto& [high, low, confidence] : {std::tuple<uint8_t, uint8_t, float>{0, 0, 0.0F},
                                                {0x7F, 0x80, 0.5F},
                                                {0x33, 0x00, 0.2F},
                                                {0xFF, 0x00, 1.0F},
                                                {0xFF, 0xFF, 1.0F}})
    {
        DetectionResult result{};
        result.KpdScore[0] = high;
        result.KpdScore[1] = low;
        const EVENTACTION action = oem::MakeAction({.keywordId = 1}, result);
        EXPECT_EQ(action.EventActionType, EVENTACTIONTYPE_Accept);
        EXPECT_EQ(action.EventActionContextType, EVENTACTIONCONTEXTTYPE_Confidence);
        EXPECT_FLOAT_EQ(action.EventActionContext.ConfidenceValue, confidence);
    }
}

TEST(DetectionEvent, AnotherKeywordIsRejected)
{
    DetectionResult result{};
    result.KpdScore[0] = 0xFF;
    const EVENTACTION action = oem::MakeAction({.keywordId = 0}, result);
    EXPECT_EQ(action.EventActionType, EVENTACTIONTYPE_Reject);
    EXPECT_EQ(action.EventActionContextType, EVENTACTIONCONTEXTTYPE_None);
}

TEST(DetectionEvent, AnErrorHasItsCode)
{
    const EVENTACTION action = oem::MakeErrorAction(E_INVALIDARG);
    EXPECT_EQ(action.EventActionType, EVENTACTIONTYPE_Error);
    EXPECT_EQ(action.EventActionContextType, EVENTACTIONCONTEXTTYPE_ErrorCode);
    EXPECT_EQ(action.EventActionContext.ErrorCode, E_INVALIDARG);
}

} // namespace DetectionEventTests
