#pragma once

#include "AdapterCustomDeleter.h"
#include "DetectionResult.h"
#include "IVeloxKeywordDetectorLogger.h"
#include "KeywordSelector.h"
#include "VeloxExport.h"

#include <windows.h>

#include <mfobjects.h>
#include <objidl.h>

#include <cstdint>
#include <memory>
#include <string>

namespace KeywordDetectorAdapterImplementation
{

/// The keyword detector's five operations. An adapter takes no locks: the caller must not overlap operations on one adapter.
/// The configuration file is read afresh by every operation, so a change to it takes effect at the next call.
///
/// The order of the operations is the order of their virtual slots and never changes.
///
/// Every operation returns one of
///   S_OK           0x00000000
///   E_FAIL         0x80004005  a configuration, registry, engine or model step failed; no keyword found
///   E_POINTER      0x80004003  a required pointer is null
///   E_OUTOFMEMORY  0x8007000E  a buffer could not be allocated
///   E_INVALIDARG   0x80070057  an input argument is not valid
/// or, where said, the code of a platform call that failed. A failure writes a level-1 log line, with two exceptions that the
/// code alone tells: a key phrase that was not found, and a media type that cannot be made. Exceptions leave when memory for a
/// text or a buffer runs out, when the logger throws, and when the keyword engine does; only a std::exception while the engine is
/// being made ready for a request is turned into E_FAIL.
class IVeloxKeywordDetectorAdapterImpl
{
public:
    /// Slot 0. Writes the "Destructor." line and releases the configuration reader. AdapterCustomDeleter does not come here.
    virtual ~IVeloxKeywordDetectorAdapterImpl() = default;

    /// Announces what the detector supports: user models, keyword id 1, the languages of the configuration file and the audio
    /// format (16 kHz, mono, 16-bit PCM).
    ///
    /// @param supportsUserModels  receives 1
    /// @param keywordIds          receives a buffer of one id, 1; the caller frees it with CoTaskMemFree
    /// @param keywordCount        receives 1
    /// @param languageIds         receives a buffer of `*languageCount` LANGIDs, in the file's order; the caller frees it
    /// @param languageCount       receives the number of languages
    /// @param audioFormat         receives a new media type with one reference, which the caller releases
    /// @return S_OK; E_POINTER when an argument is null (nothing written); E_OUTOFMEMORY; E_FAIL when the configuration file
    ///     cannot be used; the code of MFCreateMediaType or MFInitMediaTypeFromWaveFormatEx
    ///
    /// On failure the buffers written so far stay with the caller, with one exception: when the language buffer cannot be
    /// allocated, the keyword buffer is freed while `*keywordIds` keeps its former address.
    virtual HRESULT GetCapabilities(int32_t* supportsUserModels, uint32_t** keywordIds, uint32_t* keywordCount,
                                    uint16_t** languageIds, uint32_t* languageCount, IMFMediaType** audioFormat) = 0;

    /// Checks whether one enrollment recording contains the key phrase.
    ///
    /// @param modelData          not read; may be null
    /// @param keywordId          any id but 0
    /// @param languageId         a language of the configuration file
    /// @param keywordEndBytePos  byte position in the recording at which the key phrase ends; 1 or less: not known
    /// @param recording          mono 32-bit float samples at 16 kHz, nominally in [-1, 1]; not null; locked only during the call
    /// @return S_OK when the key phrase was found; E_INVALIDARG for keyword id 0, a language that is not configured or a null
    ///     recording; E_FAIL when the key phrase was not found and for every other failure
    virtual HRESULT VerifyUserKeyword(IStream* modelData, uint32_t keywordId, uint16_t languageId, int32_t keywordEndBytePos,
                                      IMFMediaBuffer* recording) = 0;

    /// Trains a user model from enrollment recordings and replaces the stream's content with it.
    ///
    /// @param modelData                the stream that receives the model; not null
    /// @param selector                 keyword id 1 and a language of the configuration file
    /// @param keywordEndBytePositions  `recordingCount` positions, as in VerifyUserKeyword
    /// @param recordings               `recordingCount` buffers, as in VerifyUserKeyword
    /// @param recordingCount           at least 1
    /// @return S_OK; E_INVALIDARG for an invalid argument; E_FAIL for every other failure
    virtual HRESULT ComputeAndAddUserModelData(IStream* modelData, KeywordSelector selector,
                                               const int32_t* keywordEndBytePositions, IMFMediaBuffer** recordings,
                                               uint32_t recordingCount) = 0;

    /// Builds the block that arms the audio DSP: a 44-byte header and the model. A stream that begins with "VWOV" arms the
    /// user model that it holds, any other stream the language's predefined model.
    ///
    /// @param userModelData        the stream that may hold a user model; not null, may be empty
    /// @param keywordSelectors     one selector: keyword id 1 and a language of the configuration file
    /// @param numKeywordSelectors  1
    /// @param patternData          not null; receives the block, whose first 32-bit field is its length in bytes; the caller
    ///     frees it with CoTaskMemFree; written only on success
    /// @return S_OK; E_POINTER when the stream, the selectors or `patternData` is null, or the number of selectors 0;
    /// E_INVALIDARG
    ///     for more than one selector, another keyword id or a language that is not configured; E_OUTOFMEMORY when the block
    ///     cannot be allocated, or would be longer than 32 bits can say; E_FAIL; the code of the failing or not plainly
    ///     successful read of the user model
    virtual HRESULT BuildArmingPatternData(IStream* userModelData, const KeywordSelector* keywordSelectors,
                                           uint32_t numKeywordSelectors, uint8_t** patternData) = 0;

    /// Reads what the firmware reported. Language and user match are those of the last arming, not of the block.
    ///
    /// @param userModelData  not null, not read
    /// @param result         the firmware's block; not null; at least as many bytes as its first field says
    /// @param keywordId      receives 1, or 0 when the firmware reported another id
    /// @param languageId     receives the language that was armed last, 0 when none was
    /// @param isUserMatch    receives 1 when a user model was armed last, else 0
    /// @param keywordStart   receives the block's value unchanged
    /// @param keywordEnd     receives the block's value unchanged
    /// @return S_OK; E_POINTER when an argument is null; E_INVALIDARG for a block of another detector or shorter than 60 bytes;
    ///     E_FAIL when the language's detection parameters cannot be read. Outputs are written only on success.
    virtual HRESULT ParseDetectionResultData(IStream* userModelData, const DetectionResult* result, uint32_t* keywordId,
                                             uint16_t* languageId, BOOL* isUserMatch, uint64_t* keywordStart,
                                             uint64_t* keywordEnd) = 0;
};

/// Creates an adapter. The configuration file is not touched yet; the registry values "LoggerLevel" and "LogToFile" are read
/// and handed to the logger.
///
/// @param logger                 the caller's, not null, must outlive the adapter
/// @param configurationFilePath  path of the XML configuration file, in the process's narrow code page; copied
/// @param version                text for the constructor's log line only
/// @param detectorId             written into every arming pattern and expected in every detection result
/// @return the adapter, never null; see AdapterCustomDeleter for what happens at the end of its life
/// @throws std::bad_alloc, or what the logger throws; nothing stays allocated then
VELOX_EXPORT std::unique_ptr<IVeloxKeywordDetectorAdapterImpl, AdapterCustomDeleter> CreateKeywordDetectorAdapterImpl(
    IVeloxKeywordDetectorLogger* logger, const std::string& configurationFilePath, const std::string& version, GUID detectorId);

} // namespace KeywordDetectorAdapterImplementation
