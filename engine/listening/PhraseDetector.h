#pragma once

#include "engine/listening/Decoder.h"
#include "engine/listening/StreamingNetwork.h"
#include "engine/models/PhraseModel.h"
#include "engine/sound/FeatureStream.h"

#include <optional>

namespace velox::engine
{

/// A peak of the phrase's score that the second stage has judged.
struct Detection
{
    float score = 0.0F; ///< ScoreScale
    int64_t startSample = 0;
    int64_t endSample = 0;
    float searchScore = 0.0F;  ///< of the first stage, ScoreScale
    float phraseScore = 0.0F;  ///< of the words, whoever says them, ScoreScale
    float speakerRatio = 0.0F; ///< of the user and everybody; 0 without a speaker part
};

/// Listens for one phrase. The first stage, network and decoder, sees every frame; the second, the judge of the path and the
/// speaker part, only a peak of the first one's score. Nothing is allocated after the construction.
class PhraseDetector
{
public:
    /// Least first-stage score at which a peak is judged, ScoreScale: two hundred peaks per hour of background.
    static constexpr float LeastPeak = 40.0F;
    /// Frames after which a score that was not surpassed is a peak.
    static constexpr int64_t PeakFrames = 10;
    /// Longest phrase, in frames, whose features are kept.
    static constexpr int64_t HistoryFrames = 300;

    /// @param model  must outlive this
    explicit PhraseDetector(const PhraseModel& model);

    /// @param samples  FrameSize samples in [-1, 1]
    /// @return a peak that was confirmed with this frame
    std::optional<Detection> Push(const float* samples);

    /// What Push does once more, for audio that has ended: silence is fed. Pushes needed: FlushFrames().
    int64_t FlushFrames() const;

    /// The last frame that was analysed; null before the first.
    const AnalysedFrame* LastFrame() const
    {
        return analysed ? &frame : nullptr;
    }

    /// First-stage score of the last frame that the decoder saw, ScoreScale; nothing before the first path ended.
    std::optional<float> FirstStageScore() const
    {
        return firstStage;
    }

    /// Frames fed into the decoder.
    int64_t DecodedFrames() const
    {
        return decoder.FrameCount();
    }

private:
    struct Peak
    {
        float score = 0.0F; ///< of the decoder
        int64_t endFrame = 0;
        PhrasePath path;
    };

    Detection Judge(const Peak& peak);
    float JudgeSpeaker(const Peak& peak);

    const PhraseModel& model;
    FeatureStream stream;
    StreamingNetwork network;
    Decoder decoder;
    AnalysedFrame frame{};
    bool analysed = false;
    std::vector<MelFrame> history;        ///< features by their frame's number, round and round
    int64_t frames = 0;                   ///< analysed
    std::vector<MelFrame> phraseFeatures; ///< those of a peak
    Eigen::MatrixXf speakerFrames;        ///< and their cepstra
    std::optional<float> firstStage;
    bool peakPending = false;
    Peak peak; ///< the last one, pending or judged
};

} // namespace velox::engine
