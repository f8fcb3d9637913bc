#include "library/wovwrapper/SessionGuard.h"
#include "library/wovwrapper/VeloxWovWrapper.h"

#include <cstring>
#include <new>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

/// The length that a phrase model holds; 0 for a model that the engine did not give.
uint32_t PhraseModelSize(const uint8_t* phraseModel)
{
    uint32_t size = 0;
    if (phraseModel != nullptr)
    {
        std::memcpy(&size, phraseModel + PhraseModelSizeOffset, sizeof(size));
    }
    return size;
}

} // namespace

HRESULT VeloxWovWrapper::TrainModel(IMFMediaBuffer** recordings, uint32_t recordingsCount, const int32_t* keywordEndBytePositions,
                                    uint8_t** modelData, uint32_t* modelDataSize)
{
    uint32_t session = 0;
    if (const uint32_t status = InitializeSession(&session); status != EngineStatus::Success)
    {
        // Kept: a session that was created before the failure is not released.
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to initialize session.", status);
        return E_FAIL;
    }
    SessionGuard guard(session);

    uint8_t* phraseModel = nullptr;
    const uint32_t enrolled = EnrollPhrase(session, recordings, recordingsCount, keywordEndBytePositions, &phraseModel);
    if (enrolled == EngineStatus::Success)
    {
        if (const HRESULT result = PrepareModelData(session, phraseModel, modelData, modelDataSize); FAILED(result))
        {
            guard.Destroy();
            return result;
        }
    }

    // Observable, kept: closing destroys the session, and a second destroy follows.
    CloseSession(&session);
    logger->LogWithCode(Information, Internals, "[TrainModel] Exit.", enrolled);
    guard.Destroy();
    return enrolled == EngineStatus::Success ? S_OK : E_FAIL;
}

uint32_t VeloxWovWrapper::EnrollPhrase(uint32_t session, IMFMediaBuffer** recordings, uint32_t recordingsCount,
                                       const int32_t* keywordEndBytePositions, uint8_t** phraseModel)
{
    if (const uint32_t status = VWoVStartEnrollment(session); status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to start enrollment.", status);
        return status;
    }

    logger->Log(Information, Internals, "[TrainModel] Starting feeding data to WovSDK");
    if (const uint32_t status = FeedRecordingsForEnrollment(&session, recordings, recordingsCount, keywordEndBytePositions);
        status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to feed recordings.", status);
        return status;
    }

    if (const uint32_t status = VWoVFinalizeEnrollment(session, phraseModel); status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to finalize enrollment.", status);
        return status;
    }
    logger->LogWithCode(Detail, Internals, "[TrainModel] Enrollment finalized.", EngineStatus::Success);
    logger->LogFormat(Detail, Internals, "[TrainModel] Phrase model size: %u.",
                      static_cast<unsigned int>(PhraseModelSize(*phraseModel)));
    return EngineStatus::Success;
}

HRESULT VeloxWovWrapper::PrepareModelData(uint32_t session, const uint8_t* phraseModel, uint8_t** modelData,
                                          uint32_t* modelDataSize)
{
    if (const uint32_t status = VWoVSetModel(session, phraseModel); status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to set keyphrase model.", status);
        return E_FAIL;
    }

    uint32_t size = 0;
    if (const uint32_t status = VWoVPrepareLpeData(session, nullptr, &size); status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to prepare LPE data.", status);
        return E_FAIL;
    }
    logger->LogFormat(Detail, Internals, "[TrainModel] Created LPE data size: %u.", static_cast<unsigned int>(size));

    // Zeros: an engine that writes less than it said leaves no stale memory in the user's stream.
    *modelData = new (std::nothrow) uint8_t[size]();
    if (*modelData == nullptr)
    {
        logger->Log(Failure, Internals, "[TrainModel] Failed to allocate memory for model data.");
        return E_OUTOFMEMORY;
    }
    *modelDataSize = size;
    if (const uint32_t status = VWoVPrepareLpeData(session, *modelData, &size); status != EngineStatus::Success)
    {
        // Kept: the buffer stays with the caller.
        logger->LogWithCode(Error, Internals, "VWoVPrepareLpeData failed!", status);
        return E_FAIL;
    }
    return S_OK;
}
