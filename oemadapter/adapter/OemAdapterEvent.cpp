#include "oemadapter/adapter/DetectionEvent.h"
#include "oemadapter/adapter/OemAdapter.h"
#include "oemadapter/adapter/Outputs.h"
#include "oemadapter/detector/PcmRecording.h"

#include <mfapi.h>

#include <array>
#include <cstdio>
#include <vector>

// The second generation's methods.

namespace velox::oemadapter
{

namespace
{

HRESULT MakeWaveFormat(IMFMediaType* mediaType, TaskMemory<WAVEFORMATEX>* format)
{
    WAVEFORMATEX* made = nullptr;
    UINT32 size = 0;
    const HRESULT result = MFCreateWaveFormatExFromMFMediaType(mediaType, &made, &size, MFWaveFormatExConvertFlag_Normal);
    format->reset(made);
    return result;
}

/// The given stream, or an empty one in its place.
HRESULT OrEmptyStream(IStream* given, ComPointer<IStream>* stream)
{
    if (given != nullptr)
    {
        given->AddRef();
        stream->reset(given);
        return S_OK;
    }
    IStream* made = nullptr;
    const HRESULT result = CreateStreamOnHGlobal(nullptr, TRUE, &made);
    stream->reset(made);
    return result;
}

/// Recordings as the library takes them, and pointers to them in a row.
struct Recordings
{
    std::vector<ComPointer<IMFMediaBuffer>> owned;
    std::vector<IMFMediaBuffer*> buffers;
    std::vector<int32_t> ends;
};

HRESULT MakeRecordings(WAVEFORMATEX* const* recordings, const LONG* ends, ULONG count, Recordings* made)
{
    for (ULONG i = 0; i < count; ++i)
    {
        ComPointer<IMFMediaBuffer> recording;
        if (const HRESULT result = MakeRecording(recordings[i], &recording); FAILED(result))
        {
            return result;
        }
        made->buffers.push_back(recording.get());
        made->owned.push_back(std::move(recording));
        made->ends.push_back(FloatPosition(ends[i]));
    }
    return S_OK;
}

/// The lines of the call under way; null when there is no memory for them.
TaskMemory<WCHAR> DebugText(const OperationLog& operation)
{
    const std::string_view text = operation.Text();
    // No letter takes more 16-bit units than bytes.
    TaskMemory<WCHAR> wide(static_cast<WCHAR*>(CoTaskMemAlloc((text.size() + 1) * sizeof(WCHAR))));
    if (wide != nullptr)
    {
        const auto length = static_cast<int>(text.size());
        wide.get()[MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.get(), length)] = 0;
    }
    return wide;
}

} // namespace

STDMETHODIMP OemAdapter::GetCapabilities(EVENTFEATURES* features, LANGID** languageIds, ULONG* languageCount,
                                         ULONG* recordingCount, WAVEFORMATEX** audioFormat)
{
    return detector.Call("IEventDetectorOemAdapter::GetCapabilities", [&](DetectorContents& inside) {
        if (!Clear(features, languageIds, languageCount, recordingCount, audioFormat))
        {
            return E_POINTER;
        }
        Capabilities capabilities;
        if (const HRESULT result = inside.library->GetCapabilities(&capabilities); FAILED(result))
        {
            return result;
        }
        TaskMemory<WAVEFORMATEX> format;
        if (const HRESULT result = MakeWaveFormat(capabilities.audioFormat.get(), &format); FAILED(result))
        {
            return result;
        }
        *features = EVENTFEATURES_UserTraining;
        *languageIds = capabilities.languageIds.release();
        *languageCount = capabilities.languageCount;
        *recordingCount = inside.settings.userRecordings;
        *audioFormat = format.release();
        return S_OK;
    });
}

STDMETHODIMP OemAdapter::GetCapabilitiesForLanguage(LANGID languageId, DETECTIONEVENT** events, ULONG* eventCount)
{
    return detector.Call("IEventDetectorOemAdapter::GetCapabilitiesForLanguage", [&](DetectorContents& inside) {
        if (!Clear(events, eventCount))
        {
            return E_POINTER;
        }
        Capabilities capabilities;
        if (const HRESULT result = inside.library->GetCapabilities(&capabilities); FAILED(result))
        {
            return result;
        }
        if (!capabilities.HasLanguage(languageId))
        {
            return E_INVALIDARG;
        }
        TaskMemory<DETECTIONEVENT> event = MakeTaskMemory<DETECTIONEVENT>(1);
        *event = MakeEvent(inside.settings);
        *events = event.release();
        *eventCount = 1;
        return S_OK;
    });
}

STDMETHODIMP OemAdapter::VerifyUserEventData(IStream* /*modelData*/, WAVEFORMATEX* recording, DETECTIONEVENTSELECTOR selector,
                                             LONG eventEnd)
{
    return detector.Call("IEventDetectorOemAdapter::VerifyUserEventData", [&](DetectorContents& inside) {
        if (!IsOurs(selector.Event, inside.settings))
        {
            return E_INVALIDARG;
        }
        ComPointer<IMFMediaBuffer> converted;
        if (const HRESULT result = MakeRecording(recording, &converted); FAILED(result))
        {
            return result;
        }
        return inside.library->Verify(selector.LangId, FloatPosition(eventEnd), converted.get());
    });
}

STDMETHODIMP OemAdapter::ComputeAndAddUserModelData(IStream* modelData, DETECTIONEVENTSELECTOR selector, LONG* eventEnds,
                                                    WAVEFORMATEX** recordings, ULONG recordingCount)
{
    return detector.Call("IEventDetectorOemAdapter::ComputeAndAddUserModelData", [&](DetectorContents& inside) {
        if (modelData == nullptr || eventEnds == nullptr || recordings == nullptr || recordingCount == 0 ||
            !IsOurs(selector.Event, inside.settings))
        {
            return E_INVALIDARG;
        }
        Recordings converted;
        if (const HRESULT result = MakeRecordings(recordings, eventEnds, recordingCount, &converted); FAILED(result))
        {
            return result;
        }
        return inside.library->Compute(modelData, {KeywordLibrary::Keyword, selector.LangId}, converted.ends.data(),
                                       converted.buffers.data(), recordingCount);
    });
}

STDMETHODIMP OemAdapter::BuildArmingPatternData(IStream* userModelData, DETECTIONEVENTSELECTOR* selectors, ULONG selectorCount,
                                                SOUNDDETECTOR_PATTERNHEADER** pattern)
{
    return detector.Call("IEventDetectorOemAdapter::BuildArmingPatternData", [&](DetectorContents& inside) {
        if (!Clear(pattern) || selectors == nullptr || selectorCount == 0)
        {
            return E_POINTER;
        }
        if (!IsOurs(selectors->Event, inside.settings))
        {
            return E_INVALIDARG;
        }
        ComPointer<IStream> stream;
        if (const HRESULT result = OrEmptyStream(userModelData, &stream); FAILED(result))
        {
            return result;
        }
        const KeywordSelector wanted{KeywordLibrary::Keyword, selectors->LangId};
        TaskMemory<uint8_t> block;
        if (const HRESULT result = inside.library->Build(stream.get(), &wanted, selectorCount, &block); FAILED(result))
        {
            return result;
        }
        inside.lastArming.userId = selectors->UserId;
        inside.lastArming.armed = selectors->Armed;
        *pattern = AsPattern(std::move(block));
        return S_OK;
    });
}

STDMETHODIMP OemAdapter::ParseDetectionResultData(IStream* userModelData, SOUNDDETECTOR_PATTERNHEADER* result,
                                                  SOUNDDETECTOR_PATTERNHEADER** assistantContext,
                                                  DETECTIONEVENTSELECTOR* selector, EVENTACTION* action, ULONG64* eventStart,
                                                  ULONG64* eventEnd, WCHAR** debugOutput)
{
    const HRESULT status = detector.Call("IEventDetectorOemAdapter::ParseDetectionResultData", [&](DetectorContents& inside) {
        if (!Clear(assistantContext, selector, action, eventStart, eventEnd, debugOutput))
        {
            return E_POINTER;
        }
        ComPointer<IStream> stream;
        if (const HRESULT made = OrEmptyStream(userModelData, &stream); FAILED(made))
        {
            return made;
        }
        const auto* const block = reinterpret_cast<const DetectionResult*>(result);
        Detection detection;
        if (const HRESULT parsed = inside.library->Parse(stream.get(), block, &detection); FAILED(parsed))
        {
            return parsed;
        }
        *selector = MakeSelector(detection, inside);
        *action = MakeAction(detection, *block);
        *eventStart = detection.keywordStart;
        *eventEnd = detection.keywordEnd;
        *debugOutput = DebugText(inside.logger.operation).release();
        return S_OK;
    });
    if (FAILED(status) && action != nullptr)
    {
        *action = MakeErrorAction(status);
    }
    return status;
}

STDMETHODIMP_(void) OemAdapter::ReportOSDetectionResult(DETECTIONEVENTSELECTOR selector, EVENTACTION action)
{
    static_cast<void>(detector.Call("IEventDetectorOemAdapter::ReportOSDetectionResult", [&](DetectorContents& inside) {
        // The context's 32 bits as they are: a float's, a grade's or a code's.
        inside.logger.LogFormat(VeloxLogLevel::Information, AdapterLogger::OwnSource,
                                "The system's verdict: action %d, context %d, 0x%08X; language %u, user %u, armed %d.",
                                static_cast<int>(action.EventActionType), static_cast<int>(action.EventActionContextType),
                                static_cast<unsigned int>(action.EventActionContext.ErrorCode),
                                static_cast<unsigned int>(selector.LangId), static_cast<unsigned int>(selector.UserId),
                                static_cast<int>(selector.Armed));
        return S_OK;
    }));
}

} // namespace velox::oemadapter
