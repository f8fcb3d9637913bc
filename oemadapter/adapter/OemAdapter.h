#pragma once

#include "oemadapter/detector/Detector.h"
#include "oemadapter/windows/ComPointer.h"
#include "oemadapter/windows/EventDetectorOemAdapter.h"
#include "oemadapter/windows/KeywordDetectorOemAdapter.h"

#include <atomic>

namespace velox::oemadapter
{

/// The COM object that voice activation calls: both generations of its interface, over the process's one detector. It keeps
/// nothing between calls and may be called from any thread: it aggregates the free-threaded marshaler.
///
/// Every method first looks for null outputs (E_POINTER), then clears its outputs; they hold something only on success. No
/// exception leaves: E_OUTOFMEMORY for std::bad_alloc, ProcessingFailed (0x8007001F) for every other.
class OemAdapter final : public IKeywordDetectorOemAdapter, public IEventDetectorOemAdapter
{
public:
    /// @param object  receives the interface with one reference; null on failure
    /// @return S_OK; E_POINTER; E_NOINTERFACE; E_OUTOFMEMORY; what Detector::AddUser and CoCreateFreeThreadedMarshaler return
    static HRESULT Create(Detector& detector, REFIID iid, void** object) noexcept;

    OemAdapter(const OemAdapter&) = delete;
    OemAdapter& operator=(const OemAdapter&) = delete;

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    // IKeywordDetectorOemAdapter: OemAdapterKeyword.cpp

    /// @return S_OK; E_POINTER; E_OUTOFMEMORY; E_FAIL when the configuration file is of no use; what Media Foundation says
    STDMETHODIMP GetCapabilities(BOOL* supportsUserModels, KEYWORDID** keywordIds, ULONG* keywordCount, LANGID** languageIds,
                                 ULONG* languageCount, IMFMediaType** audioFormat) override;

    /// @return S_OK; E_INVALIDARG for a null stream or recording, another keyword, or a language that is not configured;
    /// E_NO_MATCH;
    ///     ProcessingFailed
    STDMETHODIMP VerifyUserKeyword(IStream* modelData, KEYWORDID keywordId, LANGID languageId, LONG keywordEnd,
                                   IMFMediaBuffer* recording) override;

    /// @return S_OK; E_INVALIDARG; ProcessingFailed
    STDMETHODIMP ComputeAndAddUserModelData(IStream* modelData, KEYWORDSELECTOR selector, LONG* keywordEnds,
                                            IMFMediaBuffer** recordings, ULONG recordingCount) override;

    /// @return S_OK; E_POINTER for a null stream, block or selector, or no selector; E_INVALIDARG for several selectors, another
    ///     keyword, or a language that is not configured; E_OUTOFMEMORY; the stream's failure; ProcessingFailed
    STDMETHODIMP BuildArmingPatternData(IStream* userModelData, KEYWORDSELECTOR* selectors, ULONG selectorCount,
                                        SOUNDDETECTOR_PATTERNHEADER** pattern) override;

    /// @return S_OK, with KwInvalid when the firmware reported another keyword; E_POINTER; E_INVALIDARG for a block of another
    ///     detector, or one that is too short; ProcessingFailed
    STDMETHODIMP ParseDetectionResultData(IStream* userModelData, SOUNDDETECTOR_PATTERNHEADER* result, KEYWORDID* keywordId,
                                          LANGID* languageId, BOOL* isUserMatch, ULONG64* keywordStart,
                                          ULONG64* keywordEnd) override;

    // IEventDetectorOemAdapter: OemAdapterEvent.cpp

    /// @return S_OK; E_POINTER; E_OUTOFMEMORY; E_FAIL when the configuration file is of no use; what Media Foundation says
    STDMETHODIMP GetCapabilities(EVENTFEATURES* features, LANGID** languageIds, ULONG* languageCount, ULONG* recordingCount,
                                 WAVEFORMATEX** audioFormat) override;

    /// @return as GetCapabilities, and E_INVALIDARG for a language that is not configured
    STDMETHODIMP GetCapabilitiesForLanguage(LANGID languageId, DETECTIONEVENT** events, ULONG* eventCount) override;

    /// The stream may be null.
    /// @return S_OK; E_INVALIDARG for another event, a language that is not configured, a null recording or one of another
    /// format;
    ///     E_NO_MATCH; E_OUTOFMEMORY; ProcessingFailed
    STDMETHODIMP VerifyUserEventData(IStream* modelData, WAVEFORMATEX* recording, DETECTIONEVENTSELECTOR selector,
                                     LONG eventEnd) override;

    /// @return S_OK; E_INVALIDARG; E_OUTOFMEMORY; ProcessingFailed
    STDMETHODIMP ComputeAndAddUserModelData(IStream* modelData, DETECTIONEVENTSELECTOR selector, LONG* eventEnds,
                                            WAVEFORMATEX** recordings, ULONG recordingCount) override;

    /// The stream may be null: the predefined model is armed then.
    /// @return S_OK; E_POINTER for a null block or selector, or no selector; E_INVALIDARG for several selectors, another event,
    /// or a
    ///     language that is not configured; E_OUTOFMEMORY; the stream's failure; ProcessingFailed
    STDMETHODIMP BuildArmingPatternData(IStream* userModelData, DETECTIONEVENTSELECTOR* selectors, ULONG selectorCount,
                                        SOUNDDETECTOR_PATTERNHEADER** pattern) override;

    /// The stream may be null. An action that can be written says Error, with the result's code, on every failure. The debug
    /// output, the call's lines in the log, is null when there is no memory for it. There is no context for the assistant: always
    /// null.
    /// @return S_OK, with Reject when the firmware reported another keyword; E_POINTER; E_INVALIDARG for a block of another
    /// detector,
    ///     or one that is too short; ProcessingFailed
    STDMETHODIMP ParseDetectionResultData(IStream* userModelData, SOUNDDETECTOR_PATTERNHEADER* result,
                                          SOUNDDETECTOR_PATTERNHEADER** assistantContext, DETECTIONEVENTSELECTOR* selector,
                                          EVENTACTION* action, ULONG64* eventStart, ULONG64* eventEnd,
                                          WCHAR** debugOutput) override;

    /// Only logs the verdict.
    STDMETHODIMP_(void) ReportOSDetectionResult(DETECTIONEVENTSELECTOR selector, EVENTACTION action) override;

private:
    explicit OemAdapter(Detector& usedDetector);
    ~OemAdapter() = default;

    std::atomic<ULONG> references = 1;
    Detector& detector;
    DetectorUse use;
    ComPointer<IUnknown> marshaler;
};

} // namespace velox::oemadapter
