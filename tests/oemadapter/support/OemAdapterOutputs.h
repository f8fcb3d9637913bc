#pragma once

#include "oemadapter/windows/EventDetectorOemAdapter.h"
#include "oemadapter/windows/KeywordDetectorOemAdapter.h"
#include "tests/oemadapter/support/ResultBlock.h"

#include <windows.h>

#include <objbase.h>

#include <string>

// The outputs of the methods that have many, with values of no meaning at first, which are never released. An output of the
// number `missing`, counted from 0, is not given to the method. What a method has put in the place of the first values is
// released in the end.

struct KeywordCapabilities
{
    KeywordCapabilities() = default;
    KeywordCapabilities(const KeywordCapabilities&) = delete;
    KeywordCapabilities& operator=(const KeywordCapabilities&) = delete;
    ~KeywordCapabilities();

    HRESULT Get(IKeywordDetectorOemAdapter* adapter, int missing = -1);

    /// Whether all of them are null and zero.
    bool AreNothing() const;
    /// Whether none was written.
    bool AreUntouched() const;
    /// What they say, in words.
    std::string Text() const;

    KEYWORDID noKeyword = KwSelection;
    LANGID noLanguage = 0;
    BOOL supportsUserModels = 4711;
    KEYWORDID* keywordIds = &noKeyword;
    ULONG keywordCount = 4711;
    LANGID* languageIds = &noLanguage;
    ULONG languageCount = 4711;
    IMFMediaType* audioFormat = reinterpret_cast<IMFMediaType*>(&noKeyword);
};

struct KeywordDetection
{
    HRESULT Parse(IKeywordDetectorOemAdapter* adapter, IStream* stream, SOUNDDETECTOR_PATTERNHEADER* result, int missing = -1);

    bool IsNothing() const;
    bool IsUntouched() const;
    std::string Text() const;

    KEYWORDID keywordId = KwSelection;
    LANGID languageId = 4711;
    BOOL isUserMatch = 4711;
    ULONG64 start = 4711;
    ULONG64 end = 4711;
};

struct EventCapabilities
{
    EventCapabilities() = default;
    EventCapabilities(const EventCapabilities&) = delete;
    EventCapabilities& operator=(const EventCapabilities&) = delete;
    ~EventCapabilities();

    HRESULT Get(IEventDetectorOemAdapter* adapter, int missing = -1);

    bool AreNothing() const;
    bool AreUntouched() const;
    std::string Text() const;

    LANGID noLanguage = 0;
    WAVEFORMATEX noFormat{};
    EVENTFEATURES features = EVENTFEATURES_UserDefinedKeyword;
    LANGID* languageIds = &noLanguage;
    ULONG languageCount = 4711;
    ULONG recordingCount = 4711;
    WAVEFORMATEX* format = &noFormat;
};

struct EventDetection
{
    EventDetection() = default;
    EventDetection(const EventDetection&) = delete;
    EventDetection& operator=(const EventDetection&) = delete;
    ~EventDetection();

    HRESULT Parse(IEventDetectorOemAdapter* adapter, IStream* stream, SOUNDDETECTOR_PATTERNHEADER* result, int missing = -1);

    /// Whether the action is an error of this code.
    bool IsError(HRESULT code) const;
    /// Whether the other outputs are null and zero, or were not written.
    bool IsNothing() const;
    bool IsUntouched() const;
    std::string Text() const;

    WCHAR noText = 0;
    SOUNDDETECTOR_PATTERNHEADER noContext{};
    SOUNDDETECTOR_PATTERNHEADER* context = &noContext;
    DETECTIONEVENTSELECTOR selector{.Event = {}, .LangId = 4711, .UserId = 4711, .Armed = 4711};
    EVENTACTION action{};
    ULONG64 start = 4711;
    ULONG64 end = 4711;
    WCHAR* debugOutput = &noText;
};
