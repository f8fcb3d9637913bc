#include "tests/oemadapter/support/OemAdapterOutputs.h"

#include <sstream>

namespace
{

constexpr ULONG64 Untouched = 4711;

/// The output, unless it is the one that is missing.
template <typename Output>
Output* Unless(bool missing, Output& output)
{
    return missing ? nullptr : &output;
}

template <typename Element>
std::string List(const Element* elements, ULONG count)
{
    std::ostringstream text;
    for (ULONG i = 0; i < count; ++i)
    {
        text << " " << static_cast<int>(elements[i]);
    }
    return text.str();
}

} // namespace

KeywordCapabilities::~KeywordCapabilities()
{
    if (!AreUntouched())
    {
        CoTaskMemFree(keywordIds);
        CoTaskMemFree(languageIds);
        if (audioFormat != nullptr)
        {
            audioFormat->Release();
        }
    }
}

HRESULT KeywordCapabilities::Get(IKeywordDetectorOemAdapter* adapter, int missing)
{
    return adapter->GetCapabilities(Unless(missing == 0, supportsUserModels), Unless(missing == 1, keywordIds),
                                    Unless(missing == 2, keywordCount), Unless(missing == 3, languageIds),
                                    Unless(missing == 4, languageCount), Unless(missing == 5, audioFormat));
}

bool KeywordCapabilities::AreNothing() const
{
    return supportsUserModels == FALSE && keywordIds == nullptr && keywordCount == 0 && languageIds == nullptr &&
           languageCount == 0 && audioFormat == nullptr;
}

bool KeywordCapabilities::AreUntouched() const
{
    return supportsUserModels == Untouched && keywordIds == &noKeyword && keywordCount == Untouched &&
           languageIds == &noLanguage && languageCount == Untouched &&
           audioFormat == reinterpret_cast<const IMFMediaType*>(&noKeyword);
}

std::string KeywordCapabilities::Text() const
{
    std::ostringstream text;
    text << "user models " << supportsUserModels << ", keywords" << List(keywordIds, keywordCount) << ", languages"
         << List(languageIds, languageCount);
    return text.str();
}

HRESULT KeywordDetection::Parse(IKeywordDetectorOemAdapter* adapter, IStream* stream, SOUNDDETECTOR_PATTERNHEADER* result,
                                int missing)
{
    return adapter->ParseDetectionResultData(stream, result, Unless(missing == 0, keywordId), Unless(missing == 1, languageId),
                                             Unless(missing == 2, isUserMatch), Unless(missing == 3, start),
                                             Unless(missing == 4, end));
}

bool KeywordDetection::IsNothing() const
{
    return keywordId == KwInvalid && languageId == 0 && isUserMatch == FALSE && start == 0 && end == 0;
}

bool KeywordDetection::IsUntouched() const
{
    return keywordId == KwSelection && languageId == Untouched && isUserMatch == Untouched && start == Untouched &&
           end == Untouched;
}

std::string KeywordDetection::Text() const
{
    std::ostringstream text;
    text << "keyword " << keywordId << ", language " << languageId << ", user match " << isUserMatch << ", " << start << " to "
         << end;
    return text.str();
}

EventCapabilities::~EventCapabilities()
{
    if (!AreUntouched())
    {
        CoTaskMemFree(languageIds);
        CoTaskMemFree(format);
    }
}

HRESULT EventCapabilities::Get(IEventDetectorOemAdapter* adapter, int missing)
{
    return adapter->GetCapabilities(Unless(missing == 0, features), Unless(missing == 1, languageIds),
                                    Unless(missing == 2, languageCount), Unless(missing == 3, recordingCount),
                                    Unless(missing == 4, format));
}

bool EventCapabilities::AreNothing() const
{
    return features == EVENTFEATURES_None && languageIds == nullptr && languageCount == 0 && recordingCount == 0 &&
           format == nullptr;
}

bool EventCapabilities::AreUntouched() const
{
    return features == EVENTFEATURES_UserDefinedKeyword && languageIds == &noLanguage && languageCount == Untouched &&
           recordingCount == Untouched && format == &noFormat;
}

std::string EventCapabilities::Text() const
{
    std::ostringstream text;
    text << "features " << features << ", languages" << List(languageIds, languageCount) << ", recordings " << recordingCount
         << ", bits " << format->wBitsPerSample;
    return text.str();
}

EventDetection::~EventDetection()
{
    if (debugOutput != &noText)
    {
        CoTaskMemFree(debugOutput);
    }
}

HRESULT EventDetection::Parse(IEventDetectorOemAdapter* adapter, IStream* stream, SOUNDDETECTOR_PATTERNHEADER* result,
                              int missing)
{
    return adapter->ParseDetectionResultData(stream, result, Unless(missing == 0, context), Unless(missing == 1, selector),
                                             Unless(missing == 2, action), Unless(missing == 3, start), Unless(missing == 4, end),
                                             Unless(missing == 5, debugOutput));
}

bool EventDetection::IsError(HRESULT code) const
{
    return action.EventActionType == EVENTACTIONTYPE_Error && action.EventActionContextType == EVENTACTIONCONTEXTTYPE_ErrorCode &&
           action.EventActionContext.ErrorCode == code;
}

bool EventDetection::IsNothing() const
{
    return context == nullptr && selector.Event.EventId == GUID{} && selector.LangId == 0 && selector.UserId == 0 && start == 0 &&
           end == 0 && debugOutput == nullptr;
}

bool EventDetection::IsUntouched() const
{
    return context == &noContext && selector.LangId == Untouched && selector.UserId == Untouched && start == Untouched &&
           end == Untouched && debugOutput == &noText;
}

std::string EventDetection::Text() const
{
    std::ostringstream text;
    text << "action " << action.EventActionType << ", context " << action.EventActionContextType << ", "
         << action.EventActionContext.ConfidenceValue << ", language " << selector.LangId << ", user " << selector.UserId
         << ", user match " << selector.Event.UserModelValid << ", " << start << " to " << end << "\n";
    for (const WCHAR* letter = debugOutput; letter != nullptr && *letter != 0; ++letter)
    {
        text << static_cast<char>(*letter);
    }
    return text.str();
}
