#include "oemadapter/detector/KeywordLibrary.h"

#include "oemadapter/settings/DetectorId.h"
#include "oemadapter/windows/ProcessingFailed.h"
#include "oemadapter/windows/ProvisionalResultCodes.h"

#include <algorithm>
#include <utility>

namespace velox::oemadapter
{

namespace
{

/// The outputs of the library's GetCapabilities. Frees what is left in them, however the call ends.
class CapabilitiesOutputs
{
public:
    CapabilitiesOutputs() = default;
    CapabilitiesOutputs(const CapabilitiesOutputs&) = delete;
    CapabilitiesOutputs& operator=(const CapabilitiesOutputs&) = delete;
    ~CapabilitiesOutputs()
    {
        static_cast<void>(Take());
    }

    Capabilities Take()
    {
        Capabilities taken;
        taken.supportsUserModels = supportsUserModels != 0;
        taken.keywordIds.reset(std::exchange(keywordIds, nullptr));
        taken.keywordCount = keywordCount;
        taken.languageIds.reset(std::exchange(languageIds, nullptr));
        taken.languageCount = languageCount;
        taken.audioFormat.reset(std::exchange(audioFormat, nullptr));
        return taken;
    }

    int32_t supportsUserModels = 0;
    uint32_t* keywordIds = nullptr;
    uint32_t keywordCount = 0;
    uint16_t* languageIds = nullptr;
    uint32_t languageCount = 0;
    IMFMediaType* audioFormat = nullptr;
};

} // namespace

bool Capabilities::HasLanguage(uint16_t language) const
{
    const uint16_t* const end = languageIds.get() + languageCount;
    return std::find<const uint16_t*>(languageIds.get(), end, language) != end;
}

KeywordLibrary::KeywordLibrary(AdapterLogger* adapterLogger, LastArming* processesArming,
                               const std::string& configurationFilePath)
    : logger(adapterLogger), lastArming(processesArming),
      library(KeywordDetectorAdapterImplementation::CreateKeywordDetectorAdapterImpl(logger, configurationFilePath,
                                                                                     "VeloxOemAdapter " VELOX_VERSION, DetectorId)
                  .release())
{
}

HRESULT KeywordLibrary::GetCapabilities(Capabilities* capabilities)
{
    CapabilitiesOutputs outputs;
    const HRESULT result = library->GetCapabilities(&outputs.supportsUserModels, &outputs.keywordIds, &outputs.keywordCount,
                                                    &outputs.languageIds, &outputs.languageCount, &outputs.audioFormat);
    if (result == E_OUTOFMEMORY && outputs.languageIds == nullptr)
    {
        // Without memory for the languages the library frees the keywords and leaves their address.
        outputs.keywordIds = nullptr;
    }
    if (FAILED(result))
    {
        return result;
    }
    *capabilities = outputs.Take();
    return S_OK;
}

HRESULT KeywordLibrary::Verify(uint16_t language, int32_t keywordEnd, IMFMediaBuffer* recording)
{
    // The library does not read the user's model.
    const HRESULT result = library->VerifyUserKeyword(nullptr, Keyword, language, keywordEnd, recording);
    if (result != E_FAIL)
    {
        return result;
    }
    // One code for a keyword that is not there and for every failure: only failures have a line of this level.
    return logger->operation.Lines(VeloxLogLevel::Error) == 0 ? E_NO_MATCH : ProcessingFailed;
}

HRESULT KeywordLibrary::Compute(IStream* modelData, const KeywordSelector& selector, const int32_t* keywordEnds,
                                IMFMediaBuffer** recordings, uint32_t recordingCount)
{
    const HRESULT result = library->ComputeAndAddUserModelData(modelData, selector, keywordEnds, recordings, recordingCount);
    const bool isLost = SUCCEEDED(result) && logger->operation.ModelWasLost();
    return result == E_FAIL || isLost ? ProcessingFailed : result;
}

} // namespace velox::oemadapter
