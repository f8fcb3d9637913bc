#pragma once

#include <cstdint>

// The keyword engine, VeloxWovSDK.dll: fifteen flat functions, linked by name. Nothing but the wrapper calls them.
//
// Every function returns a 32-bit status. Zero is success; the wrapper gives a meaning to the three others named here and only
// logs the rest. Audio is signed 16-bit, one channel, 16 kHz.

namespace EngineStatus
{
inline constexpr uint32_t Success = 0;
/// VWoVGetScores: the buffer was too small, the count now holds the number of scores required.
inline constexpr uint32_t BufferTooSmall = 2;
/// VWoVFlush: nothing is left. VWoVGetScores, while frames are being fed: no scores yet, no error.
inline constexpr uint32_t NothingLeft = 0xFFFFFFFF;
} // namespace EngineStatus

/// Text attributes of VWoVSetAttribute.
namespace EngineAttribute
{
inline constexpr uint32_t LogLevel = 13;            ///< decimal text, such as "3"
inline constexpr uint32_t FirmwareConstraints = 19; ///< the platform-constraints text
} // namespace EngineAttribute

/// Binary attributes of VWoVSetBinAttribute.
namespace EngineBinAttribute
{
inline constexpr uint32_t AcousticModel = 1;
inline constexpr uint32_t ZnormPopulation = 2;
} // namespace EngineBinAttribute

/// Components of VWoVInit, initialised in this order.
namespace EngineComponent
{
inline constexpr uint32_t Vad = 2; ///< voice activity detection
inline constexpr uint32_t Kpd = 4; ///< key-phrase detection
} // namespace EngineComponent

/// Integer outputs of VWoVGetIntOutput.
namespace EngineOutput
{
inline constexpr uint32_t VadFlag = 2;    ///< not 0: the current frame's quality is not sampled
inline constexpr uint32_t FrameSize = 5;  ///< samples in an audio frame; exactly one value
inline constexpr uint32_t VadQuality = 6; ///< quality of the current frame
} // namespace EngineOutput

/// Where a phrase model, which the engine owns, holds its length in bytes (unsigned, 32 bits).
inline constexpr uint32_t PhraseModelSizeOffset = 8;

extern "C"
{
    /// Sets a text attribute for the sessions created from now on.
    uint32_t VWoVSetAttribute(uint32_t attributeId, const char* value);

    /// Sets a binary attribute for the sessions created from now on. The block carries its own length and stays the caller's.
    uint32_t VWoVSetBinAttribute(uint32_t attributeId, const uint8_t* blob);

    /// Creates a session; its handle is not 0.
    uint32_t VWoVInitSession(uint32_t* session);

    /// Initialises one component of the session.
    uint32_t VWoVInit(uint32_t session, uint32_t component);

    /// Installs a key-phrase model in the session.
    uint32_t VWoVSetModel(uint32_t session, const uint8_t* keyphraseModel);

    uint32_t VWoVStartEnrollment(uint32_t session);

    /// Starts one utterance of the enrollment. `reserved` is 0.
    uint32_t VWoVStartEnrollmentUtterance(uint32_t session, uint32_t reserved);

    /// Feeds one frame; `sampleCount` is the frame size.
    uint32_t VWoVFeedAudioFrame(uint32_t session, const int16_t* samples, uint32_t sampleCount);

    uint32_t VWoVFinalizeEnrollmentUtterance(uint32_t session);

    /// Ends the enrollment. The phrase model is the engine's.
    uint32_t VWoVFinalizeEnrollment(uint32_t session, uint8_t** phraseModel);

    /// Reads the scores of the current frame. `*count` is the capacity on entry and the number of scores on return; with a null
    /// buffer and a capacity of 0 it receives the number of scores.
    uint32_t VWoVGetScores(uint32_t session, float* scores, uint32_t* count);

    /// Reads an integer output; with `values` null, `*count` receives the number of values that the output has.
    uint32_t VWoVGetIntOutput(uint32_t session, uint32_t outputId, int32_t* values, uint32_t* count);

    /// Processes a piece of what the engine still holds; called until it reports EngineStatus::NothingLeft.
    uint32_t VWoVFlush(uint32_t session);

    /// With `buffer` null, `*size` receives the length of the firmware model in bytes; else writes it.
    uint32_t VWoVPrepareLpeData(uint32_t session, uint8_t* buffer, uint32_t* size);

    /// Releases the session; a second call for the same handle is accepted.
    uint32_t VWoVDestroySession(uint32_t session);
}
