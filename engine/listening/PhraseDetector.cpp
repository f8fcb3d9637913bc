#include "engine/listening/PhraseDetector.h"

#include "engine/listening/PathDescription.h"
#include "engine/listening/SpeakerRatio.h"
#include "engine/sound/Cepstrum.h"

#include <algorithm>
#include <limits>

namespace velox::engine
{

namespace
{

/// What a near phrase loses for each unit of log odds below the cut, and at most.
constexpr float NearPenalty = 8.0F;
constexpr float MostNearPenalty = 100.0F;

} // namespace

PhraseDetector::PhraseDetector(const PhraseModel& phrase)
    : model(phrase), stream(phrase.statistics), network(phrase.network), decoder(phrase.states), history(HistoryFrames),
      speakerFrames(CepstralFrameSize, HistoryFrames), peak{std::numeric_limits<float>::lowest(), -1, decoder.BestPath()}
{
    phraseFeatures.reserve(HistoryFrames);
}

int64_t PhraseDetector::FlushFrames() const
{
    return model.network.LookAhead() + PeakFrames;
}

std::optional<Detection> PhraseDetector::Push(const float* samples)
{
    if (!stream.Push(samples, &frame))
    {
        return std::nullopt;
    }
    analysed = true;
    history[static_cast<std::size_t>(frames % HistoryFrames)] = frame.feature;
    ++frames;

    const Eigen::VectorXf* posteriors = network.Push(frame.feature);
    if (posteriors == nullptr)
    {
        return std::nullopt;
    }
    const int64_t decoded = decoder.FrameCount();
    if (decoder.Push(posteriors->data()))
    {
        const float score = SoftMinimumScore(decoder.BestPath());
        firstStage = ScoreScale::FromScore(score, model.tail);
        // What is left of a phrase that was judged scores, too, for a while: only a better end or a later start is new.
        const bool isNew = score > peak.score || decoder.BestPath().startFrame > peak.endFrame;
        if (*firstStage >= LeastPeak && isNew)
        {
            peakPending = true;
            peak.score = score;
            peak.endFrame = decoded;
            peak.path = decoder.BestPath();
        }
    }
    if (peakPending && decoded - peak.endFrame >= PeakFrames)
    {
        peakPending = false;
        return Judge(peak);
    }
    return std::nullopt;
}

/// The decoder's frame n is the analysed frame n + look-ahead: the network needs as many before its first output.
float PhraseDetector::JudgeSpeaker(const Peak& found)
{
    phraseFeatures.clear();
    for (int64_t n = found.path.startFrame; n <= found.endFrame; ++n)
    {
        phraseFeatures.push_back(history[static_cast<std::size_t>((n + model.network.LookAhead()) % HistoryFrames)]);
    }
    const auto count = static_cast<Eigen::Index>(phraseFeatures.size());
    StretchCepstra(phraseFeatures, speakerFrames.leftCols(count));
    return SpeakerRatio(*model.speaker, speakerFrames.leftCols(count), found.path.counts);
}

Detection PhraseDetector::Judge(const Peak& found)
{
    Detection detection;
    const int64_t lookAhead = model.network.LookAhead();
    const auto halfFrame = static_cast<int64_t>(FrameSize / 2);
    detection.startSample = FeatureStream::MiddleSample(found.path.startFrame + lookAhead) - halfFrame;
    detection.endSample = FeatureStream::MiddleSample(found.endFrame + lookAhead) + halfFrame;
    detection.phraseScore = ScoreScale::FromScore(found.score, model.tail);
    detection.nearMargin = NearPhraseMargin(model.nearCheck, found.path, model.states);

    float score = detection.phraseScore;
    const bool kept = frames - (found.path.startFrame + lookAhead) <= HistoryFrames;
    if (model.speaker && kept)
    {
        detection.speakerRatio = JudgeSpeaker(found);
        const float sum = found.score + SpeakerModel::Weight * detection.speakerRatio;
        score =
            ScoreScale::HalfAlarmPerHour + ScoreScale::StepsPerFactorE * (sum - model.speaker->threshold) / BackgroundTail::Slope;
    }
    else if (model.speaker)
    {
        score = ScoreScale::Least;
    }
    if (detection.nearMargin < 0.0F)
    {
        score -= std::min(MostNearPenalty, -NearPenalty * detection.nearMargin);
    }
    detection.score = ScoreScale::Clamp(score);
    return detection;
}

} // namespace velox::engine
