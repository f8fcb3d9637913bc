#pragma once

#include "engine/base/EngineErrors.h"
#include "engine/listening/PhraseDetector.h"
#include "engine/sound/Endpointing.h"

#include <optional>
#include <span>
#include <vector>

namespace velox::engine
{

/// Least score at which a take holds the phrase, ScoreScale: fifty false alarms per hour, were it background.
inline constexpr float LeastTakeScore = 54.0F;

/// Whether a take is of use, and what there is to say of it without its frames.
struct TakeJudgement
{
    Status status = Status::NoSpeech; ///< Success; UtteranceTooShort, or the first fault; CutAt... only without the phrase
    int64_t speechBegin = 0;          ///< sample; begin and end are 0 without speech
    int64_t speechEnd = 0;
    double level = 0.0; ///< of the speech, as QuietLevel counts; 0 without speech
    std::size_t clippedSamples = 0;
};

/// @param logMel       the take's frames as FrontEnd gives them without warp
/// @param samples      the take, in [-1, 1]
/// @param model        the phrase; null to judge level and ends only
/// @param phraseScore  highest score with which the phrase was detected in the take, ScoreScale
TakeJudgement JudgeTake(std::span<const MelFrame> logMel, std::span<const float> samples, const PhraseModel* model,
                        float phraseScore);

/// One frame of 10 ms; the middle of frame n is FeatureStream::MiddleSample(n).
struct FrameReview
{
    bool speech = false;
    float quality = 0.0F; ///< level above the tracked noise floor, in decibels
    float score = 0.0F;   ///< of the phrase that ends here: first stage, ScoreScale
};

/// What can be told about one take, for people.
struct TakeReview : TakeJudgement
{
    std::optional<std::size_t> firstClipped; ///< sample
    std::optional<Detection> phrase;         ///< when it was found: where, and its score
    float bestScore = ScoreScale::Least;     ///< highest score of the first stage
    std::vector<FrameReview> frames;
};

/// Reviews a take as a session would that is fed with it; what is no full frame at its end is left out.
///
/// @param model    may be null: level and ends only
/// @param samples  the take, in [-1, 1]
TakeReview ReviewTake(const PhraseModel* model, std::span<const float> samples);

} // namespace velox::engine
