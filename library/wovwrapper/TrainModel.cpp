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
    uint32_t status = InitializeSession(&session);
    if (status != EngineStatus::Success)
    {
        // Kept: a session that was created before the failure is not released.
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to initialize session.", status);
        return E_FAIL;
    }
    SessionGuard guard(session);

    // Kept: closing destroys the session and a second destroy follows; engines rely on the order.
    const auto close = [&](HRESULT result) {
        CloseSession(&session);
        logger->LogWithCode(Information, Internals, "[TrainModel] Exit.", status);
        guard.Dismiss();
        VWoVDestroySession(session);
        return result;
    };
    const auto destroy = [&](HRESULT result) {
        guard.Dismiss();
        VWoVDestroySession(session);
        return result;
    };

    status = VWoVStartEnrollment(session);
    if (status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to start enrollment.", status);
        return close(E_FAIL);
    }

    logger->Log(Information, Internals, "[TrainModel] Starting feeding data to WovSDK");
    status = FeedRecordingsForEnrollment(&session, recordings, recordingsCount, keywordEndBytePositions);
    if (status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to feed recordings.", status);
        return close(E_FAIL);
    }

    uint8_t* phraseModel = nullptr;
    status = VWoVFinalizeEnrollment(session, &phraseModel);
    if (status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to finalize enrollment.", status);
        return close(E_FAIL);
    }
    logger->LogWithCode(Detail, Internals, "[TrainModel] Enrollment finalized.", status);
    logger->LogFormat(Detail, Internals, "[TrainModel] Phrase model size: %u.",
                      static_cast<unsigned int>(PhraseModelSize(phraseModel)));

    status = VWoVSetModel(session, phraseModel);
    if (status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to set keyphrase model.", status);
        return destroy(E_FAIL);
    }

    uint32_t size = 0;
    status = VWoVPrepareLpeData(session, nullptr, &size);
    if (status != EngineStatus::Success)
    {
        logger->LogWithCode(Error, Internals, "[TrainModel] Failed to prepare LPE data.", status);
        return destroy(E_FAIL);
    }
    logger->LogFormat(Detail, Internals, "[TrainModel] Created LPE data size: %u.", static_cast<unsigned int>(size));

    // Zeros: an engine that writes less than it said leaves no stale memory in the user's stream.
    *modelData = new (std::nothrow) uint8_t[size]();
    if (*modelData == nullptr)
    {
        logger->Log(Failure, Internals, "[TrainModel] Failed to allocate memory for model data.");
        return destroy(E_OUTOFMEMORY);
    }
    *modelDataSize = size;
    status = VWoVPrepareLpeData(session, *modelData, &size);
    if (status != EngineStatus::Success)
    {
        // Kept: the buffer stays with the caller.
        logger->LogWithCode(Error, Internals, "VWoVPrepareLpeData failed!", status);
        return destroy(E_FAIL);
    }
    return close(S_OK);
}
