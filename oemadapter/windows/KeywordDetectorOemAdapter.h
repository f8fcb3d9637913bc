#pragma once

#include "oemadapter/windows/SoundDetectorPattern.h"

#include <windows.h>

#include <mfobjects.h>
#include <objidl.h>

#include <cstddef>

// The first generation of the interface that voice activation calls an OEM's adapter through (Windows 10 up to 1909: one
// assistant), as Windows declares it: names, order and layouts are given.

enum KEYWORDID
{
    KwInvalid = 0,
    KwVoiceAssistant = 1,
    KwSelection = 2,
};

/// One keyword in one language.
struct KEYWORDSELECTOR
{
    KEYWORDID KeywordId;
    LANGID LangId;
};

static_assert(sizeof(KEYWORDID) == 4);
static_assert(sizeof(LANGID) == 2);
static_assert(sizeof(KEYWORDSELECTOR) == 8);
static_assert(offsetof(KEYWORDSELECTOR, LangId) == 4);

inline constexpr IID IID_IKeywordDetectorOemAdapter{0xA13F4E6A, 0x3BC5, 0x46B4, {0x88, 0xFB, 0xF3, 0x90, 0x14, 0xB5, 0x1A, 0xC9}};

/// Slots 3 to 7, behind those of IUnknown. Arrays and blocks that go out are task memory and the caller's to free.
struct IKeywordDetectorOemAdapter : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetCapabilities(BOOL* SupportsUserModels, KEYWORDID** KeywordIds, ULONG* NumKeywords,
                                                      LANGID** LangIds, ULONG* NumLanguages, IMFMediaType** MediaType) = 0;
    virtual HRESULT STDMETHODCALLTYPE VerifyUserKeyword(IStream* ModelData, KEYWORDID KeywordId, LANGID LangId,
                                                        LONG KeywordEndBytePos, IMFMediaBuffer* UserRecording) = 0;
    virtual HRESULT STDMETHODCALLTYPE ComputeAndAddUserModelData(IStream* ModelData, KEYWORDSELECTOR KeywordSelector,
                                                                 LONG* KeywordEndBytePos, IMFMediaBuffer** UserRecordings,
                                                                 ULONG NumUserRecordings) = 0;
    virtual HRESULT STDMETHODCALLTYPE BuildArmingPatternData(IStream* UserModelData, KEYWORDSELECTOR* KeywordSelectors,
                                                             ULONG NumKeywordSelectors,
                                                             SOUNDDETECTOR_PATTERNHEADER** PatternData) = 0;
    virtual HRESULT STDMETHODCALLTYPE ParseDetectionResultData(IStream* UserModelData, SOUNDDETECTOR_PATTERNHEADER* Result,
                                                               KEYWORDID* KeywordId, LANGID* LangId, BOOL* pIsUserMatch,
                                                               ULONG64* KeywordStartPerformanceCounterValue,
                                                               ULONG64* KeywordEndPerformanceCounterValue) = 0;
};
