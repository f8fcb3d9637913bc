#include "library/wovwrapper/SessionGuard.h"
#include "library/wovwrapper/VeloxWovWrapper.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

HRESULT VeloxWovWrapper::VerifyKeyword(IMFMediaBuffer* recording, int32_t keywordEndBytePos, bool* keywordDetected)
{
    logger->Log(Information, Internals, "[VerifyKeyword] Entry.");

    // Kept: a session that cannot be opened is a success with the verdict as the caller set it; the failure was logged.
    uint32_t session = 0;
    if (InitializeSession(&session) == EngineStatus::Success)
    {
        SessionGuard guard(session);
        if (const uint32_t status = VWoVSetModel(session, enrollmentParameters->keyphraseModel); status != EngineStatus::Success)
        {
            logger->LogWithCode(Error, Internals, "[VerifyKeyword] Failed to set keyphrase model.", status);
            guard.Destroy();
            return E_FAIL;
        }
        if (const uint32_t status = FeedRecording(session, recording, keywordEndBytePos, true, keywordDetected);
            status != EngineStatus::Success)
        {
            logger->LogWithCode(Error, Internals, "[VerifyKeyword] Failed to set feed recording to WoV SDK.", status);
            guard.Destroy();
            return E_FAIL;
        }
        // Observable, kept: destroyed, and closed with the unchanged handle, which destroys it once more.
        VWoVDestroySession(session);
        CloseSession(&session);
        guard.Dismiss();
    }
    else
    {
        CloseSession(&session);
    }

    logger->Log(Information, Internals, "[VerifyKeyword] Exit.");
    return S_OK;
}
