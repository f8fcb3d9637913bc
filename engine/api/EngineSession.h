#pragma once

#include "engine/api/EngineAttributes.h"
#include "engine/enrollment/Enrollment.h"
#include "engine/listening/PhraseDetector.h"

namespace velox::engine
{

/// Integer outputs of a session. The first three are the contract's; the others tell why a take was refused, once it was flushed.
enum class Output : uint32_t
{
    VadFlag = 2,        ///< 1 when the last frame is not speech
    AudioFrameSize = 5, ///< samples
    VadQuality = 6,     ///< of the last frame: decibels above the noise floor
    TakeStatus = 20,    ///< Status of the take: Success, TooQuiet, Clipped, ...
    PlaceStart = 21,    ///< where the phrase, or else the speech, starts: sample
    PlaceEnd = 22,      ///< and ends
    BestScore = 23,     ///< highest first-stage score of the take, Q8
};

/// One session of the engine. Calls out of order give OrderViolated.
///
/// Nothing is allocated, locked or logged while frames are fed.
class EngineSession
{
public:
    /// Longest take that is looked at as a whole; what comes later is scored, but not judged.
    static constexpr std::size_t MostTakeSeconds = 20;

    /// Frames for which the score of a detection stands: callers look at the frame after the one that gave it, too, and take a
    /// lower score there for a withdrawal.
    static constexpr int64_t HeldFrames = 50;

    explicit EngineSession(EngineAttributes attributes);

    Status InitComponent(uint32_t component);
    Status SetModel(const uint8_t* blob);
    Status StartEnrollment();
    Status StartUtterance();
    Status FeedFrame(const int16_t* samples, uint32_t sampleCount);
    Status FinalizeUtterance();
    Status FinalizeEnrollment(uint8_t** phraseModel);
    Status GetScores(float* scores, uint32_t* count) const;
    Status GetIntOutput(uint32_t output, int32_t* values, uint32_t* count) const;
    Status Flush();
    Status PrepareLpeData(uint8_t* buffer, uint32_t* size) const;

private:
    enum class Mode
    {
        Idle,
        Listening,
        Enrolling,
        InUtterance,
        Enrolled,
    };

    Status CheckModels() const;
    void StartListening();
    void HearFrame(const float* samples);
    void JudgeTake();
    Status MakePhraseModel();

    EngineAttributes attributes;
    bool vadReady = false;
    bool kpdReady = false;
    Mode mode = Mode::Idle;

    std::unique_ptr<PhraseModel> model;
    std::vector<uint8_t> firmwareModel;
    std::unique_ptr<PhraseDetector> detector;
    float score = 0.0F;
    int64_t sinceDetection = 0; ///< frames
    bool scoreReady = false;
    float bestScore = 0.0F;
    std::optional<Detection> bestDetection;
    int64_t flushed = 0;
    bool judged = false; ///< since the last frame

    std::vector<float> takeSamples;
    std::vector<MelFrame> takeFrames;
    Status takeStatus = Status::Success;
    int64_t placeStart = 0;
    int64_t placeEnd = 0;

    std::unique_ptr<Enrollment> enrollment;
    std::vector<uint8_t> phraseModelBlob;
};

} // namespace velox::engine
