#pragma once

#include "oemadapter/windows/SoundDetectorPattern.h"

#include <windows.h>

#include <mmreg.h>
#include <objidl.h>

#include <cstddef>

// The second generation of the interface that voice activation calls an OEM's adapter through (Windows 10 1903 and later: several
// assistants), as Windows declares it: names, order and layouts are given.

/// What an adapter, or one of its events, can do: flags.
enum EVENTFEATURES
{
    EVENTFEATURES_None = 0,
    EVENTFEATURES_UserTraining = 1,
    EVENTFEATURES_UserDefinedKeyword = 2,
    EVENTFEATURES_ArmStateNeeded = 4,    ///< the arming pattern depends on which events are armed
    EVENTFEATURES_OneLanguageForAll = 8, ///< all keywords must be of one language
};

/// Something that can be detected. Both GUIDs are issued by Microsoft.
struct DETECTIONEVENT
{
    GUID EventId;
    EVENTFEATURES EventFeatures;
    GUID ProviderId;
    WCHAR DisplayName[100];
    BOOL UserModelValid; ///< FALSE: the user has to train again
};

/// An event in one language, for one user.
struct DETECTIONEVENTSELECTOR
{
    DETECTIONEVENT Event;
    LANGID LangId;
    ULONG UserId; ///< 0: none
    BOOL Armed;
};

enum EVENTACTIONTYPE
{
    EVENTACTIONTYPE_Accept = 0,
    EVENTACTIONTYPE_Reject = 1,
    EVENTACTIONTYPE_Error = 3,
};

/// Which member of an action's union holds.
enum EVENTACTIONCONTEXTTYPE
{
    EVENTACTIONCONTEXTTYPE_None = 0,
    EVENTACTIONCONTEXTTYPE_Confidence = 1,
    EVENTACTIONCONTEXTTYPE_Scale = 2,
    EVENTACTIONCONTEXTTYPE_ErrorCode = 3,
};

enum CONFIDENCESCALE
{
    CONFIDENCESCALE_High = 0,
    CONFIDENCESCALE_Medium = 1,
    CONFIDENCESCALE_Low = 2,
};

/// What is to be done about a detection.
struct EVENTACTION
{
    EVENTACTIONTYPE EventActionType;
    EVENTACTIONCONTEXTTYPE EventActionContextType;
    union
    {
        float ConfidenceValue; ///< 0 to 1
        CONFIDENCESCALE ScaleValue;
        HRESULT ErrorCode;
    } EventActionContext;
};

static_assert(sizeof(EVENTFEATURES) == 4);
static_assert(sizeof(DETECTIONEVENT) == 240);
static_assert(offsetof(DETECTIONEVENT, EventFeatures) == 16);
static_assert(offsetof(DETECTIONEVENT, ProviderId) == 20);
static_assert(offsetof(DETECTIONEVENT, DisplayName) == 36);
static_assert(offsetof(DETECTIONEVENT, UserModelValid) == 236);
static_assert(sizeof(DETECTIONEVENTSELECTOR) == 252);
static_assert(offsetof(DETECTIONEVENTSELECTOR, LangId) == 240);
static_assert(offsetof(DETECTIONEVENTSELECTOR, UserId) == 244);
static_assert(offsetof(DETECTIONEVENTSELECTOR, Armed) == 248);
static_assert(sizeof(EVENTACTION) == 12);
static_assert(offsetof(EVENTACTION, EventActionContextType) == 4);
static_assert(offsetof(EVENTACTION, EventActionContext) == 8);

inline constexpr IID IID_IEventDetectorOemAdapter{0x3B650B60, 0xF000, 0x45D3, {0xB4, 0x9E, 0xB9, 0x09, 0x1C, 0x72, 0x86, 0xEA}};

/// Slots 3 to 9, behind those of IUnknown. Arrays, blocks and texts that go out are task memory and the caller's to free.
struct IEventDetectorOemAdapter : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetCapabilities(EVENTFEATURES* GlobalFeatureSupport, LANGID** LangIds, ULONG* NumLanguages,
                                                      ULONG* NumUserRecordings, WAVEFORMATEX** Format) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetCapabilitiesForLanguage(LANGID LangId, DETECTIONEVENT** EventIds, ULONG* NumEvents) = 0;
    virtual HRESULT STDMETHODCALLTYPE VerifyUserEventData(IStream* ModelData, WAVEFORMATEX* UserRecording,
                                                          DETECTIONEVENTSELECTOR EventSelector, LONG EventEndBytePos) = 0;
    virtual HRESULT STDMETHODCALLTYPE ComputeAndAddUserModelData(IStream* ModelData, DETECTIONEVENTSELECTOR EventSelector,
                                                                 LONG* EventEndBytePos, WAVEFORMATEX** UserRecordings,
                                                                 ULONG NumUserRecordings) = 0;
    virtual HRESULT STDMETHODCALLTYPE BuildArmingPatternData(IStream* UserModelData, DETECTIONEVENTSELECTOR* EventSelectors,
                                                             ULONG NumEventSelectors,
                                                             SOUNDDETECTOR_PATTERNHEADER** PatternData) = 0;
    virtual HRESULT STDMETHODCALLTYPE ParseDetectionResultData(IStream* UserModelData, SOUNDDETECTOR_PATTERNHEADER* Result,
                                                               SOUNDDETECTOR_PATTERNHEADER** AssistantContext,
                                                               DETECTIONEVENTSELECTOR* EventSelector, EVENTACTION* EventAction,
                                                               ULONG64* EventStartPerformanceCounterValue,
                                                               ULONG64* EventEndPerformanceCounterValue, WCHAR** DebugOutput) = 0;
    virtual void STDMETHODCALLTYPE ReportOSDetectionResult(DETECTIONEVENTSELECTOR EventSelector, EVENTACTION EventAction) = 0;
};
