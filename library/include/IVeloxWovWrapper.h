#pragma once

#include "AdapterCustomDeleter.h"
#include "IVeloxKeywordDetectorLogger.h"
#include "VeloxExport.h"
#include "VeloxWovDetectionParameters.h"

#include <windows.h>

#include <mfobjects.h>

#include <cstdint>
#include <memory>
#include <string>

/// The model files of one language; made and filled inside the library.
class EnrollmentParameters;

namespace KeywordDetectorAdapterImplementation
{

/// Drives the keyword engine for one request. A wrapper is used by one thread. The engine's attributes are those of the process:
/// two wrappers that are used at once may mix their models.
///
/// Exceptions leave every operation when memory for a text or a buffer runs out, and when the logger or the engine throws; the
/// engine session is destroyed and the recording unlocked then.
///
/// The order of the operations is the order of their virtual slots and never changes.
class IVeloxWovWrapper
{
public:
    /// Slot 0. Makes no engine call.
    virtual ~IVeloxWovWrapper() = default;

    /// Asks the engine for its frame size. @return S_OK, or E_FAIL: the frame size stays as it was (150 samples at first)
    virtual HRESULT Initialize() = 0;

    /// Scores one recording.
    ///
    /// @param recording          mono 32-bit float samples at 16 kHz
    /// @param keywordEndBytePos  byte position in the recording at which the key phrase ends; 1 or less: not known
    /// @param keywordDetected    set by the caller to false beforehand; receives the verdict
    /// @return S_OK, which does not mean that the key phrase was found; E_FAIL when the key-phrase model is refused, the
    /// recording
    ///     cannot be locked or the number of scores cannot be had
    virtual HRESULT VerifyKeyword(IMFMediaBuffer* recording, int32_t keywordEndBytePos, bool* keywordDetected) = 0;

    /// Trains a user model.
    ///
    /// @param recordings               `recordingsCount` buffers, as in VerifyKeyword
    /// @param recordingsCount          number of recordings
    /// @param keywordEndBytePositions  `recordingsCount` positions, as in VerifyKeyword
    /// @param modelData                receives the model; the caller releases it with delete[]. Set to null beforehand: an
    ///     E_FAIL of the last engine call leaves the buffer with the caller
    /// @param modelDataSize            receives the model's length in bytes
    /// @return S_OK; E_FAIL; E_OUTOFMEMORY
    virtual HRESULT TrainModel(IMFMediaBuffer** recordings, uint32_t recordingsCount, const int32_t* keywordEndBytePositions,
                               uint8_t** modelData, uint32_t* modelDataSize) = 0;
};

/// Creates a wrapper and asks the engine for its frame size; a failure of that question still gives a wrapper.
///
/// @param parameters           the language's model files; borrowed, must outlive the wrapper
/// @param detectionParameters  the language's thresholds
/// @param logger               borrowed, must outlive the wrapper
/// @param sdkLogLevel          log level of the engine, 0 to 6
/// @param platformConstraints  text for the engine; copied
/// @throws std::bad_alloc, or what the logger or the engine throws
VELOX_EXPORT std::unique_ptr<IVeloxWovWrapper, AdapterCustomDeleter> CreateWovWrapper(
    EnrollmentParameters* parameters, VELOX_WOV_DETECTION_PARAMETERS detectionParameters, IVeloxKeywordDetectorLogger* logger,
    int sdkLogLevel, std::string& platformConstraints);

} // namespace KeywordDetectorAdapterImplementation
