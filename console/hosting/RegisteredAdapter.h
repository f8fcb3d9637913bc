#pragma once

#include "oemadapter/windows/ComPointer.h"
#include "oemadapter/windows/KeywordDetectorOemAdapter.h"

#include <VeloxHwKwsImpl.h>

namespace velox::console
{

/// The registered OEM adapter, called as voice activation calls it (first generation), in the shape of what it stands before: so
/// that every command works through either. The library's lines are in the adapter's own log; a failure leaves one line here.
class RegisteredAdapter : public KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl
{
public:
    /// @param detectorClass   the class to create
    /// @param consoleLogger   must outlive this
    /// @throws CommandFailure LibraryFailure when it cannot be created
    RegisteredAdapter(const GUID& detectorClass, IVeloxKeywordDetectorLogger* consoleLogger);

    HRESULT GetCapabilities(int32_t* supportsUserModels, uint32_t** keywordIds, uint32_t* keywordCount, uint16_t** languageIds,
                            uint32_t* languageCount, IMFMediaType** audioFormat) override;
    /// E_FAIL without a line when the adapter says that the phrase was not found.
    HRESULT VerifyUserKeyword(IStream* modelData, uint32_t keywordId, uint16_t languageId, int32_t keywordEndBytePos,
                              IMFMediaBuffer* recording) override;
    HRESULT ComputeAndAddUserModelData(IStream* modelData, KeywordSelector selector, const int32_t* keywordEndBytePositions,
                                       IMFMediaBuffer** recordings, uint32_t recordingCount) override;
    HRESULT BuildArmingPatternData(IStream* userModelData, const KeywordSelector* keywordSelectors, uint32_t numKeywordSelectors,
                                   uint8_t** patternData) override;
    HRESULT ParseDetectionResultData(IStream* userModelData, const DetectionResult* result, uint32_t* keywordId,
                                     uint16_t* languageId, BOOL* isUserMatch, uint64_t* keywordStart,
                                     uint64_t* keywordEnd) override;

private:
    /// Leaves a line of a result that is no success. @return the result
    HRESULT Noted(const char* operation, HRESULT result);

    IVeloxKeywordDetectorLogger* logger;
    oemadapter::ComPointer<IKeywordDetectorOemAdapter> adapter;
};

} // namespace velox::console
