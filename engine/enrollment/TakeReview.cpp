#include "engine/enrollment/TakeReview.h"

#include "engine/sound/FeatureStream.h"

#include <algorithm>
#include <array>

namespace velox::engine
{

namespace
{

Status StatusOf(TakeFault fault)
{
    switch (fault)
    {
    case TakeFault::NoSpeech:
        return Status::NoSpeech;
    case TakeFault::TooQuiet:
        return Status::TooQuiet;
    case TakeFault::Clipped:
        return Status::Clipped;
    case TakeFault::CutAtStart:
        return Status::CutAtStart;
    case TakeFault::CutAtEnd:
        return Status::CutAtEnd;
    case TakeFault::TwoPhrases:
        return Status::TwoPhrases;
    case TakeFault::None:
        break;
    }
    return Status::Success;
}

/// A take that begins or ends with speech may still hold the whole phrase: then it is not cut.
Status JudgeWithPhrase(TakeFault fault, bool found)
{
    const bool cut = fault == TakeFault::CutAtStart || fault == TakeFault::CutAtEnd;
    if (found && cut)
    {
        return Status::Success;
    }
    return !found && fault == TakeFault::None ? Status::PhraseNotFound : StatusOf(fault);
}

std::vector<FrameReview> MeasureFrames(std::span<const MelFrame> logMel)
{
    std::vector<FrameReview> frames;
    NoiseFloor floor;
    for (const MelFrame& frame : logMel)
    {
        const float aboveFloor = floor.Update(MeanLevel(frame));
        frames.push_back({NoiseFloor::IsSpeech(aboveFloor), NoiseFloor::Decibels(aboveFloor), ScoreScale::Least});
    }
    return frames;
}

/// Listens to a take and its flush.
class TakeListener
{
public:
    TakeListener(const PhraseModel& model, TakeReview* takeReview)
        : detector(model), lookAhead(static_cast<std::size_t>(model.network.LookAhead())), review(takeReview)
    {
    }

    void Listen(std::span<const float> samples)
    {
        for (std::size_t start = 0; start + FrameSize <= samples.size(); start += FrameSize)
        {
            Hear(samples.data() + start);
        }
        constexpr std::array<float, FrameSize> Silence{};
        for (int64_t i = 0; i < detector.FlushFrames(); ++i)
        {
            Hear(Silence.data());
        }
        if (best && best->score >= LeastTakeScore)
        {
            review->phrase = best;
        }
    }

private:
    void Hear(const float* samples)
    {
        const std::optional<Detection> detection = detector.Push(samples);
        if (detection && (!best || detection->score > best->score))
        {
            best = detection;
        }
        if (detector.LastFrame() == nullptr)
        {
            return;
        }
        const float score = detector.FirstStageScore().value_or(ScoreScale::Least);
        review->bestScore = std::max(review->bestScore, score);
        // The decoder is the look-ahead behind.
        if (analysed >= lookAhead && analysed - lookAhead < review->frames.size())
        {
            review->frames[analysed - lookAhead].score = score;
        }
        ++analysed;
    }

    PhraseDetector detector;
    std::size_t lookAhead;
    TakeReview* review;
    std::optional<Detection> best;
    std::size_t analysed = 0;
};

} // namespace

TakeJudgement JudgeTake(std::span<const MelFrame> logMel, std::span<const float> samples, const PhraseModel* model,
                        float phraseScore)
{
    const Endpoints endpoints = FindEndpoints(logMel, samples);
    TakeJudgement judgement;
    judgement.level = endpoints.level;
    judgement.clippedSamples = endpoints.clippedSamples;
    if (endpoints.end > endpoints.begin)
    {
        judgement.speechBegin = FeatureStream::MiddleSample(static_cast<int64_t>(endpoints.begin));
        judgement.speechEnd = FeatureStream::MiddleSample(static_cast<int64_t>(endpoints.end));
    }
    if (model == nullptr)
    {
        judgement.status = StatusOf(endpoints.fault);
    }
    else if (logMel.size() < model->states.States() * Decoder::SubStates)
    {
        judgement.status = Status::UtteranceTooShort;
    }
    else
    {
        judgement.status = JudgeWithPhrase(endpoints.fault, phraseScore >= LeastTakeScore);
    }
    return judgement;
}

TakeReview ReviewTake(const PhraseModel* model, std::span<const float> samples)
{
    TakeReview review;
    const std::vector<MelFrame> logMel = LogMelFrames(samples);
    review.frames = MeasureFrames(logMel);
    if (model != nullptr)
    {
        TakeListener(*model, &review).Listen(samples);
    }
    const float score = review.phrase ? review.phrase->score : ScoreScale::Least;
    static_cast<TakeJudgement&>(review) = JudgeTake(logMel, samples, model, score);
    review.firstClipped = FirstClipped(samples);
    return review;
}

} // namespace velox::engine
