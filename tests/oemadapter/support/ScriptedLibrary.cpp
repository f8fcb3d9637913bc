#include "tests/oemadapter/support/ScriptedLibrary.h"

#include "tests/support/FaultInjector.h"

#include <VeloxHwKwsImpl.h>

#include <mfapi.h>
#include <objbase.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

using namespace KeywordDetectorAdapterImplementation;

namespace
{

constexpr WAVEFORMATEX PcmFormat{WAVE_FORMAT_PCM, 1, 16000, 32000, 2, 16, 0};

template <typename Element>
Element* Allocate(std::size_t count)
{
    return static_cast<Element*>(CoTaskMemAlloc(count * sizeof(Element)));
}

std::string ReadStream(IStream* stream)
{
    if (stream == nullptr)
    {
        return "null";
    }
    std::array<char, 64> bytes{};
    ULONG count = 0;
    stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr);
    stream->Read(bytes.data(), bytes.size(), &count);
    return {bytes.data(), count};
}

std::vector<float> ReadRecording(IMFMediaBuffer* recording)
{
    BYTE* bytes = nullptr;
    DWORD length = 0;
    if (recording == nullptr || recording->Lock(&bytes, nullptr, &length) != S_OK)
    {
        return {};
    }
    std::vector<float> samples(length / sizeof(float));
    std::copy_n(bytes, samples.size() * sizeof(float), reinterpret_cast<BYTE*>(samples.data()));
    recording->Unlock();
    return samples;
}

class LibraryObject final : public IVeloxKeywordDetectorAdapterImpl
{
public:
    LibraryObject(IVeloxKeywordDetectorLogger* hostLogger, const GUID& detector) : logger(hostLogger), detectorId(detector)
    {
        script.mostObjects = std::max(script.mostObjects, ++script.objects);
        logger->SetLevel(script.level);
        logger->SetLogToFile(script.logToFile);
    }
    LibraryObject(const LibraryObject&) = delete;
    LibraryObject& operator=(const LibraryObject&) = delete;
    ~LibraryObject() override
    {
        script.calls.emplace_back("~");
        --script.objects;
    }

    HRESULT GetCapabilities(int32_t* supportsUserModels, uint32_t** keywordIds, uint32_t* keywordCount, uint16_t** languageIds,
                            uint32_t* languageCount, IMFMediaType** audioFormat) override
    {
        return Answer("GetCapabilities", "", [&] {
            const CapabilitiesEnd end = script.capabilitiesEnd;
            if (end == CapabilitiesEnd::NoKeywords)
            {
                *keywordIds = nullptr;
                return E_OUTOFMEMORY;
            }
            *keywordIds = Allocate<uint32_t>(1);
            **keywordIds = 1;
            *keywordCount = 1;
            if (end == CapabilitiesEnd::NoConfiguration)
            {
                return E_FAIL;
            }
            if (end == CapabilitiesEnd::NoLanguages)
            {
                *languageIds = nullptr;
                CoTaskMemFree(*keywordIds);
                return E_OUTOFMEMORY;
            }
            *languageIds = Allocate<uint16_t>(script.languages.size());
            std::ranges::copy(script.languages, *languageIds);
            *languageCount = static_cast<uint32_t>(script.languages.size());
            if (end == CapabilitiesEnd::Exception)
            {
                throw std::runtime_error("scripted");
            }
            if (end != CapabilitiesEnd::Success)
            {
                return end == CapabilitiesEnd::BadLanguage ? E_FAIL : E_OUTOFMEMORY;
            }
            *supportsUserModels = script.supportsUserModels;
            MFCreateMediaType(audioFormat);
            return MFInitMediaTypeFromWaveFormatEx(*audioFormat, &PcmFormat, sizeof(PcmFormat));
        });
    }

    HRESULT VerifyUserKeyword(IStream* modelData, uint32_t keywordId, uint16_t languageId, int32_t keywordEnd,
                              IMFMediaBuffer* recording) override
    {
        const FaultPause pause;
        const std::string arguments =
            std::to_string(keywordId) + ", " + std::to_string(languageId) + ", " + std::to_string(keywordEnd);
        return Answer("VerifyUserKeyword", arguments, [&] {
            script.stream = ReadStream(modelData);
            script.recordings.push_back(ReadRecording(recording));
            return keywordId == 0 || !Has(languageId) || recording == nullptr ? E_INVALIDARG : S_OK;
        });
    }

    HRESULT ComputeAndAddUserModelData(IStream* modelData, KeywordSelector selector, const int32_t* keywordEnds,
                                       IMFMediaBuffer** recordings, uint32_t recordingCount) override
    {
        const FaultPause pause;
        std::string arguments = std::to_string(selector.keywordId) + ", " + std::to_string(selector.languageId);
        for (uint32_t i = 0; i < recordingCount; ++i)
        {
            arguments += ", " + std::to_string(keywordEnds[i]);
            script.recordings.push_back(ReadRecording(recordings[i]));
        }
        return Answer("ComputeAndAddUserModelData", arguments, [&] {
            if (selector.keywordId != 1 || !Has(selector.languageId) || modelData == nullptr)
            {
                return E_INVALIDARG;
            }
            constexpr std::string_view Model = "VWOV computed";
            return modelData->Write(Model.data(), static_cast<ULONG>(Model.size()), nullptr);
        });
    }

    HRESULT BuildArmingPatternData(IStream* userModelData, const KeywordSelector* selectors, uint32_t selectorCount,
                                   uint8_t** pattern) override
    {
        return Answer("BuildArmingPatternData", std::to_string(selectors->languageId), [&] {
            script.stream = ReadStream(userModelData);
            if (userModelData == nullptr || selectorCount == 0)
            {
                return E_POINTER;
            }
            if (selectorCount > 1 || selectors->keywordId != 1 || !Has(selectors->languageId))
            {
                return E_INVALIDARG;
            }
            const std::string model = script.stream.starts_with("VWOV") ? script.stream : "predefined";
            isUserModel = model == script.stream;
            const auto scripted = script.results.find("BuildArmingPatternData");
            if (scripted != script.results.end() && FAILED(scripted->second))
            {
                return scripted->second;
            }
            const auto size = static_cast<uint32_t>(44 + model.size());
            *pattern = Allocate<uint8_t>(size);
            std::memset(*pattern, 0, size);
            std::memcpy(*pattern, &size, sizeof(size));
            std::memcpy(*pattern + 4, &detectorId, sizeof(detectorId));
            std::ranges::copy(model, *pattern + 44);
            language = selectors->languageId;
            return S_OK;
        });
    }

    HRESULT ParseDetectionResultData(IStream* userModelData, const DetectionResult* result, uint32_t* keywordId,
                                     uint16_t* languageId, BOOL* isUserMatch, uint64_t* keywordStart,
                                     uint64_t* keywordEnd) override
    {
        return Answer("ParseDetectionResultData", std::to_string(language), [&] {
            script.stream = ReadStream(userModelData);
            if (result->Size < DetectionResultMinSize || result->PatternType != detectorId)
            {
                return E_INVALIDARG;
            }
            *keywordId = result->KeywordIdFw == 1 ? 1 : 0;
            *languageId = language;
            *isUserMatch = isUserModel ? TRUE : FALSE;
            *keywordStart = result->KeywordStart;
            *keywordEnd = result->KeywordEnd;
            return S_OK;
        });
    }

private:
    bool Has(uint16_t languageId) const
    {
        return std::ranges::find(script.languages, languageId) != script.languages.end();
    }

    template <typename Action>
    HRESULT Answer(const std::string& operation, const std::string& arguments, const Action& action)
    {
        const FaultPause pause;
        script.calls.push_back(operation + "(" + arguments + ")");
        for (const uint32_t level : script.lines[operation])
        {
            logger->Log(level, 0, level == VeloxLogLevel::Failure ? script.lineOfLevel2 : "[" + operation + "] A line.");
        }
        if (script.onCall)
        {
            script.onCall(operation);
        }
        const HRESULT result = action();
        const auto scripted = script.results.find(operation);
        return scripted == script.results.end() ? result : scripted->second;
    }

    ScriptedLibrary& script = GetScriptedLibrary();
    IVeloxKeywordDetectorLogger* logger;
    GUID detectorId;
    uint16_t language = 0;
    bool isUserModel = false;
};

} // namespace

void ScriptedLibrary::Reset()
{
    const int live = objects;
    *this = {};
    objects = live;
}

ScriptedLibrary& GetScriptedLibrary()
{
    static ScriptedLibrary library;
    return library;
}

namespace KeywordDetectorAdapterImplementation
{

void AdapterCustomDeleter::operator()(void* object)
{
    ::operator delete(object);
}

std::unique_ptr<IVeloxKeywordDetectorAdapterImpl, AdapterCustomDeleter> CreateKeywordDetectorAdapterImpl(
    IVeloxKeywordDetectorLogger* logger, const std::string& configurationFilePath, const std::string& version, GUID detectorId)
{
    const FaultPause pause;
    ScriptedLibrary& script = GetScriptedLibrary();
    script.calls.push_back("Create(" + configurationFilePath + ", " + version + ")");
    script.detectorId = detectorId;
    if (script.onCall)
    {
        script.onCall("Create");
    }
    return std::unique_ptr<IVeloxKeywordDetectorAdapterImpl, AdapterCustomDeleter>(new LibraryObject(logger, detectorId));
}

} // namespace KeywordDetectorAdapterImplementation
