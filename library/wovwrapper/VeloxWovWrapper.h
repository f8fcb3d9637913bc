#pragma once

#include "IVeloxWovWrapper.h"
#include "library/configuration/EnrollmentParameters.h"

#include <vector>

/// The wrapper object behind the factory: drives one engine session per operation. Each operation stands in a file of its name.
///
/// Statuses are the engine's, 0 for success, or UnexpectedBehaviour. Callers rely on the members' order.
class VeloxWovWrapper : public KeywordDetectorAdapterImplementation::IVeloxWovWrapper
{
public:
    VeloxWovWrapper(EnrollmentParameters* enrollmentParameters, const VELOX_WOV_DETECTION_PARAMETERS& detectionParameters,
                    IVeloxKeywordDetectorLogger* logger, int32_t sdkLogLevel, const std::string& platformConstraints);

    HRESULT Initialize() override;
    HRESULT VerifyKeyword(IMFMediaBuffer* recording, int32_t keywordEndBytePos, bool* keywordDetected) override;
    HRESULT TrainModel(IMFMediaBuffer** recordings, uint32_t recordingsCount, const int32_t* keywordEndBytePositions,
                       uint8_t** modelData, uint32_t* modelDataSize) override;

private:
    /// The wrapper's own status: an engine that misbehaves, or a recording that cannot be locked.
    static constexpr uint32_t UnexpectedBehaviour = 11;

    struct Feeding;

    /// Asks the engine for its frame size in a session of its own. `*frameSize` is written only on success.
    uint32_t GetAudioFrameSize(int32_t* frameSize);

    /// Opens a session configured from the members. `*session` is 0 before the call; a failure after the session was created
    /// leaves it open, and CloseSession releases it.
    uint32_t InitializeSession(uint32_t* session);

    /// Destroys the session unless the handle is 0; the handle is not reset.
    void CloseSession(const uint32_t* session);

    /// Feeds a recording frame by frame and flushes the engine; with `scoring`, judges it as well.
    /// @return 0 once the recording was locked, whatever happened to the frames
    uint32_t FeedRecording(uint32_t session, IMFMediaBuffer* recording, int32_t keywordEndBytePos, bool scoring,
                           bool* keywordDetected);

    /// Makes room for as many scores as the engine says a frame has.
    uint32_t MakeRoomForScores(Feeding* feeding);

    /// Feeds the samples until they or the key phrase end, the engine refuses a frame, or the key phrase was found.
    void FeedFrames(Feeding* feeding, const uint8_t* samples, uint32_t totalSamples, int32_t keywordEndBytePos);

    /// Takes scores and quality of the frame that the engine has just processed.
    /// @param harmlessStatus  status of GetScores, besides success, that is not logged
    /// @return the status of GetVadQuality
    uint32_t ScoreFrame(Feeding* feeding, uint32_t harmlessStatus);

    /// Lets the engine process what it still holds, until nothing is left or the key phrase was found.
    void FlushEngine(Feeding* feeding);

    /// Takes a detection back when the recording's mean quality is below the language's threshold.
    void JudgeQuality(const Feeding& feeding);

    /// Compares the current frame's scores with the predefined threshold.
    uint32_t GetScores(uint32_t session, std::vector<float>& scores, bool* keywordDetected, uint64_t* frameCounter,
                       float* bestScore);
    float KpdThreshold() const;

    /// Adds the current frame's quality to the sum, if the frame is one whose quality counts.
    uint32_t GetVadQuality(uint32_t session, int64_t* vadQualitySum, int32_t* vadQualityCount);

    /// Enrolls the recordings. The phrase model is the engine's.
    uint32_t EnrollPhrase(uint32_t session, IMFMediaBuffer** recordings, uint32_t recordingsCount,
                          const int32_t* keywordEndBytePositions, uint8_t** phraseModel);

    /// Feeds the recordings as the utterances of an enrollment.
    uint32_t FeedRecordingsForEnrollment(const uint32_t* session, IMFMediaBuffer** recordings, uint32_t recordingsCount,
                                         const int32_t* keywordEndBytePositions);

    /// Has the engine make the firmware's model of an enrolled phrase, in a new block of the caller's.
    HRESULT PrepareModelData(uint32_t session, const uint8_t* phraseModel, uint8_t** modelData, uint32_t* modelDataSize);

    EnrollmentParameters* enrollmentParameters;
    VELOX_WOV_DETECTION_PARAMETERS detectionParameters;
    IVeloxKeywordDetectorLogger* logger;
    int32_t audioFrameSize;
    std::string platformConstraints;
    int32_t sdkLogLevel;
};
