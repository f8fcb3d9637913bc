#pragma once

#include "oemadapter/detector/LastArming.h"
#include "oemadapter/logging/AdapterLogger.h"
#include "oemadapter/windows/ComPointer.h"
#include "oemadapter/windows/TaskMemory.h"

#include <VeloxHwKwsImpl.h>

#include <cstdint>
#include <memory>
#include <string>

namespace velox::oemadapter
{

/// What the library announces.
struct Capabilities
{
    bool supportsUserModels = false;
    TaskMemory<uint32_t> keywordIds;
    uint32_t keywordCount = 0;
    TaskMemory<uint16_t> languageIds;
    uint32_t languageCount = 0;
    ComPointer<IMFMediaType> audioFormat; ///< 16-bit PCM, 16 kHz, mono

    bool HasLanguage(uint16_t language) const;
};

/// What the library reads out of a result block.
struct Detection
{
    uint32_t keywordId = 0; ///< 0: the firmware reported another keyword
    uint16_t languageId = 0;
    BOOL isUserMatch = FALSE;
    uint64_t keywordStart = 0; ///< ticks of the performance counter
    uint64_t keywordEnd = 0;
};

/// The library's operations, mended to what Windows expects of an adapter. One thread at a time.
class KeywordLibrary
{
public:
    /// The one keyword.
    static constexpr uint32_t Keyword = 1;

    /// @param adapterLogger           its operation is that of the call under way; must outlive this object
    /// @param processesArming         what the process armed last; must outlive this object
    /// @param configurationFilePath  in the process's narrow code page
    /// @throws std::bad_alloc
    KeywordLibrary(AdapterLogger* adapterLogger, LastArming* processesArming, const std::string& configurationFilePath);

    /// @return the library's code; `capabilities` is written only on success
    HRESULT GetCapabilities(Capabilities* capabilities);

    /// @param keywordEnd  bytes from the recording's beginning; 1 and less: not known
    /// @return S_OK; E_INVALIDARG for a language that is not configured or a null recording; E_NO_MATCH when the keyword is not
    /// in the
    ///     recording, or the voice too poor; ProcessingFailed
    HRESULT Verify(uint16_t language, int32_t keywordEnd, IMFMediaBuffer* recording);

    /// @return S_OK; E_INVALIDARG; ProcessingFailed, also when the model did not reach the stream
    HRESULT Compute(IStream* modelData, const KeywordSelector& selector, const int32_t* keywordEnds, IMFMediaBuffer** recordings,
                    uint32_t recordingCount);

    /// Remembers what was armed, in the user's record, too.
    /// @return S_OK; E_POINTER; E_INVALIDARG; E_OUTOFMEMORY; the stream's failure; ProcessingFailed. `block` is written only on
    /// success
    HRESULT Build(IStream* userModelData, const KeywordSelector* selectors, uint32_t selectorCount, TaskMemory<uint8_t>* block);

    /// @return S_OK; E_POINTER; E_INVALIDARG for a block of another detector, or one that is too short; ProcessingFailed.
    ///     `detection` is written only on success
    HRESULT Parse(IStream* userModelData, const DetectionResult* result, Detection* detection);

private:
    HRESULT CallBuild(IStream* userModelData, const KeywordSelector* selectors, uint32_t selectorCount,
                      TaskMemory<uint8_t>* block);

    /// The library tells language and user match of its last arming. Where that was not this object's, it arms for itself.
    HRESULT Prime(IStream* userModelData);

    /// The language that a block comes from that this object did not arm; 0 when nobody knows.
    uint16_t LanguageToPrime();

    AdapterLogger* logger;
    LastArming* lastArming;
    /// Not with the deleter that the factory hands over: that runs no destructor.
    std::unique_ptr<KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl> library;
    /// Whether the library's last arming was one that Windows asked for, and succeeded.
    bool hasArmed = false;
};

} // namespace velox::oemadapter
