#include "oemadapter/adapter/DetectionEvent.h"

#include <algorithm>

namespace velox::oemadapter
{

namespace
{

/// The block's score as a number from 0 to 1. The library leaves a firmware's scale open; here it is taken for the one that
/// thresholds are written in, 0 to 255 in Q8. A firmware with another scale needs its own largest score here.
float Confidence(const DetectionResult& result)
{
    constexpr float LargestScore = 255.0F * 256.0F;
    const int score = result.KpdScore[0] * 256 + result.KpdScore[1];
    return std::min(static_cast<float>(score) / LargestScore, 1.0F);
}

} // namespace

DETECTIONEVENT MakeEvent(const AdapterSettings& settings)
{
    DETECTIONEVENT event{};
    event.EventId = settings.eventId;
    event.EventFeatures = EVENTFEATURES_UserTraining;
    event.ProviderId = settings.eventProviderId;
    std::ranges::copy(settings.eventName, event.DisplayName); // at most 99 letters; a zero follows
    event.UserModelValid = TRUE;
    return event;
}

bool IsOurs(const DETECTIONEVENT& event, const AdapterSettings& settings)
{
    return event.EventId == settings.eventId && event.ProviderId == settings.eventProviderId;
}

DETECTIONEVENTSELECTOR MakeSelector(const Detection& detection, const DetectorContents& inside)
{
    DETECTIONEVENTSELECTOR selector{};
    selector.Event = MakeEvent(inside.settings);
    selector.Event.UserModelValid = detection.isUserMatch;
    selector.LangId = detection.languageId;
    selector.UserId = inside.lastArming.userId;
    selector.Armed = inside.lastArming.armed;
    return selector;
}

EVENTACTION MakeAction(const Detection& detection, const DetectionResult& result)
{
    EVENTACTION action{};
    if (detection.keywordId != KeywordLibrary::Keyword)
    {
        action.EventActionType = EVENTACTIONTYPE_Reject;
        return action;
    }
    action.EventActionType = EVENTACTIONTYPE_Accept;
    action.EventActionContextType = EVENTACTIONCONTEXTTYPE_Confidence;
    action.EventActionContext.ConfidenceValue = Confidence(result);
    return action;
}

EVENTACTION MakeErrorAction(HRESULT code)
{
    EVENTACTION action{};
    action.EventActionType = EVENTACTIONTYPE_Error;
    action.EventActionContextType = EVENTACTIONCONTEXTTYPE_ErrorCode;
    action.EventActionContext.ErrorCode = code;
    return action;
}

} // namespace velox::oemadapter
